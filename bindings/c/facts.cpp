#include "bindings/c/facts.h"

#include <algorithm>

namespace NS_KX::NS_C {

unsigned short FactSurroundings::NEType(int neId) const {
    if (m_facts.ne_type == nullptr) {
        throw UnknownFact("the type of NE " + std::to_string(neId) + " is not known: ne_type of the facts is NULL");
    }
    std::uint16_t neType = 0;
    return m_facts.ne_type(m_facts.context, neId, &neType) ? neType : 0;
}

bool FactSurroundings::SpellsOutSubSlot(int neId) const {
    if (m_facts.sub_slot_ne_types == nullptr) {
        throw UnknownFact(
            "it is not known which NE types spell out absent sub-slots: sub_slot_ne_types of the facts is NULL");
    }
    const std::uint16_t* const end = m_facts.sub_slot_ne_types + m_facts.sub_slot_ne_type_count;
    return std::find(m_facts.sub_slot_ne_types, end, NEType(neId)) != end;
}

bool FactSurroundings::IsOamNumberOmitted(int neId) const {
    if (m_facts.oam_numbers_omitted == nullptr) {
        throw UnknownFact("whether NE " + std::to_string(neId) +
                          " leaves OAM numbers out is not known: oam_numbers_omitted of the facts is NULL");
    }
    return m_facts.oam_numbers_omitted(m_facts.context, neId);
}

}  // namespace NS_KX::NS_C
