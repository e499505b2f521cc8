#pragma once

#include <atomic>
#include <cerrno>
#include <new>

#include <ace/RW_Thread_Mutex.h>
#include <ace/Thread_Mutex.h>
#include <pthread.h>

namespace NS_UTIL {

/// Calls `load` once, by double-checked locking. Does nothing if `loaded` is set. Otherwise takes `lock`, which is of
/// one of the types below, checks `loaded` again, calls `load` and sets `loaded`. If the lock cannot be taken, goes on
/// without it. Exceptions thrown by `load` propagate; the lock is released, and the next call tries again.
template <class Lock, class Load>
void LoadOnce(std::atomic<bool>& loaded, Lock lock, Load load) {
    if (loaded.load(std::memory_order_acquire)) {
        return;
    }
    const struct Holder {
        explicit Holder(Lock& taken) : held(taken.Take() ? &taken : nullptr) {}
        ~Holder() {
            if (held != nullptr) {
                held->Release();
            }
        }
        Holder(const Holder&) = delete;
        Holder& operator=(const Holder&) = delete;
        Lock* held;
    } holder(lock);
    if (!loaded.load(std::memory_order_acquire)) {
        load();
        loaded.store(true, std::memory_order_release);
    }
}

/// Holds the `lock` of a table that is not loaded yet while the process forks: so the child, which has no other thread,
/// finds the lock free, and the table not begun or loaded.
class LockOverFork {
public:
    template <class Lock>
    void BeforeFork(const std::atomic<bool>& loaded, Lock lock) {
        m_isHeld.store(!loaded.load() && lock.Take());
    }

    template <class Lock>
    void AfterForkInParent(Lock lock) {
        if (m_isHeld.exchange(false)) {
            lock.Release();
        }
    }

    template <class Lock>
    void AfterForkInChild(Lock lock) {
        if (m_isHeld.exchange(false)) {
            lock.ReleaseInChild();
        }
    }

private:
    std::atomic<bool> m_isHeld{false};
};

// Each table has a lock of its own. The kinds differ on purpose: bundles rely on how each of them fails.

/// A mutex, as `LoadOnce` takes it.
struct MutexLock {
    ACE_Thread_Mutex& mutex;

    bool Take() const { return mutex.acquire() != -1; }
    void Release() const { mutex.release(); }
    void ReleaseInChild() const { Release(); }
};

/// A reader-writer mutex taken for writing.
struct WriteLock {
    ACE_RW_Thread_Mutex& mutex;

    bool Take() const { return mutex.acquire_write() != -1; }
    void Release() const { mutex.release(); }
    // It belongs to the forking thread of the parent, which nobody is in the child.
    void ReleaseInChild() const {
        Release();  // for the thread sanitizer
        new (&mutex) ACE_RW_Thread_Mutex;
    }
};

/// A POSIX read-write lock taken for writing; a failure sets errno.
struct PosixWriteLock {
    pthread_rwlock_t& lock;

    bool Take() const { return NoError(pthread_rwlock_wrlock(&lock)); }
    void Release() const { NoError(pthread_rwlock_unlock(&lock)); }
    void ReleaseInChild() const {  // as above
        Release();
        lock = PTHREAD_RWLOCK_INITIALIZER;
    }

    static bool NoError(int error) {
        if (error != 0) {
            errno = error;
        }
        return error == 0;
    }
};

}  // namespace NS_UTIL
