#pragma once

#include <atomic>
#include <memory>

#include <kx_platform/readpin.h>

namespace NS_STANDALONE {

/// An immutable thing that any number of threads may read while another thread replaces it. Readers take no lock and
/// share no cache line that is written to.
template <class Thing>
class Published {
public:
    explicit Published(std::unique_ptr<const Thing> thing) : m_thing(thing.release()) {}
    ~Published() { delete m_thing.load(); }
    Published(const Published&) = delete;
    Published& operator=(const Published&) = delete;

    /// Returns the published thing; valid until `pin` is destroyed. Until then the reader must not replace it.
    const Thing& Read(NS_BUNDLEMGR1::ReadPin& pin) const noexcept { return *pin.Protect(m_thing); }

    /// Publishes `thing`, and returns when no thread reads the old one any more. One thread at a time.
    void Replace(std::unique_ptr<const Thing> thing) noexcept {
        const std::unique_ptr<const Thing> old(m_thing.exchange(thing.release()));
        NS_BUNDLEMGR1::ReadPin::WaitUntilReleased(old.get());
    }

private:
    std::atomic<const Thing*> m_thing;
};

}  // namespace NS_STANDALONE
