#include "support/failinglocks.h"

#include <cerrno>

#include <pthread.h>

namespace {

thread_local bool locksFail = false;

}  // namespace

// Visible, because the linker wraps the name for shared libraries too, where a sanitizer left it open in them.
#pragma GCC visibility push(default)
extern "C" {

int __real_pthread_mutex_lock(pthread_mutex_t* mutex);
int __wrap_pthread_mutex_lock(pthread_mutex_t* mutex);

int __wrap_pthread_mutex_lock(pthread_mutex_t* mutex) {
    return locksFail ? EINVAL : __real_pthread_mutex_lock(mutex);
}

}  // extern "C"
#pragma GCC visibility pop

namespace NS_TEST {

FailingLocks::FailingLocks() noexcept {
    locksFail = true;
}

FailingLocks::~FailingLocks() {
    locksFail = false;
}

}  // namespace NS_TEST
