#include <vector>

#include <kx_platform/configitems.h>
#include <kx_platform/selfutilcommon.h>
#include <kx_platform/textutil.h>

namespace NS_UTIL {

namespace {

template <class Map, class Key>
bool CopyValue(const Map& map, const Key& key, std::string& value) {
    const auto entry = map.find(key);
    if (entry == map.end()) {
        return false;
    }
    value = entry->second;
    return true;
}

}  // namespace

SelfUtilCommon* SelfUtilCommon::Instance() {
    static auto* const instance = new SelfUtilCommon;
    return instance;
}

// By value: bundles are compiled against this signature, and that of `GetSpliteFDNData`.
bool SelfUtilCommon::IsSupportCfgItem(std::string key) const {
    return NS_BUNDLEMGR1::CorbaConfigItems::Instance()->HasItem(key);
}

bool SelfUtilCommon::GetSupportCfgItem(const std::string& key, std::string& value) const {
    return NS_BUNDLEMGR1::CorbaConfigItems::Instance()->GetStrItemInfo(key, value);
}

void SelfUtilCommon::GetSpliteFDNData(std::map<std::string, std::string>& out, const std::string& text,
                                      std::string separator) const {
    std::vector<std::string> items;
    Parser::SplitStrByTag(text, separator, items);
    std::string name;
    std::string value;
    for (const std::string& item : items) {
        if (Parser::ParseItemNVByTag(item, name, value, "=")) {
            out.emplace(name, value);
        }
    }
}

bool SelfUtilCommon::GetDataFromMap(const std::map<std::string, std::string>& map, const std::string& key,
                                    std::string& value) const {
    return CopyValue(map, key, value);
}

bool SelfUtilCommon::GetDataFromMap(const std::map<int, std::string>& map, int key, std::string& value) const {
    return CopyValue(map, key, value);
}

bool SelfUtilCommon::GetIntegerValueByName(const std::map<std::string, std::string>& map, const std::string& name,
                                           int& value) const {
    const auto entry = map.find(name);
    if (entry == map.end()) {
        return false;
    }
    value = Str2Int(entry->second);
    return true;
}

std::string SelfUtilCommon::upperStr(const std::string& text) const {
    std::string upper = text;
    for (char& letter : upper) {
        if (letter >= 'a' && letter <= 'z') {
            letter = static_cast<char>(letter - 'a' + 'A');
        }
    }
    return upper;
}

}  // namespace NS_UTIL
