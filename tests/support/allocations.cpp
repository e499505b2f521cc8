#include "support/allocations.h"

#include <atomic>
#include <cstdlib>
#include <limits>
#include <new>

namespace {

constexpr std::size_t ENDLESS = std::numeric_limits<std::size_t>::max();

thread_local std::size_t allocations = 0;
thread_local std::size_t allocationsSpared = ENDLESS;
thread_local bool isOnlyOneFailing = false;
thread_local bool hasOneFailed = false;
std::atomic<std::ptrdiff_t> live{0};

// Returns what getMemory returns, unless this allocation must fail.
template <class GetMemory>
void* Count(GetMemory getMemory) {
    ++allocations;
    if (allocationsSpared == 0) {
        hasOneFailed = true;
        allocationsSpared = isOnlyOneFailing ? ENDLESS : 0;
        throw std::bad_alloc();
    }
    allocationsSpared -= allocationsSpared == ENDLESS ? 0 : 1;
    void* const memory = getMemory();
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    live.fetch_add(1, std::memory_order_relaxed);
    return memory;
}

void* Allocate(std::size_t size) {
    return Count([size] { return std::malloc(size == 0 ? 1 : size); });
}

void* AllocateAligned(std::size_t size, std::align_val_t alignment) {
    const auto unit = static_cast<std::size_t>(alignment);
    return Count([size, unit] { return std::aligned_alloc(unit, (size + unit - 1) / unit * unit); });
}

void Free(void* memory) noexcept {
    live.fetch_sub(memory != nullptr ? 1 : 0, std::memory_order_relaxed);
    std::free(memory);
}

}  // namespace

void* operator new(std::size_t size) {
    return Allocate(size);
}
void* operator new[](std::size_t size) {
    return Allocate(size);
}
void* operator new(std::size_t size, std::align_val_t alignment) {
    return AllocateAligned(size, alignment);
}
void* operator new[](std::size_t size, std::align_val_t alignment) {
    return AllocateAligned(size, alignment);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept try {
    return Allocate(size);
} catch (const std::bad_alloc&) {
    return nullptr;
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept try {
    return Allocate(size);
} catch (const std::bad_alloc&) {
    return nullptr;
}
void operator delete(void* memory) noexcept {
    Free(memory);
}
void operator delete[](void* memory) noexcept {
    Free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    Free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    Free(memory);
}
void operator delete(void* memory, std::align_val_t) noexcept {
    Free(memory);
}
void operator delete[](void* memory, std::align_val_t) noexcept {
    Free(memory);
}
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept {
    Free(memory);
}
void operator delete[](void* memory, std::size_t, std::align_val_t) noexcept {
    Free(memory);
}

namespace NS_TEST {

AllocationCount::AllocationCount() noexcept : m_before(allocations) {}

std::size_t AllocationCount::Get() const noexcept {
    return allocations - m_before;
}

std::ptrdiff_t LiveAllocations() noexcept {
    return live.load(std::memory_order_relaxed);
}

FailingAllocations::FailingAllocations(std::size_t spared, Shortage shortage) noexcept {
    allocationsSpared = spared;
    isOnlyOneFailing = shortage == Shortage::PASSES;
    hasOneFailed = false;
}

FailingAllocations::~FailingAllocations() {
    allocationsSpared = ENDLESS;
}

bool FailingAllocations::HasOneFailed() const noexcept {
    return hasOneFailed;
}

}  // namespace NS_TEST
