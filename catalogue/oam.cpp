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
using NS_UTIL::NS_FDN::RemoteMEP;
using NS_UTIL::NS_FDN::SubValues;

// ---- Records --------------------------------------------------------------------------------------------------------

namespace {

constexpr std::string_view MD_NUMBER = "MD number, MD:0; -1: none";
constexpr std::string_view MD_NAME = "name of the MD, MD:1";
constexpr std::string_view MA_NUMBER = "MA number, MA:0; -1: none";
constexpr std::string_view MA_NAME = "name of the MA, MA:1";

}  // namespace

template <>
inline constexpr std::array FIELDS<MDIndex>{
    KX_FIELD(MDIndex, reserved, RESERVED),
    KX_FIELD(MDIndex, neId, NE_NUMBER),
    KX_FIELD(MDIndex, mdId, MD_NUMBER),
    KX_NAME(MDIndex, mdName, MD_NAME),
};

template <>
inline constexpr std::array FIELDS<MAIndex>{
    KX_FIELD(MAIndex, reserved, RESERVED), KX_FIELD(MAIndex, neId, NE_NUMBER), KX_FIELD(MAIndex, mdId, MD_NUMBER),
    KX_NAME(MAIndex, mdName, MD_NAME),     KX_FIELD(MAIndex, maId, MA_NUMBER), KX_NAME(MAIndex, maName, MA_NAME),
};

template <>
inline constexpr std::array FIELDS<MEPIndex>{
    KX_FIELD(MEPIndex, reserved, RESERVED),
    KX_FIELD(MEPIndex, neId, NE_NUMBER),
    KX_FIELD(MEPIndex, mdId, MD_NUMBER),
    KX_NAME(MEPIndex, mdName, MD_NAME),
    KX_FIELD(MEPIndex, maId, MA_NUMBER),
    KX_NAME(MEPIndex, maName, MA_NAME),
    KX_FIELD(MEPIndex, mepId, "end point number, level MEP or RMEP"),
};

template <>
inline constexpr std::array FIELDS<MIPIndex>{
    KX_FIELD(MIPIndex, reserved, RESERVED),
    KX_FIELD(MIPIndex, neId, NE_NUMBER),
    KX_FIELD(MIPIndex, mdId, MD_NUMBER),
    KX_NAME(MIPIndex, mdName, MD_NAME),
    KX_FIELD(MIPIndex, mipId, "MIP number, MIP:0; -1 or 0: none"),
    KX_NAME(MIPIndex, mipName, "name of the MIP, MIP:1"),
};

namespace {

// ---- Conversions ----------------------------------------------------------------------------------------------------

// The name of an OAM level, after its number.
void ReadName(std::string_view value, std::string& name) {
    const SubValues<2> subValues(value);
    if (subValues.Count() == 2) {
        name = subValues[1];
    }
}

// Also reads the names beside numbers, which the library's reader leaves out.
template <class Kind>
struct EndPoint : Conversion<Kind> {
    static void Read(std::string_view fdn, MEPIndex& mep, const Surroundings& surroundings) {
        Conversion<Kind>::Read(fdn, mep, surroundings);
        const LevelFinder<"MD", "MA"> levels(fdn);
        ReadName(levels.Value<"MD">(), mep.mdName);
        ReadName(levels.Value<"MA">(), mep.maName);
    }
};

// Also reads `mipName`.
struct IntermediatePoint : Conversion<MIPIndex> {
    static void Read(std::string_view fdn, Record& mip, const Surroundings& surroundings) {
        Conversion<MIPIndex>::Read(fdn, mip, surroundings);
        ReadName(LevelFinder<"MIP">(fdn).Value<"MIP">(), mip.mipName);
    }
};

// ---- Kinds ----------------------------------------------------------------------------------------------------------

constexpr std::array KINDS{
    MakeKind<Conversion<MDIndex>>("MDIndex", "maintenance-domain", {"MD"}, "NE=5,MD=3|md1"),
    MakeKind<Conversion<MAIndex>>("MAIndex", "maintenance-association", {"MA"}, "NE=5,MD=3|md1,MA=4|ma1"),
    MakeKind<EndPoint<MEPIndex>>("MEPIndex", "maintenance-end-point", {"MEP"}, "NE=5,MD=3|md1,MA=4|ma1,MEP=7"),
    MakeKind<EndPoint<RemoteMEP>>("MEPIndex:RMEP", "remote-maintenance-end-point", {"RMEP"},
                                  "NE=5,MD=3|md1,MA=4|ma1,RMEP=7"),
    MakeKind<IntermediatePoint>("MIPIndex", "maintenance-intermediate-point", {"MIP"}, "NE=5,MD=3|md1,MIP=4|mip1"),
};

// ---- Tags -----------------------------------------------------------------------------------------------------------

constexpr Tag NamedTag(std::string_view name, std::string_view meaning, std::string_view number) {
    return {name, meaning, 2, 2, {{{SubValueKind::OPTIONAL_NUMBER, number}, {SubValueKind::TEXT, "name"}}}};
}

constexpr std::array TAGS{
    AtDepth(9, NamedTag("MD", "maintenance domain", "MD number; empty: left out on this NE, or none")),
    AtDepth(10, NamedTag("MA", "maintenance association", "MA number; empty: left out on this NE, or none")),
    NumberTag("MEP", "maintenance end point", "end point number"),
    NumberTag("RMEP", "remote maintenance end point", "end point number"),
    NamedTag("MIP", "maintenance intermediate point", "MIP number; empty or 0: none"),
};

}  // namespace

constinit const Family OAM{KINDS, TAGS};

}  // namespace NS_KX
