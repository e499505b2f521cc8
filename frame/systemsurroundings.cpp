#include "frame/systemsurroundings.h"

#include <cstdint>

#include "frame/configuration.h"
#include "frame/lastingtext.h"
#include "frame/serviceaccess.h"

namespace NS_UTIL::NS_FRAME {

using NS_SERVICE::InventoryBufif;

int SystemSurroundings::CarrierProfile() const {
    return ReadCarrierProfile();
}

int SystemSurroundings::AgentCarrierProfile() const {
    ServiceAccess<NS_SERVICE::DAWSvcInterface> dataAccess;
    int carrierProfile = 0;
    if (NS_SERVICE::ConfigObject* const configuration =
            dataAccess.Get().GetConfiguration(LastingText<"kx_corbaagent_bundle/bundle.cfg">(), LastingText<"">())) {
        configuration->GetIntItemInfo(LastingText<"Telvandaire">(), carrierProfile);
    }
    return carrierProfile;
}

unsigned short SystemSurroundings::NEType(int neId) const {
    ServiceAccess<InventoryBufif> inventory;
    std::uint32_t neType = 0;
    inventory.Get().QueryNEType(neId, neType, true);
    return static_cast<unsigned short>(neType & 0xFFFFU);
}

bool SystemSurroundings::SpellsOutSubSlot(int neId) const {
    const SubSlotNETypes neTypes;
    return neTypes.Contains(NEType(neId));  // the inventory is asked also when the list is empty
}

bool SystemSurroundings::IsMdNumberOmitted(int neId) const {
    ServiceAccess<InventoryBufif> inventory;
    return inventory.Get().IsOamNumberOmitted(neId);
}

bool SystemSurroundings::IsMaNumberOmitted(int neId) const {
    // Unlike for the MD level, every exception of the look-up propagates, on purpose: callers rely on it.
    ServiceAccess<InventoryBufif> inventory;
    return inventory.GetLettingAllPass().IsOamNumberOmitted(neId);
}

}  // namespace NS_UTIL::NS_FRAME
