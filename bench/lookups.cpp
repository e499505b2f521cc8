// Predicates, look-ups in the tables, and the notification filter, each beside its literal counterpart
// (literallookups.h).
#include <map>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <kx_domain_util/constanttables.h>
#include <kx_domain_util/fbtype.h>
#include <kx_domain_util/netype.h>
#include <kx_domain_util/ntffilter.h>
#include <kx_domain_util/resIDUtil.h>
#include <kx_domain_util/utilcommon.h>

#include "literallookups.h"
#include "measurement.h"
#include "sample/splitmix64.h"

namespace NS_BENCH {

namespace {

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

struct Predicate {
    const char* name;
    bool (*library)(unsigned short);
    bool (*literal)(unsigned short);
};

void AddPredicates(const Corpus& corpus) {
    using namespace NS_UTIL;
    using NS_LITERAL::IsInEquipmentTypeList;
    using NS_LITERAL::IsInNETypeList;
    using Type = unsigned short;
    // clang-format off
    static const std::vector<Predicate> PREDICATES{
        {"IsPTN41", IsPTN41, NS_LITERAL::IsPTN41},
        {"IsPTN31", IsPTN31, NS_LITERAL::IsPTN31},
        {"IsPTN470", IsPTN470, NS_LITERAL::IsPTN470},
        {"IsKLVByNEType", IsKLVByNEType, NS_LITERAL::IsKLVByNEType},
        {"IsRouteNE", IsRouteNE, [](Type type) { return IsInNETypeList("router and metro", type); }},
        {"IsTransNE", IsTransNE, [](Type type) { return IsInNETypeList("transmission", type); }},
        {"IsAccessNE", IsAccessNE, [](Type type) { return IsInNETypeList("access", type); }},
        {"IsPTNClasssNE", IsPTNClasssNE, [](Type type) { return IsInEquipmentTypeList("PTN", type); }},
        {"IsPTNDMTNE", IsPTNDMTNE, [](Type type) { return IsInEquipmentTypeList("PTNDMT", type); }},
        {"IsPTNNE", IsPTNNE, [](Type type) { return IsInEquipmentTypeList("PTN", type) ||
                                                    IsInEquipmentTypeList("PTNDMT", type); }},
        {"IsMSTPNE", IsMSTPNE, [](Type type) { return IsInEquipmentTypeList("MSTP", type); }},
        {"IsIPMSTPNE", IsIPMSTPNE, [](Type type) { return IsInEquipmentTypeList("MSTP", type); }},
        {"IsIPKLVNE", IsIPKLVNE, [](Type type) { return IsInEquipmentTypeList("IPKLV", type); }},
        {"IsKLV600NE", IsKLV600NE, [](Type type) { return IsInEquipmentTypeList("KLV6XX", type); }},
        {"IsOTNNE", IsOTNNE, [](Type type) { return IsInEquipmentTypeList("OTN", type); }},
        {"IsWDMNE", IsWDMNE, [](Type type) { return IsInEquipmentTypeList("WDM", type); }},
        {"IsOTN_NA", IsOTN_NA, [](Type type) { return IsInEquipmentTypeList("OTN_NA", type); }},
        {"IsWDM_NA", IsWDM_NA, [](Type type) { return IsInEquipmentTypeList("WDM_NA", type); }},
        {"IsNAWDMByNEType", IsNAWDMByNEType, [](Type type) { return IsInEquipmentTypeList("OTN_NA", type) ||
                                                                    IsInEquipmentTypeList("WDM_NA", type); }},
        {"IsOTN4750NE", IsOTN4750NE, [](Type type) { return IsInEquipmentTypeList("OTN4750NE", type); }},
        {"IsBIGSLOTNE", IsBIGSLOTNE, [](Type type) { return IsInEquipmentTypeList("BIGSLOTNE", type); }},
        {"IsAccBitsNE", IsAccBitsNE, [](Type type) { return IsInEquipmentTypeList("ACCBITSNE", type); }},
        {"IsMultiShelfTypeNE", IsMultiShelfTypeNE,
         [](Type type) { return IsInEquipmentTypeList("MultiShelfTypeNE", type); }},
        {"IsIPServiceNE", IsIPServiceNE, NS_LITERAL::IsIPServiceNE},
        {"IsKLVNE", IsKLVNE, NS_LITERAL::IsKLVNE},
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
        [](const auto& ne) { return NS_LITERAL::IsTransMultiSubShelfNE(ne.first, ne.second); });
}

// ---- Tables ---------------------------------------------------------------------------------------------------------

// What `fill` puts into a fresh `Output`.
template <class Output, class Fill>
Output Filled(Fill fill) {
    Output output{};
    fill(output);
    return output;
}

void AddFbTypes() {
    using namespace NS_UTIL;
    AddLookUp("look-ups", "GetFBTypeName", KeysOf(GetFbTypeNameRows(), [](const auto& row) { return row.fbType; }),
              GetFBTypeName, NS_LITERAL::GetFBTypeName);
    const auto itself = [](int fbType) { return fbType; };
    AddLookUp("look-ups", "IsPTNAIDFBType", KeysOf(GetPtnAidFbTypes(), itself), IsPTNAIDFBType,
              NS_LITERAL::IsPTNAIDFBType);
    AddLookUp(
        "look-ups", "IsPortObjByFbType", KeysOf(GetPortObjectFbTypes(), itself),
        [](int fbType) { return IsPortObjByFbType(fbType, 3); },
        [](int fbType) { return NS_LITERAL::IsPortObjByFbType(fbType, 3); });
    AddLookUp("look-ups", "IsLogicalPortByType", Drawn(std::vector<int>{4, 16, 65535, 65536, 393216, 786432}),
              IsLogicalPortByType, NS_LITERAL::IsLogicalPortByType);
    AddLookUp("look-ups", "GetDomainStrByID", KeysOf(GetDomainNameRows(), [](const auto& row) { return row.domainId; }),
              GetDomainStrByID, NS_LITERAL::GetDomainStrByID);
}

void AddLayers() {
    using namespace NS_UTIL;
    AddLookUp(
        "look-ups", "FBType2InterfaceLevel", KeysOf(GetFbTypeLevelRows(), [](const auto& row) { return row.fbType; }),
        [](int fbType) {
            return Filled<int>([&](int& level) { UtilCommon::Instance()->FBType2InterfaceLevel(level, fbType); });
        },
        [](int fbType) { return Filled<int>([&](int& level) { NS_LITERAL::FBType2InterfaceLevel(level, fbType); }); });
    AddLookUp(
        "look-ups", "InterfaceLevel2FBType", KeysOf(GetLevelFbTypeRows(), [](const auto& row) { return row.level; }),
        [](int level) {
            return Filled<int>([&](int& fbType) { UtilCommon::Instance()->InterfaceLevel2FBType(fbType, level); });
        },
        [](int level) { return Filled<int>([&](int& fbType) { NS_LITERAL::InterfaceLevel2FBType(fbType, level); }); });
    AddLookUp(
        "look-ups", "GetBidirFBType", KeysOf(GetBidirFbTypeRows(), [](const auto& row) { return row.fbType; }),
        [](unsigned short fbType) { return UtilCommon::Instance()->GetBidirFBType(fbType); },
        NS_LITERAL::GetBidirFBType);
}

void AddTerminationPoints() {
    using namespace NS_UTIL;
    AddLookUp(
        "look-ups", "InterfaceCTPId2TMFName", KeysOf(GetCtpNameRows(), [](const auto& row) { return row.ctpId; }),
        [name = std::string()](unsigned long ctpId) mutable -> const std::string& {
            UtilCommon::Instance()->InterfaceCTPId2TMFName(ctpId, name);
            return name;
        },
        [name = std::string()](unsigned long ctpId) mutable -> const std::string& {
            NS_LITERAL::InterfaceCTPId2TMFName(ctpId, name);
            return name;
        });
    AddLookUp(
        "look-ups", "InterfaceTMFCTPName2ID",
        KeysOf(GetCtpNameRows(), [](const auto& row) { return std::string(row.name); }),
        [](const std::string& name) {
            return Filled<unsigned long>(
                [&](unsigned long& ctpId) { UtilCommon::Instance()->InterfaceTMFCTPName2ID(name, ctpId); });
        },
        [](const std::string& name) {
            return Filled<unsigned long>(
                [&](unsigned long& ctpId) { NS_LITERAL::InterfaceTMFCTPName2ID(name, ctpId); });
        });
}

// The words of a termination point. Each holds the FB type of a layer, and a number.
void AddLocations() {
    using namespace NS_UTIL;
    const auto levels = KeysOf(GetLevelFbTypeRows(), [](const auto& row) { return row.level; });
    AddLookUp(
        "look-ups", "SetTpNoToLocation", levels,
        [](int level) {
            return Filled<int>([&](int& word) { UtilCommon::Instance()->SetTpNoToLocation(word, level, 7); });
        },
        [](int level) { return Filled<int>([&](int& word) { NS_LITERAL::SetTpNoToLocation(word, level, 7); }); });
    std::vector<std::pair<int, int>> locations;
    for (const FbTypeLevelRow& row : GetFbTypeLevelRows()) {
        locations.emplace_back(row.fbType << 16 | 7, row.level);
        locations.emplace_back(row.fbType << 16 | 7, row.level + 1);
    }
    AddLookUp(
        "look-ups", "GetTpNoFromLocation", Drawn(locations),
        [](const auto& location) {
            return Filled<int>(
                [&](int& tpNo) { UtilCommon::Instance()->GetTpNoFromLocation(location.first, location.second, tpNo); });
        },
        [](const auto& location) {
            return Filled<int>(
                [&](int& tpNo) { NS_LITERAL::GetTpNoFromLocation(location.first, location.second, tpNo); });
        });
    AddLookUp(
        "look-ups", "SetTpNo", levels,
        [tp = NS_DOMAIN::TPIndex()](int level) mutable {
            tp.vc4Id = 0;
            UtilCommon::Instance()->SetTpNo(tp, level, 7);
            return tp.vc4Id;
        },
        [tp = NS_DOMAIN::TPIndex()](int level) mutable {
            tp.vc4Id = 0;
            NS_LITERAL::SetTpNo(tp, level, 7);
            return tp.vc4Id;
        });
    std::vector<NS_DOMAIN::TPIndex> tps;
    for (const LevelFbTypeRow& row : GetLevelFbTypeRows()) {
        UtilCommon::Instance()->SetTpNo(tps.emplace_back(), row.level, 7);
    }
    AddLookUp(
        "look-ups", "GetTpNo", Drawn(tps),
        [](const NS_DOMAIN::TPIndex& tp) { return UtilCommon::Instance()->GetTpNo(tp, 12309); },
        [](const NS_DOMAIN::TPIndex& tp) { return NS_LITERAL::GetTpNo(tp, 12309); });
}

void AddBoardsAndSizes() {
    using namespace NS_UTIL;
    AddLookUp(
        "look-ups", "IsTiRoadmOpticalBoard", KeysOf(GetOpticalBoards(), [](unsigned long board) { return board; }),
        [](unsigned long board) { return UtilCommon::Instance()->IsTiRoadmOpticalBoard(board); },
        NS_LITERAL::IsTiRoadmOpticalBoard);
    AddLookUp(
        "look-ups", "GetPFMPacketSize", Drawn(std::vector<int>{0}),
        [](int) { return UtilCommon::Instance()->GetPFMPacketSize(); },
        [](int) { return NS_LITERAL::GetPFMPacketSize(); });
}

// ---- Texts and the filter -------------------------------------------------------------------------------------------

void AddTexts(const Corpus& corpus) {
    std::vector<std::string> mocs;
    for (const std::string& fdn : corpus.All()) {
        mocs.push_back(NS_UTIL::ResIDUtil::GetMOCFromFDN(fdn));
    }
    AddLookUp(
        "look-ups", "IsServiceFDN", mocs, [](const std::string& moc) { return NS_UTIL::ResIDUtil::IsServiceFDN(moc); },
        NS_LITERAL::IsServiceFDN);
    AddLookUp(
        "look-ups", "GetMoc", corpus.All(), [](const std::string& fdn) { return UtilCommon::Instance()->GetMoc(fdn); },
        NS_LITERAL::GetMoc);
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
            NS_LITERAL::GetSplitePPDataByLine(values, line);
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
            NS_LITERAL::GetSplitePATHDataByLine(levels, path);
            return levels;
        });
}

void AddFilter() {
    const auto isHeldBack = [](int notification) { return NS_UTIL::NtfFilter::Instance()->IsFilteNtf(notification); };
    std::vector<int> notifications{3, 5, 8, 13, 21, 34, 55, 89, 144, 233, 377, 610, 987, 1597, 2584, 4181, 2101250};
    AddLookUp("filter", "IsFilteNtf, nothing held back", Drawn(notifications), isHeldBack, NS_LITERAL::IsFilteNtf);
    for (int held = 10'000; held < 10'100; ++held) {
        notifications.push_back(held);
    }
    AddLookUp("filter", "IsFilteNtf", Drawn(notifications), isHeldBack, NS_LITERAL::IsFilteNtf);
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
