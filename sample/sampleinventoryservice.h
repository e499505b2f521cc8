#pragma once

#include <cstdint>

#include <kx_platform/inventorybufif.h>

#include "sample/samplenetwork.h"

namespace NS_KX {

/// The inventory service of this process as long as it lives: answers the library's writers for the NEs of a network.
class SampleInventoryService final : public NS_SERVICE::InventoryBufif {
public:
    explicit SampleInventoryService(const SampleNetwork& network);
    ~SampleInventoryService() override;
    SampleInventoryService(const SampleInventoryService&) = delete;
    SampleInventoryService& operator=(const SampleInventoryService&) = delete;

    bool QueryNEType(std::int64_t neId, std::uint32_t& neType, bool flag) override;
    bool IsOamNumberOmitted(int neId) override;
    bool IsIPServiceNEType(unsigned short neType) override;
    bool IsKLVNEType(unsigned short neType) override;
    bool IsTransMultiSubShelf(unsigned long neId, unsigned short neType) override;

private:
    const SampleNetwork& m_network;
};

}  // namespace NS_KX
