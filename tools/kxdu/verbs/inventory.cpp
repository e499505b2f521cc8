#include <algorithm>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <kx_domain_util/netype.h>
#include <kx_standalone/inventoryfile.h>

#include "cli/listing.h"
#include "cli/nearestword.h"
#include "cli/services.h"
#include "cli/verb.h"
#include "cli/verbs.h"
#include "cli/wrapping.h"
#include "lines/descriptor.h"
#include "lines/failure.h"
#include "lines/fileinuse.h"
#include "lines/interruptions.h"
#include "lines/output.h"
#include "text/quoting.h"
#include "verbs/inventorycsv.h"

namespace NS_KX::NS_KXDU {

namespace {

using NS_STANDALONE::DomainCache;
using NS_STANDALONE::Inventory;

constexpr auto BEFORE_THE_LISTS = R"(Examples:
  kxdu inventory init network.db
  kxdu inventory import network.db network/
      replaces everything in network.db by the CSV files of the folder
  kxdu inventory export network.db network/
  kxdu inventory list network.db --nes

An inventory is an SQLite file that says what each NE is. Other verbs take it with --inventory or from KX_INVENTORY.
"list" takes FILE or KX_INVENTORY; "init", "import" and "export" need FILE. A folder of CSV files holds the same; the
first line of each file names its columns:
  ne.csv
    ne_id               NE number, 0 to 2147483647
    ne_type             its NE type, a row of ne_type.csv
    multi_sub_shelf     1: has several sub-shelves
    oam_number_omitted  1: its maintenance identifiers leave out the numbers of domains and associations
  ne_type.csv
    ne_type             0 to 65535
    name                for people
    ip_service          1: offers IP services
    klv                 1: belongs to the KLV family
  domain_member.csv     the domain lists of an NE type, which need not be in ne_type.csv
    cache               NE_TYPE_LIST or EQUIPMENT_TYPE
    domain              name of the list
    ne_type             0 to 65535
Flags are 0 or 1. A byte-order mark at the beginning of a file is skipped. Answers depend on these domain lists
(kxdu ne-type shows the answers):)";

constexpr auto AFTER_THE_LISTS =
    R"(Other lists are kept, but no answer depends on them; import names each of them on standard error.

Exit code: 0 done; 2 wrong arguments, or an inventory or CSV file that cannot be read or made; 3 the output cannot be
written.)";

// The lists of `cache` that the predicates of the library look into.
std::vector<std::string> AskedLists(DomainCache cache) {
    if (cache == DomainCache::NE_TYPE_LIST) {
        return {NS_UTIL::NE_TYPE_LISTS.begin(), NS_UTIL::NE_TYPE_LISTS.end()};
    }
    return {NS_UTIL::EQUIPMENT_TYPE_LISTS.begin(), NS_UTIL::EQUIPMENT_TYPE_LISTS.end()};
}

std::string Footer() {
    std::string text(BEFORE_THE_LISTS);
    for (const DomainCache cache : NS_STANDALONE::DOMAIN_CACHES) {
        std::vector<std::string> names = AskedLists(cache);
        for (std::string& name : names) {
            name = Quoted(name) + (&name == &names.back() ? "" : ",");
        }
        std::string head("  ");
        head.append(NameOf(cache)).resize(18, ' ');
        text.append("\n").append(Wrapped(head, names));
    }
    return text.append("\n").append(AFTER_THE_LISTS);
}

struct Options {
    std::string file;
    std::string folder;
    ListingOptions listing;
    bool isOfNes = false;
};

std::string Count(std::size_t count, const std::string& one) {
    return std::to_string(count) + " " + one + (count == 1 ? "" : "s");
}

using DomainLists = std::set<std::pair<DomainCache, std::string>>;

DomainLists ListsOf(const Inventory& inventory) {
    DomainLists lists;
    for (const auto& member : inventory.domainMembers) {
        lists.emplace(member.cache, member.domain);
    }
    return lists;
}

