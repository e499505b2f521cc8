#include "support/failinglocks.h"

#include <cerrno>

#include <pthread.h>

namespace {

thread_local bool locksFail = false;

}  // namespace

extern "C" {

int __real_pthread_mutex_lock(pthread_mutex_t* mutex);
int __wrap_pthread_mutex_lock(pthread_mutex_t* mutex);

int __wrap_pthread_mutex_lock(pthread_mutex_t* mutex) {
    return locksFail ? EINVAL : __real_pthread_mutex_lock(mutex);
}

}  // extern "C"

namespace NS_TEST {

FailingLocks::FailingLocks() noexcept {
    locksFail = true;
}

FailingLocks::~FailingLocks() {
    locksFail = false;
}

}  // namespace NS_TEST
