/// Counting and failing of heap allocations. A program that links allocations.cpp has its operator new replaced.
#pragma once

#include <array>
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

/// What becomes of the allocations after one that failed. When others work again, code that goes on in spite of the
/// failure may take what is not whole for an answer.
enum class Shortage { STAYS, PASSES };

inline constexpr std::array<Shortage, 2> SHORTAGES{Shortage::STAYS, Shortage::PASSES};

/// While it lives, an allocation of the calling thread throws std::bad_alloc, but for the first `spared` ones: each, or
/// only one.
class FailingAllocations {
public:
    explicit FailingAllocations(std::size_t spared = 0, Shortage shortage = Shortage::STAYS) noexcept;
    ~FailingAllocations();
    FailingAllocations(const FailingAllocations&) = delete;
    FailingAllocations& operator=(const FailingAllocations&) = delete;

    /// Whether an allocation has failed yet.
    [[nodiscard]] bool HasOneFailed() const noexcept;
};

}  // namespace NS_TEST
