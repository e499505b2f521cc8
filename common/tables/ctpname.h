#pragma once

#include <array>

#include <kx_domain_util/constanttables.h>

namespace NS_UTIL::NS_TABLE {

// The reserved ids count down from the top of the 16-bit range.
// clang-format off
inline constexpr auto CTP_NAMES = std::to_array<CtpNameRow>({
    {"E0", 65535},
    {"E1", 65534},
    {"E2", 65533},
    {"E3", 65532},
    {"E4", 65531},
    {"E5", 65530},
    {"E6", 65529},
    {"E7", 65528},
    {"E8", 65527},
    {"E9", 65526},
    {"E10", 65525},
    {"E11", 65524},
});
// clang-format on
static_assert(CTP_NAMES.size() == 12);

}  // namespace NS_UTIL::NS_TABLE
