#pragma once

#include <atomic>

class ACE_Recursive_Thread_Mutex;

namespace NS_UTIL::NS_FRAME {

/// Holds the process-wide lock under which singletons are made and deleted.
class StaticObjectLock {
public:
    StaticObjectLock();
    ~StaticObjectLock();
    StaticObjectLock(const StaticObjectLock&) = delete;
    StaticObjectLock& operator=(const StaticObjectLock&) = delete;

    /// False when the lock could not be taken.
    [[nodiscard]] bool IsHeld() const { return m_held != nullptr; }

private:
    ACE_Recursive_Thread_Mutex* m_held;
};

/// `Instance()` of a singleton: what instance holds; when that is null, the object that make() allocates. Null when the
/// lock cannot be taken. What make throws passes through, and no instance is left.
template <class Singleton, class Make>
Singleton* GetInstance(std::atomic<Singleton*>& instance, Make make) {
    Singleton* existing = instance.load(std::memory_order_acquire);
    if (existing != nullptr) {
        return existing;
    }
    const StaticObjectLock lock;
    if (!lock.IsHeld()) {
        return existing;
    }
    existing = instance.load(std::memory_order_acquire);
    if (existing == nullptr) {
        existing = make();
        instance.store(existing, std::memory_order_release);
    }
    return existing;
}

/// `Destroy()` of a singleton: hands the object to dispose, if there is one and the lock can be taken.
template <class Singleton, class Dispose>
void DestroyInstance(std::atomic<Singleton*>& instance, Dispose dispose) {
    if (instance.load(std::memory_order_acquire) == nullptr) {
        return;
    }
    const StaticObjectLock lock;
    if (!lock.IsHeld()) {
        return;
    }
    if (Singleton* const existing = instance.load(std::memory_order_acquire)) {
        dispose(existing);
        instance.store(nullptr, std::memory_order_release);
    }
}

}  // namespace NS_UTIL::NS_FRAME
