#include "frame/singleton.h"

#include <ace/OS_NS_Thread.h>
#include <ace/Recursive_Thread_Mutex.h>
#include <ace/Static_Object_Lock.h>
#include <pthread.h>

namespace NS_UTIL::NS_FRAME {

namespace {

thread_local constinit int timesHeld = 0;
thread_local constinit bool isHeldForFork = false;

ACE_recursive_thread_mutex_t& Mutex() {
    return ACE_Static_Object_Lock::instance()->lock();
}

}  // namespace

StaticObjectLock::StaticObjectLock() : m_held(ACE_Static_Object_Lock::instance()) {
    if (ACE_OS::mutex_lock(&m_held->lock()) != 0) {
        m_held = nullptr;
    } else {
        ++timesHeld;
    }
}

StaticObjectLock::~StaticObjectLock() {
    if (m_held != nullptr) {
        --timesHeld;
        ACE_OS::mutex_unlock(&m_held->lock());
    }
}

namespace {

[[maybe_unused]] const int atFork = pthread_atfork(StaticObjectLock::BeforeFork, StaticObjectLock::AfterForkInParent,
                                                   StaticObjectLock::AfterForkInChild);

}  // namespace

void StaticObjectLock::BeforeFork() noexcept {
    isHeldForFork = ACE_OS::mutex_lock(&Mutex()) == 0;
}

void StaticObjectLock::AfterForkInParent() noexcept {
    if (isHeldForFork) {
        ACE_OS::mutex_unlock(&Mutex());
    }
}

void StaticObjectLock::AfterForkInChild() noexcept {
    // Fails, since the child's thread is not the owner, but shows the thread sanitizer that the lock is free.
    for (int time = isHeldForFork ? -1 : 0; time < timesHeld; ++time) {
        ACE_OS::mutex_unlock(&Mutex());
    }
    ACE_OS::recursive_mutex_init(&Mutex());
    for (int time = 0; time < timesHeld; ++time) {
        ACE_OS::mutex_lock(&Mutex());
    }
}

}  // namespace NS_UTIL::NS_FRAME
