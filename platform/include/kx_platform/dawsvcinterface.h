#pragma once

#include <string>

#include <kx_platform/bundlemgr.h>
#include <kx_platform/export.h>

namespace NS_SERVICE {

/// One configuration file, or one section of it, as the data-access service shows it.
class KX_PLATFORM_API ConfigObject {
public:
    ConfigObject() = default;
    virtual ~ConfigObject();
    ConfigObject(const ConfigObject&) = delete;
    ConfigObject& operator=(const ConfigObject&) = delete;

    /// Puts the integer item called `key` into `value`; false, and `value` untouched, if it is missing or no integer.
    virtual bool GetIntItemInfo(const std::string& key, int& value) = 0;
};

/// The data-access service: reads configuration files. Registered as "DAWSvcInterface". Called from any thread,
/// several at once. An exception of an operation passes to whoever called the library.
class KX_PLATFORM_API DAWSvcInterface : public NS_BUNDLEMGR1::ServiceInterface {
public:
    ~DAWSvcInterface() override;

    /// The file at `path` (relative to the configuration folder), or its section called `section` if that is not
    /// empty. Null: no such file. The object stays the service's own and is valid as long as the service is registered.
    virtual ConfigObject* GetConfiguration(const std::string& path, const std::string& section) = 0;
};

}  // namespace NS_SERVICE
