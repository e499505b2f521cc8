#pragma once

#include <kx_domain_util/surroundings.h>

#include "bindings/c/record.h"

namespace NS_KX::NS_C {

/// Answers the writer of a record from the facts of a caller. A fact that is not known becomes the record's error, and
/// the writer goes on with any answer: an exception would cost more than the text that is thrown away. Throws
/// std::bad_alloc, and what the caller's functions throw.
class FactSurroundings final : public NS_UTIL::Surroundings {
public:
    FactSurroundings(const kx_facts& facts, const kx_record& record) noexcept : m_facts(facts), m_record(record) {}

    /// Whether all was known that the writer asked.
    [[nodiscard]] bool AreKnown() const noexcept { return m_areKnown; }

    [[nodiscard]] int CarrierProfile() const override { return m_facts.carrier_profile; }
    [[nodiscard]] unsigned short NEType(int neId) const override;
    [[nodiscard]] bool SpellsOutSubSlot(int neId) const override;
    [[nodiscard]] bool IsMdNumberOmitted(int neId) const override { return IsOamNumberOmitted(neId); }
    [[nodiscard]] bool IsMaNumberOmitted(int neId) const override { return IsOamNumberOmitted(neId); }

private:
    template <class... Parts>
    void Miss(const Parts&... parts) const;
    [[nodiscard]] bool IsOamNumberOmitted(int neId) const;

    const kx_facts& m_facts;
    const kx_record& m_record;
    mutable bool m_areKnown = true;
};

}  // namespace NS_KX::NS_C
