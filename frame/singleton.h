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

    /// What a fork does with the lock: it is held meanwhile. In the child, where a recursive mutex does not know its
    /// owner any more, it is made anew and taken again as often as the forking thread has it.
    static void BeforeFork() noexcept;
    static void AfterForkInParent() noexcept;
    static void AfterForkInChild() noexcept;

    /// False when the lock could not be taken.
    [[nodiscard]] bool IsHeld() const { return m_held != nullptr; }

private:
    ACE_Recursive_Thread_Mutex* m_held;
};

/// `Instance()` of a singleton: returns the object in `instance`; if there is none, stores and returns the one made by
/// `make`. Null when that needs the lock and the lock cannot be taken. Exceptions thrown by `make` propagate, and no
/// instance is left.
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

/// `Destroy()` of a singleton: empties `instance` and passes the object that was in it to `dispose`; does nothing when
/// there is no object or the lock cannot be taken.
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
