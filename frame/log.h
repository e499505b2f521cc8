#pragma once

#include <optional>
#include <string>

#include "frame/serviceaccess.h"

namespace NS_UTIL::NS_FRAME {

/// One source of log records: its name in each record, and the logger that it asks the log service for. One static
/// object for each source; it remembers its logger for as long as the log service is registered.
class LogSource {
public:
    LogSource(const char* file, const char* module, const char* subModule);

    /// Writes a record, its message formatted as printf does, if there is a log service; otherwise drops it at the cost
    /// of a look. line, level and format belong to the record and do not change when the source file does.
    template <class... Arguments>
    void Write(int line, int level, const char* format, Arguments... arguments) const {
        LogService logService;
        if (NS_SERVICE::ModuleLogger* const logger = GetModuleLogger(logService)) {
            logger->WriteLog(m_file, UnknownFunction(), line, level, format, arguments...);
        }
    }

private:
    using LogService = std::optional<ServiceAccess<NS_SERVICE::LogSvcInterface>>;

    /// The logger, usable as long as logService lives, which it fills; null when there is none.
    NS_SERVICE::ModuleLogger* GetModuleLogger(LogService& logService) const noexcept;
    static const std::string& UnknownFunction();

    std::string m_file;
    std::string m_module;
    std::string m_subModule;
};

/// The source of the conversions of OAM identifiers.
const LogSource& ResIdLog();
/// The source of `UtilCommon` and `NtfFilter`.
const LogSource& UtilCommonLog();

}  // namespace NS_UTIL::NS_FRAME
