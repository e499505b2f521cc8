#pragma once

#include <optional>

#include "frame/serviceaccess.h"

namespace NS_UTIL::NS_FRAME {

/// One source of log records: its name in each record, and the module for which it asks a logger. It keeps no state:
/// the log service's object remembers the logger.
class LogSource {
public:
    constexpr LogSource(const char* file, const char* module, const char* subModule)
        : m_file(file), m_module(module), m_subModule(subModule) {}

    /// Writes a record, its message formatted as printf does. Without a log service, or if that gives no logger, drops
    /// the record without formatting the message. `line` is part of the record and does not change when the source file
    /// does. Exceptions thrown by the logger propagate.
    template <class... Arguments>
    void Write(int line, int level, const char* format, Arguments... arguments) const {
        LogService logService;
        if (NS_SERVICE::ModuleLogger* const logger = GetModuleLogger(logService)) {
            // The message names the function itself.
            logger->WriteLog(m_file, "unknown", line, level, format, arguments...);
        }
    }

private:
    using LogService = std::optional<ServiceAccess<NS_SERVICE::LogSvcInterface>>;

    /// The logger, valid as long as `logService`, which it fills; null when there is none.
    NS_SERVICE::ModuleLogger* GetModuleLogger(LogService& logService) const noexcept;

    const char* m_file;
    const char* m_module;
    const char* m_subModule;
};

/// The source of the conversions of OAM identifiers.
inline constexpr LogSource RES_ID_LOG{"resIDUtil", "kx_domain_bundle", "kx_domain_model"};
/// The source of `UtilCommon` and `NtfFilter`.
inline constexpr LogSource UTIL_COMMON_LOG{"utilcommon", "vemo", "vemo"};

}  // namespace NS_UTIL::NS_FRAME
