#include "frame/configuration.h"

#include <string_view>

#include <kx_platform/configitems.h>
#include <kx_platform/textutil.h>

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
    m_list = item.GetText(m_pin);
}

// Splits and converts in place what `SplitStringByTag` and `Str2Int` would: empty pieces do not count.
bool SubSlotNETypes::Contains(unsigned short neType) const noexcept {
    if (m_list == nullptr) {
        return false;
    }
    std::string_view rest = *m_list;
    while (!rest.empty()) {
        const std::string_view piece = rest.substr(0, rest.find(','));
        if (!piece.empty() && Str2Int(piece) == neType) {
            return true;
        }
        rest.remove_prefix(piece.size() == rest.size() ? piece.size() : piece.size() + 1);
    }
    return false;
}

}  // namespace NS_UTIL::NS_FRAME
