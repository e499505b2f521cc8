#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "cli/verb.h"
#include "cli/verbs.h"
#include "lines/bufferedoutput.h"
#include "lines/failure.h"
#include "sample/sampleidentifiers.h"
#include "sample/samplenetwork.h"
#include "verbs/inventorycsv.h"

namespace NS_KX::NS_KXDU {

namespace {

constexpr auto HELP = R"(Examples:
  kxdu sample --ne 3 --seed 7
      the identifiers of three NEs
  kxdu sample --ne 2000 -o network.fdn --inventory-csv network/
      those of a network, and the inventory that "kxdu inventory import" reads
  kxdu sample --identifiers 5000000 | kxdu check --levels-only
      as many as asked for, to measure with

Neither an inventory nor a configuration plays a part.

Exit code: 0; 2 wrong arguments; 3 output that cannot be written. A reader of the output that goes away is no error.)";

constexpr std::int32_t MOST_NES = 100'000'000;

struct Options {
    std::int32_t neCount = 2000;
    std::uint64_t identifierCount = 0;  // 0: all of the NEs' identifiers
    std::uint64_t seed = 1;
    std::string output;
    std::string inventoryFolder;  // empty: no inventory is written
};

// Makes up identifiers until there are as many as asked for; answers how many NEs they are of.
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

// How many NEs the identifiers that were asked for need.
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
    Verb verb(app, action, "sample", "Make up a plausible network: its identifiers, its inventory");
    const auto options = std::make_shared<Options>();
    const VerbOption neCount =
        verb.AddNumber("--ne", options->neCount, "How many NEs the network has; 2000 by default", 1, MOST_NES);
    verb.AddNumber("--identifiers", options->identifierCount,
                   "How many identifiers are written, of as many NEs as it takes", 1)
        .Excludes(neCount);
    verb.AddNumber("--seed", options->seed, "The same seed gives the same bytes, on every machine; 1 by default");
    verb.AddOutput(options->output);
    verb.AddText("--inventory-csv", "FOLDER", options->inventoryFolder,
                 "Also write the inventory to FOLDER, as CSV files");
    verb.SetAction(HELP, options, Sample);
}

}  // namespace NS_KX::NS_KXDU
