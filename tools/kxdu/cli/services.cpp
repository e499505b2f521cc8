#include "cli/services.h"

#include <filesystem>

#include "cli/missingnes.h"
#include "cli/verb.h"
#include "failure.h"

namespace NS_KXDU {

namespace {

constexpr auto CONFIG_FILE = "kx_corbaagent_bundle/bundle.cfg";

}  // namespace

void AddInventoryOption(Verb& verb, std::string& inventory) {
    verb.AddText("--inventory", "FILE", inventory, "Inventory of the network (see kxdu inventory --help)")
        .FromEnvironment("KX_INVENTORY");
}

void AddConfigOption(Verb& verb, std::string& config) {
    verb.AddText("--config", "DIR", config,
                 std::string("Folder that holds the configuration, ") + CONFIG_FILE +
                     " in TOML; docs/guide.md tells which items count")
        .FromEnvironment("KX_CONFIG_DIR");
}

void AddServiceOptions(Verb& verb, ServiceOptions& options) {
    AddInventoryOption(verb, options.inventory);
    AddConfigOption(verb, options.config);
}

std::vector<FileInUse> FilesInUse(const ServiceOptions& options) {
    std::vector<FileInUse> files;
    if (!options.inventory.empty()) {
        files.push_back({options.inventory, "inventory"});
    }
    if (!options.config.empty()) {
        files.push_back({std::filesystem::path(options.config) / CONFIG_FILE, "configuration"});
    }
    return files;
}

std::unique_ptr<NS_STANDALONE::Host> StartServices(const ServiceOptions& options, MissingNes* missing) {
    NS_STANDALONE::HostOptions hostOptions;
    hostOptions.inventoryFile = options.inventory;
    hostOptions.configFolder = options.config;
    if (missing != nullptr) {
        hostOptions.missingNe = [missing](std::int64_t neId) { missing->Note(neId); };
    }
    try {
        return std::make_unique<NS_STANDALONE::Host>(hostOptions);
    } catch (const std::runtime_error& error) {
        throw Failure(ExitCode::USAGE, error.what());
    }
}

void ComplainOfNoInventory() {
    throw Failure(
        ExitCode::USAGE,
        "this identifier is written as the inventory says of its NE: give one with --inventory FILE or in KX_INVENTORY "
        "(kxdu inventory --help tells how to make one)");
}

void ComplainOfNoConfiguration() {
    throw Failure(ExitCode::USAGE,
                  "identifiers of this type are read as the configuration tells: give its folder with --config DIR or "
                  "in KX_CONFIG_DIR");
}

}  // namespace NS_KXDU
