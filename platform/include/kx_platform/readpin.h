/// How services and configuration items are published to the threads that read them: by hazard pointers (M. Michael,
/// "Hazard Pointers: Safe Memory Reclamation for Lock-Free Objects", IEEE TPDS 15(6), 2004).
///
/// Whatever a conversion reads from the platform (the buffered interface of a service, the value of a configuration
/// item) hangs on one std::atomic pointer. A reader writes the pointer's value into a word of its own (it *pins* it),
/// checks that the pointer is still the same, and uses what it points to until it clears its word. To remove something,
/// a writer first changes the pointer and then looks through the words of all threads. It frees the thing, or lets its
/// owner free it, when no word names it any more.
///
/// A library for read-copy-update does not serve: a service may take itself back from inside a call, where its thread
/// is a reader, and waiting for all readers would then wait for the waiting thread itself.
///
/// What follows:
///  - A reader takes no lock and writes only to its own cache line. Only its first use after a service came or went
///    searches the registry, once, under the registry's lock.
///  - A writer waits only for threads that are inside the very service that it takes away.
///  - Everything is std::atomic. What decides (pin, check again; take away, look for pins) is sequentially consistent,
///    so ThreadSanitizer can follow it.
///  - A configuration number fits into one word and needs no pin at all (`ConfigItem::GetInt`).
///
/// Forks. A thread may fork while others use the library, also from inside a service's operation. In the child all of
/// the library works: the pins of threads that the child does not have are released, and those of the forking thread
/// stay. A fork waits for threads that change services or items, load a table or work on an inventory file. What does
/// not work:
///  - A thread that forks while it holds `_g_actualmutex` waits for itself.
///  - vfork, `_Fork` and clone call no handlers: their child may only execute another program.
///  - What another thread had begun is not finished in the child: memory that it was to free stays allocated.
///  - Services of other makers hold their own locks; they must make them usable in the child (pthread_atfork).
#pragma once

#include <atomic>

#include <kx_platform/export.h>

namespace NS_BUNDLEMGR1 {

/// Keeps one thing alive for the calling thread. Use it as a local variable only: pins of a thread are released in the
/// reverse order in which they were made, on the thread that made them.
class KX_PLATFORM_API ReadPin {
public:
    /// Takes a free word of the calling thread, at any depth of nesting. A thread's first pin, and every twelfth nested
    /// one, may allocate and throw std::bad_alloc; the others throw nothing.
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

    /// Pins `thing`, which cannot go away at this moment: the caller holds the lock under which it would be taken away.
    void Pin(const void* thing) noexcept { m_word->store(thing); }

    /// Whether any thread, the calling one included, has pinned `thing`.
    [[nodiscard]] static bool IsPinned(const void* thing) noexcept;

    /// Waits until no other thread has pinned `thing`, which no one can reach any more. The calling thread's own pins
    /// do not count. If the calling thread is inside a service, threads that wait here from inside a service do not
    /// count either: otherwise two services that take each other away would wait for each other forever.
    static void WaitUntilReleased(const void* thing) noexcept;

private:
    std::atomic<const void*>* m_word;
};

}  // namespace NS_BUNDLEMGR1
