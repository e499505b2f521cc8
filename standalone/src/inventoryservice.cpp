#include "inventoryservice.h"

#include <memory>
#include <utility>

namespace NS_STANDALONE {

using NS_BUNDLEMGR1::ReadPin;

InventoryService::Table::Table(const Inventory& inventory) {
    m_nes.reserve(inventory.nes.size());
    for (const NeRow& row : inventory.nes) {
        m_nes.emplace(row.neId, row);
    }
    for (const NeTypeRow& row : inventory.neTypes) {
        m_ipService[row.neType] = row.ipService;
        m_klv[row.neType] = row.klv;
    }
}

const NeRow* InventoryService::Table::FindNe(std::int64_t neId) const {
    const auto found = m_nes.find(neId);
    return found != m_nes.end() ? &found->second : nullptr;
}

InventoryService::InventoryService(const Inventory& inventory, std::function<void(std::int64_t neId)> missingNe)
    : m_table(std::make_unique<Table>(inventory)), m_missingNe(std::move(missingNe)) {}

void InventoryService::Replace(const Inventory& inventory) {
    m_table.Replace(std::make_unique<Table>(inventory));
}

const NeRow* InventoryService::FindNe(const Table& table, std::int64_t neId) const {
    const NeRow* const ne = table.FindNe(neId);
    if (ne == nullptr && m_missingNe) {
        m_missingNe(neId);
    }
    return ne;
}

bool InventoryService::QueryNEType(std::int64_t neId, std::uint32_t& neType, bool /*flag*/) {
    ReadPin pin;
    const NeRow* const ne = FindNe(m_table.Read(pin), neId);
    if (ne == nullptr) {
        return false;
    }
    neType = ne->neType;
    return true;
}

bool InventoryService::IsOamNumberOmitted(int neId) {
    ReadPin pin;
    const NeRow* const ne = FindNe(m_table.Read(pin), neId);
    return ne != nullptr && ne->oamNumberOmitted;
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
    ReadPin pin;
    const NeRow* const ne = FindNe(m_table.Read(pin), static_cast<std::int64_t>(neId));
    return ne != nullptr && ne->multiSubShelf;
}

}  // namespace NS_STANDALONE
