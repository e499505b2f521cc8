#include "frame/log.h"

#include <atomic>

namespace NS_UTIL::NS_FRAME {

LogSource::LogSource(const char* file, const char* module, const char* subModule)
    : m_file(file), m_module(module), m_subModule(subModule) {}

// The logger is remembered with the service object, not here: so it is forgotten in the moment in which the log service
// goes, and a thread that is late cannot put it back.
NS_SERVICE::ModuleLogger* LogSource::GetModuleLogger(LogService& logService) const noexcept try {
    NS_SERVICE::LogSvcInterface* const service = logService.emplace().TryGet();
    if (service == nullptr) {
        return nullptr;
    }
    std::atomic<void*>* const memory = logService->GetServiceObject()->GetMemory(this);
    if (memory != nullptr) {
        if (void* const remembered = memory->load(std::memory_order_acquire)) {
            return static_cast<NS_SERVICE::ModuleLogger*>(remembered);
        }
    }
    static const std::string level = "debug";
    NS_SERVICE::ModuleLogger* const logger = service->GetModuleLogger(m_module, m_subModule, level);
    if (memory != nullptr) {
        memory->store(logger, std::memory_order_release);
    }
    return logger;
} catch (...) {
    return nullptr;  // a log service that fails costs its records, nothing else; the next record tries again
}

const std::string& LogSource::UnknownFunction() {
    static const std::string function = "unknown";  // the message names the function itself
    return function;
}

const LogSource& ResIdLog() {
    static const LogSource source("resIDUtil", "kx_domain_bundle", "kx_domain_model");
    return source;
}

const LogSource& UtilCommonLog() {
    static const LogSource source("utilcommon", "vemo", "vemo");
    return source;
}

}  // namespace NS_UTIL::NS_FRAME
