#include "catalogue/conversions.h"

#include <cstdint>
#include <limits>
#include <string_view>

#include <kx_domain_util/fdnscanner.h>
#include <kx_domain_util/levelfinder.h>
#include <kx_domain_util/resIDUtil.h>

#include "catalogue/kinds.h"
#include "text/number.h"
#include "text/text.h"

namespace NS_KX {

using NS_DOMAIN::CtpKey_T;
using NS_DOMAIN::MEPIndex;
using NS_DOMAIN::MIPIndex;
using NS_DOMAIN::PortIndex;
using NS_DOMAIN::PWIndex;
using NS_DOMAIN::PWSwitchIndex;
using NS_DOMAIN::PWTrailIndex;
using NS_DOMAIN::ServiceIndex;
using NS_DOMAIN::TDIndex;
using NS_DOMAIN::TNPIndex_T;
using NS_DOMAIN::TPIndex;
using NS_DOMAIN::TunnelIndex;
using NS_DOMAIN::TunnelTrailIndex;
using NS_DOMAIN::VPNTrailIndex;
using NS_UTIL::ResIDUtil;
using NS_UTIL::NS_FDN::LevelFinder;
using NS_UTIL::NS_FDN::SubValues;

namespace {

// The one thing that this writer does with the NE type is to spell out an absent sub-slot on these two.
constexpr unsigned long SPELLS_OUT_SUB_SLOT = 1911;
constexpr unsigned long NO_RULES = 0;

// ---- Records that keep their text -----------------------------------------------------------------------------------

void Keep(const std::string& fdn, ContainedGroup& group) {
    ResIDUtil::ResID2GroupID(fdn, group.groupId);
    const auto comma = fdn.rfind(',');
    group.container.assign(fdn, 0, comma == std::string::npos ? 0 : comma + 1);
}
void Keep(const std::string& fdn, PWSwitchIndex& pwSwitch) {
    ResIDUtil::ResID2PWSwitchIndex(fdn, pwSwitch);
}
void Keep(const std::string& fdn, ServiceIndex& service) {
    ResIDUtil::ResID2SVCIndex(fdn, service);
}
void Keep(const std::string& fdn, TunnelIndex& tunnel) {
    ResIDUtil::ResID2TunnelIndex(fdn, tunnel);
}
void Keep(const std::string& fdn, VPNTrailIndex& trail) {
    ResIDUtil::ResID2VPNTrailIndex(fdn, trail);
}
void Keep(const std::string& fdn, TunnelTrailIndex& trail) {
    ResIDUtil::ResID2TunnelTrailIndex(fdn, trail);
}
void Keep(const std::string& fdn, PWTrailIndex& trail) {
    ResIDUtil::ResID2PWTrailIndex(fdn, trail);
}
void Keep(const std::string& fdn, TNPIndex_T& group) {
    ResIDUtil::ResID2TNPIndex(fdn, group);
}

template <class Trail>
void Keep(const std::string& fdn, Contained<Trail>& trail) {
    Keep(fdn, static_cast<Trail&>(trail));
    trail.container.assign(fdn, 0, fdn.size() - trail.trailResId.size());
}

template <class Record>
void RejectContradiction(const Record& record, const std::string& fdn) {
    Record readBack;
    Keep(fdn, readBack);
    if (!(readBack == record)) {
        throw BadRecord("the fields say something else than the text that the record keeps, " + Quoted(fdn));
    }
}

// ---- Numbers and names ----------------------------------------------------------------------------------------------

std::string Decimal(std::int64_t number, std::string_view field) {
    if (number < std::numeric_limits<std::int32_t>::min() || number > std::numeric_limits<std::int32_t>::max()) {
        throw BadRecord("field " + Quoted(field) + " is not " + RANGE_OF_32_BITS + ": " + std::to_string(number));
    }
    return std::to_string(number);
}

// The name of an OAM level, behind its number.
void ReadName(std::string_view value, std::string& name) {
    const SubValues<2> subValues(value);
    if (subValues.Count() == 2) {
        name = subValues[1];
    }
}

}  // namespace

// ---- Equipment, ports, termination points ---------------------------------------------------------------------------

void ReadContainedNE(const std::string& fdn, ContainedNE& ne) {
    const LevelFinder<"ONE", "NE"> levels(fdn);
    levels.ReadNumber<"ONE">(ne.oneId);
    levels.ReadNumber<"NE">(ne.neId);
}

void WriteContainedNE(const ContainedNE& ne, std::string& fdn) {
    ResIDUtil::NEID2ResID(ne.oneId, ne.neId, fdn);
}

void WritePort(const PortIndex& port, std::string& fdn) {
    ResIDUtil::PortIndex2ResID(port, fdn, port.isLogical);
}

void WritePortByNEType(const PortIndex& port, std::string& fdn) {
    ResIDUtil::PortIndex2ResIDByNEType(port, fdn, port.isLogical, NO_RULES);
}

void WritePortWithSubSlot(const PortIndex& port, std::string& fdn) {
    ResIDUtil::PortIndex2ResIDByNEType(port, fdn, port.isLogical, SPELLS_OUT_SUB_SLOT);
}

void WriteAccessPoint(const CtpKey_T& key, std::string& fdn) {
    ResIDUtil::APIndex2ResID(key, fdn, key.port.isLogical);
}

void WriteSubInterface(const CtpKey_T& key, std::string& fdn) {
    ResIDUtil::PortIndex2ResID(key, fdn, true);
}

void ReadTerminationPoint(const std::string& fdn, TPIndex& tp) {
    const LevelFinder<"VC4", "VC12"> levels(fdn);
    levels.ReadNumber<"VC4">(tp.vc4Id);
    levels.ReadNumber<"VC12">(tp.vc12Id);
    ResIDUtil::ResID2TPIndex(fdn, tp);
}

// ---- Services, trails, tunnels --------------------------------------------------------------------------------------

void ReadGroup(const std::string& fdn, ContainedGroup& group) {
    Keep(fdn, group);
}

void WriteGroup(const ContainedGroup& group, std::string& fdn) {
    fdn.assign(group.container).append("VEGROUP=").append(std::to_string(group.groupId));
    RejectContradiction(group, fdn);
}

void ReadPseudoWire(const std::string& fdn, PWIndex& pw) {
    ResIDUtil::ResID2PWIndex(fdn, pw);
    if (const auto comma = fdn.find(','); fdn.starts_with("NE=") && comma != std::string::npos) {
        pw.resId.erase(0, comma + 1);
    }
}

void WriteTrafficDescriptor(const TDIndex& descriptor, std::string& fdn) {
    fdn.assign("NE=").append(Decimal(descriptor.neId, "neId"));
    fdn.append(",ATMTD=").append(Decimal(descriptor.tdId, "tdId"));
}

template <class Record>
void WriteWholeText(const Record& record, std::string& fdn) {
    RejectContradiction(record, record.resId);
    fdn = record.resId;
}

template void WriteWholeText(const PWSwitchIndex& pwSwitch, std::string& fdn);
template void WriteWholeText(const ServiceIndex& service, std::string& fdn);
template void WriteWholeText(const TunnelIndex& tunnel, std::string& fdn);

template <class Trail>
void ReadTrail(const std::string& fdn, Contained<Trail>& trail) {
    Keep(fdn, trail);
}

template void ReadTrail(const std::string& fdn, Contained<VPNTrailIndex>& trail);
template void ReadTrail(const std::string& fdn, Contained<TunnelTrailIndex>& trail);
template void ReadTrail(const std::string& fdn, Contained<PWTrailIndex>& trail);
template void ReadTrail(const std::string& fdn, Contained<TNPIndex_T>& group);

template <class Trail>
void WriteTrail(const Contained<Trail>& trail, std::string& fdn) {
    fdn.assign(trail.container).append(trail.trailResId);
    RejectContradiction(trail, fdn);
}

template void WriteTrail(const Contained<VPNTrailIndex>& trail, std::string& fdn);
template void WriteTrail(const Contained<TunnelTrailIndex>& trail, std::string& fdn);
template void WriteTrail(const Contained<PWTrailIndex>& trail, std::string& fdn);
template void WriteTrail(const Contained<TNPIndex_T>& group, std::string& fdn);

// ---- OAM ------------------------------------------------------------------------------------------------------------

void ReadEndPoint(const std::string& fdn, MEPIndex& mep) {
    ResIDUtil::ResID2MepIndex(fdn, mep);  // how far it came shows in the record
    const LevelFinder<"MD", "MA"> levels(fdn);
    ReadName(levels.Value<"MD">(), mep.mdName);
    ReadName(levels.Value<"MA">(), mep.maName);
}

void ReadIntermediatePoint(const std::string& fdn, MIPIndex& mip) {
    ResIDUtil::ResID2MIPIndex(fdn, mip);
    ReadName(LevelFinder<"MIP">(fdn).Value<"MIP">(), mip.mipName);
}

}  // namespace NS_KX
