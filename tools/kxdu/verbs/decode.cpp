#include <algorithm>
#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <unistd.h>

#include "catalogue/kinds.h"
#include "cli/arguments.h"
#include "cli/bulkoptions.h"
#include "cli/identifierlines.h"
#include "cli/nearestword.h"
#include "cli/services.h"
#include "cli/typeoption.h"
#include "cli/verb.h"
#include "cli/verbs.h"
#include "cli/wrapping.h"
#include "formats/recordformat.h"
#include "lines/blockreader.h"
#include "lines/failure.h"
#include "lines/terminal.h"
#include "text/quoting.h"

namespace NS_KX::NS_KXDU {

namespace {

constexpr auto HELP = R"(Examples:
  kxdu decode network.fdn -o records.jsonl
  kxdu decode --format csv --only port network.fdn -o ports.csv
  kxdu decode --format tsv --only port --fields neId,slotId,portId network.fdn
  echo 'NE=12,FR=1,S=3,CP=-1,PP=16||7|' | kxdu decode --format table

Formats:
  jsonl  {"fdn":"...","type":"PortIndex","record":{...}}, one per line
  csv    values that hold a comma, a quote or a line end are quoted, as in RFC 4180
  tsv    nothing is quoted; tab, carriage return and backslash are written \t, \r and \\
  table  for people: type, identifier, and the fields that are set; texts with blanks are quoted; on a terminal that is
         too narrow, the fields stand below the identifier
csv and tsv begin with a line of column names: fdn, type and the fields of all types (with --as, of that type). A field
that a record does not have is empty. Fields of a nested record are named like port.neId.

--fields chooses what is written: csv and tsv have just these columns, in this order; jsonl keeps the shape of its
lines, with "type" and these members; table leaves out the other fields. --only leaves out all lines of other types; a
type is one variant of a record (PortIndex:NEType), a kind is everything that people call a port.

Services, tunnels and pseudo-wire switches keep their whole text in "resId", beside the numbers that are read from it;
LSP and L3VPN have no such number. A pseudo-wire keeps what follows its NE level. The library's records of trails and
groups drop the text in front of their own level; kxdu keeps it in "container". Channel sets (CHANNELSET) and virtual
routers (VR) are read as access points. No writer knows these two levels, so kxdu encode reports them as changed.

kxdu also fills these fields, which the library's readers leave unchanged: "vc4Id" and "vc12Id" of a termination point,
"mipName" of a MIP, "mdName" and "maName" of a MEP whose MD or MA has a number. With them, and with the shorter "resId"
of a pseudo-wire, kxdu encode writes the same text again.

Numbers are read leniently, as by all programs of the system: characters after the digits are ignored, a text without
digits is 0, and a larger number keeps its low 32 bits. A port name of FB type 1025 may hold an escaped "|"
(PP=16|1025|1|a\|b). It is read as a|b; kxdu encode rejects such a record, since it could only be written without the
escape. kxdu check finds each such place.

Lines whose tags are unknown (ne=9, a leading blank), repeated or out of place are read as leniently. The number of such
lines and the place of the first stand on standard error at the end; --strict-tags rejects them.

A port level (PP or LP) with fewer than four sub-values is not read: the port has no number, type or name.

--as does not choose lines, as --only does: it says how to read each of them, whatever its last level. Fields whose
level is missing keep their defaults. The variants of a type, such as PortIndex and PortIndex:NEType, mostly read the
same; the type that stands beside the record then says how kxdu encode writes it. PortIndex:LoopBack needs --config.

Without --as, a line is rejected if its last level ends no kind of identifier. Always rejected are lines that are empty,
hold a NUL byte, are not UTF-8 or are longer than 1 MiB, and those whose JSON line would be longer, since kxdu encode
could not read it. A carriage return before a line end belongs to the line end. No inventory is used: only writing
depends on it.

Exit code: 0 all lines were converted; 1 some were rejected; 2 wrong arguments, or an input that cannot be read; 3 the
output cannot be written. A reader of the output that stops early is no error.)";

struct Options {
    BulkOptions bulk;
    ServiceOptions services;
    bool areTagsStrict = false;
    OutputFormat format = OutputFormat::JSONL;
    std::string type;
    std::string only;
    std::string fields;
};

// ---- What is chosen -------------------------------------------------------------------------------------------------

// The words of all kinds, then their types.
std::vector<std::string> NamesOfKinds() {
    std::vector<std::string> names;
    for (const Kind* const kind : AllKinds()) {
        if (std::find(names.begin(), names.end(), kind->word) == names.end()) {
            names.emplace_back(kind->word);
        }
    }
    for (const Kind* const kind : AllKinds()) {
        names.emplace_back(kind->type);
    }
    return names;
}

// Adds the kinds that `name`, a type or a word such as "port", stands for.
void AddKinds(const std::string& name, std::vector<const Kind*>& kinds) {
    const std::size_t before = kinds.size();
    for (const Kind* const kind : AllKinds()) {
        const bool isFound = !kind->lastTags.front().empty();
        if ((IsSameWord(kind->type, name) || IsSameWord(kind->word, name)) && isFound) {
            kinds.push_back(kind);
        }
    }
    if (kinds.size() != before) {
        return;
    }
    if (const Kind* const kind = FindKindInAnyCase(name)) {
        throw Failure(Cause::INPUT, "--only: lines are read as " + std::string(kind->type) + " by --as only");
    }
    const std::vector<std::string> known = NamesOfKinds();
    const std::string_view nearest = NearestWord(name, known);
    throw Failure(Cause::INPUT, "--only: unknown type or kind " + Quoted(name) +
                                    (nearest.empty() ? "; choose of\n" + Wrapped("  ", known)
                                                     : "; did you mean " + std::string(nearest) + "?"));
}

std::vector<const Kind*> ChosenKinds(const Options& options) {
    if (const Kind* const forced = ChosenKind(options.type)) {
        return {forced};
    }
    if (options.only.empty()) {
        return {AllKinds().begin(), AllKinds().end()};
    }
    std::vector<const Kind*> kinds;
    for (const std::string& name : SplitAtCommas(options.only)) {
        AddKinds(name, kinds);
    }
    return kinds;
}

std::vector<std::string> NamesOfFields(std::span<const Kind* const> kinds) {
    std::vector<std::string> names{"fdn", "type", "kind"};
    for (const Kind* const kind : kinds) {
        for (const Field& field : kind->layout.fields) {
            names.emplace_back(field.name);
        }
    }
    return names;
}

std::vector<std::string> ChosenFields(const std::string& list, std::span<const Kind* const> kinds) {
    if (list.empty()) {
        return {};
    }
    const std::vector<std::string> known = NamesOfFields(kinds);
    std::vector<std::string> fields;
    for (const std::string& name : SplitAtCommas(list)) {
        if (std::find(known.begin(), known.end(), name) == known.end()) {
            const std::string_view nearest = NearestWord(name, known);
            throw Failure(Cause::INPUT,
                          "--fields: no record " +
                              std::string(kinds.size() == AllKinds().size() ? "" : "of the chosen types ") +
                              "has a field " + Quoted(name) +
                              (nearest.empty() ? "" : "; did you mean " + std::string(nearest) + "?"));
        }
        if (std::find(fields.begin(), fields.end(), name) != fields.end()) {
            throw Failure(Cause::INPUT, "--fields: " + Quoted(name) + " is named twice");
        }
        fields.push_back(name);
    }
    return fields;
}

// ---- The lines ------------------------------------------------------------------------------------------------------

// What all converters of a run share.
struct Plan {
    const Kind* forced;               // null: each line's own
    std::vector<const Kind*> chosen;  // lines of other kinds are left out; none: all are written
    FormatOptions output;
    bool areTagsStrict;
};

class Decoder : public LineConverter {
public:
    explicit Decoder(const Plan& plan)
        : m_plan(plan),
          m_tags(plan.areTagsStrict),
          m_isReadAgain(plan.output.format == OutputFormat::JSONL),
          m_format(MakeFormat(plan.output, NS_UTIL::Surroundings::OfSystem())) {}

