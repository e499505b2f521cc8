#include "catalogue/assumed.h"

#include <algorithm>

#include "catalogue/conversion.h"
#include "catalogue/kinds.h"

namespace NS_KX {

using NS_UTIL::Surroundings;

namespace {

// An NE type that spells out absent sub-slots, in whatever is written.
constexpr unsigned short SPECIAL_TYPE = 1911;

std::size_t CountEqual(std::string_view one, std::string_view other) {
    const auto [end, otherEnd] = std::mismatch(one.begin(), one.end(), other.begin(), other.end());
    return static_cast<std::size_t>(end - one.begin());
}

std::string NeText(int neId) {
    return "NE " + std::to_string(neId);
}

std::string TypeText(unsigned short neType) {
    return "NE type " + std::to_string(neType);
}

std::string ReasonOfNe(NeFact fact, int neId, const Surroundings& surroundings) {
    switch (fact) {
        case NeFact::TYPE:
            return NeText(neId) + " is of " + TypeText(surroundings.NEType(neId));
        case NeFact::SUB_SLOT:
            return std::string("configuration item NETypeListForSubSlot ") +
                   (surroundings.SpellsOutSubSlot(neId) ? "lists " : "does not list ") +
                   TypeText(surroundings.NEType(neId)) + ", that of " + NeText(neId);
        case NeFact::OAM_NUMBERS:
            return NeText(neId) + (surroundings.IsMdNumberOmitted(neId) ? " leaves out" : " has") +
                   " the numbers of MD and MA";
        case NeFact::NONE:
            break;
    }
    return {};
}

std::string ReasonOfProfile(int profile) {
    return "configuration item Telvandaire is " + (profile == 0 ? "0 or missing" : std::to_string(profile));
}

}  // namespace

int Assumed::CarrierProfile() const {
    m_isProfileAsked = true;
    return m_facts.isProfileOn ? static_cast<int>(*m_facts.isProfileOn) : m_base.CarrierProfile();
}

unsigned short Assumed::NEType(int neId) const {
    Note(NeFact::TYPE, neId);
    if (m_facts.isNeSpecial) {
        return *m_facts.isNeSpecial ? SPECIAL_TYPE : 0;
    }
    return m_base.NEType(neId);
}

bool Assumed::SpellsOutSubSlot(int neId) const {
    Note(NeFact::SUB_SLOT, neId);
    return m_facts.isNeSpecial ? *m_facts.isNeSpecial : m_base.SpellsOutSubSlot(neId);
}

bool Assumed::IsMdNumberOmitted(int neId) const {
    Note(NeFact::OAM_NUMBERS, neId);
    return m_facts.isNeSpecial ? *m_facts.isNeSpecial : m_base.IsMdNumberOmitted(neId);
}

bool Assumed::IsMaNumberOmitted(int neId) const {
    Note(NeFact::OAM_NUMBERS, neId);
    return m_facts.isNeSpecial ? *m_facts.isNeSpecial : m_base.IsMaNumberOmitted(neId);
}

void Assumed::Note(NeFact fact, int neId) const noexcept {
    m_fact = fact;
    m_neId = neId;
}

std::string ReasonForWriting(const Kind& kind, std::string_view fdn, std::string_view canonical,
                             const Surroundings& surroundings) {
    AnyRecord record;
    std::string text;
    const auto isMoreLikeIt = [&](const Assumed& assumed) {
        Rewrite(kind, fdn, assumed, record, text);
        return text == fdn || CountEqual(text, fdn) > CountEqual(canonical, fdn);
    };
    const Assumed asked(surroundings);
    Rewrite(kind, fdn, asked, record, text);
    for (const bool isSpecial : {false, true}) {
        if (asked.Fact() != NeFact::NONE && isMoreLikeIt(Assumed(surroundings, {.isNeSpecial = isSpecial}))) {
            return ReasonOfNe(asked.Fact(), asked.NeId(), surroundings);
        }
    }
    for (const bool isOn : {false, true}) {
        if (asked.IsProfileAsked() && isMoreLikeIt(Assumed(surroundings, {.isProfileOn = isOn}))) {
            return ReasonOfProfile(surroundings.CarrierProfile());
        }
    }
    return {};
}

}  // namespace NS_KX
