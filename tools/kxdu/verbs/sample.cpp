#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "cli/verb.h"
#include "cli/verbs.h"
#include "lines/bufferedoutput.h"
#include "lines/failure.h"
#include "sample/sampleidentifiers.h"
#include "sample/sampleinventoryservice.h"
#include "sample/samplenetwork.h"
#include "verbs/inventorycsv.h"

namespace NS_KX::NS_KXDU {

namespace {

constexpr auto HELP = R"(Examples:
  kxdu sample --ne 3 --seed 7
      the identifiers of three NEs
  kxdu sample --ne 2000 -o network.fdn --inventory-csv network/
      the identifiers of a network, and its inventory for kxdu inventory import
  kxdu sample --identifiers 5000000 | kxdu check --levels-only
      a given number of identifiers, for measuring

No inventory and no configuration is used.

Exit code: 0 done; 2 wrong arguments; 3 the output cannot be written. A reader of the output that stops early is no
error.)";

constexpr std::int32_t MOST_NES = 100'000'000;

struct Options {
    std::int32_t neCount = 2000;
    std::uint64_t identifierCount = 0;  // 0: all of the NEs' identifiers
    std::uint64_t seed = 1;
    std::string output;
    std::string inventoryFolder;  // empty: no inventory is written
};

// Makes up as many identifiers as asked for; returns the number of their NEs.
template <class Take>
std::int32_t MakeIdentifiers(const SampleNetwork& network, const Options& options, Take take) {
    const SampleInventoryService inventory(network);
    SampleIdentifiers identifiers(network);
    const std::int32_t mostNes = options.identifierCount == 0 ? options.neCount : MOST_NES;
    const std::uint64_t most = options.identifierCount == 0 ? UINT64_MAX : options.identifierCount;
    std::uint64_t made = 0;
    const auto takeFirst = [&](const std::string& fdn) {
        if (made < most) {
            ++made;
            take(fdn);
        }
    };
    std::int32_t neId = 0;
    while (neId < mostNes && made < most) {
        identifiers.Write(++neId, takeFirst);
    }
    return neId;
}

// The number of NEs to which the identifiers belong.
std::int32_t CountNes(const SampleNetwork& network, const Options& options) {
    return options.identifierCount == 0 ? options.neCount
                                        : MakeIdentifiers(network, options, [](const std::string&) {});
}

ExitCode Sample(const Options& options) {
    if (!options.inventoryFolder.empty()) {
        RefuseReplacing(InventoryCsvFiles(options.inventoryFolder), options.output);
    }
    const SampleNetwork network(options.seed);
    BufferedOutput output(options.output);
    const auto write = [&output](const std::string& fdn) {
        output.Write(fdn);
        output.Write("\n");
    };
    const auto writeInventory = [&](std::int32_t neCount) {
        std::int32_t neId = 0;
        WriteInventoryCsv(options.inventoryFolder, network.MakeInventory(0),
                          [&] { return neId == neCount ? std::nullopt : std::optional(network.InventoryRow(++neId)); });
    };
    const bool hasInventory = !options.inventoryFolder.empty();
    std::int32_t neCount = 0;
    try {
        neCount = MakeIdentifiers(network, options, write);
    } catch (const ClosedPipe&) {
        if (hasInventory) {
            writeInventory(CountNes(network, options));
        }
        throw;
    }
    if (hasInventory) {
        writeInventory(neCount);
    }
    output.Complete();
    return ExitCode::OK;
}

}  // namespace

void AddSample(CLI::App& app, Action& action) {
    Verb verb(app, action, "sample", "Make up a plausible network: its identifiers and its inventory");
    const auto options = std::make_shared<Options>();
    const VerbOption neCount = verb.AddNumber("--ne", options->neCount, "Number of NEs; 2000 by default", 1, MOST_NES);
    verb.AddNumber("--identifiers", options->identifierCount,
                   "Number of identifiers to write, of as many NEs as it takes", 1)
        .Excludes(neCount);
    verb.AddNumber("--seed", options->seed, "The same seed gives the same bytes on every machine; 1 by default");
    verb.AddOutput(options->output);
    verb.AddText("--inventory-csv", "FOLDER", options->inventoryFolder,
                 "Also write the inventory to FOLDER, as CSV files");
    verb.SetAction(HELP, options, Sample);
}

}  // namespace NS_KX::NS_KXDU
