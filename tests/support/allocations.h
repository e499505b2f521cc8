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

/// While it lives, every allocation of the calling thread throws std::bad_alloc.
class FailingAllocations {
public:
    FailingAllocations() noexcept;
    ~FailingAllocations();
    FailingAllocations(const FailingAllocations&) = delete;
    FailingAllocations& operator=(const FailingAllocations&) = delete;
};

}  // namespace NS_TEST
