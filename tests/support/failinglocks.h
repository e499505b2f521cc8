/// Locks that fail. A program that uses them is made of the library's objects instead of linking it, and links
/// `kx_test_failinglocks` (tests/CMakeLists.txt); what lies in shared libraries is not affected.
#pragma once

#include <cerrno>
#include <cstddef>
#include <functional>

namespace NS_TEST {

/// While it lives, no lock can be taken on the thread that made it: no mutex, no read-write lock for writing, and not
/// the lock of singletons. Assertions of tests take locks too, so make none meanwhile.
class FailingLocks {
public:
    /// With which locks fail.
    static constexpr int ERROR = EDEADLK;

    FailingLocks() noexcept;
    /// Before a lock fails, `meanwhile` runs, which may take locks: what another thread may have done by then.
    explicit FailingLocks(std::function<void()> meanwhile) noexcept;
    ~FailingLocks();
    FailingLocks(const FailingLocks&) = delete;
    FailingLocks& operator=(const FailingLocks&) = delete;

    /// How many locks failed.
    [[nodiscard]] std::size_t GetFailed() const noexcept { return m_failed; }
    /// How many locks were released all the same.
    [[nodiscard]] std::size_t GetReleased() const noexcept { return m_released; }

    /// What the wrapped functions of the system call: whether to fail, and that a lock is released.
    static bool Fail();
    static void CountRelease() noexcept;

private:
    static thread_local FailingLocks* current;

    std::function<void()> m_meanwhile;
    std::size_t m_failed = 0;
    std::size_t m_released = 0;
};

/// While it lives, releasing a read-write lock on the thread that made it releases it, and yet reports an error.
class FailingReleases {
public:
    static constexpr int ERROR = EPERM;

    FailingReleases() noexcept;
    ~FailingReleases();
    FailingReleases(const FailingReleases&) = delete;
    FailingReleases& operator=(const FailingReleases&) = delete;
};

}  // namespace NS_TEST
