#pragma once

namespace NS_TEST {

/// While it lives, no mutex can be locked on the thread that made it. For programs that link failinglocks.cpp with
/// -Wl,--wrap=pthread_mutex_lock; what lies in shared libraries is not affected.
class FailingLocks {
public:
    FailingLocks() noexcept;
    ~FailingLocks();
    FailingLocks(const FailingLocks&) = delete;
    FailingLocks& operator=(const FailingLocks&) = delete;
};

}  // namespace NS_TEST
