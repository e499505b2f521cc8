#pragma once

#include <map>
#include <memory>
#include <string>
#include <tuple>

#include <kx_platform/logsvcinterface.h>
#include <kx_standalone/host.h>

namespace NS_STANDALONE {

/// Writes log records to one target.
class LogService final : public NS_SERVICE::LogSvcInterface {
public:
    /// Throws std::runtime_error that names the file if it cannot be written. `target` is not of kind NONE.
    explicit LogService(const LogTarget& target);
    ~LogService() override;
    LogService(const LogService&) = delete;
    LogService& operator=(const LogService&) = delete;

    NS_SERVICE::ModuleLogger* GetModuleLogger(const std::string& module, const std::string& subModule,
                                              const std::string& level) override;

private:
    class Sink;
    using LoggerKey = std::tuple<std::string, std::string, std::string>;  // module, sub-module, level

    std::shared_ptr<Sink> m_sink;
    std::map<LoggerKey, std::unique_ptr<NS_SERVICE::ModuleLogger>> m_loggers;  // guarded by LoggersMutex
};

}  // namespace NS_STANDALONE
