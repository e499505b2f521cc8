/// Counts locks taken and exceptions thrown. In a program that links calls.cpp, it replaces those functions of the
/// system, unless a sanitizer replaces them already.
#pragma once

#include <cstddef>

namespace NS_TEST {

/// Counts while it lives, in the calling thread.
class CallCount {
public:
    CallCount() noexcept;
    /// Mutexes and read-write locks that were taken or tried.
    [[nodiscard]] std::size_t GetLocks() const noexcept;
    [[nodiscard]] std::size_t GetThrows() const noexcept;

    /// Whether anything is counted.
    [[nodiscard]] static bool IsPossible() noexcept;

private:
    std::size_t m_locksBefore;
    std::size_t m_throwsBefore;
};

}  // namespace NS_TEST
