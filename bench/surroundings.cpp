#include "surroundings.h"

#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

#include "support/literalresidutil.h"
#include "support/services.h"

namespace NS_BENCH {

namespace {

// Items that conversions read at every call, with realistic values; and a filter that holds back most notifications.
constexpr std::string_view CONFIGURATION = R"(Telvandaire = 1
NETypeListForSubSlot = "1911,1912,1913"
PfmFrameRdSize = 1500
EventSwitch = 1
Whitelist = "3,5,8,13,21,34,55,89,144,233,377,610,987,1597,2584,4181"
)";

std::filesystem::path MakeFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "kx-bench-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) {
        throw std::runtime_error("no temporary folder");
    }
    return name;
}

}  // namespace

Surroundings::Surroundings(const Corpus& corpus) : m_folder(MakeFolder()) {
    NS_STANDALONE::HostOptions options;
    options.configFolder = m_folder;
    options.inventoryFile = m_folder / "inventory.db";
    std::filesystem::create_directory(m_folder / "kx_corbaagent_bundle");
    std::ofstream(m_folder / "kx_corbaagent_bundle" / "bundle.cfg") << CONFIGURATION;
    NS_STANDALONE::CreateInventory(options.inventoryFile);
    NS_STANDALONE::ReplaceInventory(options.inventoryFile, corpus.GetInventory());
    m_host = std::make_unique<NS_STANDALONE::Host>(options);
    NS_TEST::LiteralResIDUtil::inventory = NS_TEST::FindService<NS_SERVICE::InventoryBufif>("InventoryBufif");
    NS_TEST::LiteralResIDUtil::dataAccess = NS_TEST::FindService<NS_SERVICE::DAWSvcInterface>("DAWSvcInterface");
}

Surroundings::~Surroundings() {
    NS_TEST::LiteralResIDUtil::inventory = nullptr;
    NS_TEST::LiteralResIDUtil::dataAccess = nullptr;
    m_host.reset();
    std::error_code ignored;
    std::filesystem::remove_all(m_folder, ignored);
}

}  // namespace NS_BENCH
