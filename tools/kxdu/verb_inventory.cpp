#include <algorithm>
#include <filesystem>
#include <map>
#include <memory>
#include <set>
#include <string>

#include <CLI/CLI.hpp>

#include <kx_standalone/inventoryfile.h>

#include "bufferedoutput.h"
#include "displaytext.h"
#include "inventorycsv.h"
#include "texttable.h"
#include "verbs.h"

namespace NS_KXDU {

namespace {

using NS_STANDALONE::Inventory;

struct InventoryOptions {
    std::filesystem::path file;
    std::filesystem::path folder;
    std::filesystem::path output;
    bool hasEachNe = false;
};

std::string Count(std::size_t count, const std::string& one) {
    return std::to_string(count) + " " + one + (count == 1 ? "" : "s");
}

std::string Counts(const Inventory& inventory) {
    std::set<std::pair<NS_STANDALONE::DomainCache, std::string>> domains;
    for (const auto& member : inventory.domainMembers) {
        domains.emplace(member.cache, member.domain);
    }
    return Count(inventory.nes.size(), "NE") + ", " + Count(inventory.neTypes.size(), "NE type") + ", " +
           Count(domains.size(), "domain list") + " of " + Count(inventory.domainMembers.size(), "member");
}

void Print(const std::filesystem::path& file, const std::string& text) {
    Output output(file);
    output.Write(text);
    output.Complete();
}

ExitCode RunInit(const InventoryOptions& options) {
    NS_STANDALONE::CreateInventory(options.file);
    Print({}, options.file.string() + ": made, empty\n");
    return ExitCode::OK;
}

ExitCode RunImport(const InventoryOptions& options) {
    const Inventory inventory = ReadInventoryCsv(options.folder);
    NS_STANDALONE::ReplaceInventory(options.file, inventory);
    Print({}, options.file.string() + ": now " + Counts(inventory) + "\n");
    return ExitCode::OK;
}

ExitCode RunExport(const InventoryOptions& options) {
    const Inventory inventory = NS_STANDALONE::ReadInventory(options.file);
    WriteInventoryCsv(options.folder, inventory);
    Print({}, options.folder.string() + ": " + Counts(inventory) + "\n");
    return ExitCode::OK;
}

std::string YesOrDash(bool value) {
    return value ? "yes" : "-";
}

// Of each NE type, the domain lists that it is in.
std::map<std::uint16_t, std::string> DomainsOfTypes(const Inventory& inventory) {
    std::map<std::uint16_t, std::string> domains;
    for (const auto& member : inventory.domainMembers) {
        std::string& text = domains[member.neType];
        text.append(text.empty() ? "" : ", ").append(Printable(member.domain));
    }
    return domains;
}

std::string TypeTable(const Inventory& inventory) {
    std::map<std::uint16_t, std::size_t> neCounts;
    for (const auto& ne : inventory.nes) {
        ++neCounts[ne.neType];
    }
    auto domains = DomainsOfTypes(inventory);
    TextTable table({{"NE type", TextTable::Align::RIGHT},
                     {"Name"},
                     {"NEs", TextTable::Align::RIGHT},
                     {"IP service"},
                     {"KLV"},
                     {"Domains"}});
    for (const auto& type : inventory.neTypes) {
        table.AddRow({std::to_string(type.neType), Printable(type.name), std::to_string(neCounts[type.neType]),
                      YesOrDash(type.ipService), YesOrDash(type.klv), domains[type.neType]});
        domains.erase(type.neType);
    }
    // Domain lists may know types that the inventory has no row for.
    for (const auto& [neType, names] : domains) {
        table.AddRow({std::to_string(neType), "(in domain lists only)", "0", "-", "-", names});
    }
    return table.Text();
}

std::string NeTable(const Inventory& inventory) {
    std::map<std::uint16_t, std::string> names;
    for (const auto& type : inventory.neTypes) {
        names[type.neType] = Printable(type.name);
    }
    TextTable table({{"NE", TextTable::Align::RIGHT},
                     {"NE type", TextTable::Align::RIGHT},
                     {"Name"},
                     {"Multi sub-shelf"},
                     {"OAM numbers"}});
    for (const auto& ne : inventory.nes) {
        table.AddRow({std::to_string(ne.neId), std::to_string(ne.neType), names[ne.neType], YesOrDash(ne.multiSubShelf),
                      ne.oamNumberOmitted ? "left out" : "written"});
    }
    return table.Text();
}

ExitCode RunList(const InventoryOptions& options) {
    const Inventory inventory = NS_STANDALONE::ReadInventory(options.file);
    std::string text = options.file.string() + ": " + Counts(inventory) + "\n\n" + TypeTable(inventory);
    if (options.hasEachNe) {
        text += "\n" + NeTable(inventory);
    }
    Print(options.output, text);
    return ExitCode::OK;
}

constexpr const char* EXAMPLES = R"(Examples:
  kxdu inventory init network.db
  kxdu inventory import network.db network/
      replaces all that network.db holds by the CSV files of the folder
  kxdu inventory export network.db network/
  kxdu inventory list network.db --nes

The CSV files of a folder; the first line of each names its columns:
  ne.csv             ne_id,ne_type,multi_sub_shelf,oam_number_omitted
  ne_type.csv        ne_type,name,ip_service,klv
  domain_member.csv  cache,domain,ne_type
Yes and no are 1 and 0; a cache is NE_TYPE_LIST or EQUIPMENT_TYPE.)";

}  // namespace

void AddInventory(CLI::App& app, Action& action) {
    CLI::App* const verb = app.add_subcommand("inventory", "Make, fill and show the file that says what each NE is");
    verb->require_subcommand(1);
    verb->footer(EXAMPLES);
    const auto options = std::make_shared<InventoryOptions>();
    const auto add = [&](const char* name, const char* does, ExitCode (*run)(const InventoryOptions&),
                         const char* footer) {
        CLI::App* const operation = verb->add_subcommand(name, does);
        operation->footer(footer);
        operation->callback([options, run, &action] { action = [options, run] { return run(*options); }; });
        return operation;
    };
    const auto addFile = [&](CLI::App* operation) {
        return operation->add_option("FILE", options->file, "The inventory, an SQLite file")->required();
    };
    const auto addFolder = [&](CLI::App* operation, const char* does) {
        operation->add_option("FOLDER", options->folder, does)->required();
    };

    addFile(add("init", "Make an empty inventory; a file that exists is left alone, with an error", RunInit,
                "Example:\n  kxdu inventory init network.db"));

    CLI::App* const import =
        add("import", "Replace all that an inventory holds by the content of CSV files, all or nothing", RunImport,
            "Example:\n  kxdu inventory import network.db network/");
    addFile(import);
    addFolder(import, "Folder of ne.csv, ne_type.csv and domain_member.csv");

    CLI::App* const toCsv = add("export", "Write an inventory as CSV files", RunExport,
                                "Example:\n  kxdu inventory export network.db network/");
    addFile(toCsv);
    addFolder(toCsv, "Folder for ne.csv, ne_type.csv and domain_member.csv; made when there is none");

    CLI::App* const list = add("list", "Show an inventory: counts and NE types", RunList,
                               "Examples:\n  kxdu inventory list network.db\n"
                               "  KX_INVENTORY=network.db kxdu inventory list --nes");
    addFile(list)->envname("KX_INVENTORY");
    list->add_flag("--nes", options->hasEachNe, "Also show each NE");
    list->add_option("-o,--output", options->output, "File to write to, instead of standard output");
}

}  // namespace NS_KXDU
