/// The bundle manager: which services are there, and how a user reaches one by the type of its interface.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <list>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>

#include <kx_platform/export.h>
#include <kx_platform/readpin.h>

namespace NS_BUNDLEMGR1 {

class NULLServiceInterface;

/// Does what `final` does since C++11: a virtual base that only its friends can construct, so that no class derives
/// from them. Bundles compile against this name; nothing new uses it.
class KX_PLATFORM_API FinalClass {
    friend class NULLServiceInterface;
    FinalClass() = default;
};

/// What every service of the system derives from.
class KX_PLATFORM_API ServiceInterface {
public:
    ServiceInterface() = default;
    virtual ~ServiceInterface();
    ServiceInterface(const ServiceInterface&) = delete;
    ServiceInterface& operator=(const ServiceInterface&) = delete;

    /// The interface itself.
    virtual ServiceInterface* GetSelf();
    /// Gives the interface up. Does nothing by default: services belong to those who registered them.
    virtual void Release();
    /// The name under which the interface reports itself; empty by default.
    virtual const char* GetName() const;
    /// The state of the interface; 0, which is well, by default.
    virtual int GetState() const;
};

/// Stands in the place of a service that is not there.
class KX_PLATFORM_API NULLServiceInterface : public ServiceInterface, private virtual FinalClass {
public:
    NULLServiceInterface() = default;

    /// Deletes the object.
    void Release() override;
    /// "NULLServiceInterface!".
    const char* GetName() const override;
};

/// One registered service under its name. The bundle manager makes it and frees it when no thread uses it any more.
class KX_PLATFORM_API ServiceObjectBase {
public:
    /// For the bundle manager: `service` is not owned and not null. Exceptions: std::bad_alloc.
    ServiceObjectBase(std::string name, ServiceInterface* service);
    ~ServiceObjectBase();
    ServiceObjectBase(const ServiceObjectBase&) = delete;
    ServiceObjectBase& operator=(const ServiceObjectBase&) = delete;

    /// The name under which the service was registered.
    const std::string& GetObjectName() const { return m_name; }

    /// The service that this object carries; never null.
    ServiceInterface* GetInterface() const { return m_service; }

    /// The objects that carry this object's interfaces, by interface name: itself under its own name.
    const std::map<std::string, ServiceObjectBase*>& GetInterfaces() const { return m_interfaces; }

    /// Returns a word in which `user` (any address of the caller's own) remembers something that the service gave it,
    /// such as a logger. The word is null at first, the same at every call, and goes away with the object: nothing
    /// remembered in it outlives the service. Null if all words are taken: then the user remembers nothing.
    /// Loggers are remembered so: looking one up at each record would take the log service's lock.
    std::atomic<void*>* GetMemory(const void* user) noexcept;

private:
    struct Memory {
        std::atomic<const void*> user{nullptr};
        std::atomic<void*> word{nullptr};
    };

    std::string m_name;
    ServiceInterface* m_service;
    std::map<std::string, ServiceObjectBase*> m_interfaces;
    std::array<Memory, 8> m_memories;
};

/// A mutex shared by the bundles: it guards the registry and the filling of interface buffers. No one holds it while
/// calling into a service or forking (`readpin.h`). So a service may register and unregister services from inside its
/// operations.
extern KX_PLATFORM_API std::mutex _g_actualmutex;

/// What was found for one interface type, kept so that the registry is not searched at every call, under its lock. The
/// buffer is emptied whenever a service comes or goes. Only the first of several interfaces of a type is kept: no other
/// is ever handed out.
///
/// Readers take no lock. They compare a count before and after, as with a sequence lock (H.-J. Boehm, "Can Seqlocks Get
/// Along With Programming Language Memory Models?", MSPC 2012). Only emptying counts: between two fillings the buffer
/// is always emptied, and a filling writes the interface before the object.
class KX_PLATFORM_API InterfaceBuffer {
public:
    /// An empty buffer for the service called `name`. Users get theirs from `CheckIFBuf`.
    explicit InterfaceBuffer(std::string name) : m_name(std::move(name)) {}
    InterfaceBuffer(const InterfaceBuffer&) = delete;
    InterfaceBuffer& operator=(const InterfaceBuffer&) = delete;

