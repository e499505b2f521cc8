/// How the library reaches a service of another bundle: by the type of its interface, anew for each operation.
#pragma once

#include <atomic>
#include <mutex>
#include <string_view>

#include <kx_domain_util/processexception.h>
#include <kx_platform/bundlemgr.h>
#include <kx_platform/dawsvcinterface.h>
#include <kx_platform/inventorybufif.h>
#include <kx_platform/logsvcinterface.h>
#include <kx_platform/readpin.h>

namespace NS_UTIL::NS_FRAME {

template <class Interface>
inline constexpr std::string_view SERVICE_NAME{};
template <>
inline constexpr std::string_view SERVICE_NAME<NS_SERVICE::InventoryBufif>{"InventoryBufif"};
template <>
inline constexpr std::string_view SERVICE_NAME<NS_SERVICE::DAWSvcInterface>{"DAWSvcInterface"};
template <>
inline constexpr std::string_view SERVICE_NAME<NS_SERVICE::LogSvcInterface>{"LogSvcInterface"};

/// The default of a search for a service of this type: every search of the system ends with one if there is no service.
/// Made on first use, never freed. It has none of the typed interfaces, so a search that ends with it found nothing.
template <class Interface>
NS_BUNDLEMGR1::ServiceInterface* GetDefaultService() {
    static std::atomic<NS_BUNDLEMGR1::ServiceInterface*> made{nullptr};
    auto* existing = made.load(std::memory_order_acquire);
    if (existing == nullptr) {
        const std::lock_guard lock(NS_BUNDLEMGR1::_g_actualmutex);
        existing = made.load(std::memory_order_acquire);
        if (existing == nullptr) {
            existing = new NS_BUNDLEMGR1::NULLServiceInterface;
            made.store(existing, std::memory_order_release);
        }
    }
    return existing;
}

/// Throws `InterfaceNotExistException` with the code of a missing service.
[[noreturn]] void ThrowInterfaceNotExist();

/// Access to the service of one interface type, for one operation: a local variable. While it lives, the service that
/// it found is not taken away: `ReadPin` holds it, as a hazard pointer does (M. Michael, "Hazard Pointers: Safe Memory
/// Reclamation for Lock-Free Objects", 2004). On first use, the constructor makes the default and the buffer; it then
/// may throw std::bad_alloc, or std::system_error if their lock cannot be taken.
///
/// There are three ways to the service, because callers rely on what a failing look-up does, for example if its lock
/// cannot be taken. It ends the process, except in the MA writer, where the exception propagates.
template <class Interface>
class ServiceAccess {
public:
    ServiceAccess()
        : m_default(GetDefaultService<Interface>()), m_buffer(NS_BUNDLEMGR1::CheckIFBuf(SERVICE_NAME<Interface>)) {}

    /// The service, or null if there is none: for callers that go on without it. An exception of the look-up ends the
    /// process.
    Interface* TryGet() noexcept { return Find(); }

    /// The service. Throws `InterfaceNotExistException` if there is none. An exception of the look-up ends the process.
    Interface& Get() { return Require(TryGet()); }

    /// The service, for the MA writer. Throws `InterfaceNotExistException` when there is none. All exceptions
    /// propagate.
    Interface& GetLettingAllPass() { return Require(Find()); }

    /// The object through which the service was found; null when none was.
    [[nodiscard]] NS_BUNDLEMGR1::ServiceObjectBase* GetServiceObject() const { return m_object; }

private:
    using Entry = NS_BUNDLEMGR1::InterfaceBuffer::Entry;

    static Interface& Require(Interface* service) {
        if (service == nullptr) {
            ThrowInterfaceNotExist();
        }
        return *service;
    }

    Interface* Find() {
        if (m_buffer != nullptr) {
            Entry entry;
            if (m_buffer->First(m_pin, entry)) {
                m_object = entry.object;
                // The buffer of this name is filled below only, with interfaces of this type.
                return static_cast<Interface*>(entry.interface);
            }
        }
        return SearchRegistry();
    }

    Interface* SearchRegistry() {
        Interface* first = nullptr;
        m_object = nullptr;
        const std::lock_guard lock(NS_BUNDLEMGR1::_g_actualmutex);
        for (const auto& object : NS_BUNDLEMGR1::BundleMgr::Instance()->GetServiceObjects()) {
            for (const auto& [name, carrier] : object.GetInterfaces()) {
                auto* const found = dynamic_cast<Interface*>(carrier->GetInterface());
                if (found == nullptr) {
                    continue;
                }
                if (first == nullptr) {
                    first = found;
                    m_object = carrier;
                    m_pin.Pin(carrier);
                }
                if (m_buffer != nullptr) {
                    m_buffer->Append({carrier, found});
                }
            }
        }
        if (m_buffer != nullptr) {
            m_buffer->SetSearched();
        }
        return first != nullptr ? first : dynamic_cast<Interface*>(m_default);
    }

    NS_BUNDLEMGR1::ServiceInterface* m_default;
    NS_BUNDLEMGR1::InterfaceBuffer* m_buffer;
    NS_BUNDLEMGR1::ReadPin m_pin;
    NS_BUNDLEMGR1::ServiceObjectBase* m_object = nullptr;
};

}  // namespace NS_UTIL::NS_FRAME
