#pragma once

#include <array>

#include <kx_domain_util/constanttables.h>

namespace NS_UTIL::NS_TABLE {

// clang-format off
inline constexpr auto CLIENT_RATES = std::to_array<ClientRateRow>({
    {"OCH", 12292},
    {"ODU5G", 12328},
    {"ODU4", 12325},
    {"ODU3", 12326},
    {"ODU2", 12327},
    {"ODU1", 12329},
    {"ODU0", 12332},
    {"ODUCN", 12324},
    {"ODU25", 12322},
    {"OTU5G", 12312},
    {"OTU4", 12309},
    {"OTU3", 12310},
    {"OTU2", 12311},
    {"OTU1", 12313},
    {"OTUCN", 12308},
    {"OTU25", 12306},
    {"ODUFLEX", 12336},
});
// clang-format on
static_assert(CLIENT_RATES.size() == 17);

}  // namespace NS_UTIL::NS_TABLE
