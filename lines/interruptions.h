/// Signals that end the process early, and the files that must not remain then.
#pragma once

#include <cstddef>

namespace NS_KX {

/// Protects short work that would leave files if it were interrupted. While an object of this class lives, no catchable
/// signal from outside ends the process, whichever thread it reaches. The signal takes effect when the last object is
/// gone. Signals that the process ignores or handles itself are left alone, and so are its own faults.
class InterruptionsHeld {
public:
    InterruptionsHeld();
    ~InterruptionsHeld();
    InterruptionsHeld(const InterruptionsHeld&) = delete;
    InterruptionsHeld& operator=(const InterruptionsHeld&) = delete;
};

/// While this lives, such a signal removes the file before it ends the process. Construct it under an
/// `InterruptionsHeld`.
class RemovedWhenInterrupted {
public:
    /// `folder` is a descriptor that must stay open meanwhile. Throws `Failure` with `Cause::OUTPUT` if too many files
    /// are noted already.
    RemovedWhenInterrupted(int folder, const char* name);
    ~RemovedWhenInterrupted();
    RemovedWhenInterrupted(const RemovedWhenInterrupted&) = delete;
    RemovedWhenInterrupted& operator=(const RemovedWhenInterrupted&) = delete;

private:
    std::size_t m_place;
};

}  // namespace NS_KX
