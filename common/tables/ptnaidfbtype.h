#pragma once

#include <array>

#include <kx_domain_util/constanttables.h>

namespace NS_UTIL::NS_TABLE {

// 4168 stands twice; that changes no answer, and the list is kept as it is shared.
// clang-format off
inline constexpr auto PTN_AID_FB_TYPES = std::to_array<int>({
    4149, 503, 4154, 4156, 4141, 4145, 4146, 4150, 4148, 4168,
    4273, 4168, 4271, 4260, 4256, 4257, 4258,
});
// clang-format on
static_assert(PTN_AID_FB_TYPES.size() == 17);

}  // namespace NS_UTIL::NS_TABLE
