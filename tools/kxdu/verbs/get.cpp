#include <algorithm>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "catalogue/kinds.h"
#include "cli/arguments.h"
#include "cli/bulkoptions.h"
#include "cli/identifierlines.h"
#include "cli/nearestword.h"
#include "cli/services.h"
#include "cli/verb.h"
#include "cli/verbs.h"
#include "cli/wrapping.h"
#include "formats/columns.h"
#include "lines/blockreader.h"
#include "lines/failure.h"
#include "text/quoting.h"

namespace NS_KX::NS_KXDU {

namespace {

constexpr auto HELP = R"(Examples:
  kxdu get NE,FR,PP:2 network.fdn
  kxdu get NE,SS < network.fdn | sort | uniq -c
  kxdu get kind,neId,portLabel --format csv --header network.fdn.gz

COLUMNS is a list of names, separated by commas:
  NE           the value of a level, "|" included
  PP:2         one of its sub-values, from 0
  PORT, PORT:2 the same of PP or LP, whichever comes first
  portId       a field of the record that kxdu decode makes
  fdn          the identifier itself
  type, kind   what it is: the type of its record, and a plain word that is the same for all variants of a type
A missing level, sub-value or field gives an empty column. The first of several levels with the same tag counts.

Formats:
  tsv    tab, carriage return and backslash are written \t, \r and \\
  csv    values that hold a comma, a quote or a line end are quoted, as in RFC 4180
  jsonl  an object per line; numbers are numbers, and what is missing is null
  table  for people: what is missing is "-"

Rejected are lines that are empty, hold a NUL byte, or are or would become longer than 1 MiB. If a column is type, kind
or a field, lines whose last level ends no kind of identifier are rejected too. jsonl and table also reject lines that
are not UTF-8; csv and tsv pass bytes as they are. Lines whose tags are unknown, repeated or out of place are counted at
the end; --strict-tags rejects them.

Exit code: 0 all lines were converted; 1 some were rejected; 2 wrong arguments, or an input that cannot be read; 3 the
output cannot be written.)";

struct Options {
    BulkOptions bulk;
    ServiceOptions services;
    bool areTagsStrict = false;
    std::string columns;
    OutputFormat format = OutputFormat::TSV;
    bool hasHeader = false;
};

// ---- The columns ----------------------------------------------------------------------------------------------------

constexpr std::size_t LONGEST_NAME = 60;

[[noreturn]] void RefuseColumn(const std::string& name) {
    if (name.empty()) {
        throw Failure(Cause::INPUT, "a column has no name; separate columns by single commas: NE,FR,PP:2");
    }
    if (const auto piece = PieceName::Parse(name); piece && piece->FindTag() != nullptr) {
        throw Failure(Cause::INPUT, Quoted(name) + ": " + piece->tag + " has no sub-value " +
                                        std::to_string(*piece->index) + "; the first one is 0, the last one " +
                                        std::to_string(piece->FindTag()->most - 1));
    }
    std::string complaint = Quoted(name) + " is not a column: no level or field has this name";
    const std::vector<std::string> names = NamesOfColumns();
    const std::string_view nearest = NearestWord(name.substr(0, std::min(name.find(':'), LONGEST_NAME)), names);
    if (std::error_code error; std::filesystem::exists(name, error)) {
        complaint += "; columns come before files: kxdu get NE,FR " + name;
    } else if (!nearest.empty()) {
        complaint.append("; did you mean ").append(nearest).append("?");
    } else {
        complaint += "; kxdu get --help lists the names";
    }
    throw Failure(Cause::INPUT, complaint);
}

std::vector<Column> ParseColumns(const std::string& list) {
    std::vector<Column> columns;
    for (const std::string& name : SplitAtCommas(list)) {
        auto column = Column::Parse(name);
        if (!column) {
            RefuseColumn(name);
        }
        columns.push_back(*std::move(column));
    }
    return columns;
}

// Names the mistake of a user who separates columns by blanks.
void RefuseColumnsAsFiles(const Options& options) {
    for (const std::string& file : options.bulk.files) {
        std::error_code error;
        if (Column::Parse(file) && !std::filesystem::exists(file, error)) {
            throw Failure(Cause::INPUT, std::string(file)
                                            .append(": there is no such file; columns are one argument: kxdu get ")
                                            .append(options.columns)
                                            .append(",")
                                            .append(file));
        }
    }
}

bool IsAnyOf(const std::vector<Column>& columns, bool (*isIt)(const Column&)) {
    return std::any_of(columns.begin(), columns.end(), isIt);
}

// ---- The lines ------------------------------------------------------------------------------------------------------

// What all converters of a run share.
struct Plan {
    Plan(std::vector<Column> columns, const Options& options)
        : needsKind(IsAnyOf(columns, [](const Column& column) { return column.NeedsKind(); })),
          needsRecord(IsAnyOf(columns, [](const Column& column) { return column.source == Column::Source::FIELD; })),
          isCopied(options.format == OutputFormat::TSV &&
                   !IsAnyOf(columns, [](const Column& column) { return column.source != Column::Source::PIECE; })),
          areTagsStrict(options.areTagsStrict),
          row(std::move(columns), options.format) {}

