#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <kx_domain_util/fdnscanner.h>

#include "catalogue/kinds.h"
#include "cli/bulkoptions.h"
#include "cli/services.h"
#include "cli/verb.h"
#include "cli/verbs.h"
#include "formats/recordformat.h"
#include "lines/blockreader.h"
#include "lines/failure.h"
#include "text/text.h"

namespace NS_KX::NS_KXDU {

namespace {

constexpr auto HELP = R"(Examples:
  kxdu decode network.fdn -o records.jsonl
  kxdu decode --format csv --as PortIndex ports.fdn | head
  echo 'NE=12,FR=1,S=3,CP=-1,PP=16||7|' | kxdu decode --format table

Formats:
  jsonl  {"fdn":"...","type":"PortIndex","record":{...}}, one a line
  csv    quoted as in RFC 4180: where a value holds a comma, a quote or a line end
  tsv    nothing is quoted; tab, carriage return and backslash are written \t, \r and \\
  table  for people: type, identifier, and the fields that say something; texts with blanks are quoted
csv and tsv begin with a line of column names: fdn, type and the fields of all kinds (of the one, with --as); a field
that a record does not have is empty, and the fields of a nested record are called like port.neId.

Services, tunnels and pseudo-wire switches keep their whole text, "resId", and the numbers in it beside that; LSP and
L3VPN have no number that is read. A pseudo-wire's "resId" is what follows its NE level. Of trails and groups the text
in front, which their records drop, is "container". Channel sets (CHANNELSET) and virtual routers (VR) are read as
access points, and written as such: no writer knows these levels, so encode tells that they are changed.

kxdu fills these from the text, where the library's readers leave them as they were: "vc4Id" and "vc12Id" of a
termination point, "mipName" of a MIP, "mdName" and "maName" of a MEP whose MD or MA has a number. And it cuts a
pseudo-wire's "resId" (a reader of the library keeps the whole text), so that what encode writes is the text again.

Numbers are read as leniently as by all programs of the system: what follows the digits is passed over, a text without
digits is 0, and of a larger number the low 32 bits count. A port name of FB type 1025 may hold an escaped "|"
(PP=16|1025|1|a\|b): it is read as a|b, and written without the escape, so that kxdu encode rejects such a record. kxdu
check tells of each such place.

Of a port (PP or LP) with fewer than its four sub-values none is read at all: the record says that it has no number.

With --as, each line is read as that type, whatever its last level; fields whose level it lacks say that nothing is
known; PortIndex:LoopBack needs --config. Without it, lines that end in a level that means no kind of identifier are
rejected. So are in any case lines that are empty, hold a NUL byte, are not UTF-8, or are longer than 1 MiB, also as the
JSON line that kxdu encode would read. A carriage return before a line's end belongs to the line end. An inventory plays
no part: only what is written depends on it.

Exit code: 0 all lines were converted; 1 some were rejected; 2 wrong arguments, or an input that cannot be read;
3 output that cannot be written. A reader of the output that goes away is no error.)";

struct Options {
    BulkOptions bulk;
    std::string config;
    FormatName format = FormatName::JSONL;
    std::string type;
};

class Decoder : public LineConverter {
public:
    Decoder(const Kind* forced, const Layout& layout)
        : m_forced(forced),
          m_isReadAgain(layout.format == FormatName::JSONL),
          m_format(MakeFormat(layout, NS_UTIL::Surroundings::OfSystem())) {}

    void Convert(std::string_view line, LineResult& result) override {
        const Kind* const kind = m_forced != nullptr ? m_forced : FindKind(line);
        if (kind == nullptr) {
            result.Report("no kind of identifier ends in the level " + Quoted(NS_UTIL::NS_FDN::LastTag(line)));
            return;
        }
        const std::size_t before = result.output.GetSize();
        m_format->Write(line, *kind, result.output);
        if (const std::size_t size = result.output.GetSize() - before; m_isReadAgain && size > LONGEST_LINE + 1) {
            result.output.Pop(size);
            result.Report("the JSON line would be longer than 1 MiB");
        }
    }

private:
    const Kind* m_forced;
    bool m_isReadAgain;  // by encode
    std::unique_ptr<RecordFormat> m_format;
};

// All types, in lines.
std::string TypeNames() {
    std::vector<std::string> names;
    for (const Kind* const kind : AllKinds()) {
        names.emplace_back(kind->type);
    }
    return Wrapped("  ", names);
}

const Kind* ForcedKind(const std::string& type) {
    const Kind* const kind = FindKindByType(type);
    if (kind == nullptr && !type.empty()) {
        throw Failure(Cause::USAGE, "--as: no type " + Quoted(type) + "; there are\n" + TypeNames());
    }
    return kind;
}

ExitCode Decode(const Options& options) {
    const Kind* const forced = ForcedKind(options.type);
    Layout layout;
    layout.format = options.format;
    layout.kinds = forced != nullptr ? std::span(&forced, 1) : AllKinds();
    const ServiceOptions serviceOptions{{}, options.config};  // no reader asks the inventory
    const auto services = StartServices(serviceOptions);
    LineWork work;
    work.filesInUse = FilesInUse(serviceOptions);
    work.makeConverter = [&] { return std::make_unique<Decoder>(forced, layout); };
    work.header = MakeHeader(layout);
    return ExitCodeOf(RunLines(options.bulk, work));
}

}  // namespace

void AddDecode(CLI::App& app, Action& action) {
    Verb verb(app, action, "decode", "Identifiers, one a line, to records");
    const auto options = std::make_shared<Options>();
    AddInputFiles(verb, options->bulk);
    AddRunOptions(verb, options->bulk);
    AddRejectOptions(verb, options->bulk);
    AddConfigOption(verb, options->config);
    verb.AddChoice("--format", "FORMAT", options->format,
                   {{"jsonl", FormatName::JSONL},
                    {"csv", FormatName::CSV},
                    {"tsv", FormatName::TSV},
                    {"table", FormatName::TABLE}},
                   "How records are written: jsonl (the default), csv, tsv or table");
    verb.AddText("--as", "TYPE", options->type, "Read every line as this type, whatever its last level");
    verb.SetAction(HELP + ("\n\nTypes:\n" + TypeNames()), options, Decode);
}

}  // namespace NS_KX::NS_KXDU
