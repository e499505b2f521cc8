#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <unistd.h>

#include <kx_standalone/inventoryfile.h>

#include "cli/counting.h"
#include "cli/verb.h"
#include "cli/verbs.h"
#include "lines/bufferedoutput.h"
#include "lines/descriptor.h"
#include "lines/failure.h"
#include "lines/fileinuse.h"
#include "report/alarms.h"
#include "report/network.h"
#include "report/page.h"
#include "text/quoting.h"

namespace NS_KX::NS_KXDU {

namespace {

constexpr auto HELP = R"(Examples:
  kxdu report network.fdn --inventory network.db -o report.html
  kxdu report network.fdn --alarms alarms.tsv --alarm-fdn 1 -o report.html
  kxdu report network.fdn --alarms alarms.jsonl --alarm-fdn fdn -o report.html
  kxdu report network.fdn --ne 1-2000 -o part.html

Makes one HTML file, which needs no network and no installation: open it in a browser. It shows how many of what there
are, what is wrong, and where the alarms are; then any NE, with its shelves drawn. Its numbers are those of kxdu stats.

Only what the file names is drawn: identifiers do not say how many slots a shelf has. With an inventory, NEs have types
and families, and identifiers are compared with what the library writes.

--alarms names a file with one alarm a line, --alarm-fdn where the identifier stands in it: a number is that of a field,
from 0; any other word is a member of JSON lines. Fields stand between tabs, or between the characters that
--alarm-delimiter names; then they may be in quotes as in CSV.

One page holds 500000 identifiers; for a larger network, choose NEs with --ne.

Exit code: 0 the page was made; 2 wrong arguments, an input that cannot be read, or a network that is too large; 3 the
output cannot be written.)";

struct Options {
    CountingOptions counting;
    AlarmOptions alarms;
    std::string output;
};

std::vector<FileInUse> AllFilesInUse(const Options& options) {
    std::vector<FileInUse> files = FilesInUse(options.counting.services);
    for (const std::string& file : options.counting.bulk.files) {
        files.push_back({file, "input"});
    }
    if (!options.alarms.file.empty()) {
        files.push_back({options.alarms.file, "file of alarms"});
    }
    return files;
}

void RequireUsable(const Options& options) {
    if (options.alarms.file.empty() != options.alarms.field.empty()) {
        throw Failure(Cause::INPUT, options.alarms.file.empty()
                                        ? "--alarm-fdn needs a file of alarms: name it with --alarms FILE"
                                        : "--alarms needs the place of the identifier: name it with --alarm-fdn FIELD");
    }
    if (options.output.empty() && isatty(STDOUT_FILENO) == 1) {
        throw Failure(Cause::INPUT, "the page is no text for a terminal: name a file with -o report.html");
    }
}

ExitCode Report(const Options& options) {
    RequireUsable(options);
    const std::vector<FileInUse> filesInUse = AllFilesInUse(options);
    RefuseReplacing(filesInUse, options.output);
    const ServiceOptions& services = options.counting.services;
    std::optional<NS_STANDALONE::Inventory> inventory;
    if (!services.inventory.empty()) {
        inventory = ReadInventory(services.inventory);
    }
    const Network network = ReadNetwork(options.counting, filesInUse);
    if (network.nes.empty() && options.counting.nes.AreAll()) {
        WriteMessage("kxdu: no identifier is of an NE, so the page shows none\n");
    }
    std::optional<Alarms> alarms;
    if (!options.alarms.file.empty()) {
        alarms = ReadAlarms(options.alarms, options.counting.nes, options.counting.bulk, filesInUse);
    }
    if (alarms && alarms->unread != 0 && alarms->unread == alarms->total) {
        WriteMessage("kxdu: " + options.alarms.file + ": no line has the identifier of an NE in " +
                     Quoted(options.alarms.field) + ", the field or member that --alarm-fdn names\n");
    }
    BufferedOutput output(options.output);
    WritePage({network, options.counting.Search(), options.counting.bulk.files, inventory ? &*inventory : nullptr,
               services.inventory, alarms ? &*alarms : nullptr, options.alarms.file},
              output);
    output.Complete();
    return ExitCode::OK;
}

}  // namespace

void AddReport(CLI::App& app, Action& action) {
    Verb verb(app, action, "report",
              "Make a page that shows a network: counts, problems, alarms, and the shelves of NEs");
    const auto options = std::make_shared<Options>();
    AddCountingOptions(verb, options->counting);
    verb.AddText("--alarms", "FILE", options->alarms.file, "Show where these alarms are; one alarm a line");
    verb.AddText(
        "--alarm-fdn", "FIELD", options->alarms.field,
        "Where an alarm has the identifier: the number of a field, from 0, or the name of a member of JSON lines");
    verb.AddChecked(
        "--alarm-delimiter", "CHAR",
        [&delimiter = options->alarms.delimiter](const std::string& text) {
            if (text.size() != 1 || text == "\"") {
                return Quoted(text) + " is not one character, other than a quote";
            }
            delimiter = text.front();
            return std::string();
        },
        "What separates the fields of an alarm; a tab by default");
    verb.AddOutput(options->output);
    verb.SetAction(HELP, options, Report);
}

}  // namespace NS_KX::NS_KXDU
