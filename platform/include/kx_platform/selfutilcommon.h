#pragma once

#include <map>
#include <string>

#include <kx_platform/export.h>

namespace NS_UTIL {

/// Helpers on texts, maps and configuration items that the bundles share. Stateless; any thread.
class KX_PLATFORM_API SelfUtilCommon {
public:
    /// The one instance; lives until the process ends. Never null.
    static SelfUtilCommon* Instance();

    /// Whether the configuration item called key exists; the same items as those of `CorbaConfigItems`.
    bool IsSupportCfgItem(std::string key) const;
    /// The configuration item called key as text; false, and value untouched, when it is missing.
    bool GetSupportCfgItem(const std::string& key, std::string& value) const;

    /// Splits text at separator into items NAME=value and adds each to out. Items without "=" are skipped; the first of
    /// a repeated name wins, also over what out held before.
    void GetSpliteFDNData(std::map<std::string, std::string>& out, const std::string& text,
                          std::string separator) const;

    /// The value under key; false, and value untouched, when there is none.
    bool GetDataFromMap(const std::map<std::string, std::string>& map, const std::string& key,
                        std::string& value) const;
    bool GetDataFromMap(const std::map<int, std::string>& map, int key, std::string& value) const;
    /// The value under name, read by `Str2Int`; false, and value untouched, when there is none.
    bool GetIntegerValueByName(const std::map<std::string, std::string>& map, const std::string& name,
                               int& value) const;

    /// text with the letters a to z in upper case; no locale.
    std::string upperStr(const std::string& text) const;

private:
    SelfUtilCommon() = default;
    ~SelfUtilCommon() = default;
};

}  // namespace NS_UTIL
