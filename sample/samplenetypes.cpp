#include "sample/samplenetypes.h"

#include <numeric>
#include <string>

namespace NS_KX {

namespace {

using Card = SampleCardKind;
using Ends = SampleCardKind::Terminations;
using NS_STANDALONE::DomainCache;

constexpr auto UNNAMED = SampleCardKind::PortNames::NONE;
constexpr auto NUMBERED = SampleCardKind::PortNames::NUMBERED;
constexpr auto BY_PLACE = SampleCardKind::PortNames::BY_PLACE;

// clang-format off
//                              port names, prefix    type    FB   ports  sub-slots
constexpr Card CONTROL          {NUMBERED, "console ",     2,  130,  0,  1,  0, Ends::NONE};
constexpr Card ETHERNET         {BY_PLACE, "GE",           0, 1025,  2,  8,  0, Ends::SUB_INTERFACES};
constexpr Card ETHERNET_CARRIER {BY_PLACE, "10GE",         0, 1025,  1,  4,  2, Ends::SUB_INTERFACES};
constexpr Card SDH              {NUMBERED, "STM16-",       0,   10,  1,  4,  0, Ends::PATHS};
constexpr Card TRIBUTARY        {UNNAMED,  "",            16,    9,  8, 21,  0, Ends::ACCESS_POINTS};
constexpr Card CHANNELLED       {UNNAMED,  "",            16,    0,  1,  4,  0, Ends::ACCESS_POINTS};
constexpr Card OTN_LINE         {NUMBERED, "line ",        5,  931,  1,  2,  0, Ends::NONE};
constexpr Card OTN_CLIENT       {NUMBERED, "client ",      4,  919,  2,  8,  0, Ends::NONE};
constexpr Card AMPLIFIER        {NUMBERED, "amplifier ",   6,  125,  1,  2,  0, Ends::NONE};
constexpr Card RADIO            {NUMBERED, "IF-",          8,  128,  1,  2,  0, Ends::NONE};
constexpr Card SUBSCRIBER       {NUMBERED, "line ",        3,  913,  4, 16,  0, Ends::NONE};

constexpr bool IP = true;
constexpr bool KLV = true;
constexpr bool MULTI = true;

constexpr auto NE_TYPES = std::to_array<SampleNeType>({
    // type, name                                   share shelves slots logical cards
    {1911, "PTN 41 compact",     IP, !KLV, !MULTI, 110, 1, 4,  8,  6, {&CONTROL, &ETHERNET, &TRIBUTARY}},
    {1912, "PTN 41",             IP, !KLV, !MULTI,  90, 1, 6, 12,  8, {&ETHERNET, &ETHERNET_CARRIER, &CHANNELLED}},
    {1913, "PTN 41 large",       IP, !KLV,  MULTI,  50, 2, 8, 16,  8, {&ETHERNET, &ETHERNET_CARRIER, &TRIBUTARY}},
    {1335, "PTN 31",             IP, !KLV, !MULTI,  90, 1, 3,  6,  5, {&CONTROL, &ETHERNET, &TRIBUTARY}},
    {1888, "PTN 470",            IP, !KLV, !MULTI,  60, 1, 6, 12,  6, {&ETHERNET, &ETHERNET_CARRIER, &CHANNELLED}},
    {1887, "KLV 600",           !IP,  KLV, !MULTI,  80, 0, 2,  6,  2, {&RADIO, &ETHERNET, &CONTROL}},
    {1895, "KLV 610",           !IP,  KLV, !MULTI,  70, 0, 2,  6,  2, {&RADIO, &ETHERNET, &TRIBUTARY}},
    {1978, "KLV 900",            IP,  KLV, !MULTI,  50, 0, 3,  8,  4, {&RADIO, &ETHERNET, &CONTROL}},
    {2301, "Edge router",        IP, !KLV, !MULTI,  70, 1, 4,  8, 16, {&CONTROL, &ETHERNET, &ETHERNET_CARRIER}},
    {2302, "Core router",        IP, !KLV,  MULTI,  30, 2, 8, 16, 24, {&ETHERNET, &ETHERNET_CARRIER, &CONTROL}},
    {2501, "MSTP node",         !IP, !KLV, !MULTI,  80, 1, 4, 12,  2, {&SDH, &TRIBUTARY, &ETHERNET}},
    {2701, "OTN terminal",      !IP, !KLV, !MULTI,  80, 2, 6, 14,  0, {&OTN_LINE, &OTN_CLIENT, &CONTROL}},
    {2702, "OTN cross-connect", !IP, !KLV,  MULTI,  40, 4, 8, 20,  0, {&OTN_LINE, &OTN_CLIENT, &CONTROL}},
    {2750, "WDM amplifier",     !IP, !KLV, !MULTI,  40, 1, 3,  8,  0, {&AMPLIFIER, &AMPLIFIER, &CONTROL}},
    {3101, "Access node",       !IP, !KLV, !MULTI,  60, 1, 2,  8,  1, {&SUBSCRIBER, &ETHERNET, &CONTROL}},
});
// clang-format on

constexpr std::uint32_t ShareOfAll() {
    return std::accumulate(NE_TYPES.begin(), NE_TYPES.end(), 0U,
                           [](std::uint32_t sum, const SampleNeType& type) { return sum + type.share; });
}
static_assert(ShareOfAll() == 1000);

// Like DomainMemberRow, which cannot be a constant.
struct DomainMember {
    DomainCache cache;
    std::string_view domain;
    std::uint16_t neType;
};

// In the order of an inventory's keys.
constexpr auto DOMAIN_MEMBERS = std::to_array<DomainMember>({
    {DomainCache::NE_TYPE_LIST, "access", 3101},
    {DomainCache::NE_TYPE_LIST, "router and metro", 1335},
    {DomainCache::NE_TYPE_LIST, "router and metro", 1888},
    {DomainCache::NE_TYPE_LIST, "router and metro", 1911},
    {DomainCache::NE_TYPE_LIST, "router and metro", 1912},
    {DomainCache::NE_TYPE_LIST, "router and metro", 1913},
    {DomainCache::NE_TYPE_LIST, "router and metro", 2301},
    {DomainCache::NE_TYPE_LIST, "router and metro", 2302},
    {DomainCache::NE_TYPE_LIST, "transmission", 1887},
    {DomainCache::NE_TYPE_LIST, "transmission", 1895},
    {DomainCache::NE_TYPE_LIST, "transmission", 1978},
    {DomainCache::NE_TYPE_LIST, "transmission", 2501},
    {DomainCache::NE_TYPE_LIST, "transmission", 2701},
    {DomainCache::NE_TYPE_LIST, "transmission", 2702},
    {DomainCache::NE_TYPE_LIST, "transmission", 2750},
    {DomainCache::EQUIPMENT_TYPE, "BIGSLOTNE", 2702},
    {DomainCache::EQUIPMENT_TYPE, "IPKLV", 1978},
    {DomainCache::EQUIPMENT_TYPE, "KLV6XX", 1887},
    {DomainCache::EQUIPMENT_TYPE, "KLV6XX", 1895},
    {DomainCache::EQUIPMENT_TYPE, "MSTP", 2501},
    {DomainCache::EQUIPMENT_TYPE, "MultiShelfTypeNE", 1913},
    {DomainCache::EQUIPMENT_TYPE, "MultiShelfTypeNE", 2302},
    {DomainCache::EQUIPMENT_TYPE, "MultiShelfTypeNE", 2701},
    {DomainCache::EQUIPMENT_TYPE, "MultiShelfTypeNE", 2702},
    {DomainCache::EQUIPMENT_TYPE, "OTN", 2701},
    {DomainCache::EQUIPMENT_TYPE, "OTN", 2702},
    {DomainCache::EQUIPMENT_TYPE, "PTN", 1888},
    {DomainCache::EQUIPMENT_TYPE, "PTN", 1911},
    {DomainCache::EQUIPMENT_TYPE, "PTN", 1912},
    {DomainCache::EQUIPMENT_TYPE, "PTN", 1913},
    {DomainCache::EQUIPMENT_TYPE, "PTN31", 1335},
    {DomainCache::EQUIPMENT_TYPE, "WDM", 2750},
});

}  // namespace

std::span<const SampleNeType> SampleNeTypes() {
    return NE_TYPES;
}

std::vector<NS_STANDALONE::DomainMemberRow> SampleDomainMembers() {
    std::vector<NS_STANDALONE::DomainMemberRow> rows;
    rows.reserve(DOMAIN_MEMBERS.size());
    for (const DomainMember& member : DOMAIN_MEMBERS) {
        rows.push_back({member.cache, std::string(member.domain), member.neType});
    }
    return rows;
}

}  // namespace NS_KX
