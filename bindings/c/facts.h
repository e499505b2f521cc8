#pragma once

#include <cstdint>
#include <exception>
#include <string>

#include <kx_domain_util/surroundings.h>

#include "bindings/c/guard.h"

namespace NS_KX::NS_C {

/// A writer needs a fact that its caller does not know.
class UnknownFact : public std::exception {
public:
    explicit UnknownFact(std::string text) : m_text(std::move(text)) {}
    [[nodiscard]] const char* what() const noexcept override { return m_text.c_str(); }

private:
    std::string m_text;
};

/// Answers writers from the facts of a caller. Throws `UnknownFact`, and what the caller's functions throw.
class FactSurroundings final : public NS_UTIL::Surroundings {
public:
    explicit FactSurroundings(const kx_facts& facts) noexcept : m_facts(facts) {}

    [[nodiscard]] int CarrierProfile() const override { return m_facts.carrier_profile; }
    [[nodiscard]] unsigned short NEType(int neId) const override;
    [[nodiscard]] bool SpellsOutSubSlot(int neId) const override;
    [[nodiscard]] bool IsMdNumberOmitted(int neId) const override { return IsOamNumberOmitted(neId); }
    [[nodiscard]] bool IsMaNumberOmitted(int neId) const override { return IsOamNumberOmitted(neId); }

private:
    [[nodiscard]] bool IsOamNumberOmitted(int neId) const;

    const kx_facts& m_facts;
};

}  // namespace NS_KX::NS_C
