#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "catalogue/pieces.h"
#include "cli/bulkoptions.h"
#include "cli/verb.h"
#include "cli/verbs.h"
#include "lines/blockreader.h"
#include "lines/failure.h"
#include "text/text.h"

namespace NS_KX::NS_KXDU {

namespace {

constexpr auto HELP = R"(Examples:
  kxdu get NE PP:2 -i network.fdn
  kxdu get NE SS < network.fdn | sort | uniq -c

TAG is the tag of a level; INDEX selects one of its sub-values, from 0. Without INDEX the column holds the whole value,
"|" included. A missing level or sub-value gives an empty column. The first of several levels with the same tag counts.
Bytes pass unchanged. Rejected are lines that are empty, hold a NUL byte, or are or would become longer than 1 MiB, and
lines with a tab in a column.

Exit code: 0 all lines were converted; 1 some were rejected; 2 wrong arguments, or an input that cannot be read; 3 the
output cannot be written.)";

struct Options {
    BulkOptions bulk;
    std::vector<std::string> columns;
};

[[noreturn]] void RefuseColumn(const std::string& text, const char* rule) {
    std::string complaint = Quoted(text) + " is not a TAG or TAG:INDEX, such as NE or PP:2: " + rule;
    if (std::error_code error; std::filesystem::exists(text, error)) {
        complaint += "; give each file with its own -i";
    }
    throw Failure(Cause::USAGE, complaint);
}

PieceName ParseColumn(const std::string& text) {
    constexpr std::size_t LONGEST = 60;
    if (text.size() > LONGEST) {
        RefuseColumn(text, "a TAG is short");
    }
    if (auto name = PieceName::Parse(text)) {
        return *std::move(name);
    }
    if (text.find(',') != std::string::npos) {
        RefuseColumn(text, "separate columns by blanks, not commas");
    }
    const std::string tag = text.substr(0, text.find(':'));
    if (tag.empty()) {
        RefuseColumn(text, "the TAG is missing");
    }
    if (tag.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789") != std::string::npos) {
        RefuseColumn(text, "a TAG has only upper-case letters and digits");
    }
    RefuseColumn(text, "INDEX must be a number, 0 for the first sub-value");
}

class Getter : public LineConverter {
public:
    explicit Getter(const PieceFinder& finder) : m_finder(finder), m_found(finder.Names().size()) {}

    void Convert(std::string_view line, LineResult& result) override {
        m_finder.Find(line, m_found);
        std::size_t size = 0;
        for (std::size_t column = 0; column < m_found.size(); ++column) {
            if (m_found[column].find('\t') != std::string_view::npos) {
                result.Report("the value of " + m_finder.Names()[column].tag + " holds a tab");
                return;
            }
            size += m_found[column].size() + 1;
        }
        if (size > LONGEST_LINE + 1) {
            result.Report("the columns would be longer than 1 MiB");
            return;
        }
        char* to = result.Room(size);  // for all columns at once
        for (const std::string_view value : m_found) {
            to = std::copy(value.begin(), value.end(), to);
            *to++ = '\t';
        }
        to[-1] = '\n';
    }

private:
    const PieceFinder& m_finder;
    std::vector<std::string_view> m_found;
};

ExitCode Get(const Options& options) {
    std::vector<PieceName> columns;
    for (const std::string& text : options.columns) {
        columns.push_back(ParseColumn(text));
    }
    const PieceFinder finder(std::move(columns));
    LineWork work;
    work.makeConverter = [&] { return std::make_unique<Getter>(finder); };
    work.mustBeUtf8 = false;
    return ExitCodeOf(RunLines(options.bulk, work));
}

}  // namespace

void AddGet(CLI::App& app, Action& action) {
    Verb verb(app, action, "get", "Extract sub-values of identifiers as tab-separated columns");
    const auto options = std::make_shared<Options>();
    verb.AddTexts("TAG[:INDEX]", "", options->columns, "A column for each").Required();
    AddInputOption(verb, options->bulk);
    AddRunOptions(verb, options->bulk);
    AddRejectOptions(verb, options->bulk);
    verb.SetAction(HELP, options, Get);
}

}  // namespace NS_KX::NS_KXDU
