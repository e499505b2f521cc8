#pragma once

#include <map>
#include <string>

#include <kx_platform/export.h>

namespace NS_UTIL {

/// Helpers on texts, maps and configuration items that the bundles share. Stateless; any thread. Exceptions:
/// std::bad_alloc.
class KX_PLATFORM_API SelfUtilCommon {
public:
    /// The one instance; lives until the process ends. Never null.
    static SelfUtilCommon* Instance();

    /// Whether the configuration item called `key` exists; the same items as those of `CorbaConfigItems`.
    bool IsSupportCfgItem(std::string key) const;
    /// Copies the configuration item called `key` into `value`; false, and `value` untouched, if it is missing.
    bool GetSupportCfgItem(const std::string& key, std::string& value) const;

    /// Splits `text` at `separator` into items NAME=value and adds each to `out`. An item is cut at its first "=";
    /// items without one are skipped. The first of a repeated name wins, and so does what `out` held before. An empty
    /// `separator` splits nothing.
    void GetSpliteFDNData(std::map<std::string, std::string>& out, const std::string& text,
                          std::string separator) const;

    /// Copies the value under `key` into `value`; false, and `value` untouched, if there is none.
    bool GetDataFromMap(const std::map<std::string, std::string>& map, const std::string& key,
                        std::string& value) const;
    /// The same for numbers as keys.
    bool GetDataFromMap(const std::map<int, std::string>& map, int key, std::string& value) const;
    /// Reads the value under `name` by `Str2Int` into `value`; false, and `value` untouched, if there is none.
    bool GetIntegerValueByName(const std::map<std::string, std::string>& map, const std::string& name,
                               int& value) const;

    /// Returns `text` with the letters a to z in upper case, whatever the locale.
    std::string upperStr(const std::string& text) const;

private:
    SelfUtilCommon() = default;
    ~SelfUtilCommon() = default;
};

}  // namespace NS_UTIL