    /// The name of the service.
    const std::string& GetName() const { return m_name; }

    /// An interface and the service object through which it was found.
    struct Entry {
        ServiceObjectBase* object = nullptr;
        ServiceInterface* interface = nullptr;
    };

    /// Puts the first interface into `entry`, its object pinned by `pin`, or an empty entry if there is no such
    /// service. False if the registry must be searched: it was not searched after its last change. Takes no lock.
    bool First(ReadPin& pin, Entry& entry) const noexcept;

    /// Appends a found interface; the caller holds `_g_actualmutex`.
    void Append(const Entry& entry) noexcept;
    /// Records that the registry was searched; the caller holds `_g_actualmutex`.
    void SetSearched() noexcept { m_searched.store(true); }
    /// Empties the buffer; the caller holds `_g_actualmutex`.
    void Forget() noexcept;

private:
    friend KX_PLATFORM_API InterfaceBuffer* CheckIFBuf(std::string_view name);
    friend class BundleMgr;

    std::string m_name;
    std::atomic<ServiceObjectBase*> m_object{nullptr};
    std::atomic<ServiceInterface*> m_interface{nullptr};
    std::atomic<std::uint64_t> m_emptied{0};  // how often; counted before the object is cleared
    std::atomic<bool> m_searched{false};
    InterfaceBuffer* m_next = nullptr;
};

/// The interface buffer of the service called `name`, made on the first call and never freed. A platform that keeps no
/// buffer for a name may return null; this one never does. Takes no lock once the buffer is there. Any thread.
/// Exceptions: while the buffer is not there yet, std::bad_alloc, and std::system_error if the lock cannot be taken.
KX_PLATFORM_API InterfaceBuffer* CheckIFBuf(std::string_view name);

/// The registry of services. All operations may be called from any thread, also from inside a service's operation: no
/// lock is held there, so looking up, registering and taking back do not deadlock. Exceptions: std::system_error if
/// `_g_actualmutex` cannot be taken, and std::bad_alloc from `RegisterService`; then nothing has changed. If the lock
/// fails after the change, when the old service is put away, the process ends.
class KX_PLATFORM_API BundleMgr {
public:
    /// The one bundle manager; lives until the process ends. Never null.
    static BundleMgr* Instance();

    /// Registers `service` (not owned, not null) under `name`; a second registration of a name replaces the first. When
    /// it returns, every new lookup finds the service, and no call into a replaced one is in flight (see
    /// `UnregisterService`).
    void RegisterService(const std::string& name, ServiceInterface* service);

    /// Takes the service called `name` back: it is forgotten in every buffer, and with it all that was remembered of
    /// it. Returns once no call into the service can be in flight any more; false if the name is unknown. A service
    /// that is registered under several names is gone when the last of them is.
    ///
    /// From inside a service's operation it does not wait for the calling thread's own calls. Nor does it wait for
    /// another thread that takes a service back, or replaces one, from inside an operation: the two would wait for each
    /// other forever. So a service may take itself back or replace itself from inside; whoever does so frees the
    /// service only after those operations have returned.
    ///
    /// If two threads unregister one name, the second gets false, perhaps while the first still waits.
    bool UnregisterService(const std::string& name);

    /// Every registered object, in the order of registration (a replacement keeps the place of what it replaces). The
    /// caller holds `_g_actualmutex` while it uses the answer.
    const std::list<ServiceObjectBase>& GetServiceObjects() const { return m_objects; }

private:
    BundleMgr() = default;
    ~BundleMgr() = default;

    static void ForgetBuffers() noexcept;
    std::list<ServiceObjectBase>::iterator Find(const std::string& name);
    void Retire(std::list<ServiceObjectBase>& object) noexcept;

    std::list<ServiceObjectBase> m_objects;
    std::list<ServiceObjectBase> m_retired;  // gone, but still pinned by the threads that took them back
};

}  // namespace NS_BUNDLEMGR1
