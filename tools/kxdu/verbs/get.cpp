#include <algorithm>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <kx_domain_util/fdnscanner.h>

#include "cli/bulkoptions.h"
#include "cli/verb.h"
#include "cli/verbs.h"
#include "lines/blockreader.h"
#include "lines/failure.h"
#include "text/number.h"
#include "text/text.h"

namespace NS_KX::NS_KXDU {

using NS_UTIL::NS_FDN::Level;
using NS_UTIL::NS_FDN::LevelScanner;
using NS_UTIL::NS_FDN::SubValueScanner;

namespace {

constexpr auto HELP = R"(Examples:
  kxdu get NE PP:2 -i network.fdn
  kxdu get NE SS < network.fdn | sort | uniq -c

TAG is a level's tag, INDEX one of its sub-values, from 0; without INDEX the whole value is given, with its "|". What an
identifier does not have is an empty column. Of a repeated level the first counts. Bytes pass as they are, except that
a line with a tab in a column is rejected, as are empty lines, lines with a NUL byte, and lines that are or would become
longer than 1 MiB.

Exit code: 0 all lines were converted; 1 some were rejected; 2 wrong arguments, or an input that cannot be read;
3 output that cannot be written.)";

struct Column {
    std::string tag;
    std::optional<unsigned> index;
};

struct Options {
    BulkOptions bulk;
    std::vector<std::string> columns;
};

[[noreturn]] void RefuseColumn(const std::string& text, const char* rule) {
    std::string complaint = Quoted(text) + " is no TAG or TAG:INDEX, such as NE or PP:2: " + rule;
    if (std::error_code error; std::filesystem::exists(text, error)) {
        complaint += "; each file goes behind a -i of its own";
    }
    throw Failure(Cause::USAGE, complaint);
}

Column ParseColumn(const std::string& text) {
    if (text.find(',') != std::string::npos) {
        RefuseColumn(text, "blanks separate columns, no commas");
    }
    const auto colon = text.find(':');
    Column column{text.substr(0, colon), std::nullopt};
    if (column.tag.empty()) {
        RefuseColumn(text, "there is no TAG");
    }
    constexpr std::size_t LONGEST_TAG = 60;
    if (column.tag.size() > LONGEST_TAG) {
        RefuseColumn(text, "a TAG is short");
    }
    if (column.tag.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789") != std::string::npos) {
        RefuseColumn(text, "a TAG is of upper-case letters and digits, as in the identifier");
    }
    if (colon != std::string::npos) {
        unsigned index = 0;
        if (!ReadWhole(std::string_view(text).substr(colon + 1), index)) {
            RefuseColumn(text, "INDEX is a number, 0 for the first sub-value");
        }
        column.index = index;
    }
    return column;
}

std::string_view SubValue(std::string_view value, unsigned index) {
    SubValueScanner scanner(value);
    std::string_view subValue;
    for (unsigned at = 0; scanner.Next(subValue); ++at) {
        if (at == index) {
            return subValue;
        }
    }
    return {};
}

class Getter : public LineConverter {
public:
    explicit Getter(const std::vector<Column>& columns) : m_columns(columns), m_found(columns.size()) {}

    void Convert(std::string_view line, LineResult& result) override {
        FindLevels(line);
        std::size_t size = 0;
        for (std::size_t column = 0; column < m_columns.size(); ++column) {
            std::string_view& value = m_found[column];
            if (const auto index = m_columns[column].index) {
                value = SubValue(value, *index);
            }
            if (value.find('\t') != std::string_view::npos) {
                result.Report("a tab in " + m_columns[column].tag);
                return;
            }
            size += value.size() + 1;
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
    // Leaves a view without data where there is no such level.
    void FindLevels(std::string_view line) {
        std::fill(m_found.begin(), m_found.end(), std::string_view());
        std::size_t missing = m_columns.size();
        LevelScanner scanner(line);
        Level level;
        while (missing != 0 && scanner.Next(level)) {
            for (std::size_t column = 0; column < m_columns.size(); ++column) {
                if (m_found[column].data() == nullptr && level.tag == m_columns[column].tag) {
                    m_found[column] = level.value;
                    --missing;
                }
            }
        }
    }

    const std::vector<Column>& m_columns;
    std::vector<std::string_view> m_found;
};

ExitCode Get(const Options& options) {
    std::vector<Column> columns;
    for (const std::string& text : options.columns) {
        columns.push_back(ParseColumn(text));
    }
    LineWork work;
    work.makeConverter = [&] { return std::make_unique<Getter>(columns); };
    work.mustBeUtf8 = false;
    return ExitCodeOf(RunLines(options.bulk, work));
}

}  // namespace

void AddGet(CLI::App& app, Action& action) {
    Verb verb(app, action, "get", "Chosen sub-values of identifiers as tab-separated columns");
    const auto options = std::make_shared<Options>();
    verb.AddTexts("TAG[:INDEX]", "", options->columns, "What the columns hold").Required();
    AddInputOption(verb, options->bulk);
    AddRunOptions(verb, options->bulk);
    AddRejectOptions(verb, options->bulk);
    verb.SetAction(HELP, options, Get);
}

}  // namespace NS_KX::NS_KXDU
