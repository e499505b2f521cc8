#include <array>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

#include <kx_domain_util/domainindex.h>
#include <kx_domain_util/fdn.h>

#include "catalogue/rows.h"
#include "text/number.h"
#include "text/quoting.h"

namespace NS_KX {

using namespace NS_DOMAIN;
using NS_UTIL::Surroundings;
using NS_UTIL::NS_FDN::Conversion;
using NS_UTIL::NS_FDN::GroupId;

// ---- Records --------------------------------------------------------------------------------------------------------

namespace {

constexpr std::string_view TRAIL_CONTAINER = "text before the level of the trail, with its comma";
constexpr std::string_view TRAIL_TEXT = "text from the level of the trail on";

// A group, with the text of the levels before its own.
struct ContainedGroup {
    std::string container;     // the text before the group's level, with its comma: "NE=5,"
    std::int32_t groupId = 0;  // "VEGROUP"

    bool operator==(const ContainedGroup&) const = default;
};

// A trail record of the library, which keeps the text from the trail's tag on, together with the text before.
template <class Trail>
struct Contained : Trail {
    std::string container;  // the text before the trail's tag, with its comma: "NE=5,"

    bool operator==(const Contained&) const = default;
};

}  // namespace

template <>
inline constexpr std::array FIELDS<ContainedGroup>{
    KX_FIELD(ContainedGroup, container, "text before the level of the group, with its comma"),
    KX_FIELD(ContainedGroup, groupId, "group number, level VEGROUP"),
};

template <>
inline constexpr std::array FIELDS<PWIndex>{
    KX_FIELD(PWIndex, neId, NE_NUMBER),
    KX_FIELD(PWIndex, resId, "what follows the NE level"),
};

template <>
inline constexpr std::array FIELDS<PWSwitchIndex>{
    KX_FIELD(PWSwitchIndex, neId, NE_NUMBER),
    KX_FIELD(PWSwitchIndex, resId, "the whole identifier"),
};

template <>
inline constexpr std::array FIELDS<ServiceIndex>{
    KX_FIELD(ServiceIndex, neId, NE_NUMBER),
    KX_FIELD(ServiceIndex, resId, "the whole identifier"),
    KX_FIELD(ServiceIndex, svcId, "service number, PWE3:1 or level NETH, VSI or VRF; 0: none"),
    KX_FIELD(ServiceIndex, svcType, "service type: 2 for NETH, 4 for VSI, PWE3:0 for PWE3; 0: none"),
};

template <>
inline constexpr std::array FIELDS<TunnelIndex>{
    KX_FIELD(TunnelIndex, neId, NE_NUMBER),
    KX_FIELD(TunnelIndex, tunnelInt4, "sub-value TUNNEL:4"),
    KX_FIELD(TunnelIndex, tunnelText2, "sub-value TUNNEL:2"),
    KX_FIELD(TunnelIndex, tunnelText3, "sub-value TUNNEL:3"),
    KX_FIELD(TunnelIndex, tunnelInt6, "sub-value TUNNEL:6"),
    KX_FIELD(TunnelIndex, tunnelInt0, "sub-value TUNNEL:0"),
    KX_FIELD(TunnelIndex, tunnelInt1, "sub-value TUNNEL:1"),
    KX_FIELD(TunnelIndex, tunnelText5, "sub-value TUNNEL:5"),
    KX_FIELD(TunnelIndex, tunnelText5Copy, "sub-value TUNNEL:5 once more"),
    KX_FIELD(TunnelIndex, resId, "the whole identifier"),
};

template <>
inline constexpr std::array FIELDS<TDIndex>{
    KX_FIELD(TDIndex, reserved, RESERVED),
    KX_FIELD(TDIndex, neId, NE_NUMBER),
    KX_FIELD(TDIndex, tdId, "number of the traffic descriptor, level ATMTD"),
};

template <>
inline constexpr std::array FIELDS<Contained<VPNTrailIndex>>{
    KX_FIELD(Contained<VPNTrailIndex>, container, TRAIL_CONTAINER),
    KX_FIELD(Contained<VPNTrailIndex>, trailResId, TRAIL_TEXT),
    KX_FIELD(Contained<VPNTrailIndex>, trailType, "1: pseudo-wire trail, level PWE3TRAIL; 2: level VPLS"),
};

template <>
inline constexpr std::array FIELDS<Contained<TunnelTrailIndex>>{
    KX_FIELD(Contained<TunnelTrailIndex>, container, TRAIL_CONTAINER),
    KX_FIELD(Contained<TunnelTrailIndex>, trailResId, TRAIL_TEXT),
};

template <>
inline constexpr std::array FIELDS<Contained<PWTrailIndex>>{
    KX_FIELD(Contained<PWTrailIndex>, container, TRAIL_CONTAINER),
    KX_FIELD(Contained<PWTrailIndex>, trailResId, TRAIL_TEXT),
};

template <>
inline constexpr std::array FIELDS<Contained<TNPIndex_T>>{
    KX_FIELD(Contained<TNPIndex_T>, container, TRAIL_CONTAINER),
    KX_FIELD(Contained<TNPIndex_T>, trailResId, TRAIL_TEXT),
};

namespace {

// ---- Conversions ----------------------------------------------------------------------------------------------------

// Throws `BadRecord` unless `fdn` is read back as `record`.
template <class Reader, class Record>
void RejectContradiction(const Record& record, const std::string& fdn, const Surroundings& surroundings) {
    thread_local Record readBack;  // its texts keep their memory
    readBack = Fresh<Record>();
    Reader::Read(fdn, readBack, surroundings);
    if (!(readBack == record)) {
        throw BadRecord("the fields say something else than the text that the record keeps, " + Quoted(fdn));
    }
}

struct Group {
    using Record = ContainedGroup;

