#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "catalogue/levelcheck.h"
#include "catalogue/writingcheck.h"
#include "cli/bulkoptions.h"
#include "cli/colour.h"
#include "cli/identifierlines.h"
#include "cli/missingnes.h"
#include "cli/services.h"
#include "cli/verb.h"
#include "cli/verbs.h"
#include "lines/descriptor.h"

namespace NS_KX::NS_KXDU {

namespace {

constexpr auto HELP = R"(Examples:
  kxdu check --inventory network.db network.fdn
  kxdu check --levels-only *.fdn
  echo 'NE=1,fr=2,S=' | kxdu check --levels-only
  kxdu check -q --levels-only network.fdn && echo good

Reports each finding as file:line:column: message. Columns count bytes, from 1. It finds
  - malformed levels: without tag, "=" or value; with other characters in the tag than upper-case letters and digits;
    with too few or too many sub-values
  - unknown tags, and a last level that ends no kind of identifier
  - numbers out of range: not decimal, or not from -2147483648 to 2147483647; port numbers go up to 4294967295
  - levels that are repeated, or stand after a level that they contain
  - identifiers that have none of these faults, but differ from what the library writes for the record that it reads
    from them. The message shows that text, and names the configuration item or the fact about the NE that is the
    reason. Or it says that nothing is read, as from the text that stands for "no port".

Only this last comparison uses the inventory. Without one, an identifier that is right on some NEs passes, and standard
error says at the end how many there were; one that is right on none is reported. --levels-only skips the comparison,
and opens neither inventory nor configuration. NEs that the inventory lacks are counted on standard error at the end;
their identifiers are compared as those of NE type 0.

A port name with an escaped "|" (PP=16|1025|1|a\|b) is well formed, but always differs: it is read as a|b, and written
without the escape.

Lines that are empty, hold a NUL byte, are not UTF-8 or are longer than 1 MiB are reported too. A carriage return before
a line end belongs to the line end.

Exit code: 0 nothing was found; 1 something was found; 2 wrong arguments, or an input that cannot be read; 3 the output
cannot be written.)";

struct Options {
    BulkOptions bulk;
    ServiceOptions services;
    Colour colour = Colour::AUTO;
    bool isLevelsOnly = false;
    bool isQuiet = false;
    bool isSummaryOnly = false;
};

BulkOptions BulkOptionsOf(const Options& options) {
    BulkOptions bulk = options.bulk;
    if (options.isQuiet) {
        bulk.findings = FindingsShown::NONE;
        bulk.isStrict = true;  // the first finding decides the exit code
    } else if (options.isSummaryOnly) {
        bulk.findings = FindingsShown::SUMMARY;
    }
    return bulk;
}

class Checker : public LineConverter {
public:
    // What is counted.
    static constexpr std::size_t UNDECIDED = 0;

    explicit Checker(bool isLevelsOnly) : m_isLevelsOnly(isLevelsOnly) {}

    void Convert(std::string_view line, LineResult& result) override {
        if (result.IsFirstLine()) {
            RefuseOtherThanIdentifiers(line);
        }
        const Kind* const kind =
            CheckIdentifier(line, [&](const Problem& problem) { result.Report(problem.text, problem.column); });
        if (kind != nullptr && !m_isLevelsOnly) {
            CheckWriting(*kind, line, result);
        }
    }

private:
    void CheckWriting(const Kind& kind, std::string_view line, LineResult& result) {
        const auto [problem, isUndecided] = m_writing.Find(kind, line, NS_UTIL::Surroundings::OfSystem());
        if (problem) {
            result.Report(problem->text, problem->column);
        }
        if (isUndecided) {
            result.Count(UNDECIDED);
        }
    }

    bool m_isLevelsOnly;
    WritingCheck m_writing;
};

// What is said of the lines that are right on some NEs only.
void TellUndecided(const LineCounts& counts) {
    const std::uint64_t undecided = counts.tallies[Checker::UNDECIDED];
    if (undecided != 0) {
        WriteMessage("kxdu: " + std::to_string(undecided) + " of " + std::to_string(counts.lines) +
                     (counts.lines == 1 ? " line" : " lines") + (undecided == 1 ? " is" : " are") +
                     " right on some NEs only, and there is no inventory to tell which; give one with --inventory "
                     "FILE\n");
    }
}

ExitCode Check(const Options& options) {
    MissingNes missing;
    const auto services = options.isLevelsOnly ? nullptr : StartServices(options.services, &missing);
    LineWork work;
    work.filesInUse = FilesInUse(options.services);
    work.makeConverter = [&] { return std::make_unique<Checker>(options.isLevelsOnly); };
    work.isReportTheOutput = true;
    work.isReportColoured = IsColoured(options.colour, options.bulk.output);
    work.oneFinding = "problem";
    const LineCounts counts = RunLines(BulkOptionsOf(options), work);
    if (!options.isQuiet) {
        TellUndecided(counts);
        missing.Tell();
    }
    return ExitCodeOf(counts);
}

}  // namespace

void AddCheck(CLI::App& app, Action& action) {
    Verb verb(app, action, "check", "Find what is wrong with identifiers, and where");
    const auto options = std::make_shared<Options>();
    AddInputFiles(verb, options->bulk);
    AddRunOptions(verb, options->bulk);
    verb.AddFlag("--strict", options->bulk.isStrict, "Stop after the first finding");
    verb.AddFlag("-q,--quiet", options->isQuiet,
                 "Print nothing and stop at the first finding: the exit code says whether there is one");
    verb.AddFlag("--summary", options->isSummaryOnly, "Print only how many problems there are, in how many lines");
    AddColourOption(verb, options->colour);
    AddServiceOptions(verb, options->services);
    verb.AddFlag("--levels-only", options->isLevelsOnly,
                 "Check the levels only; do not compare with what the library writes");
    verb.SetAction(HELP, options, Check);
}

}  // namespace NS_KX::NS_KXDU
