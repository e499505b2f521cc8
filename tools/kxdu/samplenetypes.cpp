#include "samplenetypes.h"

#include <numeric>

namespace NS_KXDU {

namespace {

using PortNames = SampleCardKind::PortNames;
using NS_STANDALONE::DomainCache;

//                                     port names           prefix     ppType  FB type  ports   sub-slots  access points
constexpr SampleCardKind CONTROL{PortNames::NUMBERED, "console ", 2, 130, 0, 1, 0, false};
constexpr SampleCardKind ETHERNET{PortNames::BY_PLACE, "GE", 0, 1025, 2, 8, 0, false};
constexpr SampleCardKind ETHERNET_CARRIER{PortNames::BY_PLACE, "10GE", 0, 1025, 1, 4, 2, false};
constexpr SampleCardKind SDH{PortNames::NONE, "", 16, 0, 1, 4, 0, true};
constexpr SampleCardKind TRIBUTARY{PortNames::NONE, "", 16, 9, 8, 21, 0, true};
constexpr SampleCardKind OTN_LINE{PortNames::NUMBERED, "line ", 5, 931, 1, 2, 0, false};
constexpr SampleCardKind OTN_CLIENT{PortNames::NUMBERED, "client ", 4, 919, 2, 8, 0, false};
constexpr SampleCardKind OPTICAL_AMPLIFIER{PortNames::NUMBERED, "amplifier ", 6, 125, 1, 2, 0, false};
constexpr SampleCardKind RADIO{PortNames::NUMBERED, "IF-", 8, 128, 1, 2, 0, false};
constexpr SampleCardKind SUBSCRIBER{PortNames::NUMBERED, "line ", 3, 913, 4, 16, 0, false};

constexpr std::array NE_TYPES{
    //           type  name                ip     klv    multi  share  shelves slots  logical  cards
    SampleNeType{1911, "PTN 41 compact", true, false, false, 110, 1, 4, 8, 6, {&CONTROL, &ETHERNET, &TRIBUTARY}},
    SampleNeType{1912, "PTN 41", true, false, false, 90, 1, 6, 12, 8, {&ETHERNET, &ETHERNET_CARRIER, &SDH}},
    SampleNeType{1913, "PTN 41 large", true, false, true, 50, 2, 8, 16, 8, {&ETHERNET, &ETHERNET_CARRIER, &TRIBUTARY}},
    SampleNeType{1335, "PTN 31", true, false, false, 90, 1, 3, 6, 5, {&CONTROL, &ETHERNET, &TRIBUTARY}},
    SampleNeType{1888, "PTN 470", true, false, false, 60, 1, 6, 12, 6, {&ETHERNET, &ETHERNET_CARRIER, &SDH}},
    SampleNeType{1887, "KLV 600", false, true, false, 80, 0, 2, 6, 2, {&RADIO, &ETHERNET, &CONTROL}},
    SampleNeType{1895, "KLV 610", false, true, false, 70, 0, 2, 6, 2, {&RADIO, &ETHERNET, &TRIBUTARY}},
    SampleNeType{1978, "KLV 900", true, true, false, 50, 0, 3, 8, 4, {&RADIO, &ETHERNET, &CONTROL}},
    SampleNeType{2301, "Edge router", true, false, false, 70, 1, 4, 8, 16, {&CONTROL, &ETHERNET, &ETHERNET_CARRIER}},
    SampleNeType{2302, "Core router", true, false, true, 30, 2, 8, 16, 24, {&ETHERNET, &ETHERNET_CARRIER, &CONTROL}},
    SampleNeType{2501, "MSTP node", false, false, false, 80, 1, 4, 12, 2, {&SDH, &TRIBUTARY, &ETHERNET}},
    SampleNeType{2701, "OTN terminal", false, false, false, 80, 2, 6, 14, 0, {&OTN_LINE, &OTN_CLIENT, &CONTROL}},
    SampleNeType{2702, "OTN cross-connect", false, false, true, 40, 4, 8, 20, 0, {&OTN_LINE, &OTN_CLIENT, &CONTROL}},
    SampleNeType{2750,
                 "WDM amplifier site",
                 false,
                 false,
                 false,
                 40,
                 1,
                 3,
                 8,
                 0,
                 {&OPTICAL_AMPLIFIER, &OPTICAL_AMPLIFIER, &CONTROL}},
    SampleNeType{3101, "Access node", false, false, false, 60, 1, 2, 8, 1, {&SUBSCRIBER, &ETHERNET, &CONTROL}},
};

constexpr std::uint32_t ShareOfAll() {
    return std::accumulate(NE_TYPES.begin(), NE_TYPES.end(), 0U,
                           [](std::uint32_t sum, const SampleNeType& type) { return sum + type.share; });
}
static_assert(ShareOfAll() == 1000);

struct DomainMember {
    DomainCache cache;
    std::string_view domain;
    std::uint16_t neType;
};

// In the order of an inventory's keys.
constexpr std::array DOMAIN_MEMBERS{
    DomainMember{DomainCache::NE_TYPE_LIST, "access", 3101},
    DomainMember{DomainCache::NE_TYPE_LIST, "router and metro", 1335},
    DomainMember{DomainCache::NE_TYPE_LIST, "router and metro", 1888},
    DomainMember{DomainCache::NE_TYPE_LIST, "router and metro", 1911},
    DomainMember{DomainCache::NE_TYPE_LIST, "router and metro", 1912},
    DomainMember{DomainCache::NE_TYPE_LIST, "router and metro", 1913},
    DomainMember{DomainCache::NE_TYPE_LIST, "router and metro", 2301},
    DomainMember{DomainCache::NE_TYPE_LIST, "router and metro", 2302},
    DomainMember{DomainCache::NE_TYPE_LIST, "transmission", 1887},
    DomainMember{DomainCache::NE_TYPE_LIST, "transmission", 1895},
    DomainMember{DomainCache::NE_TYPE_LIST, "transmission", 1978},
    DomainMember{DomainCache::NE_TYPE_LIST, "transmission", 2501},
    DomainMember{DomainCache::NE_TYPE_LIST, "transmission", 2701},
    DomainMember{DomainCache::NE_TYPE_LIST, "transmission", 2702},
    DomainMember{DomainCache::NE_TYPE_LIST, "transmission", 2750},
    DomainMember{DomainCache::EQUIPMENT_TYPE, "BIGSLOTNE", 2702},
    DomainMember{DomainCache::EQUIPMENT_TYPE, "IPKLV", 1978},
    DomainMember{DomainCache::EQUIPMENT_TYPE, "KLV6XX", 1887},
    DomainMember{DomainCache::EQUIPMENT_TYPE, "KLV6XX", 1895},
    DomainMember{DomainCache::EQUIPMENT_TYPE, "MSTP", 2501},
    DomainMember{DomainCache::EQUIPMENT_TYPE, "MultiShelfTypeNE", 1913},
    DomainMember{DomainCache::EQUIPMENT_TYPE, "MultiShelfTypeNE", 2302},
    DomainMember{DomainCache::EQUIPMENT_TYPE, "MultiShelfTypeNE", 2701},
    DomainMember{DomainCache::EQUIPMENT_TYPE, "MultiShelfTypeNE", 2702},
    DomainMember{DomainCache::EQUIPMENT_TYPE, "OTN", 2701},
    DomainMember{DomainCache::EQUIPMENT_TYPE, "OTN", 2702},
    DomainMember{DomainCache::EQUIPMENT_TYPE, "PTN", 1888},
    DomainMember{DomainCache::EQUIPMENT_TYPE, "PTN", 1911},
    DomainMember{DomainCache::EQUIPMENT_TYPE, "PTN", 1912},
    DomainMember{DomainCache::EQUIPMENT_TYPE, "PTN", 1913},
    DomainMember{DomainCache::EQUIPMENT_TYPE, "PTN31", 1335},
    DomainMember{DomainCache::EQUIPMENT_TYPE, "WDM", 2750},
};

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

}  // namespace NS_KXDU
