#include "inventoryservice.h"

#include <functional>
#include <memory>
#include <optional>
#include <utility>

namespace NS_STANDALONE {

using NS_BUNDLEMGR1::ReadPin;

InventoryService::Table::Table(const Inventory& inventory) : m_nes(inventory.nes) {
    for (const NeTypeRow& row : inventory.neTypes) {
        m_ipService[row.neType] = row.ipService;
        m_klv[row.neType] = row.klv;
    }
}

InventoryService::InventoryService(const Inventory& inventory, std::function<void(std::int64_t neId)> missingNe)
    : m_table(std::make_unique<Table>(inventory)), m_missingNe(std::move(missingNe)) {}

std::optional<NeRow> InventoryService::FindNe(std::int64_t neId) const {
    {
        ReadPin pin;
        if (const NeRow* const ne = m_table.Read(pin).FindNe(neId)) {
            return *ne;
        }
    }
    // Called without the pin: the callback may wait for a thread that replaces the table.
    if (m_missingNe) {
        m_missingNe(neId);
    }
    return std::nullopt;
}

bool InventoryService::QueryNEType(std::int64_t neId, std::uint32_t& neType, bool /*flag*/) {
    const std::optional<NeRow> ne = FindNe(neId);
    if (!ne) {
        return false;
    }
    neType = ne->neType;
    return true;
}

bool InventoryService::IsOamNumberOmitted(int neId) {
    const std::optional<NeRow> ne = FindNe(neId);
    return ne && ne->oamNumberOmitted;
}

bool InventoryService::IsIPServiceNEType(unsigned short neType) {
    ReadPin pin;
    return m_table.Read(pin).IsIpService(neType);
}

bool InventoryService::IsKLVNEType(unsigned short neType) {
    ReadPin pin;
    return m_table.Read(pin).IsKlv(neType);
}

bool InventoryService::IsTransMultiSubShelf(unsigned long neId, unsigned short /*neType*/) {
    const std::optional<NeRow> ne = FindNe(static_cast<std::int64_t>(neId));
    return ne && ne->multiSubShelf;
}

}  // namespace NS_STANDALONE
