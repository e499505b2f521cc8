#include <algorithm>
#include <string_view>

#include <kx_domain_util/separatorfinder.h>
#include <kx_domain_util/utilcommon.h>
#include <kx_platform/selfutilcommon.h>
#include <kx_platform/textutil.h>

#include "common/tables/clientrate.h"
#include "frame/configuration.h"
#include "frame/log.h"
#include "frame/singleton.h"

namespace NS_UTIL {

namespace {

// Whether `text` is `name` but for small letters, of which `name` has none. As `SelfUtilCommon::upperStr`, it looks at
// "a" to "z" only.
bool IsNameInAnyCase(std::string_view text, std::string_view name) {
    return std::equal(text.begin(), text.end(), name.begin(), name.end(), [](char character, char capital) {
        return (character >= 'a' && character <= 'z' ? character - 'a' + 'A' : character) == capital;
    });
}

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
    // What is left is an object that is named without a level, or no identifier.
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

void UtilCommon::InitClientRateMap(std::map<std::string, unsigned int>& rates) const {
    for (const ClientRateRow& row : NS_TABLE::CLIENT_RATES) {
        rates.emplace(row.name, row.level);
    }
}

}  // namespace NS_UTIL
