#include "frame/configuration.h"

#include <algorithm>

#include <kx_platform/configitems.h>

namespace NS_UTIL::NS_FRAME {

using NS_BUNDLEMGR1::ConfigItem;
using NS_BUNDLEMGR1::CorbaConfigItems;

int ReadCarrierProfile() {
    static const ConfigItem& item = CorbaConfigItems::Instance()->GetItem("Telvandaire");
    int profile = 0;
    item.GetInt(profile);
    return profile;
}

bool ReadPfmFrameSize(int& size) {
    static const ConfigItem& item = CorbaConfigItems::Instance()->GetItem("PfmFrameRdSize");
    return item.GetInt(size);
}

SubSlotNETypes::SubSlotNETypes() {
    static const ConfigItem& item = CorbaConfigItems::Instance()->GetItem("NETypeListForSubSlot");
    m_list = item.GetNumbers(m_pin);
}

bool SubSlotNETypes::Contains(unsigned short neType) const noexcept {
    return m_list != nullptr && std::find(m_list->begin(), m_list->end(), neType) != m_list->end();
}

}  // namespace NS_UTIL::NS_FRAME
