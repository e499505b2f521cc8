#include "catalogue/vocabulary.h"

#include <algorithm>
#include <span>

#include <kx_domain_util/constanttables.h>
#include <kx_domain_util/fbtype.h>
#include <kx_domain_util/utilcommon.h>
#include <kx_platform/selfutilcommon.h>

namespace NS_KX {

namespace {

using NS_UTIL::UtilCommon;

template <class Row, class Key>
bool Has(std::span<const Row> rows, Key Row::*key, int value) {
    return std::any_of(rows.begin(), rows.end(), [&](const Row& row) { return static_cast<int>(row.*key) == value; });
}

std::string InUpperCase(const std::string& text) {
    return NS_UTIL::SelfUtilCommon::Instance()->upperStr(text);
}

}  // namespace

std::optional<std::string> RateOfLevel(int level) {
    const auto rows = NS_UTIL::GetClientRateRows();
    const auto row =
        std::find_if(rows.begin(), rows.end(), [&](const auto& rate) { return static_cast<int>(rate.level) == level; });
    return row != rows.end() ? std::optional(std::string(row->name)) : std::nullopt;
}

std::optional<int> LevelOfRate(const std::string& rate) {
    const std::string name = InUpperCase(rate);
    const auto rows = NS_UTIL::GetClientRateRows();
    const auto row = std::find_if(rows.begin(), rows.end(), [&](const auto& known) { return known.name == name; });
    return row != rows.end() ? std::optional(static_cast<int>(row->level)) : std::nullopt;
}

std::optional<int> FbTypeOfLevel(int level) {
    if (!Has(NS_UTIL::GetLevelFbTypeRows(), &NS_UTIL::LevelFbTypeRow::level, level)) {
        return std::nullopt;
    }
    int fbType = 0;
    UtilCommon::Instance()->InterfaceLevel2FBType(fbType, level);
    return fbType;
}

std::vector<int> FbTypesOfLevel(int level) {
    std::vector<int> fbTypes;
    for (const NS_UTIL::FbTypeLevelRow& row : NS_UTIL::GetFbTypeLevelRows()) {
        if (row.level == level) {
            fbTypes.push_back(row.fbType);
        }
    }
    std::sort(fbTypes.begin(), fbTypes.end());
    return fbTypes;
}

std::optional<std::string> NameOfFbType(int fbType) {
    const bool isNamed = Has(NS_UTIL::GetFbTypeNameRows(), &NS_UTIL::FbTypeNameRow::fbType, fbType);
    return isNamed ? std::optional(NS_UTIL::GetFBTypeName(fbType)) : std::nullopt;
}

std::vector<int> FbTypesOfName(const std::string& name) {
    std::vector<int> fbTypes;
    for (const NS_UTIL::FbTypeNameRow& row : NS_UTIL::GetFbTypeNameRows()) {
        if (InUpperCase(std::string(row.name)) == InUpperCase(name)) {
            fbTypes.push_back(row.fbType);
        }
    }
    return fbTypes;
}

std::optional<int> LevelOfFbType(int fbType) {
    if (!Has(NS_UTIL::GetFbTypeLevelRows(), &NS_UTIL::FbTypeLevelRow::fbType, fbType)) {
        return std::nullopt;
    }
    int level = 0;
    UtilCommon::Instance()->FBType2InterfaceLevel(level, fbType);
    return level;
}

std::optional<int> BidirOfFbType(int fbType) {
    const auto rows = NS_UTIL::GetBidirFbTypeRows();
    if (!Has(rows, &NS_UTIL::BidirFbTypeRow::fbType, fbType) &&
        !Has(rows, &NS_UTIL::BidirFbTypeRow::bidirFbType, fbType)) {
        return std::nullopt;
    }
    return UtilCommon::Instance()->GetBidirFBType(static_cast<unsigned short>(fbType));
}

std::optional<int> IdOfCtp(const std::string& name) {
    unsigned long ctpId = 0;
    UtilCommon::Instance()->InterfaceTMFCTPName2ID(ctpId, InUpperCase(name));
    return ctpId != 0 ? std::optional(static_cast<int>(ctpId)) : std::nullopt;
}

std::optional<std::string> NameOfCtp(int ctpId) {
    std::string name;
    UtilCommon::Instance()->InterfaceCTPId2TMFName(name, static_cast<unsigned long>(ctpId));
    return !name.empty() ? std::optional(name) : std::nullopt;
}

}  // namespace NS_KX
