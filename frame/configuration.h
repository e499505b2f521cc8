/// The configuration items that the library reads. Each is looked up by its key once; its value is read anew at every
/// call, without a lock.
#pragma once

#include <vector>

#include <kx_platform/readpin.h>

namespace NS_UTIL::NS_FRAME {

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