std::string Counts(const Inventory& inventory) {
    return Count(inventory.nes.size(), "NE") + ", " + Count(inventory.neTypes.size(), "NE type") + ", " +
           Count(ListsOf(inventory).size(), "domain list") + " of " + Count(inventory.domainMembers.size(), "member");
}

// Refuses FILE and FOLDER given in the wrong order.
void RefuseMixUp(const Options& options) {
    std::error_code error;
    if (std::filesystem::is_directory(options.file, error) && std::filesystem::is_regular_file(options.folder, error)) {
        throw Failure(Cause::INPUT, options.file + " is a folder, and " + options.folder +
                                        " is a file: FILE, the inventory, comes first");
    }
}

// What to do about a file that exists where a new inventory should go.
std::string AdviceOn(const std::string& file) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(file, error)) {
        return {};
    }
    try {
        NS_STANDALONE::ReadInventory(file);
    } catch (const std::runtime_error&) {
        return ", but is not an inventory; choose another name";
    }
    return "; kxdu inventory import replaces what it holds";
}

ExitCode Init(const Options& options) {
    RefuseJournalOfDatabase(options.file);
    try {
        const InterruptionsHeld held;  // a signal in the middle would leave the draft behind
        NS_STANDALONE::CreateInventory(options.file);
    } catch (const std::runtime_error& failed) {
        throw Failure(Cause::INPUT, failed.what() + AdviceOn(options.file));
    }
    WriteWhole({}, options.file + ": empty inventory created\n");
    return ExitCode::OK;
}

// Warns of lists that no answer depends on: their names may be misspelt.
void WarnOfUnusedLists(const Inventory& inventory) {
    for (const auto& [cache, list] : ListsOf(inventory)) {
        const std::vector<std::string> asked = AskedLists(cache);
        if (std::find(asked.begin(), asked.end(), list) != asked.end()) {
            continue;
        }
        std::string text("kxdu: no answer depends on the ");
        text.append(NameOf(cache)).append(" ").append(Quoted(list));
        if (const std::string_view nearest = NearestWord(list, asked); !nearest.empty()) {
            text.append("; did you mean ").append(Quoted(nearest)).append("?");
        }
        WriteMessage(text.append("\n"));
    }
}

ExitCode Import(const Options& options) {
    RefuseMixUp(options);
    if (std::error_code error; std::filesystem::is_regular_file(options.folder, error)) {
        throw Failure(Cause::INPUT, options.folder + " is a file: FOLDER is the folder that holds ne.csv");
    }
    const Inventory inventory = ReadInventoryCsv(options.folder);
    OpeningInventory(options.file, [&] { NS_STANDALONE::ReplaceInventory(options.file, inventory); });
    WriteWhole({}, options.file + ": now " + Counts(inventory) + "\n");
    WarnOfUnusedLists(inventory);
    return ExitCode::OK;
}

ExitCode Export(const Options& options) {
    RefuseMixUp(options);
    const Inventory inventory =
        OpeningInventory(options.file, [&] { return NS_STANDALONE::ReadInventory(options.file); });
    for (const FileInUse& table : InventoryCsvFiles(options.folder)) {
        RefuseReplacing(FilesInUse({options.file, {}}), table.name);
    }
    WriteInventoryCsv(options.folder, inventory);
    WriteWhole({}, options.folder + ": " + Counts(inventory) + "\n");
    return ExitCode::OK;
}

// For each NE type, the domain lists that it is in, as text.
std::map<std::uint16_t, std::string> DomainsOfTypes(const Inventory& inventory) {
    std::map<std::uint16_t, std::string> domains;
    for (const auto& member : inventory.domainMembers) {
        std::string& text = domains[member.neType];
        text.append(text.empty() ? "" : ", ").append(member.domain);
    }
    return domains;
}

// A table is preceded by the size of the inventory; the other formats are for programs.
std::string Preface(const Inventory& inventory, const Options& options) {
    return options.listing.format == Listing::Format::TABLE ? options.file + ": " + Counts(inventory) + "\n\n" : "";
}

