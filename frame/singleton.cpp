#include "frame/singleton.h"

#include <ace/OS_NS_Thread.h>
#include <ace/Recursive_Thread_Mutex.h>
#include <ace/Static_Object_Lock.h>

namespace NS_UTIL::NS_FRAME {

StaticObjectLock::StaticObjectLock() : m_held(ACE_Static_Object_Lock::instance()) {
    if (ACE_OS::mutex_lock(&m_held->lock()) != 0) {
        m_held = nullptr;
    }
}

StaticObjectLock::~StaticObjectLock() {
    if (m_held != nullptr) {
        ACE_OS::mutex_unlock(&m_held->lock());
    }
}

}  // namespace NS_UTIL::NS_FRAME
