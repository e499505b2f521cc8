// Predicates, look-ups in the tables, and the notification filter. Each is compared with the plainest code for the same
// task. That code makes the key at every call, searches the service by its name, keeps a table in an ordered map, and
// looks at a text one character after the other.
#include <algorithm>
#include <list>
#include <map>
#include <set>
#include <span>
#include <sstream>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <kx_domain_util/constanttables.h>
#include <kx_domain_util/devicedomainmgr.h>
#include <kx_domain_util/fbtype.h>
#include <kx_domain_util/netype.h>
#include <kx_domain_util/ntffilter.h>
#include <kx_domain_util/resIDUtil.h>
#include <kx_domain_util/utilcommon.h>
#include <kx_platform/configitems.h>
#include <kx_platform/inventorybufif.h>

#include "measurement.h"
#include "sample/splitmix64.h"
#include "support/literalutilcommon.h"
#include "support/services.h"
#include "surroundings.h"

namespace NS_BENCH {

namespace {

using NS_TEST::LiteralUtilCommon;
using NS_UTIL::UtilCommon;

template <class Input, class Library, class Literal>
void AddLookUp(const char* group, const char* name, std::vector<Input> inputs, Library library, Literal literal) {
    Subject<Input> subject{name, group, std::move(inputs)};
    if constexpr (std::is_same_v<Input, std::string>) {
        subject.bytes = BytesOf(subject.inputs);
    }
    AddPair(std::move(subject), library, literal);
}

// values as often as it takes, in random order.
template <class Input>
std::vector<Input> Drawn(const std::vector<Input>& values) {
    NS_KX::SplitMix64 random(2);
    std::vector<Input> inputs;
    for (std::size_t left = Corpus::SIZE; left > 0; --left) {
        inputs.push_back(random.OneOf(values));
    }
    return inputs;
}

// The keys of `rows`, and as many keys that no row has.
template <class Rows, class Key>
auto KeysOf(const Rows& rows, Key key) {
    std::vector<std::decay_t<decltype(key(rows.front()))>> keys;
    for (const auto& row : rows) {
        keys.push_back(key(row));
    }
    for (std::size_t others = keys.size(); others > 0; --others) {
        if constexpr (std::is_same_v<std::decay_t<decltype(keys.front())>, std::string>) {
            keys.push_back(keys[others - 1] + "x");
        } else {
            keys.push_back(static_cast<std::decay_t<decltype(keys.front())>>(60'000 + others));
        }
    }
    return Drawn(keys);
}

// ---- Predicates -----------------------------------------------------------------------------------------------------

using DomainCache = std::map<std::string, std::list<int>>;

// The lists as the host loaded them.
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

template <unsigned short... Types>
bool IsOneOf(unsigned short neType) {
    return ((neType == Types) || ...);
}

struct Predicate {
    const char* name;
    bool (*library)(unsigned short);
    bool (*literal)(unsigned short);
};

void AddPredicates(const Corpus& corpus) {
    using namespace NS_UTIL;
    using Type = unsigned short;
    // clang-format off
    static const std::vector<Predicate> PREDICATES{
        {"IsPTN41", IsPTN41, [](Type type) { return IsOneOf<1911, 1912, 1913>(type); }},
        {"IsPTN31", IsPTN31, [](Type type) { return IsOneOf<1335>(type); }},
        {"IsPTN470", IsPTN470, [](Type type) { return IsOneOf<1888>(type); }},
        {"IsKLVByNEType", IsKLVByNEType,
         [](Type type) { return IsOneOf<1887, 1895, 1908, 1947, 1948, 1971, 1972, 1978, 1982, 1987>(type); }},
        {"IsRouteNE", IsRouteNE, [](Type type) { return IsListed(NETypeLists(), "router and metro", type); }},
        {"IsTransNE", IsTransNE, [](Type type) { return IsListed(NETypeLists(), "transmission", type); }},
        {"IsAccessNE", IsAccessNE, [](Type type) { return IsListed(NETypeLists(), "access", type); }},
        {"IsPTNClasssNE", IsPTNClasssNE, [](Type type) { return IsListed(EquipmentTypeLists(), "PTN", type); }},
        {"IsPTNDMTNE", IsPTNDMTNE, [](Type type) { return IsListed(EquipmentTypeLists(), "PTNDMT", type); }},
        {"IsPTNNE", IsPTNNE, [](Type type) { return IsListed(EquipmentTypeLists(), "PTN", type) ||
                                                    IsListed(EquipmentTypeLists(), "PTNDMT", type); }},
        {"IsMSTPNE", IsMSTPNE, [](Type type) { return IsListed(EquipmentTypeLists(), "MSTP", type); }},
        {"IsIPMSTPNE", IsIPMSTPNE, [](Type type) { return IsListed(EquipmentTypeLists(), "MSTP", type); }},
        {"IsIPKLVNE", IsIPKLVNE, [](Type type) { return IsListed(EquipmentTypeLists(), "IPKLV", type); }},
        {"IsKLV600NE", IsKLV600NE, [](Type type) { return IsListed(EquipmentTypeLists(), "KLV6XX", type); }},
        {"IsOTNNE", IsOTNNE, [](Type type) { return IsListed(EquipmentTypeLists(), "OTN", type); }},
        {"IsWDMNE", IsWDMNE, [](Type type) { return IsListed(EquipmentTypeLists(), "WDM", type); }},
        {"IsOTN_NA", IsOTN_NA, [](Type type) { return IsListed(EquipmentTypeLists(), "OTN_NA", type); }},
        {"IsWDM_NA", IsWDM_NA, [](Type type) { return IsListed(EquipmentTypeLists(), "WDM_NA", type); }},
        {"IsNAWDMByNEType", IsNAWDMByNEType, [](Type type) { return IsListed(EquipmentTypeLists(), "OTN_NA", type) ||
                                                                    IsListed(EquipmentTypeLists(), "WDM_NA", type); }},
        {"IsOTN4750NE", IsOTN4750NE, [](Type type) { return IsListed(EquipmentTypeLists(), "OTN4750NE", type); }},
        {"IsBIGSLOTNE", IsBIGSLOTNE, [](Type type) { return IsListed(EquipmentTypeLists(), "BIGSLOTNE", type); }},
        {"IsAccBitsNE", IsAccBitsNE, [](Type type) { return IsListed(EquipmentTypeLists(), "ACCBITSNE", type); }},
        {"IsMultiShelfTypeNE", IsMultiShelfTypeNE,
         [](Type type) { return IsListed(EquipmentTypeLists(), "MultiShelfTypeNE", type); }},
        {"IsIPServiceNE", IsIPServiceNE, [](Type type) { return IsListed(EquipmentTypeLists(), "PTN31", type) ||
                                                                IsListed(EquipmentTypeLists(), "OTN", type) ||
                                                                Inventory().IsIPServiceNEType(type); }},
        {"IsKLVNE", IsKLVNE, [](Type type) { return Inventory().IsKLVNEType(type); }},
    };
    // clang-format on
    std::vector<unsigned short> neTypes;
    std::vector<std::pair<unsigned long, unsigned short>> nes;
    for (const NS_STANDALONE::NeRow& ne : corpus.GetInventory().nes) {
        neTypes.push_back(ne.neType);
        nes.emplace_back(ne.neId, ne.neType);
    }
    for (const Predicate& predicate : PREDICATES) {
        AddLookUp("predicates", predicate.name, Drawn(neTypes), predicate.library, predicate.literal);
    }
    AddLookUp(
        "predicates", "IsTransMultiSubShelfNE", Drawn(nes),
        [](const auto& ne) { return IsTransMultiSubShelfNE(ne.first, ne.second); },
        [](const auto& ne) { return Inventory().IsTransMultiSubShelf(ne.first, ne.second); });
}

// ---- Tables ---------------------------------------------------------------------------------------------------------

template <class Map, class Rows, class Key, class Value>
Map MapOf(const Rows& rows, Key key, Value value) {
    Map map;
    for (const auto& row : rows) {
        map.insert_or_assign(typename Map::key_type(row.*key), typename Map::mapped_type(row.*value));
    }
    return map;
}

template <class Number>
Number FindOrPass(const std::map<Number, Number>& map, Number key) {
    return map.contains(key) ? map.at(key) : key;
}

void AddFbTypes() {
    using namespace NS_UTIL;
    const auto names =
        MapOf<std::map<int, std::string>>(GetFbTypeNameRows(), &FbTypeNameRow::fbType, &FbTypeNameRow::name);
    AddLookUp("look-ups", "GetFBTypeName", KeysOf(GetFbTypeNameRows(), [](const auto& row) { return row.fbType; }),
              GetFBTypeName, [names](int fbType) {
                  if (names.contains(fbType)) {
                      return names.at(fbType);
                  }
                  std::ostringstream text;
                  text << fbType;
                  return text.str();
              });
    const auto addList = [](const char* name, std::span<const int> rows, auto library) {
        const std::vector<int> list(rows.begin(), rows.end());
        AddLookUp("look-ups", name, KeysOf(rows, [](int fbType) { return fbType; }), library,
                  [list](int fbType) { return std::find(list.begin(), list.end(), fbType) != list.end(); });
    };
    addList("IsPTNAIDFBType", GetPtnAidFbTypes(), IsPTNAIDFBType);
    addList("IsPortObjByFbType", GetPortObjectFbTypes(), [](int fbType) { return IsPortObjByFbType(fbType, 3); });
    AddLookUp("look-ups", "IsLogicalPortByType", Drawn(std::vector<int>{4, 16, 65535, 65536, 393216, 786432}),
              IsLogicalPortByType, [](int type) { return type >> 16 > 0; });
    const auto domains =
        MapOf<std::map<unsigned int, std::string>>(GetDomainNameRows(), &DomainNameRow::domainId, &DomainNameRow::name);
    AddLookUp("look-ups", "GetDomainStrByID", KeysOf(GetDomainNameRows(), [](const auto& row) { return row.domainId; }),
              GetDomainStrByID, [domains](unsigned int domain) {
                  return domains.contains(domain) ? domains.at(domain) : std::string("UNKNOWN");
              });
}

void AddLayers() {
    using namespace NS_UTIL;
    AddLookUp(
        "look-ups", "FBType2InterfaceLevel", KeysOf(GetFbTypeLevelRows(), [](const auto& row) { return row.fbType; }),
        [](int fbType) {
            int level = 0;
            UtilCommon::Instance()->FBType2InterfaceLevel(level, fbType);
            return level;
        },
        [levels = MapOf<std::map<int, int>>(GetFbTypeLevelRows(), &FbTypeLevelRow::fbType, &FbTypeLevelRow::level)](
            int fbType) { return FindOrPass(levels, fbType); });
    AddLookUp(
        "look-ups", "InterfaceLevel2FBType", KeysOf(GetLevelFbTypeRows(), [](const auto& row) { return row.level; }),
        [](int level) {
            int fbType = 0;
            UtilCommon::Instance()->InterfaceLevel2FBType(fbType, level);
            return fbType;
        },
        [fbTypes = MapOf<std::map<int, int>>(GetLevelFbTypeRows(), &LevelFbTypeRow::level, &LevelFbTypeRow::fbType)](
            int level) { return FindOrPass(fbTypes, level); });
    using Type = unsigned short;
    AddLookUp(
        "look-ups", "GetBidirFBType", KeysOf(GetBidirFbTypeRows(), [](const auto& row) { return row.fbType; }),
        [](Type fbType) { return UtilCommon::Instance()->GetBidirFBType(fbType); },
        [fbTypes =
             MapOf<std::map<Type, Type>>(GetBidirFbTypeRows(), &BidirFbTypeRow::fbType, &BidirFbTypeRow::bidirFbType)](
            Type fbType) { return FindOrPass(fbTypes, fbType); });
}

void AddTerminationPoints() {
    using namespace NS_UTIL;
    AddLookUp(
        "look-ups", "InterfaceCTPId2TMFName", KeysOf(GetCtpNameRows(), [](const auto& row) { return row.ctpId; }),
        [name = std::string()](unsigned long ctpId) mutable -> const std::string& {
            UtilCommon::Instance()->InterfaceCTPId2TMFName(ctpId, name);
            return name;
        },
        [names = MapOf<std::map<unsigned long, std::string>>(GetCtpNameRows(), &CtpNameRow::ctpId, &CtpNameRow::name)](
            unsigned long ctpId) { return names.contains(ctpId) ? names.at(ctpId) : std::string(); });
    AddLookUp(
        "look-ups", "InterfaceTMFCTPName2ID",
        KeysOf(GetCtpNameRows(), [](const auto& row) { return std::string(row.name); }),
        [](const std::string& name) {
            unsigned long ctpId = 0;
            UtilCommon::Instance()->InterfaceTMFCTPName2ID(name, ctpId);
            return ctpId;
        },
        [ids = MapOf<std::map<std::string, unsigned long>>(GetCtpNameRows(), &CtpNameRow::name, &CtpNameRow::ctpId)](
            const std::string& name) { return ids.contains(name) ? ids.at(name) : 0UL; });
}

// The words of a termination point. Each holds the FB type of a layer, and a number.
void AddLocations() {
    using namespace NS_UTIL;
    const auto levels =
        MapOf<std::map<int, int>>(GetFbTypeLevelRows(), &FbTypeLevelRow::fbType, &FbTypeLevelRow::level);
    const auto fbTypes =
        MapOf<std::map<int, int>>(GetLevelFbTypeRows(), &LevelFbTypeRow::level, &LevelFbTypeRow::fbType);
    const auto someLevels = KeysOf(GetLevelFbTypeRows(), [](const auto& row) { return row.level; });
    AddLookUp(
        "look-ups", "SetTpNoToLocation", someLevels,
        [](int level) {
            int location = 0;
            UtilCommon::Instance()->SetTpNoToLocation(location, level, 7);
            return location;
        },
        [fbTypes](int level) { return FindOrPass(fbTypes, level) << 16 | 7; });
    std::vector<std::pair<int, int>> locations;
    for (const FbTypeLevelRow& row : GetFbTypeLevelRows()) {
        locations.emplace_back(row.fbType << 16 | 7, row.level);
        locations.emplace_back(row.fbType << 16 | 7, row.level + 1);
    }
    AddLookUp(
        "look-ups", "GetTpNoFromLocation", Drawn(locations),
        [](const auto& location) {
            int tpNo = 0;
            UtilCommon::Instance()->GetTpNoFromLocation(location.first, location.second, tpNo);
            return tpNo;
        },
        [levels](const auto& location) {
            return FindOrPass(levels, location.first >> 16) == location.second ? location.first & 0xFFFF : 0;
        });
    AddLookUp(
        "look-ups", "SetTpNo", someLevels,
        [tp = NS_DOMAIN::TPIndex()](int level) mutable {
            tp.vc4Id = 0;
            UtilCommon::Instance()->SetTpNo(tp, level, 7);
            return tp.vc4Id;
        },
        [fbTypes](int level) { return FindOrPass(fbTypes, level) << 16 | 7; });
    std::vector<NS_DOMAIN::TPIndex> tps;
    for (const LevelFbTypeRow& row : GetLevelFbTypeRows()) {
        UtilCommon::Instance()->SetTpNo(tps.emplace_back(), row.level, 7);
    }
    AddLookUp(
        "look-ups", "GetTpNo", Drawn(tps),
        [](const NS_DOMAIN::TPIndex& tp) { return UtilCommon::Instance()->GetTpNo(tp, 12309); },
        [levels](const NS_DOMAIN::TPIndex& tp) {
            for (const int word : {tp.vc4Id, tp.vc12Id, tp.vc3Id, tp.vc11Id}) {
                if (FindOrPass(levels, word >> 16) == 12309) {
                    return word & 0xFFFF;
                }
            }
            return 0;
        });
}

void AddBoardsAndSizes() {
    using namespace NS_UTIL;
    const std::vector<unsigned long> boards(GetOpticalBoards().begin(), GetOpticalBoards().end());
    AddLookUp(
        "look-ups", "IsTiRoadmOpticalBoard", KeysOf(GetOpticalBoards(), [](unsigned long board) { return board; }),
        [](unsigned long board) { return UtilCommon::Instance()->IsTiRoadmOpticalBoard(board); },
        [boards](unsigned long board) { return std::find(boards.begin(), boards.end(), board) != boards.end(); });
    AddLookUp(
        "look-ups", "GetPFMPacketSize", Drawn(std::vector<int>{0}),
        [](int) { return UtilCommon::Instance()->GetPFMPacketSize(); },
        [](int) {
            int size = 2000;
            const std::string item("PfmFrameRdSize");
            NS_BUNDLEMGR1::CorbaConfigItems::Instance()->GetIntItemInfo(item, size);
            return size >= 0 && size <= 6000 ? size : 2000;
        });
}

// ---- Texts and the filter -------------------------------------------------------------------------------------------

void AddTexts(const Corpus& corpus) {
    std::vector<std::string> mocs;
    for (const std::string& fdn : corpus.All()) {
        mocs.push_back(NS_UTIL::ResIDUtil::GetMOCFromFDN(fdn));
    }
    const std::set<std::string> services{"TUNNEL",    "VSI",         "PWE3",    "PWSW", "ATMTD",        "LSP",
                                         "SUBIF",     "VRF",         "PW",      "AP",   "MEP",          "L3VPN",
                                         "PWE3TRAIL", "TUNNELTRAIL", "PWTRAIL", "VPLS", "TUNNELPGTRAIL"};
    AddLookUp(
        "look-ups", "IsServiceFDN", mocs, [](const std::string& moc) { return NS_UTIL::ResIDUtil::IsServiceFDN(moc); },
        [services](const std::string& moc) { return services.contains(moc); });
    AddLookUp(
        "look-ups", "GetMoc", corpus.All(), [](const std::string& fdn) { return UtilCommon::Instance()->GetMoc(fdn); },
        LiteralUtilCommon::GetMoc);
    std::vector<std::string> lines;
    for (const std::string& fdn : corpus.All()) {
        if (const auto port = fdn.find("PP="); port != std::string::npos) {
            lines.push_back(fdn.substr(port + 3, fdn.find(',', port) - port - 3));
        }
    }
    AddLookUp(
        "look-ups", "GetSplitePPDataByLine", lines,
        [values = std::map<int, std::string>()](const std::string& line) mutable -> const auto& {
            UtilCommon::Instance()->GetSplitePPDataByLine(values, line);
            return values;
        },
        [values = std::map<int, std::string>()](const std::string& line) mutable -> const auto& {
            LiteralUtilCommon::GetSplitePPDataByLine(values, line);
            return values;
        });
    std::vector<std::string> paths;
    for (const auto& row : NS_UTIL::GetClientRateRows()) {
        paths.push_back("OCH:1-" + std::string(row.name) + ":2");
    }
    AddLookUp(
        "look-ups", "GetSplitePATHDataByLine", Drawn(paths),
        [levels = std::map<int, int>()](const std::string& path) mutable -> const auto& {
            UtilCommon::Instance()->GetSplitePATHDataByLine(levels, path);
            return levels;
        },
        [levels = std::map<int, int>()](const std::string& path) mutable -> const auto& {
            LiteralUtilCommon::GetSplitePATHDataByLine(levels, path);
            return levels;
        });
}

void AddFilter() {
    std::set<int> passing{3, 5, 8, 13, 21, 34, 55, 89, 144, 233, 377, 610, 987, 1597, 2584, 4181, 2101250};
    std::vector<int> notifications(passing.begin(), passing.end());
    for (int held = 10'000; held < 10'100; ++held) {
        notifications.push_back(held);
    }
    AddLookUp(
        "filter", "IsFilteNtf", Drawn(notifications),
        [](int notification) { return NS_UTIL::NtfFilter::Instance()->IsFilteNtf(notification); },
        [passing](int notification) { return !passing.contains(notification); });
}

}  // namespace

void AddLookUps(const Corpus& corpus) {
    AddPredicates(corpus);
    AddFbTypes();
    AddLayers();
    AddTerminationPoints();
    AddLocations();
    AddBoardsAndSizes();
    AddTexts(corpus);
    AddFilter();
}

}  // namespace NS_BENCH
