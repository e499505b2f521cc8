// prints: NE=12,S=3,CP=-1,SS=-1,SC=-1
#include <filesystem>
#include <iostream>
#include <string>

#include <unistd.h>

#include <kx_domain_util/resIDUtil.h>
#include <kx_standalone/host.h>
#include <kx_standalone/inventoryfile.h>

int main() {
    const auto folder = std::filesystem::temp_directory_path() / ("kx_example." + std::to_string(getpid()));
    std::filesystem::create_directory(folder);

    // An inventory of one NE, of type 1911. "kxdu inventory import" makes the same from CSV files.
    NS_STANDALONE::HostOptions options;
    options.inventoryFile = folder / "network.db";
    NS_STANDALONE::Inventory inventory;
    inventory.neTypes.push_back({1911, "packet NE", false, false});
    inventory.nes.push_back({12, 1911, false, false});
    NS_STANDALONE::CreateInventory(options.inventoryFile);
    NS_STANDALONE::ReplaceInventory(options.inventoryFile, inventory);
    {
        const NS_STANDALONE::Host host(options);  // its services run until it is destroyed
        NS_DOMAIN::CardIndex card;
        card.neId = 12;
        card.slotId = 3;
        std::string fdn;
        NS_UTIL::ResIDUtil::CardIndex2ResID(card, fdn);
        std::cout << fdn << '\n';
    }
    std::filesystem::remove_all(folder);
}
