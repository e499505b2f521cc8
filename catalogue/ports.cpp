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

namespace {

constexpr std::string_view PORT_NUMBER = "port number, PP:2 or LP:2; -1: none";
constexpr std::string_view PP_TYPE = "PP type, PP:0 or LP:0; 0: none; 251: the port is identified by its name";
constexpr std::string_view FB_TYPE = "FB type, PP:1 or LP:1; 0: none; above 65535: a logical port";
constexpr std::string_view PORT_NAME = "port name, PP:3 or LP:3";
constexpr std::string_view IS_LOGICAL = "whether the level of the port is LP, not PP";

}  // namespace

template <>
inline constexpr std::array FIELDS<PortIndex>{
    KX_FIELD(PortIndex, reserved, RESERVED),      KX_FIELD(PortIndex, reserved2, RESERVED),
    KX_FIELD(PortIndex, neId, NE_NUMBER),         KX_FIELD(PortIndex, shelfId, SHELF_NUMBER),
    KX_FIELD(PortIndex, slotId, SLOT_NUMBER),     KX_FIELD(PortIndex, subSlotId, SUB_SLOT_NUMBER),
    KX_FIELD(PortIndex, portId, PORT_NUMBER),     KX_FIELD(PortIndex, ppType, PP_TYPE),
    KX_FIELD(PortIndex, fbType, FB_TYPE),         KX_NAME(PortIndex, portLabel, PORT_NAME),
    KX_FIELD(PortIndex, isLogical, IS_LOGICAL),   KX_FIELD(PortIndex, reservedFlag, RESERVED),
    KX_FIELD(PortIndex, reservedValue, RESERVED),
};

template <>
inline constexpr std::array FIELDS<CtpKey_T>{
    KX_FIELD(CtpKey_T, neId, "NE number of the port; not used by writers"),
    KX_FIELD(CtpKey_T, vrId, "VR number, level VR; not used by writers"),
    KX_FIELD(CtpKey_T, apValue1, "first value of the access point, AP:0"),
    KX_FIELD(CtpKey_T, apValue2, "second value as a number, AP:1"),
    KX_FIELD(CtpKey_T, apText, "second value as text, AP:1; not used by writers"),
    KX_FIELD(CtpKey_T, port.reserved, RESERVED),
    KX_FIELD(CtpKey_T, port.reserved2, RESERVED),
    KX_FIELD(CtpKey_T, port.neId, NE_NUMBER),
    KX_FIELD(CtpKey_T, port.shelfId, SHELF_NUMBER),
    KX_FIELD(CtpKey_T, port.slotId, SLOT_NUMBER),
    KX_FIELD(CtpKey_T, port.subSlotId, SUB_SLOT_NUMBER),
    KX_FIELD(CtpKey_T, port.portId, PORT_NUMBER),
    KX_FIELD(CtpKey_T, port.ppType, PP_TYPE),
    KX_FIELD(CtpKey_T, port.fbType, FB_TYPE),
    KX_NAME(CtpKey_T, port.portLabel, PORT_NAME),
    KX_FIELD(CtpKey_T, port.isLogical, IS_LOGICAL),
    KX_FIELD(CtpKey_T, port.reservedFlag, RESERVED),
    KX_FIELD(CtpKey_T, port.reservedValue, RESERVED),
    KX_FIELD(CtpKey_T, fbType, "FB type of the port; not used by writers"),
    KX_FIELD(CtpKey_T, subIfId, "sub-interface number, AP:2 or level SUBIF; 0: none"),
    KX_FIELD(CtpKey_T, fdnText, "text that the reader took apart; not used by writers"),
};

template <>
inline constexpr std::array FIELDS<TPIndex>{
    KX_FIELD(TPIndex, reserved, RESERVED),
    KX_FIELD(TPIndex, neId, NE_NUMBER),
    KX_FIELD(TPIndex, shelfId, SHELF_NUMBER),
    KX_FIELD(TPIndex, slotId, SLOT_NUMBER),
    KX_FIELD(TPIndex, subSlotId, SUB_SLOT_NUMBER),
    KX_FIELD(TPIndex, portId, PORT_NUMBER),
    KX_FIELD(TPIndex, ppType, PP_TYPE),
    KX_FIELD(TPIndex, fbType, FB_TYPE),
    KX_NAME(TPIndex, portLabel, "port name, PP:3 or LP:3; with a sub-interface: the name, \".\" and its number"),
    KX_FIELD(TPIndex, reserved2, RESERVED),
    KX_FIELD(TPIndex, vc4Id, "number of the higher-order path, level VC4; 0: none"),
    KX_FIELD(TPIndex, vc12Id, "number of the lower-order path, level VC12; 0: none"),
    KX_FIELD(TPIndex, vc3Id, "location word of a program; no level"),
    KX_FIELD(TPIndex, vc11Id, "location word of a program; no level"),
    KX_FIELD(TPIndex, isLogical, IS_LOGICAL),
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
    AtDepth(8, PortTag("PP", "physical port")),
    AtDepth(8, PortTag("LP", "logical port")),
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
