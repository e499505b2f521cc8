#include "forks.h"

#include <atomic>
#include <chrono>
#include <thread>

#include <pthread.h>

namespace NS_STANDALONE {

namespace {

std::mutex configurationMutex;
std::mutex loggersMutex;
std::mutex recordsMutex;
RecordsFlush* recordsToFlush = nullptr;  // guarded by recordsMutex

// Counters instead of a shared mutex: in the child, the mutex would belong to a thread of the parent that the child
// does not have.
std::atomic<int> inventoryUsers{0};
std::atomic<int> forks{0};  // waiting or in progress

template <class Condition>
void WaitUntil(Condition isTrue) noexcept {
    while (!isTrue()) {
        std::this_thread::sleep_for(std::chrono::microseconds{100});
    }
}

void BeforeFork() {
    forks.fetch_add(1);
    WaitUntil([] { return inventoryUsers.load() == 0; });
    configurationMutex.lock();
    loggersMutex.lock();
    recordsMutex.lock();
    if (recordsToFlush != nullptr) {
        recordsToFlush->Flush();
    }
}

void Unlock() {
    recordsMutex.unlock();
    loggersMutex.unlock();
    configurationMutex.unlock();
}

void AfterForkInParent() {
    Unlock();
    forks.fetch_sub(1);
}

void AfterForkInChild() {
    Unlock();
    inventoryUsers.store(0);  // a thread of the parent may have counted itself just before it saw the fork
    forks.store(0);
}

[[maybe_unused]] const int atFork = pthread_atfork(BeforeFork, AfterForkInParent, AfterForkInChild);

}  // namespace

std::mutex& ConfigurationMutex() noexcept {
    return configurationMutex;
}

std::mutex& LoggersMutex() noexcept {
    return loggersMutex;
}

std::mutex& RecordsMutex() noexcept {
    return recordsMutex;
}

void FlushBeforeFork(RecordsFlush* records) noexcept {
    const std::lock_guard lock(recordsMutex);
    recordsToFlush = records;
}

InventoryFileUse::InventoryFileUse() noexcept {
    inventoryUsers.fetch_add(1);
    while (forks.load() != 0) {
        inventoryUsers.fetch_sub(1);
        WaitUntil([] { return forks.load() == 0; });
        inventoryUsers.fetch_add(1);
    }
}

InventoryFileUse::~InventoryFileUse() {
    inventoryUsers.fetch_sub(1);
}

}  // namespace NS_STANDALONE
