// What becomes of the platform when the process forks while its threads use it (`readpin.h` says what holds then).
#include "forks.h"

#include <pthread.h>

#include <kx_platform/bundlemgr.h>
#include <kx_platform/configitems.h>
#include <kx_platform/selfutilcommon.h>

namespace NS_BUNDLEMGR1 {

// The locks are held while the process forks: what they guard is whole in the child, and no thread that the child does
// not have holds them there.
class ForkHandlers {
public:
    // Makes the singletons too: a thread that is about to make one would leave it half made in the child.
    ForkHandlers() {
        BundleMgr::Instance();
        CorbaConfigItems::Instance();
        NS_UTIL::SelfUtilCommon::Instance();
        pthread_atfork(BeforeFork, InParent, InChild);
    }

private:
    static void BeforeFork() {
        CorbaConfigItems::Instance()->m_mutex.lock();
        _g_actualmutex.lock();
    }

    static void InParent() {
        _g_actualmutex.unlock();
        CorbaConfigItems::Instance()->m_mutex.unlock();
    }

    static void InChild() {
        ReleasePinsOfOtherThreads();
        InParent();
    }
};

namespace {

const ForkHandlers forkHandlers;

}  // namespace

}  // namespace NS_BUNDLEMGR1
