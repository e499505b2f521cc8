#pragma once

#include <array>

#include <kx_domain_util/constanttables.h>

namespace NS_UTIL::NS_TABLE {

// clang-format off
inline constexpr auto PORT_OBJECT_FB_TYPES = std::to_array<int>({
    919, 931, 128, 130, 129, 913, 916, 9, 125, 11,
    10, 14, 934,
});
// clang-format on
static_assert(PORT_OBJECT_FB_TYPES.size() == 13);

}  // namespace NS_UTIL::NS_TABLE
