#include "frame/log.h"

#include <atomic>

namespace NS_UTIL::NS_FRAME {

// Remembers the logger, since a log service may look it up by three texts and under a lock. The service's object holds
// it, not this source: so it is forgotten at the moment the log service goes, and a late thread cannot put it back.
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
    NS_SERVICE::ModuleLogger* const logger = service->GetModuleLogger(m_module, m_subModule, "debug");
    if (memory != nullptr) {
        memory->store(logger, std::memory_order_release);
    }
    return logger;
} catch (...) {
    return nullptr;  // the next record tries again
}

}  // namespace NS_UTIL::NS_FRAME
