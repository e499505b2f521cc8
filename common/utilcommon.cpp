#include <algorithm>
#include <array>
#include <atomic>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>

#include <kx_domain_util/separatorfinder.h>
#include <kx_domain_util/utilcommon.h>
#include <kx_platform/selfutilcommon.h>
#include <kx_platform/textutil.h>

#include "common/loadonce.h"
#include "common/pagedtable.h"
#include "common/tables.h"
#include "frame/configuration.h"
#include "frame/log.h"
#include "frame/singleton.h"

namespace NS_UTIL {

namespace {

// Whether `text` in capitals is `name`. Only "a" to "z" count as small letters.
bool IsNameInAnyCase(std::string_view text, std::string_view name) {
    return std::equal(text.begin(), text.end(), name.begin(), name.end(), [](char character, char capital) {
        return (character >= 'a' && character <= 'z' ? character - 'a' + 'A' : character) == capital;
    });
}

// Returns the value under `key`, or `key` itself if there is none.
template <class Number>
Number FindOrPass(const std::map<Number, Number>& map, Number key) {
    const auto entry = map.find(key);
    return entry != map.end() ? entry->second : key;
}

// How much an FB type's level is above the type itself, and a level's FB type above the level; nothing under other
// keys.
constexpr PagedTable<int, 8> LEVELS_OF_FB_TYPES(
    NS_TABLE::FB_TYPE_LEVELS, [](const FbTypeLevelRow& row) { return row.fbType; },
    [](const FbTypeLevelRow& row) { return row.level - row.fbType; });
constexpr PagedTable<int, 1> FB_TYPES_OF_LEVELS(
    NS_TABLE::LEVEL_FB_TYPES, [](const LevelFbTypeRow& row) { return row.level; },
    [](const LevelFbTypeRow& row) { return row.fbType - row.level; });
constexpr PagedTable<bool, 9> OPTICAL_BOARDS(
    NS_TABLE::OPTICAL_BOARDS, [](unsigned long board) { return board; }, [](unsigned long) { return true; });

std::atomic<bool> isBidirBuilt{false};
pthread_rwlock_t bidirLock = PTHREAD_RWLOCK_INITIALIZER;
LockOverFork bidirOverFork;
// Made when the library is loaded, not by a first call, in the middle of which another thread may fork; lives until the
// process ends.
auto& bidirFbTypes = *new std::map<unsigned short, unsigned short>;

[[maybe_unused]] const int atFork =
    pthread_atfork([] { bidirOverFork.BeforeFork(isBidirBuilt, PosixWriteLock{bidirLock}); },
                   [] { bidirOverFork.AfterForkInParent(PosixWriteLock{bidirLock}); },
                   [] { bidirOverFork.AfterForkInChild(PosixWriteLock{bidirLock}); });

const std::map<unsigned short, unsigned short>& BidirFbTypes() {
    LoadOnce(isBidirBuilt, PosixWriteLock{bidirLock}, [] {
        std::map<unsigned short, unsigned short> filled;  // put there whole, or not at all when memory runs out
        for (const BidirFbTypeRow& row : NS_TABLE::BIDIR_FB_TYPES) {
            filled[row.fbType] = row.bidirFbType;
        }
        bidirFbTypes = std::move(filled);
    });
    return bidirFbTypes;
}

// The upper half of a location word is an FB type, the lower half a TP number.
constexpr unsigned FB_TYPE_SHIFT = 16;
constexpr std::uint32_t TP_NUMBER_MASK = 0xFFFF;

// The location words of a TP in the order in which they are tried.
constexpr std::array<std::int32_t NS_DOMAIN::TPIndex::*, 4> LOCATION_WORDS{
    &NS_DOMAIN::TPIndex::vc4Id, &NS_DOMAIN::TPIndex::vc12Id, &NS_DOMAIN::TPIndex::vc3Id, &NS_DOMAIN::TPIndex::vc11Id};

}  // namespace

std::atomic<UtilCommon*> UtilCommon::m_pInstance{nullptr};

UtilCommon* UtilCommon::Instance() {
    return NS_FRAME::GetInstance(m_pInstance, [] { return new UtilCommon; });
}

void UtilCommon::Destroy() {
    NS_FRAME::DestroyInstance(m_pInstance, [](UtilCommon* instance) { delete instance; });
}

UtilCommon::UtilCommon() {
    InitFbType2ILMap();
    InitIL2FbTypeMap();
    InitOpticalBoardList();
    InitCTPId2TMFNameMap();
    InitTMFCTPName2ID();
}

// ---- Text helpers ---------------------------------------------------------------------------------------------------

void UtilCommon::GetSpliteFDNData(std::map<std::string, std::string>& out, const std::string& text,
                                  const std::string& separator) const {
    SelfUtilCommon::Instance()->GetSpliteFDNData(out, text, separator);
}

void UtilCommon::GetSplitNameValueMapbyTag(std::map<std::string, std::string>& out, const std::string& text,
                                           const std::string& separator) const {
    GetSpliteFDNData(out, text, separator);
}

bool UtilCommon::GetDataFromMap(const std::map<std::string, std::string>& map, const std::string& key,
                                std::string& value) const {
    return SelfUtilCommon::Instance()->GetDataFromMap(map, key, value);
}

bool UtilCommon::GetDataFromMap(const std::map<int, std::string>& map, int key, std::string& value) const {
    return SelfUtilCommon::Instance()->GetDataFromMap(map, key, value);
}

bool UtilCommon::GetIntegerValueByName(const std::map<std::string, std::string>& map, const std::string& name,
                                       int& value) const {
    return SelfUtilCommon::Instance()->GetIntegerValueByName(map, name, value);
}

bool UtilCommon::GetSupportCfgItem(const std::string& item, std::string& value) const {
    return SelfUtilCommon::Instance()->GetSupportCfgItem(item, value);
}

bool UtilCommon::IsSupportCfgItem(const std::string& item) const {
    return SelfUtilCommon::Instance()->IsSupportCfgItem(item);
}

std::string UtilCommon::GetMoc(const std::string& fdn) const {
    const auto comma = fdn.rfind(',');
    const auto equals = fdn.rfind('=');
    const bool hasComma = comma != std::string::npos;
    const bool hasEquals = equals != std::string::npos;
    if (hasComma && hasEquals && equals > comma) {
        std::string tag = fdn.substr(comma + 1, equals - comma - 1);
        if (tag != "CLI_NAME") {
            return tag;
        }
        if (fdn.find("PP=") != std::string::npos) {
            return "PP";
        }
        return fdn.find("LP=") != std::string::npos ? "LP" : "";
    }
    const std::string_view head = std::string_view(fdn).substr(0, equals);
    if (!hasComma && hasEquals) {
        return std::string(head);
    }
    // The last level has no "=": the text names the management system, or is no identifier.
    return head == "OS" || head == "SYSTEM" ? "OS" : "";
}

void UtilCommon::GetSplitePPDataByLine(std::map<int, std::string>& out, const std::string& line) const {
    // One past npos is 0: the first search, and each after a missing separator, starts at the line's beginning.
    auto previous = std::string::npos;
    for (int key = 0; key < 3; ++key) {
        const auto begin = previous + 1;
        const auto end = line.find('|', begin);
        if (end == begin) {
            out[key] = "-1";
        } else if (end != std::string::npos) {
            out[key].assign(line, begin, end - begin);
        }
        previous = end;
    }
    out[3].assign(line, previous + 1);
}

void UtilCommon::GetSpliteFBDataByLine(std::map<int, std::string>& out, const std::string& line) const {
    GetSplitePPDataByLine(out, line);
}

void UtilCommon::GetSplitePATHDataByLine(std::map<int, int>& out, const std::string& line) const {
    NS_FDN::SeparatorFinder<'-'> items(line);
    NS_FDN::SeparatorFinder<'-'>::Piece piece{};
    do {
        piece = items.Next();
        const std::string_view item(piece.begin, piece.end);
        const auto colon = item.find(':');
        if (colon == std::string_view::npos) {
            continue;
        }
        const std::string_view name = item.substr(0, colon);
        const auto* const rate =
            std::find_if(NS_TABLE::CLIENT_RATES.begin(), NS_TABLE::CLIENT_RATES.end(),
                         [name](const ClientRateRow& known) { return IsNameInAnyCase(name, known.name); });
        if (rate != NS_TABLE::CLIENT_RATES.end()) {
            out[static_cast<int>(rate->level)] = Str2Int(item.substr(colon + 1));
        }
    } while (!items.IsLast(piece));
}

int UtilCommon::GetPFMPacketSize() const {
    constexpr int LARGEST = 6000;
    constexpr int FALLBACK = 2000;
    int size = FALLBACK;
    if (!NS_FRAME::ReadPfmFrameSize(size) || static_cast<unsigned int>(size) > LARGEST) {
        size = FALLBACK;
    }
    NS_FRAME::UTIL_COMMON_LOG.Write(766, 3, "[UtilCommon::GetPFMPacketSize]: PfmFrameRdSize = %d", size);
    return size;
}

// ---- FB types and interface levels ----------------------------------------------------------------------------------

void UtilCommon::FBType2InterfaceLevel(int& level, const int& fbType) const {
    level = fbType + LEVELS_OF_FB_TYPES.Get(static_cast<std::uint64_t>(fbType));
}

void UtilCommon::InterfaceLevel2FBType(int& fbType, const int& level) const {
    fbType = level + FB_TYPES_OF_LEVELS.Get(static_cast<std::uint64_t>(level));
}

unsigned short UtilCommon::GetBidirFBType(const unsigned short& fbType) const {
    return FindOrPass(BidirFbTypes(), fbType);
}

// ---- CTP names and TP numbers ---------------------------------------------------------------------------------------

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
    // The bits of a negative word stay, on purpose: callers keep free words at 0.
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
    // NOLINTNEXTLINE(readability-use-anyofallof): the condition writes, and std::any_of promises no order
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

// ---- Client rates and optical boards --------------------------------------------------------------------------------

void UtilCommon::InitClientRateMap(std::map<std::string, unsigned int>& rates) const {
    for (const ClientRateRow& row : NS_TABLE::CLIENT_RATES) {
        rates.emplace(row.name, row.level);
    }
}

bool UtilCommon::IsTiRoadmOpticalBoard(unsigned long boardType) const {
    return OPTICAL_BOARDS.Get(boardType);
}

// ---- Filling of the tables ------------------------------------------------------------------------------------------

// The look-ups of levels, FB types and boards read the constant tables above instead. The members are filled all the
// same: bundles expect `Instance` to fail while memory is short, and no look-up to fail later.

void UtilCommon::InitFbType2ILMap() {
    for (const FbTypeLevelRow& row : NS_TABLE::FB_TYPE_LEVELS) {
        m_mapFbType2IL[row.fbType] = row.level;
    }
}

void UtilCommon::InitIL2FbTypeMap() {
    for (const LevelFbTypeRow& row : NS_TABLE::LEVEL_FB_TYPES) {
        m_mapIL2FbType[row.level] = row.fbType;
    }
}

void UtilCommon::InitOpticalBoardList() {
    m_vecOpticalBoard.insert(m_vecOpticalBoard.end(), NS_TABLE::OPTICAL_BOARDS.begin(), NS_TABLE::OPTICAL_BOARDS.end());
}

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

}  // namespace NS_UTIL
