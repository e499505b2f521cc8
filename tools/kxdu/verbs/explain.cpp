#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "catalogue/explanation.h"
#include "cli/asked.h"
#include "cli/colour.h"
#include "cli/services.h"
#include "cli/verb.h"
#include "cli/verbs.h"
#include "formats/explanationdrawing.h"
#include "lines/blockreader.h"
#include "lines/failure.h"
#include "lines/output.h"
#include "lines/terminal.h"
#include "text/line.h"

namespace NS_KX::NS_KXDU {

namespace {

constexpr auto HELP = R"(Examples:
  kxdu explain 'NE=12,FR=1,S=3,CP=-1,PP=16||7|'
  kxdu explain --inventory network.db 'NE=12,FR=1,S=3,CP=-1,PP=|1025|7|GE0/7,SUBIF=100'
      with the types of the NEs, and compared with what the library writes
  kxdu explain --color always 'NE=5,MD=3|md1' | less -R
  head -n 3 network.fdn | kxdu explain -

Below the drawing stand the record that is read from the identifier, with unset fields dimmed, and one line for each
fault; to check many identifiers, use kxdu check. At most the first 200 pieces of an identifier are drawn. The lines are
drawn in ASCII if the locale (LC_ALL, LC_CTYPE or LANG) is not a UTF-8 one.

Exit code: 0 even if the identifier has faults; 2 wrong arguments, or an input, inventory or configuration that cannot be
read; the first line that is no text ends the run so; 3 the output cannot be written.)";

struct Options {
    std::vector<std::string> fdns;
    ServiceOptions services;
    Colour colour = Colour::AUTO;
};

using TakeIdentifier = std::function<void(std::string_view fdn)>;

void ForEachLineOfInput(const TakeIdentifier& take) {
    RefuseEndlessInput();
    constexpr std::size_t BLOCK_SIZE = std::size_t{64} << 10U;
    BlockReader reader({"-"}, BLOCK_SIZE);
    InputBlock block;
    while (reader.Next(block)) {
        std::size_t number = block.firstLine;
        const auto refuse = [&number](const char* reason) {
            throw Failure(Cause::INPUT, "<stdin>:" + std::to_string(number) + ": " + reason);
        };
        if (block.isTooLongLine) {
            refuse(LINE_TOO_LONG);
        }
        for (std::string_view rest = block.Text(); !rest.empty(); ++number) {
            const std::string_view fdn = TakeLine(rest);
            if (const auto flaw = FindFlaw(fdn)) {
                refuse(flaw->reason);
            }
            take(fdn);
        }
    }
}

// Other verbs take files where this one takes identifiers.
void RefuseFile(const std::string& argument) {
    std::error_code error;
    if (argument.find('=') == std::string::npos && std::filesystem::is_regular_file(argument, error)) {
        throw Failure(
            Cause::INPUT,
            argument + " is a file, not an identifier; to explain each line of it: kxdu explain - <" + argument);
    }
}

void ForEachIdentifier(const std::vector<std::string>& fdns, const TakeIdentifier& take) {
    for (const std::string& fdn : fdns) {
        if (fdn == "-") {
            ForEachLineOfInput(take);
        } else {
            RefuseFile(fdn);
            take(fdn);
        }
    }
}

// What an inventory knows of NEs.
DescribeNe DescribeBy(const NS_STANDALONE::Inventory& inventory) {
    return [&inventory](std::int32_t neId) -> std::string {
        const auto& nes = inventory.nes;
        const auto ne = std::find_if(nes.begin(), nes.end(), [&](const auto& row) { return row.neId == neId; });
        if (ne == nes.end()) {
            return ": not in the inventory, treated as NE type 0";
        }
        const auto& types = inventory.neTypes;
        const auto type =
            std::find_if(types.begin(), types.end(), [&](const auto& row) { return row.neType == ne->neType; });
        const std::string name = type == types.end() ? "" : type->name + ", ";
        return ": " + name + "NE type " + std::to_string(ne->neType);
    };
}

// How to get what was missing.
void AddAdvice(Explanation& explanation) {
    for (std::string& note : explanation.notes) {
        if (note == NOT_COMPARED) {
            note += "; give --inventory FILE";
        } else if (note == NOT_READ) {
            note += "; give --config DIR";
        }
    }
}

ExitCode ExplainAll(const Options& options) {
    const auto services = StartServices(options.services);
    std::optional<NS_STANDALONE::Inventory> inventory;
    if (!options.services.inventory.empty()) {
        inventory = ReadInventory(options.services.inventory);
    }
    const DescribeNe describeNe = inventory ? DescribeBy(*inventory) : DescribeNe();
    Output output({});
    const DrawingStyle style{IsColoured(options.colour), !IsUtf8Locale()};
    bool isFirst = true;
    ForEachIdentifier(options.fdns, [&](std::string_view fdn) {
        Explanation explanation = Explain(fdn, FindKind(fdn), NS_UTIL::Surroundings::OfSystem(), describeNe);
        AddAdvice(explanation);
        output.Write((isFirst ? "" : "\n\n") + Draw(explanation, style));
        isFirst = false;
    });
    output.Complete();
    return ExitCode::OK;
}

}  // namespace

void AddExplain(CLI::App& app, Action& action) {
    Verb verb(app, action, "explain", "Draw an identifier with a line from each piece to its meaning");
    const auto options = std::make_shared<Options>();
    verb.AddTexts("IDENTIFIER", "TEXT", options->fdns,
                  "The identifier; quote it, since the shell would take its \"|\" for a pipe; - explains each line of "
                  "standard input")
        .Required();
    AddServiceOptions(verb, options->services);
    AddColourOption(verb, options->colour);
    verb.SetAction(HELP, options, ExplainAll);
}

}  // namespace NS_KX::NS_KXDU