    const bool needsKind;
    const bool needsRecord;
    const bool isCopied;  // lines consist of pieces as they are, mostly
    const bool areTagsStrict;
    const ColumnRow row;
};

class Getter : public LineConverter {
public:
    explicit Getter(const Plan& plan)
        : m_plan(plan), m_tags(plan.areTagsStrict), m_pieces(plan.row.Pieces().Names().size()) {}

    void Convert(std::string_view line, LineResult& result) override {
        if (result.IsFirstLine()) {
            RefuseOtherThanIdentifiers(line);
        }
        const Kind* const kind = m_plan.needsKind ? KindOf(line, result) : nullptr;
        if ((m_plan.needsKind && kind == nullptr) || !m_tags.Accepts(line, m_plan.row.Pieces(), m_pieces, result)) {
            return;
        }
        const bool isCopied = m_plan.isCopied && std::all_of(m_pieces.begin(), m_pieces.end(), IsPlain);
        const bool isWritten = isCopied ? CopyPieces(result) : WriteRow(line, kind, result);
        if (!isWritten) {
            result.Report("the columns would be longer than 1 MiB");
        }
    }

private:
    // Whether `value` stands in TSV as it is.
    static bool IsPlain(std::string_view value) {
        return std::none_of(value.begin(), value.end(),
                            [](char character) { return character == '\t' || character == '\r' || character == '\\'; });
    }

    // The common case. Returns false if the columns are too long.
    bool CopyPieces(LineResult& result) {
        std::size_t size = m_pieces.size();
        for (const std::string_view value : m_pieces) {
            size += value.size();
        }
        if (size > LONGEST_LINE + 1) {
            return false;
        }
        char* to = result.Room(size);  // for all columns at once
        for (const std::string_view value : m_pieces) {
            to = std::copy(value.begin(), value.end(), to);
            *to++ = '\t';
        }
        to[-1] = '\n';
        return true;
    }

    bool WriteRow(std::string_view line, const Kind* kind, LineResult& result) {
        void* record = nullptr;
        if (m_plan.needsRecord && kind != nullptr) {
            record = m_record.Fresh(kind->layout);
            kind->read(line, record, NS_UTIL::Surroundings::OfSystem());
        }
        TextBuffer text;  // many converters wait with their buffers: none keeps a large one
        if (!m_plan.row.AppendLine(line, m_pieces, kind, record, text, LONGEST_LINE + 1)) {
            return false;
        }
        std::memcpy(result.Room(text.GetSize()), text.View().data(), text.GetSize());
        return true;
    }

    const Plan& m_plan;
    TagWatch m_tags;
    std::vector<std::string_view> m_pieces;  // of the current line
    AnyRecord m_record;
};

ExitCode Get(const Options& options) {
    std::vector<Column> columns = ParseColumns(options.columns);
    RefuseColumnsAsFiles(options);
    const std::string header = MakeHeader(columns, options.format);
    const Plan plan(std::move(columns), options);
    const auto services = plan.needsRecord ? StartServices({{}, options.services.config}) : nullptr;
    LineWork work;
    work.filesInUse = FilesInUse(options.services);
    work.makeConverter = [&] { return std::make_unique<Getter>(plan); };
    if (options.hasHeader || options.format == OutputFormat::TABLE) {
        work.header = header;
    }
    work.mustBeUtf8 = options.format == OutputFormat::JSONL || options.format == OutputFormat::TABLE;
    TagWatch::Describe(work);
    return ExitCodeOf(RunLines(options.bulk, work));
}

}  // namespace

void AddGet(CLI::App& app, Action& action) {
    Verb verb(app, action, "get", "Extract pieces and fields of identifiers as columns");
    const auto options = std::make_shared<Options>();
    verb.AddText("COLUMNS", "", options->columns, "Names of columns, separated by commas: NE,FR,PP:2").Required();
    AddInputFiles(verb, options->bulk);
    AddRunOptions(verb, options->bulk);
    AddRejectOptions(verb, options->bulk);
    AddStrictTags(verb, options->areTagsStrict);
    AddReadingOptions(verb, options->services);
    AddFormatOption(verb, options->format, "tsv");
    verb.AddFlag("--header", options->hasHeader, "Begin with a line of column names");
    verb.SetAction(HELP + ("\n\nNames of columns:\n" + Wrapped("  ", NamesOfColumns())), options, Get);
}

}  // namespace NS_KX::NS_KXDU
