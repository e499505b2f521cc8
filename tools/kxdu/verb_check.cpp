#include <algorithm>

#include <CLI/CLI.hpp>

#include "kinds.h"
#include "levelcheck.h"
#include "lines.h"
#include "services.h"
#include "text.h"
#include "verbs.h"

namespace NS_KXDU {

namespace {

constexpr auto EXAMPLES = R"(Examples:
  kxdu check --inventory network.db network.fdn
  kxdu check --levels-only *.fdn
  echo 'NE=1,fr=2,S=' | kxdu check --levels-only

Tells, as file:line:column: message, what is not well formed (an empty level, no "=", no tag, blanks or lower-case
letters in a tag), unknown (a tag, a last level that means no kind of identifier), out of range (no decimal number where
one belongs, or one beyond 32 bits), repeated, and, of identifiers that have none of this, which are not what would be
written for the record that is read from them, with the text that would. Columns count bytes, from 1. The last needs an
inventory; --levels-only leaves it out.

Also told are lines that are empty, hold a NUL byte, are not UTF-8 or are longer than 1 MiB. A carriage return before a
line's end belongs to the line end.

Exit code: 0 nothing was found; 1 something was; 2 wrong arguments, an input that cannot be read, or no inventory where
one is needed; 3 output that cannot be written.)";

struct Options {
    BulkOptions bulk;
    ServiceOptions services;
    bool isLevelsOnly = false;
};

class Checker : public LineConverter {
public:
    explicit Checker(bool isLevelsOnly) : m_isLevelsOnly(isLevelsOnly) {}

    void Convert(std::string_view line, LineResult& result) override {
        bool isGood = true;
        CheckLevels(line, [&](const Problem& problem) {
            isGood = false;
            result.Report(problem.text, problem.column);
        });
        if (isGood) {
            CheckWhole(line, result);
        }
    }

private:
    void CheckWhole(std::string_view line, LineResult& result) {
        const Kind* const kind = FindKind(line);
        if (kind == nullptr) {
            const std::string_view moc = MocOf(line);
            result.Report("no kind of identifier ends in the level " + Quoted(moc), ColumnOf(line, moc));
        } else if (!m_isLevelsOnly) {
            CheckWriting(*kind, line, result);
        }
    }

    static std::size_t ColumnOf(std::string_view line, std::string_view part) {
        return static_cast<std::size_t>(part.data() - line.data()) + 1;
    }

    void CheckWriting(const Kind& kind, std::string_view line, LineResult& result) {
        m_fdn.assign(line);
        Writing([&] { kind.Rewrite(m_fdn, m_canonical); });
        if (m_canonical != line) {
            const auto [place, other] = std::mismatch(line.begin(), line.end(), m_canonical.begin(), m_canonical.end());
            result.Report("would be written as " + QuotedWhole(m_canonical),
                          static_cast<std::size_t>(place - line.begin()) + 1);
        }
    }

    bool m_isLevelsOnly;
    std::string m_fdn;
    std::string m_canonical;
};

ExitCode Check(const Options& options) {
    const auto services = StartServices(options.services);
    LineWork work;
    work.makeConverter = [&] { return std::make_unique<Checker>(options.isLevelsOnly); };
    work.isReportTheOutput = true;
    work.finding = "found";
    return RunLines(options.bulk, work);
}

}  // namespace

void AddCheck(CLI::App& app, Action& action) {
    auto* const verb = app.add_subcommand("check", "What is wrong with identifiers, and where");
    const auto options = std::make_shared<Options>();
    AddBulkOptions(*verb, options->bulk);
    verb->remove_option(verb->get_option("--rejects"));  // what it finds is its output
    AddServiceOptions(*verb, options->services);
    verb->add_flag("--levels-only", options->isLevelsOnly, "Do not compare with what would be written");
    verb->footer(EXAMPLES);
    verb->callback([&action, options] { action = [options] { return Check(*options); }; });
}

}  // namespace NS_KXDU
