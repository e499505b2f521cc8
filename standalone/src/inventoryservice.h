#pragma once

#include <bitset>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include <kx_platform/inventorybufif.h>
#include <kx_standalone/inventoryfile.h>

#include "netable.h"
#include "published.h"

namespace NS_STANDALONE {

/// Answers from an inventory that is held in memory. A query costs one look-up and takes no lock.
class InventoryService final : public NS_SERVICE::InventoryBufif {
public:
    /// The data that queries read.
    class Table {
    public:
        explicit Table(const Inventory& inventory);

        /// Returns null for an unknown NE.
        [[nodiscard]] const NeRow* FindNe(std::int64_t neId) const noexcept { return m_nes.Find(neId); }
        [[nodiscard]] bool IsIpService(std::uint16_t neType) const { return m_ipService[neType]; }
        [[nodiscard]] bool IsKlv(std::uint16_t neType) const { return m_klv[neType]; }

    private:
        using NeTypeSet = std::bitset<1U << 16U>;

        NeTable m_nes;
        NeTypeSet m_ipService;
        NeTypeSet m_klv;
    };

    /// `missingNe`: see `HostOptions`.
    explicit InventoryService(const Inventory& inventory, std::function<void(std::int64_t neId)> missingNe = {});

    /// Replaces the table. One thread at a time; queries go on meanwhile.
    void Replace(std::unique_ptr<const Table> table) noexcept { m_table.Replace(std::move(table)); }

    /// Ignores `flag`.
    bool QueryNEType(std::int64_t neId, std::uint32_t& neType, bool flag) override;
    bool IsOamNumberOmitted(int neId) override;
    bool IsIPServiceNEType(unsigned short neType) override;
    bool IsKLVNEType(unsigned short neType) override;
    /// Answers from the NE's row; ignores `neType`.
    bool IsTransMultiSubShelf(unsigned long neId, unsigned short neType) override;

private:
    // Returns the NE's row. If there is none, calls `missingNe` and returns nothing.
    [[nodiscard]] std::optional<NeRow> FindNe(std::int64_t neId) const;

    Published<Table> m_table;
    std::function<void(std::int64_t neId)> m_missingNe;
};

}  // namespace NS_STANDALONE
