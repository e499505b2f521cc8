#pragma once

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include <kx_domain_util/surroundings.h>
#include <kx_platform/dawsvcinterface.h>
#include <kx_platform/inventorybufif.h>
#include <kx_platform/textutil.h>

namespace NS_TEST {

/// Surroundings made of configuration items and services that are set and registered nowhere.
class GivenSurroundings final : public NS_UTIL::Surroundings {
public:
    /// Null services are missing.
    GivenSurroundings(const std::map<std::string, std::string>& configuration, NS_SERVICE::InventoryBufif* inventory,
                      NS_SERVICE::DAWSvcInterface* dataAccess)
        : m_inventory(inventory), m_dataAccess(dataAccess) {
        if (const auto profile = configuration.find("Telvandaire"); profile != configuration.end()) {
            const std::string& text = profile->second;
            int number = 0;
            if (std::from_chars(text.data(), text.data() + text.size(), number).ptr == text.data() + text.size()) {
                m_carrierProfile = number;
            }
        }
        if (const auto list = configuration.find("NETypeListForSubSlot"); list != configuration.end()) {
            std::vector<std::string> types;
            NS_UTIL::SplitStringByTag(list->second, types, ',', {});
            for (const std::string& type : types) {
                m_subSlotTypes.push_back(NS_UTIL::Str2Int(type));
            }
        }
    }

    [[nodiscard]] int CarrierProfile() const override { return m_carrierProfile; }
    int AgentCarrierProfile() const override {
        if (m_dataAccess == nullptr) {
            static_cast<void>(Surroundings::NEType(0));  // throws
        }
        return m_dataAccess->GetConfiguration("kx_corbaagent_bundle/bundle.cfg", "") != nullptr ? 1 : 0;
    }
    [[nodiscard]] unsigned short NEType(int neId) const override {
        if (m_inventory == nullptr) {
            return Surroundings::NEType(neId);
        }
        std::uint32_t neType = 0;
        m_inventory->QueryNEType(neId, neType, true);
        return static_cast<unsigned short>(neType);
    }
    [[nodiscard]] bool SpellsOutSubSlot(int neId) const override {
        const int neType = NEType(neId);
        return std::find(m_subSlotTypes.begin(), m_subSlotTypes.end(), neType) != m_subSlotTypes.end();
    }
    [[nodiscard]] bool IsMdNumberOmitted(int neId) const override {
        return m_inventory == nullptr ? Surroundings::IsMdNumberOmitted(neId) : m_inventory->IsOamNumberOmitted(neId);
    }
    [[nodiscard]] bool IsMaNumberOmitted(int neId) const override {
        return m_inventory == nullptr ? Surroundings::IsMaNumberOmitted(neId) : m_inventory->IsOamNumberOmitted(neId);
    }

private:
    NS_SERVICE::InventoryBufif* m_inventory;
    NS_SERVICE::DAWSvcInterface* m_dataAccess;
    int m_carrierProfile = 0;
    std::vector<int> m_subSlotTypes;
};

}  // namespace NS_TEST
