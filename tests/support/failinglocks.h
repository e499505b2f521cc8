/// Locks that fail. A program that uses them links the library's objects instead of the shared library, and
/// `kx_test_failinglocks` (tests/CMakeLists.txt). Locks in shared libraries do not fail.
#pragma once

#include <cerrno>
#include <cstddef>
#include <functional>

namespace NS_TEST {

/// While it lives, the thread that made it can take no lock: no mutex, no read-write lock for writing, and not the lock
/// of singletons. Test assertions take locks too, so make none meanwhile.
class FailingLocks {
public:
    /// The error with which locks fail.
    static constexpr int ERROR = EDEADLK;

    FailingLocks() noexcept;
    /// Runs `meanwhile` before a lock fails. It may take locks, and stands for another thread that was faster.
    explicit FailingLocks(std::function<void()> meanwhile) noexcept;
    ~FailingLocks();
    FailingLocks(const FailingLocks&) = delete;
    FailingLocks& operator=(const FailingLocks&) = delete;

    /// How many locks failed.
    [[nodiscard]] std::size_t GetFailed() const noexcept { return m_failed; }
    /// How many locks were released meanwhile.
    [[nodiscard]] std::size_t GetReleased() const noexcept { return m_released; }

    /// The wrapped functions of the system call these: to learn whether to fail, and to report that a lock is released.
    static bool Fail();
    static void CountRelease() noexcept;

private:
    static thread_local FailingLocks* current;

    std::function<void()> m_meanwhile;
    std::size_t m_failed = 0;
    std::size_t m_released = 0;
};

/// While it lives, releasing a read-write lock on the thread that made it works, but reports an error.
class FailingReleases {
public:
    static constexpr int ERROR = EPERM;

    FailingReleases() noexcept;
    ~FailingReleases();
    FailingReleases(const FailingReleases&) = delete;
    FailingReleases& operator=(const FailingReleases&) = delete;
};

}  // namespace NS_TEST
