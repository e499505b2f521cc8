#include <algorithm>
#include <array>
#include <cstdint>
#include <string>

#include <kx_domain_util/utilcommon.h>

#include "common/tables/ctpname.h"

namespace NS_UTIL {

namespace {

// The upper half of a location word is an FB type, the lower half a TP number.
constexpr unsigned FB_TYPE_SHIFT = 16;
constexpr std::uint32_t TP_NUMBER_MASK = 0xFFFF;

// The location words of a TP in the order in which they are tried.
constexpr std::array<std::int32_t NS_DOMAIN::TPIndex::*, 4> LOCATION_WORDS{
    &NS_DOMAIN::TPIndex::vc4Id, &NS_DOMAIN::TPIndex::vc12Id, &NS_DOMAIN::TPIndex::vc3Id, &NS_DOMAIN::TPIndex::vc11Id};

}  // namespace

void UtilCommon::InitCTPId2TMFNameMap() {
    for (const CtpNameRow& row : NS_TABLE::CTP_NAMES) {
        m_mapCTPId2TMFName[row.ctpId] = row.name;
    }
}

void UtilCommon::InitTMFCTPName2ID() {
    for (const CtpNameRow& row : NS_TABLE::CTP_NAMES) {
        m_mapTMFCTPName2ID[std::string(row.name)] = row.ctpId;
    }
}

void UtilCommon::InterfaceCTPId2TMFName(const unsigned long& ctpId, std::string& name) const {
    const auto entry = m_mapCTPId2TMFName.find(ctpId);
    if (entry != m_mapCTPId2TMFName.end()) {
        name = entry->second;
    } else {
        name.clear();
    }
}

void UtilCommon::InterfaceTMFCTPName2ID(const std::string& name, unsigned long& ctpId) const {
    const auto entry = m_mapTMFCTPName2ID.find(name);
    ctpId = entry != m_mapTMFCTPName2ID.end() ? entry->second : 0;
}

bool UtilCommon::SetTpNoToLocation(int& location, const int& level, const int& tpNo) const {
    if (location > 0) {
        return false;
    }
    int fbType = 0;
    InterfaceLevel2FBType(fbType, level);
    // Added to what the word holds, not put in its place: a free word is expected to be 0.
    location =
        static_cast<int>(static_cast<std::uint32_t>(location) | static_cast<std::uint32_t>(fbType) << FB_TYPE_SHIFT |
                         (static_cast<std::uint32_t>(tpNo) & TP_NUMBER_MASK));
    return true;
}

bool UtilCommon::GetTpNoFromLocation(const int& location, const int& level, int& tpNo) const {
    const auto word = static_cast<std::uint32_t>(location);
    int levelOfWord = 0;
    FBType2InterfaceLevel(levelOfWord, static_cast<int>(word >> FB_TYPE_SHIFT));
    if (levelOfWord != level) {
        return false;
    }
    tpNo = static_cast<int>(word & TP_NUMBER_MASK);
    return true;
}

bool UtilCommon::SetTpNo(NS_DOMAIN::TPIndex& tp, const int& level, const int& tpNo) const {
    if (tpNo < 1) {
        return false;
    }
    // NOLINTNEXTLINE(readability-use-anyofallof): what is asked writes, and std::any_of promises no order
    for (const auto word : LOCATION_WORDS) {
        if (SetTpNoToLocation(tp.*word, level, tpNo)) {
            return true;
        }
    }
    return false;
}

int UtilCommon::GetTpNo(const NS_DOMAIN::TPIndex& tp, const int& level) const {
    int tpNo = 0;
    for (const auto word : LOCATION_WORDS) {
        if (GetTpNoFromLocation(tp.*word, level, tpNo)) {
            return tpNo;
        }
    }
    return 0;
}

}  // namespace NS_UTIL