void ListTypes(const Inventory& inventory, const Options& options) {
    std::map<std::uint16_t, std::int64_t> neCounts;
    for (const auto& ne : inventory.nes) {
        ++neCounts[ne.neType];
    }
    auto domains = DomainsOfTypes(inventory);
    Listing listing({"neType", "name", "nes", "ipService", "klv", "domains"}, options.listing,
                    Preface(inventory, options));
    for (const auto& type : inventory.neTypes) {
        listing.AddRow({std::int64_t{type.neType}, type.name, neCounts[type.neType], type.ipService, type.klv,
                        domains[type.neType]});
        domains.erase(type.neType);
    }
    // Domain lists may hold types without a row in the inventory.
    for (const auto& [neType, names] : domains) {
        listing.AddRow({std::int64_t{neType}, Listing::None{"(in domain lists only)"}, std::int64_t{0}, Listing::None{},
                        Listing::None{}, names});
    }
    listing.Complete();
}

void ListNes(const Inventory& inventory, const Options& options) {
    std::map<std::uint16_t, std::string> names;
    for (const auto& type : inventory.neTypes) {
        names[type.neType] = type.name;
    }
    Listing listing({"neId", "neType", "name", "multiSubShelf", "oamNumberOmitted"}, options.listing,
                    Preface(inventory, options));
    for (const auto& ne : inventory.nes) {
        listing.AddRow(
            {std::int64_t{ne.neId}, std::int64_t{ne.neType}, names[ne.neType], ne.multiSubShelf, ne.oamNumberOmitted});
    }
    listing.Complete();
}

ExitCode List(const Options& options) {
    RefuseReplacing(FilesInUse({options.file, {}}), options.listing.output);
    const Inventory inventory = ReadInventory(options.file);
    (options.isOfNes ? ListNes : ListTypes)(inventory, options);
    return ExitCode::OK;
}

// Each operation has its own options: with shared ones, KX_INVENTORY, which `list` reads, would also set the FILE of
// the others.
class Operation {
public:
    Operation(Verb& inventory, const std::string& name, const std::string& description, const std::string& example,
              ExitCode (*run)(const Options&))
        : m_verb(inventory.AddVerb(name, description)) {
        m_verb.SetAction("Example:\n  kxdu inventory " + example +
                             "\n\nFor the CSV files and the exit codes see kxdu inventory --help.",
                         m_options, run);
    }

    VerbOption AddFile() {
        const auto take = [options = m_options](const std::string& name) {
            options->file = name;
            return std::string(name.empty() ? "the name is empty" : "");
        };
        return m_verb.AddChecked("FILE", "", take, "The inventory, an SQLite file").Required();
    }
    void AddFolder(const std::string& help) { m_verb.AddText("FOLDER", "", m_options->folder, help).Required(); }
    void AddListing() {
        m_verb.AddFlag("--nes", m_options->isOfNes, "Show the NEs instead of the NE types");
        AddListingOptions(m_verb, m_options->listing);
    }

private:
    Verb m_verb;
    std::shared_ptr<Options> m_options = std::make_shared<Options>();
};

}  // namespace

void AddInventory(CLI::App& app, Action& action) {
    Verb inventory(app, action, "inventory", "Make, fill and show the file that says what each NE is");
    inventory.SetHelp(Footer());

    Operation init(inventory, "init", "Make an empty inventory; fails if the file exists", "init network.db", Init);
    init.AddFile();

    Operation import(inventory, "import",
                     "Replace everything in an inventory by CSV files; changes nothing if it fails",
                     "import network.db network/", Import);
    import.AddFile();
    import.AddFolder("The folder of ne.csv, ne_type.csv and domain_member.csv");

    Operation toCsv(inventory, "export", "Write an inventory as CSV files", "export network.db network/", Export);
    toCsv.AddFile();
    toCsv.AddFolder("The folder for ne.csv, ne_type.csv and domain_member.csv; made if missing");

    Operation list(inventory, "list", "Show the NE types or the NEs of an inventory; a table begins with its size",
                   "list network.db --nes --format csv", List);
    list.AddFile().FromEnvironment("KX_INVENTORY");
    list.AddListing();
}

}  // namespace NS_KX::NS_KXDU
