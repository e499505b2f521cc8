#pragma once

#include <array>

#include <kx_domain_util/constanttables.h>

namespace NS_UTIL::NS_TABLE {

// For each level its canonical FB type, written out on its own and not derived from the FB types' levels.
// clang-format off
inline constexpr auto LEVEL_FB_TYPES = std::to_array<LevelFbTypeRow>({
    {12342, 25}, {12313, 810}, {12311, 804}, {12310, 801}, {12309, 813}, {12312, 807},
    {12308, 816}, {12329, 829}, {12327, 823}, {12326, 820}, {12325, 838}, {12324, 844},
    {12328, 826}, {12336, 841}, {12338, 1228}, {12292, 12}, {12294, 206}, {12332, 832},
    {12291, 11}, {12290, 10}, {12322, 1234}, {12306, 1231},
});
// clang-format on
static_assert(LEVEL_FB_TYPES.size() == 22);

}  // namespace NS_UTIL::NS_TABLE
