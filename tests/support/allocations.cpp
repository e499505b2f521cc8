#include "support/allocations.h"

#include <cstdlib>
#include <new>

namespace {

thread_local std::size_t allocations = 0;
thread_local bool allocationsFail = false;

void* Allocate(std::size_t size) {
    ++allocations;
    void* const memory = allocationsFail ? nullptr : std::malloc(size == 0 ? 1 : size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

void* AllocateAligned(std::size_t size, std::align_val_t alignment) {
    ++allocations;
    const auto unit = static_cast<std::size_t>(alignment);
    void* const memory = allocationsFail ? nullptr : std::aligned_alloc(unit, (size + unit - 1) / unit * unit);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
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
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::align_val_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::align_val_t) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t, std::align_val_t) noexcept {
    std::free(memory);
}

namespace NS_TEST {

AllocationCount::AllocationCount() noexcept : m_before(allocations) {}

std::size_t AllocationCount::Get() const noexcept {
    return allocations - m_before;
}

FailingAllocations::FailingAllocations() noexcept {
    allocationsFail = true;
}

FailingAllocations::~FailingAllocations() {
    allocationsFail = false;
}

}  // namespace NS_TEST
