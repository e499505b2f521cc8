#pragma once

#include <atomic>

class ACE_Recursive_Thread_Mutex;

namespace NS_UTIL::NS_FRAME {

/// Holds the process-wide lock that guards making and deleting singletons.
class StaticObjectLock {
public:
    StaticObjectLock();
    ~StaticObjectLock();
    StaticObjectLock(const StaticObjectLock&) = delete;
    StaticObjectLock& operator=(const StaticObjectLock&) = delete;

    /// A fork holds the lock, so that the child finds it whole. A recursive mutex does not recognise its owner in the
    /// child, so the child makes it anew and takes it as often as the forking thread held it.
    static void BeforeFork() noexcept;
    static void AfterForkInParent() noexcept;
    static void AfterForkInChild() noexcept;

    /// Returns false if the lock could not be taken.
    [[nodiscard]] bool IsHeld() const { return m_held != nullptr; }

private:
    ACE_Recursive_Thread_Mutex* m_held;
};

/// `Instance()` of a singleton: returns the object in `instance`, after making it by `make` if there is none. Returns
/// null if the lock for making it cannot be taken. If `make` throws, the exception propagates and `instance` stays
/// empty.
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

/// `Destroy()` of a singleton: empties `instance` and passes its object to `dispose`. Does nothing if there is no
/// object or the lock cannot be taken.
template <class Singleton, class Dispose>
void DestroyInstance(std::atomic<Singleton*>& instance, Dispose dispose) {
    if (instance.load(std::memory_order_acquire) == nullptr) {
        return;
    }
    const StaticObjectLock lock;
    if (!lock.IsHeld()) {
        return;
    }
    if (Singleton* const existing = instance.exchange(nullptr, std::memory_order_acq_rel)) {
        dispose(existing);
    }
}

}  // namespace NS_UTIL::NS_FRAME
