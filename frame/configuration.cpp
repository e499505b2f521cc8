#include "frame/configuration.h"

#include <kx_domain_util/separatorfinder.h>
#include <kx_platform/configitems.h>
#include <kx_platform/textutil.h>

namespace NS_UTIL::NS_FRAME {

using NS_BUNDLEMGR1::ConfigItem;
using NS_BUNDLEMGR1::CorbaConfigItems;

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
    NS_FDN::SeparatorFinder<','> pieces(*m_list);
    NS_FDN::SeparatorFinder<','>::Piece piece{};
    do {
        piece = pieces.Next();
        if (piece.begin != piece.end && Str2Int({piece.begin, piece.end}) == neType) {
            return true;
        }
    } while (!pieces.IsLast(piece));
    return false;
}

}  // namespace NS_UTIL::NS_FRAME
