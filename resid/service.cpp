#include <string>
#include <string_view>

#include <kx_domain_util/fdn.h>
#include <kx_domain_util/fdnscanner.h>
#include <kx_domain_util/levelfinder.h>
#include <kx_domain_util/resIDUtil.h>

#include "frame/systemsurroundings.h"
#include "resid/fdnwriter.h"

namespace NS_UTIL {

using NS_DOMAIN::PWIndex;
using NS_DOMAIN::PWSwitchIndex;
using NS_DOMAIN::PWTrailIndex;
using NS_DOMAIN::ServiceIndex;
using NS_DOMAIN::TDIndex;
using NS_DOMAIN::TNPIndex_T;
using NS_DOMAIN::TunnelIndex;
using NS_DOMAIN::TunnelTrailIndex;
using NS_DOMAIN::UniResID;
using NS_DOMAIN::VPNTrailIndex;
using NS_DOMAIN_SOUTHAPISET::TEUniResID;
using NS_FRAME::SYSTEM;

namespace NS_FDN {

namespace {

constexpr int PWE3_TRAIL = 1;
constexpr int VPLS_TRAIL = 2;

constexpr int ETHERNET_SERVICE = 2;
constexpr int VSI_SERVICE = 4;

// Copies `fdn` from `tag`, which includes its "=", to the end into `kept`. Returns false if there is no `tag`.
bool KeepFromTag(std::string_view fdn, std::string_view tag, std::string& kept) {
    const auto found = fdn.find(tag);
    if (found == std::string_view::npos) {
        return false;
    }
    kept = fdn.substr(found);
    return true;
}

}  // namespace

void Conversion<PWIndex>::Write(const PWIndex& pw, std::string& fdn, const Surroundings& /*surroundings*/) {
    FdnWriter writer(fdn);
    writer.Level("NE=", pw.neId).Text(",").Text(pw.resId).Flush();
}

bool Conversion<PWIndex>::Read(std::string_view fdn, PWIndex& pw, const Surroundings& /*surroundings*/) {
    const bool hasNE = LevelFinder<"NE">(fdn).ReadNumber<"NE">(pw.neId);
    pw.resId = fdn;
    return hasNE;
}

bool Conversion<PWSwitchIndex>::Read(std::string_view fdn, PWSwitchIndex& pwSwitch,
                                     const Surroundings& /*surroundings*/) {
    // As in the platform's splitter, a level without "=" does not count, not even as the first "NE".
    bool hasNE = false;
    LevelScanner levels(fdn);
    for (Level level; !hasNE && levels.Next(level);) {
        if (level.tag == "NE" && level.HasEquals()) {
            pwSwitch.neId = Str2Int(level.value);
            hasNE = true;
        }
    }
    pwSwitch.resId = fdn;
    return hasNE;
}

bool Conversion<GroupId>::Read(std::string_view fdn, std::int32_t& group, const Surroundings& /*surroundings*/) {
    return LevelFinder<"VEGROUP">(fdn).ReadNumber<"VEGROUP">(group);
}

// Trails keep the text from their tag on. The tag is searched as plain text: it counts wherever it stands.

bool Conversion<VPNTrailIndex>::Read(std::string_view fdn, VPNTrailIndex& trail, const Surroundings& /*surroundings*/) {
    if (KeepFromTag(fdn, "PWE3TRAIL=", trail.trailResId)) {
        trail.trailType = PWE3_TRAIL;
        return true;
    }
    if (KeepFromTag(fdn, "VPLS=", trail.trailResId)) {
        trail.trailType = VPLS_TRAIL;
        return true;
    }
    return false;
}

bool Conversion<TunnelTrailIndex>::Read(std::string_view fdn, TunnelTrailIndex& trail,
                                        const Surroundings& /*surroundings*/) {
    return KeepFromTag(fdn, "TUNNELTRAIL=", trail.trailResId);
}

bool Conversion<PWTrailIndex>::Read(std::string_view fdn, PWTrailIndex& trail, const Surroundings& /*surroundings*/) {
    return KeepFromTag(fdn, "PWTRAIL=", trail.trailResId);
}

bool Conversion<TNPIndex_T>::Read(std::string_view fdn, TNPIndex_T& group, const Surroundings& /*surroundings*/) {
    return KeepFromTag(fdn, "TUNNELPGTRAIL=", group.trailResId);
}

bool Conversion<ServiceIndex>::Read(std::string_view fdn, ServiceIndex& service, const Surroundings& /*surroundings*/) {
    const LevelFinder<"NE", "PWE3", "NETH", "VSI", "VRF"> levels(fdn);
    const bool hasNE = levels.ReadNumber<"NE">(service.neId);
    bool hasService = false;
    if (levels.Has<"PWE3">()) {
        const SubValues<2> pwe3(levels.Value<"PWE3">());
        hasService = pwe3.Count() == 2;
        if (hasService) {
            service.svcType = Str2Int(pwe3[0]);
            service.svcId = Str2Int(pwe3[1]);
        }
    } else if (levels.Has<"NETH">()) {
        service.svcType = ETHERNET_SERVICE;
        hasService = levels.ReadNumber<"NETH">(service.svcId);
    } else if (levels.Has<"VSI">()) {
        service.svcType = VSI_SERVICE;
        hasService = levels.ReadNumber<"VSI">(service.svcId);
    } else {
        hasService = levels.ReadNumber<"VRF">(service.svcId);  // a VRF sets no type, on purpose
    }
    service.resId = fdn;
    return hasNE && hasService;
}

bool Conversion<TunnelIndex>::Read(std::string_view fdn, TunnelIndex& tunnel, const Surroundings& /*surroundings*/) {
    tunnel.resId = fdn;  // first, and then read from: fdn may lie in one of the texts that are filled below
    const LevelFinder<"NE", "TUNNEL"> levels(tunnel.resId);
    const bool hasNE = levels.ReadNumber<"NE">(tunnel.neId);
    const SubValues<7> values(levels.Value<"TUNNEL">());
    if (values.Count() < 7) {
        return false;
    }
    tunnel.tunnelInt0 = Str2Int(values[0]);
    tunnel.tunnelInt1 = Str2Int(values[1]);
    tunnel.tunnelText2 = values[2];
    tunnel.tunnelText3 = values[3];
    tunnel.tunnelInt4 = Str2Int(values[4]);
    tunnel.tunnelText5 = values[5];
    tunnel.tunnelText5Copy = values[5];
    tunnel.tunnelInt6 = Str2Int(values[6]);
    return hasNE;
}

bool Conversion<TDIndex>::Read(std::string_view fdn, TDIndex& descriptor, const Surroundings& /*surroundings*/) {
    const LevelFinder<"NE", "ATMTD"> levels(fdn);
    std::int32_t neId = 0;
    const bool hasNE = levels.ReadNumber<"NE">(neId);
    descriptor.neId = neId;
    std::int32_t tdId = 0;
    const bool hasDescriptor = levels.ReadNumber<"ATMTD">(tdId);
    if (hasDescriptor) {
        descriptor.tdId = tdId;
    }
    return hasNE && hasDescriptor;
}

}  // namespace NS_FDN

using NS_FDN::Conversion;

namespace {

template <class Source, class Target>
void CopyUniResID(const Source& from, Target& to) {
    to.uniNum = from.uniNum;
    to.uniText3 = from.uniText3;
    to.uniText1 = from.uniText1;
    to.uniText2 = from.uniText2;
}

}  // namespace

void ResIDUtil::PWIndex2ResID(const PWIndex& pw, std::string& fdn) {
    Conversion<PWIndex>::Write(pw, fdn, SYSTEM);
}

void ResIDUtil::ResID2PWIndex(const std::string& fdn, PWIndex& pw) {
    Conversion<PWIndex>::Read(fdn, pw, SYSTEM);
}

void ResIDUtil::ResID2PWSwitchIndex(const std::string& fdn, PWSwitchIndex& pwSwitch) {
    Conversion<PWSwitchIndex>::Read(fdn, pwSwitch, SYSTEM);
}

void ResIDUtil::ResID2GroupID(const std::string& fdn, int& group) {
    Conversion<NS_FDN::GroupId>::Read(fdn, group, SYSTEM);
}

void ResIDUtil::ResID2VPNTrailIndex(const std::string& fdn, VPNTrailIndex& trail) {
    Conversion<VPNTrailIndex>::Read(fdn, trail, SYSTEM);
}

void ResIDUtil::ResID2TunnelTrailIndex(const std::string& fdn, TunnelTrailIndex& trail) {
    Conversion<TunnelTrailIndex>::Read(fdn, trail, SYSTEM);
}

void ResIDUtil::ResID2PWTrailIndex(const std::string& fdn, PWTrailIndex& trail) {
    Conversion<PWTrailIndex>::Read(fdn, trail, SYSTEM);
}

void ResIDUtil::ResID2TNPIndex(const std::string& fdn, TNPIndex_T& group) {
    Conversion<TNPIndex_T>::Read(fdn, group, SYSTEM);
}

void ResIDUtil::ResID2SVCIndex(const std::string& fdn, ServiceIndex& service) {
    Conversion<ServiceIndex>::Read(fdn, service, SYSTEM);
}

void ResIDUtil::ResID2TunnelIndex(const std::string& fdn, TunnelIndex& tunnel) {
    Conversion<TunnelIndex>::Read(fdn, tunnel, SYSTEM);
}

void ResIDUtil::ResID2TDIndex(const std::string& fdn, TDIndex& descriptor) {
    Conversion<TDIndex>::Read(fdn, descriptor, SYSTEM);
}

void ResIDUtil::Domain2TE(const UniResID& from, TEUniResID& to) {
    CopyUniResID(from, to);
}

void ResIDUtil::TE2Domain(const TEUniResID& from, UniResID& to) {
    CopyUniResID(from, to);
}

}  // namespace NS_UTIL
