#include "support/calls.h"

#include <dlfcn.h>
#include <pthread.h>

#include "support/scale.h"

namespace {

thread_local std::size_t locks = 0;
thread_local std::size_t throws = 0;

}  // namespace

namespace NS_TEST {

CallCount::CallCount() noexcept : m_locksBefore(locks), m_throwsBefore(throws) {}

std::size_t CallCount::GetLocks() const noexcept {
    return locks - m_locksBefore;
}

std::size_t CallCount::GetThrows() const noexcept {
    return throws - m_throwsBefore;
}

}  // namespace NS_TEST

#ifdef KX_TEST_SANITIZED

bool NS_TEST::CallCount::IsPossible() noexcept {
    return false;
}

#else

bool NS_TEST::CallCount::IsPossible() noexcept {
    return true;
}

namespace {

// Returns the function that the program would call without this file.
template <class Function>
Function* Original(const char* name, Function* /*ofThisType*/) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

// Visible, so that the libraries find them first.
#pragma GCC visibility push(default)
extern "C" {

int pthread_mutex_lock(pthread_mutex_t* mutex) noexcept {
    ++locks;
    return Original("pthread_mutex_lock", &pthread_mutex_lock)(mutex);
}
int pthread_mutex_trylock(pthread_mutex_t* mutex) noexcept {
    ++locks;
    return Original("pthread_mutex_trylock", &pthread_mutex_trylock)(mutex);
}
int pthread_rwlock_rdlock(pthread_rwlock_t* lock) noexcept {
    ++locks;
    return Original("pthread_rwlock_rdlock", &pthread_rwlock_rdlock)(lock);
}
int pthread_rwlock_wrlock(pthread_rwlock_t* lock) noexcept {
    ++locks;
    return Original("pthread_rwlock_wrlock", &pthread_rwlock_wrlock)(lock);
}

[[noreturn]] void __cxa_throw(void* object, void* type, void (*destructor)(void*));
void __cxa_throw(void* object, void* type, void (*destructor)(void*)) {
    ++throws;
    Original("__cxa_throw", &__cxa_throw)(object, type, destructor);
    __builtin_unreachable();
}

}  // extern "C"
#pragma GCC visibility pop

#endif
