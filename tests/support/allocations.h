/// Counts heap allocations and makes them fail. In a program that links allocations.cpp, it replaces operator new.
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

/// Returns how many allocations of all threads are not yet freed.
[[nodiscard]] std::ptrdiff_t LiveAllocations() noexcept;

/// Whether the allocations after a failed one fail too. If they work again, code that goes on after the failure may
/// take incomplete data for an answer.
enum class Shortage { STAYS, PASSES };

inline constexpr std::array<Shortage, 2> SHORTAGES{Shortage::STAYS, Shortage::PASSES};

/// While it lives, the first `spared` allocations of the calling thread work and the next one throws std::bad_alloc;
/// with `Shortage::STAYS`, each later one throws too.
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
