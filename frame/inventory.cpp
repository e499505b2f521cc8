#include "frame/inventory.h"

#include <cstdint>

#include "frame/serviceaccess.h"

namespace NS_UTIL::NS_FRAME {

unsigned short QueryNEType(int neId) {
    ServiceAccess<NS_SERVICE::InventoryBufif> inventory;
    std::uint32_t neType = 0;
    inventory.Get().QueryNEType(neId, neType, true);
    return static_cast<unsigned short>(neType & 0xFFFFU);
}

}  // namespace NS_UTIL::NS_FRAME
