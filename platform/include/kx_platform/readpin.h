/// How services and configuration items are published to the threads that read them.
///
/// The decision. Whatever a conversion reads from the platform (the buffered interface of a service, the value of a
/// configuration item) hangs on one std::atomic pointer. A reader writes the pointer's value into a word of its own
/// (it *pins* it), looks whether the pointer is still the same, and uses what it points to until it clears its word.
/// To remove something, first the pointer is changed, then the words of all threads are looked through; the thing is
/// freed, or its owner is let free it, only when no word names it any more.
///
/// What follows from it:
///  - A reader takes no lock and writes only to its own cache line. With a std::shared_mutex held in the place of each
///    pin, PortIndex2ResID takes a third more time on one thread and five times as much on each of two. Only after a
///    service came or went does a reader's next use search the registry anew, once, under the registry's lock.
///  - A writer waits only for those threads that are inside the very service which it takes away.
///  - Everything is std::atomic, and what decides (pin, look again; take away, look for pins) is sequentially
///    consistent, so that ThreadSanitizer can follow it.
///  - A configuration number fits into one word and needs no pin at all (`ConfigItem::GetInt`).
#pragma once

#include <atomic>

#include <kx_platform/export.h>

namespace NS_BUNDLEMGR1 {

/// Keeps one thing alive for the calling thread. Use it as a local variable only: pins of a thread are released in the
/// reverse order in which they were made, on the thread that made them.
class KX_PLATFORM_API ReadPin {
public:
    /// Takes a free word of the calling thread, at any depth of nesting. A thread's first pin, and every twelfth that
    /// is nested, may allocate and throws std::bad_alloc when memory is exhausted; the others throw nothing.
    ReadPin();
    ~ReadPin();
    ReadPin(const ReadPin&) = delete;
    ReadPin& operator=(const ReadPin&) = delete;

    /// Pins what `source` points to now and returns it; null pins nothing.
    template <class Thing>
    Thing* Protect(const std::atomic<Thing*>& source) noexcept {
        Thing* thing = source.load(std::memory_order_acquire);
        if (thing == nullptr) {
            return nullptr;
        }
        do {
            Pin(thing);
            Thing* const now = source.load();
            if (now == thing) {
                return thing;
            }
            thing = now;
        } while (thing != nullptr);
        Pin(nullptr);
        return nullptr;
    }

    /// Pins a `thing` that cannot go away at this moment (the caller holds the lock under which it would be taken
    /// away).
    void Pin(const void* thing) noexcept { m_word->store(thing); }

    /// Whether any thread, the calling one included, has pinned `thing`.
    [[nodiscard]] static bool IsPinned(const void* thing) noexcept;

    /// Waits until no other thread has pinned `thing`, which nobody can reach any more. The calling thread's own pins
    /// do not count. When the calling thread is itself inside a service, threads that wait here from inside a service
    /// do not count either, so that two services which take each other away do not wait for one another for ever.
    static void WaitUntilReleased(const void* thing) noexcept;

private:
    std::atomic<const void*>* m_word;
};

}  // namespace NS_BUNDLEMGR1
