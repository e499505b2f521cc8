#include "frame/configuration.h"

#include <algorithm>

namespace NS_UTIL::NS_FRAME {

int ReadCarrierProfile() {
    int profile = 0;
    LastingItem<"Telvandaire">().GetInt(profile);
    return profile;
}

bool ReadPfmFrameSize(int& size) {
    return LastingItem<"PfmFrameRdSize">().GetInt(size);
}

SubSlotNETypes::SubSlotNETypes() {
    m_list = LastingItem<"NETypeListForSubSlot">().GetNumbers(m_pin);
}

bool SubSlotNETypes::Contains(unsigned short neType) const noexcept {
    return m_list != nullptr && std::find(m_list->begin(), m_list->end(), neType) != m_list->end();
}

}  // namespace NS_UTIL::NS_FRAME
