#pragma once

namespace NS_BUNDLEMGR1 {

/// Releases all pins but those of the calling thread: in a child process, where the other threads are not.
void ReleasePinsOfOtherThreads() noexcept;

}  // namespace NS_BUNDLEMGR1
