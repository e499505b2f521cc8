#include "literallookups.h"

#include <algorithm>
#include <list>
#include <set>
#include <sstream>
#include <vector>

#include <kx_domain_util/constanttables.h>
#include <kx_domain_util/devicedomainmgr.h>
#include <kx_platform/configitems.h>
#include <kx_platform/inventorybufif.h>

#include "support/literalutilcommon.h"
#include "support/services.h"

namespace NS_BENCH::NS_LITERAL {

namespace {

template <unsigned short... Types>
bool IsOneOf(unsigned short neType) {
    return ((neType == Types) || ...);
}

using DomainCache = std::map<std::string, std::list<int>>;

DomainCache& NETypeLists() {
    static DomainCache cache = [] {
        DomainCache lists;
        NS_UTIL::DeviceDomainMgr::Instance()->GetDomainDevTypelistCache(lists);
        return lists;
    }();
    return cache;
}

DomainCache& EquipmentTypeLists() {
    static DomainCache cache = [] {
        DomainCache lists;
        NS_UTIL::DeviceDomainMgr::Instance()->GetDomainEqtCache(lists);
        return lists;
    }();
    return cache;
}

bool IsListed(DomainCache& cache, const char* domain, int neType) {
    const std::string key(domain);
    auto list = cache.find(key);
    if (list == cache.end()) {
        list = cache.insert({key, {}}).first;
    }
    const auto found = std::lower_bound(list->second.begin(), list->second.end(), neType);
    return found != list->second.end() && *found == neType;
}

NS_SERVICE::InventoryBufif& Inventory() {
    return *NS_TEST::FindService<NS_SERVICE::InventoryBufif>("InventoryBufif");
}

template <class Map, class Rows, class Key, class Value>
Map MapOf(const Rows& rows, Key key, Value value) {
    Map map;
    for (const auto& row : rows) {
        map.insert_or_assign(typename Map::key_type(row.*key), typename Map::mapped_type(row.*value));
    }
    return map;
}

template <class Number, class Rows>
std::vector<Number> ListOf(const Rows& rows) {
    return {rows.begin(), rows.end()};
}

template <class Key, class Value>
Value FindOr(const std::map<Key, Value>& map, const Key& key, const Value& fallback) {
    return map.contains(key) ? map.at(key) : fallback;
}

template <class Number>
bool IsIn(const std::vector<Number>& list, Number number) {
    return std::find(list.begin(), list.end(), number) != list.end();
}

using namespace NS_UTIL;

// clang-format off
const auto FB_TYPE_NAMES =
    MapOf<std::map<int, std::string>>(GetFbTypeNameRows(), &FbTypeNameRow::fbType, &FbTypeNameRow::name);
const auto DOMAIN_NAMES =
    MapOf<std::map<unsigned int, std::string>>(GetDomainNameRows(), &DomainNameRow::domainId, &DomainNameRow::name);
const auto LEVELS = MapOf<std::map<int, int>>(GetFbTypeLevelRows(), &FbTypeLevelRow::fbType, &FbTypeLevelRow::level);
const auto FB_TYPES = MapOf<std::map<int, int>>(GetLevelFbTypeRows(), &LevelFbTypeRow::level, &LevelFbTypeRow::fbType);
const auto BIDIR_FB_TYPES = MapOf<std::map<unsigned short, unsigned short>>(
    GetBidirFbTypeRows(), &BidirFbTypeRow::fbType, &BidirFbTypeRow::bidirFbType);
const auto CTP_NAMES =
    MapOf<std::map<unsigned long, std::string>>(GetCtpNameRows(), &CtpNameRow::ctpId, &CtpNameRow::name);
const auto CTP_IDS =
    MapOf<std::map<std::string, unsigned long>>(GetCtpNameRows(), &CtpNameRow::name, &CtpNameRow::ctpId);
// clang-format on
const auto PTN_AID_FB_TYPES = ListOf<int>(GetPtnAidFbTypes());
const auto PORT_OBJECT_FB_TYPES = ListOf<int>(GetPortObjectFbTypes());
const auto OPTICAL_BOARDS = ListOf<unsigned long>(GetOpticalBoards());
const std::set<std::string> SERVICES{"TUNNEL",    "VSI",         "PWE3",    "PWSW", "ATMTD",        "LSP",
                                     "SUBIF",     "VRF",         "PW",      "AP",   "MEP",          "L3VPN",
                                     "PWE3TRAIL", "TUNNELTRAIL", "PWTRAIL", "VPLS", "TUNNELPGTRAIL"};
const std::set<int> PASSING{3, 5, 8, 13, 21, 34, 55, 89, 144, 233, 377, 610, 987, 1597, 2584, 4181, 2101250};

constexpr unsigned FB_TYPE_SHIFT = 16;
constexpr int TP_NUMBER_MASK = 0xFFFF;

}  // namespace

bool IsPTN41(unsigned short neType) {
    return IsOneOf<1911, 1912, 1913>(neType);
}
bool IsPTN31(unsigned short neType) {
    return IsOneOf<1335>(neType);
}
bool IsPTN470(unsigned short neType) {
    return IsOneOf<1888>(neType);
}
bool IsKLVByNEType(unsigned short neType) {
    return IsOneOf<1887, 1895, 1908, 1947, 1948, 1971, 1972, 1978, 1982, 1987>(neType);
}

bool IsInNETypeList(const char* domain, unsigned short neType) {
    return IsListed(NETypeLists(), domain, neType);
}
bool IsInEquipmentTypeList(const char* domain, unsigned short neType) {
    return IsListed(EquipmentTypeLists(), domain, neType);
}

bool IsIPServiceNE(unsigned short neType) {
    return IsInEquipmentTypeList("PTN31", neType) || IsInEquipmentTypeList("OTN", neType) ||
           Inventory().IsIPServiceNEType(neType);
}
bool IsKLVNE(unsigned short neType) {
    return Inventory().IsKLVNEType(neType);
}
bool IsTransMultiSubShelfNE(unsigned long neId, unsigned short neType) {
    return Inventory().IsTransMultiSubShelf(neId, neType);
}

std::string GetFBTypeName(int fbType) {
    if (FB_TYPE_NAMES.contains(fbType)) {
        return FB_TYPE_NAMES.at(fbType);
    }
    std::ostringstream text;
    text << fbType;
    return text.str();
}
bool IsPTNAIDFBType(int fbType) {
    return IsIn(PTN_AID_FB_TYPES, fbType);
}
bool IsPortObjByFbType(const int& fbType, const int& kind) {
    return IsIn(PORT_OBJECT_FB_TYPES, fbType) || (kind != 3 && (fbType == 2 || fbType == 3));
}
bool IsLogicalPortByType(int type) {
    return type >> FB_TYPE_SHIFT > 0;
}
std::string GetDomainStrByID(const unsigned int& domainId) {
    return FindOr(DOMAIN_NAMES, domainId, std::string("UNKNOWN"));
}

void FBType2InterfaceLevel(int& level, const int& fbType) {
    level = FindOr(LEVELS, fbType, fbType);
}
void InterfaceLevel2FBType(int& fbType, const int& level) {
    fbType = FindOr(FB_TYPES, level, level);
}
unsigned short GetBidirFBType(const unsigned short& fbType) {
    return FindOr(BIDIR_FB_TYPES, fbType, fbType);
}

void InterfaceCTPId2TMFName(const unsigned long& ctpId, std::string& name) {
    name = FindOr(CTP_NAMES, ctpId, std::string());
}
void InterfaceTMFCTPName2ID(const std::string& name, unsigned long& ctpId) {
    ctpId = FindOr(CTP_IDS, name, 0UL);
}
bool SetTpNoToLocation(int& location, const int& level, const int& tpNo) {
    if (location > 0) {
        return false;
    }
    location |= FindOr(FB_TYPES, level, level) << FB_TYPE_SHIFT | (tpNo & TP_NUMBER_MASK);
    return true;
}
bool GetTpNoFromLocation(const int& location, const int& level, int& tpNo) {
    const int fbType = location >> FB_TYPE_SHIFT & TP_NUMBER_MASK;
    if (FindOr(LEVELS, fbType, fbType) != level) {
        return false;
    }
    tpNo = location & TP_NUMBER_MASK;
    return true;
}
bool SetTpNo(NS_DOMAIN::TPIndex& tp, const int& level, const int& tpNo) {
    if (tpNo < 1) {
        return false;
    }
    return SetTpNoToLocation(tp.vc4Id, level, tpNo) || SetTpNoToLocation(tp.vc12Id, level, tpNo) ||
           SetTpNoToLocation(tp.vc3Id, level, tpNo) || SetTpNoToLocation(tp.vc11Id, level, tpNo);
}
int GetTpNo(const NS_DOMAIN::TPIndex& tp, const int& level) {
    int tpNo = 0;
    for (const int word : {tp.vc4Id, tp.vc12Id, tp.vc3Id, tp.vc11Id}) {
        if (GetTpNoFromLocation(word, level, tpNo)) {
            break;
        }
    }
    return tpNo;
}

bool IsTiRoadmOpticalBoard(unsigned long boardType) {
    return IsIn(OPTICAL_BOARDS, boardType);
}
int GetPFMPacketSize() {
    int size = 2000;
    const std::string item("PfmFrameRdSize");
    NS_BUNDLEMGR1::CorbaConfigItems::Instance()->GetIntItemInfo(item, size);
    return size >= 0 && size <= 6000 ? size : 2000;
}

bool IsServiceFDN(const std::string& moc) {
    return SERVICES.contains(moc);
}
std::string GetMoc(const std::string& fdn) {
    return NS_TEST::LiteralUtilCommon::GetMoc(fdn);
}
void GetSplitePPDataByLine(std::map<int, std::string>& out, const std::string& line) {
    NS_TEST::LiteralUtilCommon::GetSplitePPDataByLine(out, line);
}
void GetSplitePATHDataByLine(std::map<int, int>& out, const std::string& path) {
    NS_TEST::LiteralUtilCommon::GetSplitePATHDataByLine(out, path);
}

bool IsFilteNtf(int notificationId) {
    return !PASSING.contains(notificationId);
}

}  // namespace NS_BENCH::NS_LITERAL
