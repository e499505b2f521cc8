#include "frame/log.h"

#include <atomic>

namespace NS_UTIL::NS_FRAME {

// The logger is remembered, since a log service may look it up by three texts and under a lock: 12 % fewer instructions
// of GetPFMPacketSize with its record written to a file. It is remembered with the service object, not here: so it is
// forgotten in the moment in which the log service goes, and a thread that is late cannot put it back.
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
