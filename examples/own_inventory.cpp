// prints: without an inventory: code 41180004, "NE=12,FR=1,S=3,CP=-1"
// prints: with one: "NE=12,FR=1,S=3,CP=-1,SS=-1,SC=-1"
#include <iostream>
#include <string>

#include <kx_domain_util/processexception.h>
#include <kx_domain_util/resIDUtil.h>
#include <kx_platform/bundlemgr.h>
#include <kx_platform/inventorybufif.h>

namespace {

// An inventory in which every NE has type 1911. Cards on such NEs spell out their sub-slot levels.
class OneTypeInventory : public NS_SERVICE::InventoryBufif {
public:
    bool QueryNEType(std::int64_t /*neId*/, std::uint32_t& neType, bool /*flag*/) override {
        neType = 1911;
        return true;
    }
    bool IsOamNumberOmitted(int /*neId*/) override { return false; }
    bool IsIPServiceNEType(unsigned short /*neType*/) override { return false; }
    bool IsKLVNEType(unsigned short /*neType*/) override { return false; }
    bool IsTransMultiSubShelf(unsigned long /*neId*/, unsigned short /*neType*/) override { return false; }
};

}  // namespace

int main() {
    NS_DOMAIN::CardIndex card;
    card.neId = 12;
    card.shelfId = 1;
    card.slotId = 3;
    std::string fdn;
    try {
        NS_UTIL::ResIDUtil::CardIndex2ResID(card, fdn);
    } catch (const NS_UTIL::InterfaceNotExistException& missing) {
        std::cout << "without an inventory: code " << std::hex << missing.m_code << ", \"" << fdn << "\"\n";
    }

    OneTypeInventory inventory;
    NS_BUNDLEMGR1::BundleMgr::Instance()->RegisterService("InventoryBufif", &inventory);
    NS_UTIL::ResIDUtil::CardIndex2ResID(card, fdn);
    std::cout << "with one: \"" << fdn << "\"\n";
    NS_BUNDLEMGR1::BundleMgr::Instance()->UnregisterService("InventoryBufif");
}
