#include "sample/sampleinventoryservice.h"

#include <algorithm>

#include <kx_platform/bundlemgr.h>

namespace NS_KX {

namespace {

const SampleNeType* FindType(unsigned short neType) {
    const auto types = SampleNeTypes();
    const auto found =
        std::find_if(types.begin(), types.end(), [neType](const auto& type) { return type.neType == neType; });
    return found == types.end() ? nullptr : &*found;
}

}  // namespace

SampleInventoryService::SampleInventoryService(const SampleNetwork& network) : m_network(network) {
    NS_BUNDLEMGR1::BundleMgr::Instance()->RegisterService("InventoryBufif", this);
}

SampleInventoryService::~SampleInventoryService() {
    NS_BUNDLEMGR1::BundleMgr::Instance()->UnregisterService("InventoryBufif");
}

bool SampleInventoryService::QueryNEType(std::int64_t neId, std::uint32_t& neType, bool /*flag*/) {
    neType = m_network.NeType(static_cast<std::int32_t>(neId)).neType;
    return true;
}

bool SampleInventoryService::IsOamNumberOmitted(int neId) {
    return m_network.InventoryRow(neId).oamNumberOmitted;
}

bool SampleInventoryService::IsIPServiceNEType(unsigned short neType) {
    const SampleNeType* const type = FindType(neType);
    return type != nullptr && type->ipService;
}

bool SampleInventoryService::IsKLVNEType(unsigned short neType) {
    const SampleNeType* const type = FindType(neType);
    return type != nullptr && type->klv;
}

bool SampleInventoryService::IsTransMultiSubShelf(unsigned long /*neId*/, unsigned short neType) {
    const SampleNeType* const type = FindType(neType);
    return type != nullptr && type->multiSubShelf;
}

}  // namespace NS_KX
