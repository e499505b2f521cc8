#pragma once

#include <array>

#include <kx_domain_util/constanttables.h>

namespace NS_UTIL::NS_TABLE {

// The numbers 8, 9, 10 and 12 to 14 are not assigned.
// clang-format off
inline constexpr auto DOMAIN_NAMES = std::to_array<DomainNameRow>({
    {1, "sdh"},
    {2, "sonet"},
    {3, "wdm"},
    {4, "eth"},
    {5, "atm"},
    {6, "escon"},
    {7, "ddn"},
    {11, "klv"},
    {15, "com"},
    {16, "ptn"},
});
// clang-format on
static_assert(DOMAIN_NAMES.size() == 10);

}  // namespace NS_UTIL::NS_TABLE
