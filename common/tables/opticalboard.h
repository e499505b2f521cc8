#pragma once

#include <array>

#include <kx_domain_util/constanttables.h>

namespace NS_UTIL::NS_TABLE {

// clang-format off
inline constexpr auto OPTICAL_BOARDS = std::to_array<unsigned long>({
    1388, 2299, 2301, 2300, 2879, 948, 949, 3605, 2878, 2298,
    3052, 3051, 3053, 3055, 3054, 3341, 3424, 2970,
});
// clang-format on
static_assert(OPTICAL_BOARDS.size() == 18);

}  // namespace NS_UTIL::NS_TABLE
