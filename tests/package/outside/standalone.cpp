#include <iostream>

#include <kx_domain_util/resIDUtil.h>
#include <kx_standalone/host.h>
#include <kx_standalone/inventoryfile.h>

int main(int /*count*/, char** arguments) {
    const std::filesystem::path file = arguments[1];
    NS_STANDALONE::CreateInventory(file);
    NS_STANDALONE::Inventory inventory;
    inventory.neTypes.push_back({1911, "packet NE", false, false});
    inventory.nes.push_back({12, 1911, false, false});
    NS_STANDALONE::ReplaceInventory(file, inventory);

    NS_STANDALONE::HostOptions options;
    options.inventoryFile = file;
    const NS_STANDALONE::Host host(options);
    NS_DOMAIN::CardIndex card;
    card.neId = 12;
    card.slotId = 3;
    std::string fdn;
    NS_UTIL::ResIDUtil::CardIndex2ResID(card, fdn);
    std::cout << fdn << '\n';
}
