#include <array>
#include <string_view>

#include <kx_domain_util/domainindex.h>
#include <kx_domain_util/fdn.h>
#include <kx_domain_util/fdnscanner.h>
#include <kx_domain_util/levelfinder.h>

#include "catalogue/rows.h"

namespace NS_KX {

using namespace NS_DOMAIN;
using NS_UTIL::Surroundings;
using NS_UTIL::NS_FDN::Conversion;
using NS_UTIL::NS_FDN::LevelFinder;
using NS_UTIL::NS_FDN::LoopBackPort;
using NS_UTIL::NS_FDN::PortByNEType;
using NS_UTIL::NS_FDN::SubInterface;
using NS_UTIL::NS_FDN::SubValues;

// ---- Records --------------------------------------------------------------------------------------------------------

template <>
inline constexpr std::array FIELDS<PortIndex>{
    KX_FIELD(PortIndex, reserved),      KX_FIELD(PortIndex, reserved2), KX_FIELD(PortIndex, neId),
    KX_FIELD(PortIndex, shelfId),       KX_FIELD(PortIndex, slotId),    KX_FIELD(PortIndex, subSlotId),
    KX_FIELD(PortIndex, portId),        KX_FIELD(PortIndex, ppType),    KX_FIELD(PortIndex, fbType),
    KX_NAME(PortIndex, portLabel),      KX_FIELD(PortIndex, isLogical), KX_FIELD(PortIndex, reservedFlag),
    KX_FIELD(PortIndex, reservedValue),
};

template <>
inline constexpr std::array FIELDS<CtpKey_T>{
    KX_FIELD(CtpKey_T, neId),
    KX_FIELD(CtpKey_T, vrId),
    KX_FIELD(CtpKey_T, apValue1),
    KX_FIELD(CtpKey_T, apValue2),
    KX_FIELD(CtpKey_T, apText),
    KX_FIELD(CtpKey_T, port.reserved),
    KX_FIELD(CtpKey_T, port.reserved2),
    KX_FIELD(CtpKey_T, port.neId),
    KX_FIELD(CtpKey_T, port.shelfId),
    KX_FIELD(CtpKey_T, port.slotId),
    KX_FIELD(CtpKey_T, port.subSlotId),
    KX_FIELD(CtpKey_T, port.portId),
    KX_FIELD(CtpKey_T, port.ppType),
    KX_FIELD(CtpKey_T, port.fbType),
    KX_NAME(CtpKey_T, port.portLabel),
    KX_FIELD(CtpKey_T, port.isLogical),
    KX_FIELD(CtpKey_T, port.reservedFlag),
    KX_FIELD(CtpKey_T, port.reservedValue),
    KX_FIELD(CtpKey_T, fbType),
    KX_FIELD(CtpKey_T, subIfId),
    KX_FIELD(CtpKey_T, fdnText),
};

template <>
inline constexpr std::array FIELDS<TPIndex>{
    KX_FIELD(TPIndex, reserved),  KX_FIELD(TPIndex, neId),      KX_FIELD(TPIndex, shelfId),   KX_FIELD(TPIndex, slotId),
    KX_FIELD(TPIndex, subSlotId), KX_FIELD(TPIndex, portId),    KX_FIELD(TPIndex, ppType),    KX_FIELD(TPIndex, fbType),
    KX_NAME(TPIndex, portLabel),  KX_FIELD(TPIndex, reserved2), KX_FIELD(TPIndex, vc4Id),     KX_FIELD(TPIndex, vc12Id),
    KX_FIELD(TPIndex, vc3Id),     KX_FIELD(TPIndex, vc11Id),    KX_FIELD(TPIndex, isLogical),
};

namespace {

// ---- Conversions ----------------------------------------------------------------------------------------------------

// Writes a port as for an NE of this type: the writer only asks whether the type spells out absent sub-slots.
template <unsigned short NEType>
struct PortOfNEType : Conversion<PortByNEType> {
    static void Write(const Record& port, std::string& fdn, const Surroundings& /*surroundings*/) {
        Conversion<PortByNEType>::Write(port, fdn, NS_UTIL::KnownNEType(NEType));
    }
};

// The library has no special writer for loop-back ports: they are written like any port.
struct LoopBack : Conversion<LoopBackPort> {
    static void Write(const Record& port, std::string& fdn, const Surroundings& surroundings) {
        Conversion<PortIndex>::Write(port, fdn, surroundings);
    }
};

// Also reads the two path numbers, which the library's reader leaves to its caller.
struct TerminationPoint : Conversion<TPIndex> {
    static void Read(std::string_view fdn, Record& tp, const Surroundings& surroundings) {
        const LevelFinder<"VC4", "VC12"> levels(fdn);
        levels.ReadNumber<"VC4">(tp.vc4Id);
        levels.ReadNumber<"VC12">(tp.vc12Id);
        Conversion<TPIndex>::Read(fdn, tp, surroundings);
    }
};

// ---- Which of several kinds with the same last level ----------------------------------------------------------------

// Whether the usual writer writes this port, whatever the NE's type: the port is in a slot and on a card, or in no slot
// and no sub-slot, and if it is logical, in no shelf.
bool IsWrittenAsUsual(std::string_view fdn) {
    const LevelFinder<"FR", "S", "SS", "CP", "LP"> levels(fdn);
    if (levels.Has<"S">()) {
        return levels.Has<"CP">();
    }
    return !levels.Has<"SS">() && !(levels.Has<"LP">() && levels.Has<"FR">());
}

bool SpellsOutSubSlot(std::string_view fdn) {
    return LevelFinder<"SS">(fdn).Value<"SS">() == "-1";
}

// Whether the label of a termination point cannot hold this sub-interface: its logical port is not identified by name,
// or the name already has a ".".
bool IsOnNumberedPort(std::string_view fdn) {
    const LevelFinder<"LP"> levels(fdn);
    const SubValues<4> port(levels.Value<"LP">());
    const bool isNamed = port[0].empty() && !port[3].empty();
    return port.Count() == 4 && (!isNamed || port[3].find('.') != std::string_view::npos);
}

// ---- Kinds ----------------------------------------------------------------------------------------------------------

// The usual kind of port comes before the other kinds: most ports are of it.
constexpr std::array KINDS{
    MakeKind<Conversion<PortIndex>>("PortIndex", "port", {"PP", "LP"}, "NE=5,FR=1,S=3,CP=-1,PP=16||2|",
                                    IsWrittenAsUsual),
    MakeKind<PortOfNEType<1911>>("PortIndex:NEType1911", "port", {"PP"}, "NE=5,FR=1,S=3,SS=-1,SC=-1,PP=16||2|",
                                 SpellsOutSubSlot),
    MakeKind<PortOfNEType<0>>("PortIndex:NEType", "port", {"PP", "LP"}, "NE=5,FR=1,S=3,PP=16||2|"),
    MakeKind<LoopBack>("PortIndex:LoopBack", "port", {}, "NE=5,FR=1,S=3,CP=-1,PP=16||2|"),
    MakeKind<Conversion<CtpKey_T>>("CtpKey_T", "access-point", {"AP", "VR", "CHANNELSET"},
                                   "NE=5,FR=1,S=3,CP=-1,PP=16||2|,AP=1|2|9"),
    MakeKind<Conversion<SubInterface>>("CtpKey_T:SUBIF", "sub-interface", {"SUBIF"}, "NE=5,LP=16||2|,SUBIF=9",
                                       IsOnNumberedPort),
    MakeKind<TerminationPoint>("TPIndex", "termination-point", {"SUBIF", "VC4", "VC12"},
                               "NE=5,FR=1,S=3,CP=-1,PP=||2|GE0/1,SUBIF=100"),
};

// ---- Tags -----------------------------------------------------------------------------------------------------------

constexpr auto NUMBER = SubValueKind::NUMBER;
constexpr auto OPTIONAL_NUMBER = SubValueKind::OPTIONAL_NUMBER;

constexpr Tag PortTag(std::string_view name, std::string_view meaning) {
    return {.name = name,
            .meaning = meaning,
            .least = 4,
            .most = 4,
            .subValues = {{{OPTIONAL_NUMBER, "PP type; empty: none, or a port identified by its name"},
                           {OPTIONAL_NUMBER, "FB type; empty: none"},
                           {SubValueKind::PORT_NUMBER, "port number; 4294967295 or -1: none"},
                           {SubValueKind::TEXT, "port name"}}},
            .isReadWhole = true,
            .mayEscape = true};
}

constexpr std::array TAGS{
    PortTag("PP", "physical port"),
    PortTag("LP", "logical port"),
    NumberTag("SUBIF", "sub-interface", "sub-interface number"),
    NumberTag("CHANNELSET", "channel set", "channel set number"),
    NumberTag("VC4", "higher-order SDH path", "path number"),
    NumberTag("VC12", "lower-order SDH path", "path number"),
    Tag{.name = "AP",
        .meaning = "access point",
        .least = 3,
        .most = 3,
        .subValues = {{{NUMBER, "first value"},
                       {NUMBER, "second value"},
                       {OPTIONAL_NUMBER, "sub-interface; empty: none"}}},
        .isReadWhole = true},
    NumberTag("VR", "virtual router of an access point", "VR number"),
};

}  // namespace

constinit const Family PORTS{KINDS, TAGS};

}  // namespace NS_KX
