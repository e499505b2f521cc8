#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <kx_domain_util/surroundings.h>

#include "catalogue/kind.h"

namespace NS_KX {

/// What a writer asks about an NE.
enum class NeFact {
    NONE,
    TYPE,         ///< its NE type
    SUB_SLOT,     ///< whether it spells out absent sub-slots
    OAM_NUMBERS,  ///< whether it leaves out the numbers of MD and MA
};

/// What is assumed; an empty value: nothing.
struct AssumedFacts {
    std::optional<bool> isNeSpecial = {};  ///< every NE spells out absent sub-slots, and leaves out MD and MA numbers
    std::optional<bool> isProfileOn = {};  ///< the carrier profile is on
};

/// Surroundings in which something is assumed; whatever is not, is as in `base`. Notes what is asked. One thread at a
/// time.
class Assumed final : public NS_UTIL::Surroundings {
public:
    /// `base` must outlive it.
    explicit Assumed(const NS_UTIL::Surroundings& base, AssumedFacts facts = {}) noexcept
        : m_base(base), m_facts(facts) {}

    /// What was asked last about an NE, and which one.
    [[nodiscard]] NeFact Fact() const noexcept { return m_fact; }
    [[nodiscard]] int NeId() const noexcept { return m_neId; }
    [[nodiscard]] bool IsProfileAsked() const noexcept { return m_isProfileAsked; }

    [[nodiscard]] int CarrierProfile() const override;
    int AgentCarrierProfile() const override { return m_base.AgentCarrierProfile(); }
    [[nodiscard]] unsigned short NEType(int neId) const override;
    [[nodiscard]] bool SpellsOutSubSlot(int neId) const override;
    [[nodiscard]] bool IsMdNumberOmitted(int neId) const override;
    [[nodiscard]] bool IsMaNumberOmitted(int neId) const override;

private:
    void Note(NeFact fact, int neId) const noexcept;

    const NS_UTIL::Surroundings& m_base;
    AssumedFacts m_facts;
    // Questions are asked of a const object.
    mutable NeFact m_fact = NeFact::NONE;
    mutable int m_neId = -1;
    mutable bool m_isProfileAsked = false;
};

/// Why `fdn`, of this kind, would be written as `canonical`: the configuration item or the fact about the NE without
/// which the library would write it as it is, or more like it. Empty if none of them is the reason. Throws
/// std::bad_alloc, and what `surroundings` throw.
std::string ReasonForWriting(const Kind& kind, std::string_view fdn, std::string_view canonical,
                             const NS_UTIL::Surroundings& surroundings);

}  // namespace NS_KX
