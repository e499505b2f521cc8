#include "frame/singleton.h"

#include <ace/OS_NS_Thread.h>
#include <ace/Recursive_Thread_Mutex.h>
#include <ace/Static_Object_Lock.h>

namespace NS_UTIL::NS_FRAME {

StaticObjectLock::StaticObjectLock() : m_held(ACE_OS::mutex_lock(&ACE_Static_Object_Lock::instance()->lock()) == 0) {}

StaticObjectLock::~StaticObjectLock() {
    if (m_held) {
        ACE_OS::mutex_unlock(&ACE_Static_Object_Lock::instance()->lock());
    }
}

}  // namespace NS_UTIL::NS_FRAME
