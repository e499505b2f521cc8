#include <algorithm>
#include <cstddef>
#include <new>
#include <utility>

#include <kx_platform/bundlemgr.h>

namespace NS_BUNDLEMGR1 {

std::mutex _g_actualmutex;

namespace {

// Buffers are only ever added, at the front, under _g_actualmutex.
std::atomic<InterfaceBuffer*> allBuffers{nullptr};

}  // namespace

ServiceInterface::~ServiceInterface() = default;

ServiceInterface* ServiceInterface::GetSelf() {
    return this;
}

void ServiceInterface::Release() {}

const char* ServiceInterface::GetName() const {
    return "";
}

int ServiceInterface::GetState() const {
    return 0;
}

void NULLServiceInterface::Release() {
    delete this;
}

const char* NULLServiceInterface::GetName() const {
    return "NULLServiceInterface!";
}

ServiceObjectBase::ServiceObjectBase(std::string name, ServiceInterface* service)
    : m_name(std::move(name)), m_service(service), m_interfaces{{m_name, this}} {}

ServiceObjectBase::~ServiceObjectBase() = default;

std::atomic<void*>* ServiceObjectBase::GetMemory(const void* user) noexcept {
    for (Memory& memory : m_memories) {
        const void* holder = memory.user.load(std::memory_order_acquire);
        if (holder == user || (holder == nullptr && memory.user.compare_exchange_strong(holder, user)) ||
            holder == user) {
            return &memory.word;
        }
    }
    return nullptr;
}

bool InterfaceBuffer::First(ReadPin& pin, Entry& entry) const noexcept {
    while (true) {
        const std::uint64_t emptied = m_emptied.load();
        const bool isSearched = m_searched.load();
        entry = {pin.Protect(m_object), nullptr};
        if (entry.object != nullptr) {
            entry.interface = m_interface.load();
        }
        if (m_emptied.load() == emptied) {  // else object and interface may belong to different services
            return entry.object != nullptr || isSearched;
        }
    }
}

void InterfaceBuffer::Append(const Entry& entry) noexcept {
    if (m_object.load() == nullptr) {
        m_interface.store(entry.interface);
        m_object.store(entry.object);
    }
}

void InterfaceBuffer::Forget() noexcept {
    // Cleared before counting: a reader that saw the old flag, and then no object, must also see a new count.
    m_searched.store(false);
    m_emptied.fetch_add(1);
    m_object.store(nullptr);
}

InterfaceBuffer* CheckIFBuf(std::string_view name) {
    const auto find = [name] {
        InterfaceBuffer* buffer = allBuffers.load(std::memory_order_acquire);
        while (buffer != nullptr && buffer->m_name != name) {
            buffer = buffer->m_next;
        }
        return buffer;
    };
    if (InterfaceBuffer* const buffer = find()) {
        return buffer;
    }
    const std::lock_guard lock(_g_actualmutex);
    if (InterfaceBuffer* const buffer = find()) {
        return buffer;
    }
    auto* const made = new InterfaceBuffer(std::string(name));
    made->m_next = allBuffers.load();
    allBuffers.store(made);
    return made;
}

BundleMgr* BundleMgr::Instance() {
    // Never destroyed: services may call as late as they like. In place: the first call may be a look-up that finds no
    // service, and that has no answer to exhausted memory.
    alignas(BundleMgr) static std::array<std::byte, sizeof(BundleMgr)> place;
    static auto* const instance = new (place.data()) BundleMgr;
    return instance;
}

void BundleMgr::RegisterService(const std::string& name, ServiceInterface* service) {
    std::list<ServiceObjectBase> registered;
    registered.emplace_back(name, service);
    std::list<ServiceObjectBase> replaced;
    {
        const std::lock_guard lock(_g_actualmutex);
        const auto place = Find(name);
        m_objects.splice(place, registered);
        if (place != m_objects.end()) {
            replaced.splice(replaced.end(), m_objects, place);
        }
        ForgetBuffers();
    }
    Retire(replaced);
}

bool BundleMgr::UnregisterService(const std::string& name) {
    std::list<ServiceObjectBase> unregistered;
    {
        const std::lock_guard lock(_g_actualmutex);
        const auto place = Find(name);
        if (place == m_objects.end()) {
            return false;
        }
        unregistered.splice(unregistered.end(), m_objects, place);
        ForgetBuffers();
    }
    Retire(unregistered);
    return true;
}

std::list<ServiceObjectBase>::iterator BundleMgr::Find(const std::string& name) {
    return std::find_if(m_objects.begin(), m_objects.end(),
                        [&](const ServiceObjectBase& known) { return known.GetObjectName() == name; });
}

void BundleMgr::ForgetBuffers() noexcept {
    for (InterfaceBuffer* buffer = allBuffers.load(); buffer != nullptr; buffer = buffer->m_next) {
        buffer->Forget();
    }
}

// Takes over what is no longer registered and frees it once no one uses it: now, unless the calling thread does.
void BundleMgr::Retire(std::list<ServiceObjectBase>& object) noexcept {
    if (!object.empty()) {
        ReadPin::WaitUntilReleased(&object.front());
    }
    const std::lock_guard lock(_g_actualmutex);
    m_retired.splice(m_retired.end(), object);
    m_retired.remove_if([](const ServiceObjectBase& retired) { return !ReadPin::IsPinned(&retired); });
}

}  // namespace NS_BUNDLEMGR1