    static void Read(std::string_view fdn, Record& group, const Surroundings& surroundings) {
        Conversion<GroupId>::Read(fdn, group.groupId, surroundings);
        const auto comma = fdn.rfind(',');
        group.container = fdn.substr(0, comma == std::string_view::npos ? 0 : comma + 1);
    }
    static void Write(const Record& group, std::string& fdn, const Surroundings& surroundings) {
        fdn.assign(group.container).append("VEGROUP=").append(std::to_string(group.groupId));
        RejectContradiction<Group>(group, fdn, surroundings);
    }
};

struct PseudoWire : Conversion<PWIndex> {
    // Cuts `resId` to the text after a leading NE level, which the writer expects; the library's reader keeps all.
    static void Read(std::string_view fdn, Record& pw, const Surroundings& surroundings) {
        Conversion<PWIndex>::Read(fdn, pw, surroundings);
        if (const auto comma = fdn.find(','); fdn.starts_with("NE=") && comma != std::string_view::npos) {
            pw.resId.erase(0, comma + 1);
        }
    }
};

// A record that keeps its whole text, in `resId`.
template <class Record_>
struct WholeText : Conversion<Record_> {
    static void Write(const Record_& record, std::string& fdn, const Surroundings& surroundings) {
        RejectContradiction<Conversion<Record_>>(record, record.resId, surroundings);
        fdn = record.resId;
    }
};

template <class Trail>
struct TrailInContainer {
    using Record = Contained<Trail>;

