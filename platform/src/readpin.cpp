#include <algorithm>
#include <array>
#include <chrono>
#include <thread>

#include <kx_platform/readpin.h>

#include "forks.h"

namespace NS_BUNDLEMGR1 {

namespace {

constexpr std::size_t WORDS_IN_BLOCK = 12;

// The words of one thread, on cache lines of their own: sharing one with another thread's pins slows both down. Blocks
// are never freed: a thread that ends leaves its blocks to the next one.
struct alignas(64) Block {
    std::array<std::atomic<const void*>, WORDS_IN_BLOCK> words{};
    std::atomic<Block*> owner{nullptr};  // the first block of the thread that has it; null if none has
    std::atomic<bool> waiting{false};    // in a first block: the thread waits in WaitUntilReleased inside a service
    Block* next = nullptr;               // in the list of all blocks
    Block* outer = nullptr;              // the owner's block that was full when this one was taken
};

std::atomic<Block*> allBlocks{nullptr};

// What a thread knows of its own blocks. Constant-initialised, and in the initial-exec model, so that reaching it needs
// neither an initialisation check nor a call.
struct ThreadWords {
    Block* first = nullptr;
    Block* current = nullptr;
    std::size_t used = 0;  // of the current block
    bool ending = false;   // the thread's locals are being destroyed: blocks are returned with their last pin
};
[[gnu::tls_model("initial-exec")]] thread_local constinit ThreadWords threadWords;

Block* TakeFreeBlock(Block* owner) {
    for (Block* block = allBlocks.load(); block != nullptr; block = block->next) {
        Block* nobody = nullptr;
        // Looked at first, since an exchange is expensive even when it fails.
        if (block->owner.load() == nullptr &&
            block->owner.compare_exchange_strong(nobody, owner != nullptr ? owner : block)) {
            return block;
        }
    }
    auto* const block = new Block;
    block->owner.store(owner != nullptr ? owner : block);
    block->next = allBlocks.load();
    while (!allBlocks.compare_exchange_weak(block->next, block)) {}
    return block;
}

void ReturnFirstBlock() noexcept {
    threadWords.first->owner.store(nullptr);
    threadWords.first = nullptr;
    threadWords.current = nullptr;
    threadWords.used = 0;
}

// Returns the thread's first block when the thread ends. Destructors of other thread-local objects may pin after that.
struct BlockReturner {
    bool armed = false;
    ~BlockReturner() {
        if (threadWords.first != nullptr && threadWords.used == 0) {
            ReturnFirstBlock();
        }
        threadWords.ending = true;
    }
};
thread_local BlockReturner blockReturner;

void EnterBlock() {
    if (threadWords.first == nullptr) {
        if (!threadWords.ending) {
            blockReturner.armed = true;  // any use of it registers its destructor
        }
        threadWords.first = TakeFreeBlock(nullptr);
        threadWords.current = threadWords.first;
    } else {
        Block* const block = TakeFreeBlock(threadWords.first);
        block->outer = threadWords.current;
        threadWords.current = block;
    }
    threadWords.used = 0;
}

void LeaveBlock() noexcept {
    Block* const left = threadWords.current;
    threadWords.current = left->outer;
    threadWords.used = WORDS_IN_BLOCK;
    left->outer = nullptr;
    left->owner.store(nullptr);
}

// Whether `block` pins `thing` for an owner that the calling thread must wait for. `insideService`: it waits inside a
// service.
bool HoldsUp(const Block& block, const void* thing, bool insideService) noexcept {
    for (const auto& word : block.words) {
        if (word.load() == thing) {
            const Block* const owner = block.owner.load();
            return !(insideService && owner != nullptr && owner->waiting.load());
        }
    }
    return false;
}

bool ThreadIsInsideService() noexcept {
    const Block* const block = threadWords.first;
    if (block == nullptr) {
        return false;
    }
    return std::any_of(block->words.begin(), block->words.end(),
                       [](const auto& word) { return word.load(std::memory_order_relaxed) != nullptr; });
}

}  // namespace

void ReleasePinsOfOtherThreads() noexcept {
    for (Block* block = allBlocks.load(); block != nullptr; block = block->next) {
        if (block->owner.load() == nullptr || block->owner.load() == threadWords.first) {
            continue;
        }
        for (auto& word : block->words) {
            word.store(nullptr);
        }
        block->waiting.store(false);
        block->outer = nullptr;
        block->owner.store(nullptr);
    }
}

ReadPin::ReadPin() {
    if (threadWords.first == nullptr || threadWords.used == WORDS_IN_BLOCK) {
        EnterBlock();
    }
    m_word = &threadWords.current->words[threadWords.used++];
}

ReadPin::~ReadPin() {
    // No decision follows from it, so it needs no fence.
    m_word->store(nullptr, std::memory_order_release);
    if (--threadWords.used == 0) {
        if (threadWords.current != threadWords.first) {
            LeaveBlock();
        } else if (threadWords.ending) {
            ReturnFirstBlock();
        }
    }
}

bool ReadPin::IsPinned(const void* thing) noexcept {
    for (const Block* block = allBlocks.load(); block != nullptr; block = block->next) {
        for (const auto& word : block->words) {
            if (word.load() == thing) {
                return true;
            }
        }
    }
    return false;
}

void ReadPin::WaitUntilReleased(const void* thing) noexcept {
    Block* const own = threadWords.first;
    const bool insideService = ThreadIsInsideService();
    if (insideService) {
        own->waiting.store(true);
    }
    for (const Block* block = allBlocks.load(); block != nullptr; block = block->next) {
        if (own != nullptr && block->owner.load() == own) {
            continue;
        }
        constexpr int PATIENCE = 64;
        for (int round = 0; HoldsUp(*block, thing, insideService); ++round) {
            if (round < PATIENCE) {
                std::this_thread::yield();
            } else {
                std::this_thread::sleep_for(std::chrono::microseconds{100});
            }
        }
    }
    if (insideService) {
        own->waiting.store(false);
    }
}

}  // namespace NS_BUNDLEMGR1