    void Convert(std::string_view line, LineResult& result) override {
        if (result.IsFirstLine()) {
            RefuseOtherThanIdentifiers(line);
        }
        const Kind* const kind = m_plan.forced != nullptr ? m_plan.forced : KindOf(line, result);
        if (kind != nullptr && IsChosen(kind) && m_tags.Accepts(line, result)) {
            Write(line, *kind, result);
        }
    }

private:
    [[nodiscard]] bool IsChosen(const Kind* kind) const {
        return m_plan.chosen.empty() ||
               std::find(m_plan.chosen.begin(), m_plan.chosen.end(), kind) != m_plan.chosen.end();
    }

    void Write(std::string_view line, const Kind& kind, LineResult& result) {
        const std::size_t before = result.output.GetSize();
        m_format->Write(line, kind, result.output);
        if (const std::size_t size = result.output.GetSize() - before; m_isReadAgain && size > LONGEST_LINE + 1) {
            result.output.Pop(size);
            result.Report("the JSON line would be longer than 1 MiB");
        }
    }

    const Plan& m_plan;
    TagWatch m_tags;
    bool m_isReadAgain;  // by kxdu encode
    std::unique_ptr<RecordFormat> m_format;
};

// Only kinds that --as names may need a configuration, so that no line has to be asked.
void RequireConfigurationFor(const Kind& kind) {
    AnyRecord records;
    Reading([&] { kind.read(kind.example, records.Fresh(kind.layout), NS_UTIL::Surroundings::OfSystem()); });
}

// 0 if the output is no terminal.
std::size_t WidthOfTerminal(const std::string& output) {
    const bool isStandardOutput = output.empty() || output == "-" || output == "/dev/stdout";
    return isStandardOutput && isatty(STDOUT_FILENO) == 1 ? ColumnsOf(STDOUT_FILENO, 0) : 0;
}

ExitCode Decode(const Options& options) {
    const std::vector<const Kind*> kinds = ChosenKinds(options);
    Plan plan{ChosenKind(options.type), {}, {}, options.areTagsStrict};
    if (!options.only.empty()) {
        plan.chosen = kinds;
    }
    plan.output.format = options.format;
    plan.output.kinds = kinds;
    plan.output.fields = ChosenFields(options.fields, kinds);
    plan.output.width = WidthOfTerminal(options.bulk.output);
    const auto services = StartServices({{}, options.services.config});
    if (plan.forced != nullptr) {
        RequireConfigurationFor(*plan.forced);
    }
    LineWork work;
    work.filesInUse = FilesInUse(options.services);
    work.makeConverter = [&] { return std::make_unique<Decoder>(plan); };
    work.header = MakeHeader(plan.output);
    TagWatch::Describe(work);
    return ExitCodeOf(RunLines(options.bulk, work));
}

}  // namespace

void AddDecode(CLI::App& app, Action& action) {
    Verb verb(app, action, "decode", "Convert identifiers, one per line, to records");
    const auto options = std::make_shared<Options>();
    AddInputFiles(verb, options->bulk);
    AddRunOptions(verb, options->bulk);
    AddRejectOptions(verb, options->bulk);
    AddStrictTags(verb, options->areTagsStrict);
    AddReadingOptions(verb, options->services);
    AddFormatOption(verb, options->format, "jsonl");
    const VerbOption as =
        AddTypeOption(verb, options->type,
                      "Read each line as this type, whatever its last level; leaves out no line, as --only does");
    verb.AddText("--only", "TYPE[,TYPE]", options->only,
                 "Leave out all lines but those of these types, or of kinds such as port")
        .Excludes(as);
    verb.AddText("--fields", "FIELD[,FIELD]", options->fields,
                 "Write these fields only; fdn, type and kind are fields too");
    verb.SetAction(HELP + ("\n\nTypes:\n" + TypeNames()), options, Decode);
}

}  // namespace NS_KX::NS_KXDU
