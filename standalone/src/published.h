#pragma once

#include <atomic>
#include <memory>

#include <kx_platform/readpin.h>

namespace NS_STANDALONE {

/// An immutable thing that any number of threads read while another one puts a new thing in its place. Readers take no
/// lock and share no cache line that is written to.
template <class Thing>
class Published {
public:
    explicit Published(std::unique_ptr<const Thing> thing) : m_thing(thing.release()) {}
    ~Published() { delete m_thing.load(); }
    Published(const Published&) = delete;
    Published& operator=(const Published&) = delete;

    /// What is published now; valid until `pin` is destroyed. The reader calls nobody who could replace it meanwhile.
    const Thing& Read(NS_BUNDLEMGR1::ReadPin& pin) const noexcept { return *pin.Protect(m_thing); }

    /// Publishes `thing`, and returns when nobody reads the old one any more. The caller lets one thread do so at a
    /// time.
    void Replace(std::unique_ptr<const Thing> thing) noexcept {
        const std::unique_ptr<const Thing> old(m_thing.exchange(thing.release()));
        NS_BUNDLEMGR1::ReadPin::WaitUntilReleased(old.get());
    }

private:
    std::atomic<const Thing*> m_thing;
};

}  // namespace NS_STANDALONE
