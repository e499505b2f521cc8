/// The configuration items that the library reads. Each is looked up by its key once; its value is read anew at every
/// call, without a lock.
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

/// The carrier profile switch, item "Telvandaire"; 0 when it is missing or no number.
int ReadCarrierProfile();

/// Reads how many bytes of performance data are read at a time, item "PfmFrameRdSize", unchecked. Returns false and
/// leaves `size` alone if the item is missing or no number.
bool ReadPfmFrameSize(int& size);

/// The NE types that spell out an absent sub-slot: item "NETypeListForSubSlot", decimal numbers separated by ",". Holds
/// the list as it is when this object is made. A local variable.
class SubSlotNETypes {
public:
    SubSlotNETypes();

    /// Whether `neType` is in the list. Returns false if the item is missing or empty.
    [[nodiscard]] bool Contains(unsigned short neType) const noexcept;

private:
    NS_BUNDLEMGR1::ReadPin m_pin;
    const std::vector<int>* m_list;
};

}  // namespace NS_UTIL::NS_FRAME
