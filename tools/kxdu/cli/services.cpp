#include "cli/services.h"

#include <array>
#include <cstdlib>
#include <filesystem>
#include <string_view>

#include "cli/configurationdoubts.h"
#include "cli/missingnes.h"
#include "cli/verb.h"
#include "lines/failure.h"

namespace NS_KX::NS_KXDU {

namespace {

constexpr auto INVENTORY_VARIABLE = "KX_INVENTORY";
constexpr auto CONFIG_VARIABLE = "KX_CONFIG_DIR";
constexpr auto CONFIG_FILE = "kx_corbaagent_bundle/bundle.cfg";

// Names the variable that gave `name`: a user who did not type the name cannot know where it comes from.
std::string SourceOf(const std::string& name, const char* variable) {
    const char* const value = std::getenv(variable);  // NOLINT(concurrency-mt-unsafe): no other thread runs
    return value != nullptr && name == value ? std::string(" (from ").append(variable).append(")") : "";
}

// What to do if `file` is not an inventory. No advice helps against one that is corrupt, locked or not readable.
std::string AdviceOnInventory(const std::string& file, std::string_view complaint) {
    if (std::error_code error; std::filesystem::is_directory(file, error)) {
        return "; kxdu inventory import fills an inventory from a folder of CSV files";
    }
    constexpr std::array<std::string_view, 3> NO_INVENTORY{"no such file", "is not an inventory",
                                                           "file is not a database"};
    for (const std::string_view reason : NO_INVENTORY) {
        if (complaint.ends_with(reason)) {
            return "; make one with: kxdu inventory init FILE";
        }
    }
    return {};
}

}  // namespace

void AddInventoryOption(Verb& verb, std::string& inventory) {
    verb.AddText("--inventory", "FILE", inventory,
                 "Inventory of the network, an SQLite file (see kxdu inventory --help)")
        .FromEnvironment(INVENTORY_VARIABLE);
}

void AddConfigOption(Verb& verb, std::string& config) {
    verb.AddText(
            "--config", "DIR", config,
            std::string("Folder that holds the configuration file, ") + CONFIG_FILE + "; docs/guide.md lists its items")
        .FromEnvironment(CONFIG_VARIABLE);
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
        auto host = std::make_unique<NS_STANDALONE::Host>(hostOptions);
        if (!options.config.empty()) {
            TellDoubtsOfConfiguration(host->ConfigurationItems());
        }
        return host;
    } catch (const std::runtime_error& error) {
        const std::string complaint = error.what();  // begins with the name of the file that it is about
        if (!options.inventory.empty() && complaint.starts_with(options.inventory + ": ")) {
            ComplainOfInventory(options.inventory, complaint, SourceOf(options.inventory, INVENTORY_VARIABLE));
        }
        throw Failure(Cause::INPUT, complaint + SourceOf(options.config, CONFIG_VARIABLE));
    }
}

NS_STANDALONE::Inventory ReadInventory(const std::string& file) {
    try {
        return NS_STANDALONE::ReadInventory(file);
    } catch (const std::runtime_error& error) {
        ComplainOfInventory(file, error.what(), SourceOf(file, INVENTORY_VARIABLE));
    }
}

void ComplainOfInventory(const std::string& file, const std::string& complaint, const std::string& source) {
    throw Failure(Cause::INPUT, complaint + source + AdviceOnInventory(file, complaint));
}

void ComplainOfNoInventory() {
    throw Failure(
        Cause::INPUT,
        "this identifier cannot be written without an inventory: give one with --inventory FILE or in KX_INVENTORY "
        "(to make one, see kxdu inventory --help)");
}

void ComplainOfNoConfiguration() {
    throw Failure(Cause::INPUT,
                  "identifiers of this type cannot be read without a configuration: give its folder with --config DIR "
                  "or in KX_CONFIG_DIR");
}

}  // namespace NS_KX::NS_KXDU