    static void Read(std::string_view fdn, Record& trail, const Surroundings& surroundings) {
        Conversion<Trail>::Read(fdn, trail, surroundings);
        trail.container = fdn.substr(0, fdn.size() - trail.trailResId.size());
    }
    static void Write(const Record& trail, std::string& fdn, const Surroundings& surroundings) {
        fdn.assign(trail.container).append(trail.trailResId);
        RejectContradiction<TrailInContainer>(trail, fdn, surroundings);
    }
};

struct TrafficDescriptor : Conversion<TDIndex> {
    // Throws for numbers beyond 32 bits, which readers would not read back.
    static void Write(const Record& descriptor, std::string& fdn, const Surroundings& /*surroundings*/) {
        fdn.assign("NE=").append(Decimal(descriptor.neId, "neId"));
        fdn.append(",ATMTD=").append(Decimal(descriptor.tdId, "tdId"));
    }

private:
    static std::string Decimal(std::int64_t number, std::string_view field) {
        using Limits = std::numeric_limits<std::int32_t>;
        if (number < Limits::min() || number > Limits::max()) {
            throw BadRecord("field " + Quoted(field) + " is not " + RANGE_OF_32_BITS + ": " + std::to_string(number));
        }
        return std::to_string(number);
    }
};

// ---- Kinds ----------------------------------------------------------------------------------------------------------

// LSP and layer-3 VPN have no reader of their own: their records keep the NE and the text, like those of any service.
constexpr std::array KINDS{
    MakeKind<Group>("GroupID", "group", {"VEGROUP"}, "NE=5,VEGROUP=3"),
    MakeKind<PseudoWire>("PWIndex", "pseudo-wire", {"PW"}, "NE=5,PW=4"),
    MakeKind<WholeText<PWSwitchIndex>>("PWSwitchIndex", "pseudo-wire-switch", {"PWSW"}, "NE=5,PWSW=4"),
    MakeKind<WholeText<ServiceIndex>>("ServiceIndex", "service", {"PWE3", "NETH", "VSI", "VRF", "LSP", "L3VPN"},
                                      "NE=5,PWE3=3|17"),
    MakeKind<WholeText<TunnelIndex>>("TunnelIndex", "tunnel", {"TUNNEL"}, "NE=5,TUNNEL=1|2|a|b|3|c|4"),
    MakeKind<TrafficDescriptor>("TDIndex", "traffic-descriptor", {"ATMTD"}, "NE=5,ATMTD=9"),
    MakeKind<TrailInContainer<VPNTrailIndex>>("VPNTrailIndex", "trail", {"PWE3TRAIL", "VPLS"}, "NE=5,PWE3TRAIL=7"),
    MakeKind<TrailInContainer<TunnelTrailIndex>>("TunnelTrailIndex", "trail", {"TUNNELTRAIL"}, "NE=5,TUNNELTRAIL=7"),
    MakeKind<TrailInContainer<PWTrailIndex>>("PWTrailIndex", "trail", {"PWTRAIL"}, "NE=5,PWTRAIL=7"),
    MakeKind<TrailInContainer<TNPIndex_T>>("TNPIndex_T", "trail", {"TUNNELPGTRAIL"}, "NE=5,TUNNELPGTRAIL=7"),
};

// ---- Tags -----------------------------------------------------------------------------------------------------------

constexpr auto NUMBER = SubValueKind::NUMBER;
constexpr auto TEXT = SubValueKind::TEXT;

constexpr std::array TAGS{
    NumberTag("VEGROUP", "group", "group number"),
    NumberTag("NETH", "Ethernet service", "service number"),
    // The meaning of a tunnel's sub-values is not known, so they have the names of the fields that they fill.
    Tag{.name = "TUNNEL",
        .meaning = "tunnel",
        .least = 7,
        .most = 7,
        .subValues = {{{NUMBER, "tunnelInt0"},
                       {NUMBER, "tunnelInt1"},
                       {TEXT, "tunnelText2"},
                       {TEXT, "tunnelText3"},
                       {NUMBER, "tunnelInt4"},
                       {TEXT, "tunnelText5"},
                       {NUMBER, "tunnelInt6"}}},
        .isOpen = true,
        .isReadWhole = true},
    TextTag("LSP", "label-switched path"),
    TextTag("PW", "pseudo-wire"),
    TextTag("PWSW", "pseudo-wire switch"),
    Tag{.name = "PWE3",
        .meaning = "pseudo-wire service",
        .least = 2,
        .most = 2,
        .subValues = {{{NUMBER, "service type"}, {NUMBER, "service number"}}},
        .isOpen = true,
        .isReadWhole = true},
    NumberTag("VSI", "virtual switch instance", "service number"),
    NumberTag("VRF", "virtual routing and forwarding instance", "service number"),
    TextTag("VPLS", "virtual private LAN service"),
    TextTag("L3VPN", "layer-3 virtual private network"),
    NumberTag("ATMTD", "ATM traffic descriptor", "descriptor number"),
    TextTag("PWE3TRAIL", "pseudo-wire service trail"),
    TextTag("TUNNELTRAIL", "tunnel trail"),
    TextTag("PWTRAIL", "pseudo-wire trail"),
    TextTag("TUNNELPGTRAIL", "tunnel protection group"),
};

}  // namespace

constinit const Family SERVICES{KINDS, TAGS};

}  // namespace NS_KX
