#include "bindings/c/facts.h"

#include <algorithm>
#include <cstdint>
#include <string>

namespace NS_KX::NS_C {

template <class... Parts>
void FactSurroundings::Miss(const Parts&... parts) const {
    if (m_areKnown) {
        Fail(m_record, KX_NO_FACTS, parts...);
    }
    m_areKnown = false;
}

unsigned short FactSurroundings::NEType(int neId) const {
    if (m_facts.ne_type == nullptr) {
        Miss("the type of NE ", std::to_string(neId), " is not known: ne_type of the facts is NULL");
        return 0;
    }
    std::uint16_t neType = 0;
    return m_facts.ne_type(m_facts.context, neId, &neType) ? neType : 0;
}

bool FactSurroundings::SpellsOutSubSlot(int neId) const {
    if (m_facts.sub_slot_ne_types == nullptr) {
        Miss("it is not known which NE types spell out absent sub-slots: sub_slot_ne_types of the facts is NULL");
        return false;
    }
    const std::uint16_t* const end = m_facts.sub_slot_ne_types + m_facts.sub_slot_ne_type_count;
    return std::find(m_facts.sub_slot_ne_types, end, NEType(neId)) != end;
}

bool FactSurroundings::IsOamNumberOmitted(int neId) const {
    if (m_facts.oam_numbers_omitted == nullptr) {
        Miss("whether NE ", std::to_string(neId),
             " leaves OAM numbers out is not known: oam_numbers_omitted of the facts is NULL");
        return false;
    }
    return m_facts.oam_numbers_omitted(m_facts.context, neId);
}

}  // namespace NS_KX::NS_C
