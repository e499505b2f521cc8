#pragma once

#include <cstdint>
#include <vector>

#include <kx_domain_util/domainindex.h>
#include <kx_standalone/inventoryfile.h>

#include "sample/samplenetypes.h"

namespace NS_KX {

/// One port of a sample network.
struct SamplePort {
    NS_DOMAIN::PortIndex index;
    SampleCardKind::Terminations terminations;
};

/// One NE of a sample network with everything in it.
struct SampleNe {
    std::int32_t neId = 0;
    const SampleNeType* type = nullptr;
    std::vector<NS_DOMAIN::ShelfIndex> shelves;
    std::vector<NS_DOMAIN::CardIndex> cards;  ///< one in each slot
    std::vector<NS_DOMAIN::SlotIndex> subSlots;
    std::vector<SamplePort> ports;  ///< the logical ones last; no name has a "."
};

/// A synthetic but plausible network, drawn from a seed. NEs are numbered from 1. Each is drawn independently, so a
/// larger network of the same seed begins with the smaller one.
class SampleNetwork {
public:
    explicit SampleNetwork(std::uint64_t seed) noexcept : m_seed(seed) {}

    [[nodiscard]] std::uint64_t Seed() const noexcept { return m_seed; }

    /// The type of an NE. Every number is an NE of the network.
    [[nodiscard]] const SampleNeType& NeType(std::int32_t neId) const noexcept;

    /// Draws the NE `neId` into `ne`, in place of what it held.
    void DrawNe(std::int32_t neId, SampleNe& ne) const;

    /// What the inventory says of an NE.
    [[nodiscard]] NS_STANDALONE::NeRow InventoryRow(std::int32_t neId) const noexcept;

    /// The inventory of the NEs from 1 to `neCount`.
    [[nodiscard]] NS_STANDALONE::Inventory MakeInventory(std::int32_t neCount) const;

private:
    std::uint64_t m_seed;
};

}  // namespace NS_KX
