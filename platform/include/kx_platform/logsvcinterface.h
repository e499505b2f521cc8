#pragma once

#include <string>

#include <kx_platform/bundlemgr.h>
#include <kx_platform/export.h>

namespace NS_SERVICE {

/// A logger of one module. Called from any thread, several at once.
class KX_PLATFORM_API ModuleLogger {
public:
    ModuleLogger() = default;
    virtual ~ModuleLogger();
    ModuleLogger(const ModuleLogger&) = delete;
    ModuleLogger& operator=(const ModuleLogger&) = delete;

    /// Writes one record: the source file's name, the function's name, the line, the level (0 error, 1 warning,
    /// 2 information, 3 debug), and a message formatted as printf does. An exception passes to whoever logs.
    virtual void WriteLog(const std::string& file, const std::string& function, int line, int level, const char* format,
                          ...) = 0;
};

/// The log service. Registered as "LogSvcInterface". Called from any thread.
class KX_PLATFORM_API LogSvcInterface : public NS_BUNDLEMGR1::ServiceInterface {
public:
    ~LogSvcInterface() override;

    /// The logger of a module and sub-module that writes records from the named level on. It stays the service's own
    /// and is valid as long as the service is registered; null if there is none.
    virtual ModuleLogger* GetModuleLogger(const std::string& module, const std::string& subModule,
                                          const std::string& level) = 0;
};

}  // namespace NS_SERVICE
