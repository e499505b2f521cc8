#include "support/failinglocks.h"

#include <utility>

#include <pthread.h>

using NS_TEST::FailingLocks;
using NS_TEST::FailingReleases;

namespace {

thread_local bool releasesFail = false;

}  // namespace

// Visible: a sanitizer may leave these names open in shared libraries, and the linker wraps them there too. The long
// names are ACE_OS::mutex_lock and ACE_OS::mutex_unlock.
#pragma GCC visibility push(default)
extern "C" {

int __real_pthread_mutex_lock(pthread_mutex_t* mutex);
int __real_pthread_mutex_unlock(pthread_mutex_t* mutex);
int __real_pthread_rwlock_wrlock(pthread_rwlock_t* lock);
int __real_pthread_rwlock_unlock(pthread_rwlock_t* lock);
int __real__ZN6ACE_OS10mutex_lockEP15pthread_mutex_t(pthread_mutex_t* mutex);
int __real__ZN6ACE_OS12mutex_unlockEP15pthread_mutex_t(pthread_mutex_t* mutex);

int __wrap_pthread_mutex_lock(pthread_mutex_t* mutex);
int __wrap_pthread_mutex_unlock(pthread_mutex_t* mutex);
int __wrap_pthread_rwlock_wrlock(pthread_rwlock_t* lock);
int __wrap_pthread_rwlock_unlock(pthread_rwlock_t* lock);
int __wrap__ZN6ACE_OS10mutex_lockEP15pthread_mutex_t(pthread_mutex_t* mutex);
int __wrap__ZN6ACE_OS12mutex_unlockEP15pthread_mutex_t(pthread_mutex_t* mutex);

int __wrap_pthread_mutex_lock(pthread_mutex_t* mutex) {
    return FailingLocks::Fail() ? FailingLocks::ERROR : __real_pthread_mutex_lock(mutex);
}

int __wrap_pthread_mutex_unlock(pthread_mutex_t* mutex) {
    FailingLocks::CountRelease();
    return __real_pthread_mutex_unlock(mutex);
}

int __wrap_pthread_rwlock_wrlock(pthread_rwlock_t* lock) {
    return FailingLocks::Fail() ? FailingLocks::ERROR : __real_pthread_rwlock_wrlock(lock);
}

int __wrap_pthread_rwlock_unlock(pthread_rwlock_t* lock) {
    FailingLocks::CountRelease();
    const int error = __real_pthread_rwlock_unlock(lock);
    return releasesFail ? FailingReleases::ERROR : error;
}

int __wrap__ZN6ACE_OS10mutex_lockEP15pthread_mutex_t(pthread_mutex_t* mutex) {
    if (FailingLocks::Fail()) {
        errno = FailingLocks::ERROR;
        return -1;
    }
    return __real__ZN6ACE_OS10mutex_lockEP15pthread_mutex_t(mutex);
}

int __wrap__ZN6ACE_OS12mutex_unlockEP15pthread_mutex_t(pthread_mutex_t* mutex) {
    FailingLocks::CountRelease();
    return __real__ZN6ACE_OS12mutex_unlockEP15pthread_mutex_t(mutex);
}

}  // extern "C"
#pragma GCC visibility pop

namespace NS_TEST {

thread_local FailingLocks* FailingLocks::current = nullptr;

FailingLocks::FailingLocks() noexcept : FailingLocks(std::function<void()>()) {}

FailingLocks::FailingLocks(std::function<void()> meanwhile) noexcept : m_meanwhile(std::move(meanwhile)) {
    current = this;
}

FailingLocks::~FailingLocks() {
    current = nullptr;
}

bool FailingLocks::Fail() {
    FailingLocks* const failing = current;
    if (failing == nullptr) {
        return false;
    }
    if (failing->m_meanwhile) {
        current = nullptr;
        failing->m_meanwhile();
        current = failing;
    }
    ++failing->m_failed;
    return true;
}

void FailingLocks::CountRelease() noexcept {
    if (current != nullptr) {
        ++current->m_released;
    }
}

FailingReleases::FailingReleases() noexcept {
    releasesFail = true;
}

FailingReleases::~FailingReleases() {
    releasesFail = false;
}

}  // namespace NS_TEST
