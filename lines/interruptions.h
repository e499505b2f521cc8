/// The signals by which somebody ends the process before it has finished, and the files that it must not leave then.
#pragma once

#include <cstddef>

namespace NS_KX {

/// While one lives, no signal from outside that can be caught ends the process, whichever thread it reaches: for short
/// work that would leave files. Such a signal takes effect when the last one is gone. A signal that the process ignores
/// or handles itself is left alone, and so is a fault of its own.
class InterruptionsWait {
public:
    InterruptionsWait();
    ~InterruptionsWait();
    InterruptionsWait(const InterruptionsWait&) = delete;
    InterruptionsWait& operator=(const InterruptionsWait&) = delete;
};

/// A file that such a signal removes, as long as this lives. Make one while interruptions wait.
class RemovedWhenInterrupted {
public:
    /// `folder` is a descriptor, and stays open meanwhile. Throws `Failure` with `Cause::OUTPUT` when too many files
    /// are noted already.
    RemovedWhenInterrupted(int folder, const char* name);
    ~RemovedWhenInterrupted();
    RemovedWhenInterrupted(const RemovedWhenInterrupted&) = delete;
    RemovedWhenInterrupted& operator=(const RemovedWhenInterrupted&) = delete;

private:
    std::size_t m_place;
};

}  // namespace NS_KX
