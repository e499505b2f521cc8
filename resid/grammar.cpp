#include <algorithm>
#include <array>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <kx_domain_util/fdnscanner.h>
#include <kx_domain_util/resIDUtil.h>
#include <kx_platform/textutil.h>

namespace NS_UTIL {

using NS_FDN::Level;
using NS_FDN::LevelScanner;
using NS_FDN::SubValueScanner;

namespace {

std::vector<std::string> SubValuesOf(std::string_view value) {
    std::vector<std::string> values;
    SubValueScanner scanner(value);
    std::string_view subValue;
    while (scanner.Next(subValue)) {
        values.emplace_back(subValue);
    }
    return values;
}

void Append(std::vector<std::string>&& subValues, std::vector<std::string>& values) {
    values.insert(values.end(), std::make_move_iterator(subValues.begin()), std::make_move_iterator(subValues.end()));
}

// The sub-value at `index` of the level `tag`; null if there is none.
const std::string* FindSubValue(const std::string& tag, const MocLvlValueMap& map, int index) {
    const auto level = map.find(tag);
    if (level == map.end() || index < 0 || static_cast<std::size_t>(index) >= level->second.size()) {
        return nullptr;
    }
    return &level->second[static_cast<std::size_t>(index)];
}

}  // namespace

void ResIDUtil::Fdn2MocLvlValueMap(const std::string& fdn, MocLvlValueMap& map) {
    map.clear();
    LevelScanner scanner(fdn);
    Level level;
    while (scanner.Next(level)) {
        const auto [entry, isFirst] = map.try_emplace(std::string(level.tag));
        if (isFirst) {
            entry->second = SubValuesOf(level.value);
        }
    }
}

void ResIDUtil::ResolveMocLevelObj(const std::string& level, std::string& tag, std::vector<std::string>& values) {
    const Level split = NS_FDN::SplitLevel(level);
    // The level may be one of the texts that are changed here.
    std::vector<std::string> subValues = SubValuesOf(split.value);
    tag = split.tag;
    Append(std::move(subValues), values);
}

bool ResIDUtil::GetValueByMocLvlName(const std::string& tag, const MocLvlValueMap& map, std::string& value, int index) {
    const std::string* const subValue = FindSubValue(tag, map, index);
    if (subValue == nullptr) {
        return false;
    }
    value = *subValue;
    return true;
}

bool ResIDUtil::GetValueByMocLvlName(const std::string& tag, const MocLvlValueMap& map, int& value, int index) {
    const std::string* const subValue = FindSubValue(tag, map, index);
    if (subValue == nullptr) {
        return false;
    }
    Str2Int(*subValue, value);
    return true;
}

bool ResIDUtil::GetValueByMocLvlName(const std::string& tag, const MocLvlValueMap& map, int& value) {
    return GetValueByMocLvlName(tag, map, value, 0);
}

void ResIDUtil::ConstructMocLevelObj(const std::string& tag, const std::vector<std::string>& values,
                                     std::string& level) {
    if (values.empty()) {
        return;
    }
    const bool isSource =
        &level == &tag ||
        std::any_of(values.begin(), values.end(), [&level](const std::string& value) { return &value == &level; });
    std::string own;
    std::string& text = isSource ? own : level;
    // Summed, so that the text grows once.
    std::size_t size = tag.size();
    for (const std::string& value : values) {
        size += 1 + value.size();
    }
    text.reserve(size);
    text = tag;
    char separator = '=';
    for (const std::string& value : values) {
        text.append(1, separator).append(value);
        separator = '|';
    }
    if (isSource) {
        level = std::move(own);
    }
}

bool ResIDUtil::ResolveFDNByMoc(const std::string& fdn, const char* tag, int minCount,
                                std::vector<std::string>& values) {
    const std::string_view tagText = tag;
    const auto found = fdn.find(tagText);  // plain text: callers rely on "S=" being found in ",SS=" too
    if (found == std::string::npos) {
        return false;
    }
    std::string_view value = std::string_view(fdn).substr(found + tagText.size());
    const auto comma = value.find(',');
    if (comma != std::string_view::npos) {
        value = value.substr(0, comma);
        if (value.ends_with('\\')) {
            value = {};  // the value is dropped, not continued after the escaped comma, on purpose
        }
    }
    Append(SubValuesOf(value), values);
    return minCount <= 0 || values.size() >= static_cast<std::size_t>(minCount);
}

std::string ResIDUtil::GetMOCFromFDN(const std::string& fdn) {
    const std::string_view level = NS_FDN::LastLevel(fdn);
    return std::string(level.substr(0, level.rfind('=')));  // the last "=" of the text, unlike NS_FDN::LastTag
}

bool ResIDUtil::IsServiceFDN(const std::string& moc) {
    static constexpr std::array<std::string_view, 17> SERVICE_MOCS{
        "TUNNEL", "VSI", "PWE3",  "PWSW",      "ATMTD",       "LSP",     "SUBIF", "VRF",          "PW",
        "AP",     "MEP", "L3VPN", "PWE3TRAIL", "TUNNELTRAIL", "PWTRAIL", "VPLS",  "TUNNELPGTRAIL"};
    return std::find(SERVICE_MOCS.begin(), SERVICE_MOCS.end(), moc) != SERVICE_MOCS.end();
}

}  // namespace NS_UTIL
