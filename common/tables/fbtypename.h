#pragma once

#include <array>

#include <kx_domain_util/constanttables.h>

namespace NS_UTIL::NS_TABLE {

// 131, 132 and 133 share a name on purpose: the table cannot be read backwards.
// clang-format off
inline constexpr auto FB_TYPE_NAMES = std::to_array<FbTypeNameRow>({
    {122, "CSK"},
    {121, "PWROUTPUT"},
    {24, "DDN"},
    {4149, "TPS_GRP"},
    {4151, "LAG"},
    {503, "SYNCCLOCK"},
    {4153, "SYS_CLK"},
    {4154, "LPS_GRP"},
    {4156, "PORT_PRI"},
    {4136, "TUNNEL"},
    {4141, "ATM_CONN"},
    {4143, "CES_UNI"},
    {4144, "L2VPN_UNI"},
    {4145, "MEP"},
    {4146, "CLASSIFIER"},
    {4150, "MSTP_GRP"},
    {4148, "APS_GRP"},
    {4142, "L2VPN_SER"},
    {125, "PA"},
    {21, "ESCON"},
    {53, "PANEL"},
    {4208, "IFE"},
    {4209, "ODU"},
    {4213, "RFU"},
    {131, "COM"},
    {132, "COM"},
    {133, "COM"},
    {128, "IF"},
    {4258, "GSP_ISIS"},
    {4256, "GSP_OSPF"},
    {4350, "POWER"},
});
// clang-format on
static_assert(FB_TYPE_NAMES.size() == 31);

}  // namespace NS_UTIL::NS_TABLE
