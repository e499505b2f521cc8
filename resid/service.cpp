#include <string>
#include <string_view>

#include <kx_domain_util/fdnscanner.h>
#include <kx_domain_util/levelfinder.h>
#include <kx_domain_util/resIDUtil.h>

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
using NS_FDN::FdnWriter;
using NS_FDN::Level;
using NS_FDN::LevelFinder;
using NS_FDN::LevelScanner;
using NS_FDN::SubValues;

namespace {

constexpr int PWE3_TRAIL = 1;
constexpr int VPLS_TRAIL = 2;

constexpr int ETHERNET_SERVICE = 2;
constexpr int VSI_SERVICE = 4;

// Keeps fdn from tag, its "=" included, to the end. False, and kept untouched, when there is no such text in it.
bool KeepFromTag(const std::string& fdn, std::string_view tag, std::string& kept) {
    const auto found = fdn.find(tag);
    if (found == std::string::npos) {
        return false;
    }
    kept.assign(fdn, found);
    return true;
}

template <class Source, class Target>
void CopyUniResID(const Source& from, Target& to) {
    to.uniNum = from.uniNum;
    to.uniText3 = from.uniText3;
    to.uniText1 = from.uniText1;
    to.uniText2 = from.uniText2;
}

}  // namespace

void ResIDUtil::PWIndex2ResID(const PWIndex& pw, std::string& fdn) {
    FdnWriter writer(fdn);
    writer.Level("NE=", pw.neId).Text(",").Text(pw.resId).Flush();
}

void ResIDUtil::ResID2PWIndex(const std::string& fdn, PWIndex& pw) {
    LevelFinder<"NE">(fdn).ReadNumber<"NE">(pw.neId);
    pw.resId = fdn;
}

void ResIDUtil::ResID2PWSwitchIndex(const std::string& fdn, PWSwitchIndex& pwSwitch) {
    // As the platform's splitter has it: a level without "=" does not count, not even as a first "NE".
    LevelScanner levels(fdn);
    for (Level level; levels.Next(level);) {
        if (level.tag == "NE" && level.HasEquals()) {
            pwSwitch.neId = Str2Int(level.value);
            break;
        }
    }
    pwSwitch.resId = fdn;
}

void ResIDUtil::ResID2GroupID(const std::string& fdn, int& group) {
    LevelFinder<"VEGROUP">(fdn).ReadNumber<"VEGROUP">(group);
}

void ResIDUtil::ResID2VPNTrailIndex(const std::string& fdn, VPNTrailIndex& trail) {
    if (KeepFromTag(fdn, "PWE3TRAIL=", trail.trailResId)) {
        trail.trailType = PWE3_TRAIL;
    } else if (KeepFromTag(fdn, "VPLS=", trail.trailResId)) {
        trail.trailType = VPLS_TRAIL;
    }
}

void ResIDUtil::ResID2TunnelTrailIndex(const std::string& fdn, TunnelTrailIndex& trail) {
    KeepFromTag(fdn, "TUNNELTRAIL=", trail.trailResId);
}

void ResIDUtil::ResID2PWTrailIndex(const std::string& fdn, PWTrailIndex& trail) {
    KeepFromTag(fdn, "PWTRAIL=", trail.trailResId);
}

void ResIDUtil::ResID2TNPIndex(const std::string& fdn, TNPIndex_T& group) {
    KeepFromTag(fdn, "TUNNELPGTRAIL=", group.trailResId);
}

void ResIDUtil::ResID2SVCIndex(const std::string& fdn, ServiceIndex& service) {
    const LevelFinder<"NE", "PWE3", "NETH", "VSI", "VRF"> levels(fdn);
    levels.ReadNumber<"NE">(service.neId);
    if (levels.Has<"PWE3">()) {
        const SubValues<2> pwe3(levels.Value<"PWE3">());
        if (pwe3.Count() == 2) {
            service.svcType = Str2Int(pwe3[0]);
            service.svcId = Str2Int(pwe3[1]);
        }
    } else if (levels.Has<"NETH">()) {
        service.svcType = ETHERNET_SERVICE;
        levels.ReadNumber<"NETH">(service.svcId);
    } else if (levels.Has<"VSI">()) {
        service.svcType = VSI_SERVICE;
        levels.ReadNumber<"VSI">(service.svcId);
    } else {
        levels.ReadNumber<"VRF">(service.svcId);  // a VRF sets no type, on purpose
    }
    service.resId = fdn;
}

void ResIDUtil::ResID2TunnelIndex(const std::string& fdn, TunnelIndex& tunnel) {
    tunnel.resId = fdn;  // first, and then read from: fdn may be one of the texts that are filled below
    const LevelFinder<"NE", "TUNNEL"> levels(tunnel.resId);
    levels.ReadNumber<"NE">(tunnel.neId);
    const SubValues<7> values(levels.Value<"TUNNEL">());
    if (values.Count() == 7) {
        tunnel.tunnelInt0 = Str2Int(values[0]);
        tunnel.tunnelInt1 = Str2Int(values[1]);
        tunnel.tunnelText2 = values[2];
        tunnel.tunnelText3 = values[3];
        tunnel.tunnelInt4 = Str2Int(values[4]);
        tunnel.tunnelText5 = values[5];
        tunnel.tunnelText5Copy = values[5];
        tunnel.tunnelInt6 = Str2Int(values[6]);
    }
}

void ResIDUtil::ResID2TDIndex(const std::string& fdn, TDIndex& descriptor) {
    const LevelFinder<"NE", "ATMTD"> levels(fdn);
    std::int32_t neId = 0;
    levels.ReadNumber<"NE">(neId);
    descriptor.neId = neId;
    if (std::int32_t tdId = 0; levels.ReadNumber<"ATMTD">(tdId)) {
        descriptor.tdId = tdId;
    }
}

void ResIDUtil::Domain2TE(const UniResID& from, TEUniResID& to) {
    CopyUniResID(from, to);
}

void ResIDUtil::TE2Domain(const TEUniResID& from, UniResID& to) {
    CopyUniResID(from, to);
}

}  // namespace NS_UTIL
