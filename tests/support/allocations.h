/// Counting and failing of heap allocations. A program that links allocations.cpp has its operator new replaced.
#pragma once

#include <cstddef>

namespace NS_TEST {

/// Counts the allocations of the calling thread while it lives.
class AllocationCount {
public:
    AllocationCount() noexcept;
    [[nodiscard]] std::size_t Get() const noexcept;

private:
    std::size_t m_before;
};

/// How many allocations of all threads have not been freed.
[[nodiscard]] std::ptrdiff_t LiveAllocations() noexcept;

/// While it lives, every allocation of the calling thread throws std::bad_alloc, but for the first `spared` ones.
class FailingAllocations {
public:
    explicit FailingAllocations(std::size_t spared = 0) noexcept;
    ~FailingAllocations();
    FailingAllocations(const FailingAllocations&) = delete;
    FailingAllocations& operator=(const FailingAllocations&) = delete;
};

}  // namespace NS_TEST
