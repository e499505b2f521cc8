#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <tuple>

#include <spdlog/sinks/sink.h>

#include <kx_platform/logsvcinterface.h>
#include <kx_standalone/host.h>

namespace NS_STANDALONE {

/// Writes log records to one target.
class LogService final : public NS_SERVICE::LogSvcInterface {
public:
    /// Throws std::runtime_error that names the file when it cannot be written. `target` is not of
    /// kind NONE.
    explicit LogService(const LogTarget& target);

    NS_SERVICE::ModuleLogger* GetModuleLogger(const std::string& module, const std::string& subModule,
                                              const std::string& level) override;

private:
    using LoggerKey = std::tuple<std::string, std::string, std::string>;  // module, sub-module, level

    spdlog::sink_ptr m_sink;
    std::mutex m_mutex;
    std::map<LoggerKey, std::unique_ptr<NS_SERVICE::ModuleLogger>> m_loggers;
};

}  // namespace NS_STANDALONE
