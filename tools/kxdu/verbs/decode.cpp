#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <kx_domain_util/fdnscanner.h>

#include "catalogue/kinds.h"
#include "cli/bulkoptions.h"
#include "cli/services.h"
#include "cli/typeoption.h"
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
  jsonl  {"fdn":"...","type":"PortIndex","record":{...}}, one per line
  csv    values that hold a comma, a quote or a line end are quoted, as in RFC 4180
  tsv    nothing is quoted; tab, carriage return and backslash are written \t, \r and \\
  table  for people: type, identifier, and the fields that are set; texts with blanks are quoted
csv and tsv begin with a line of column names: fdn, type and the fields of all types (with --as, of that type). A field
that a record does not have is empty. Fields of a nested record are named like port.neId.

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

A port level (PP or LP) with fewer than four sub-values is not read: the port has no number, type or name.

With --as, every line is read as that type, whatever its last level. Fields whose level is missing keep their defaults.
PortIndex:LoopBack needs --config. Without --as, a line is rejected if its last level ends no kind of identifier. Always
rejected are lines that are empty, hold a NUL byte, are not UTF-8 or are longer than 1 MiB, and those whose JSON line
would be longer, since kxdu encode could not read it. A carriage return before a line end belongs to the line end. No
inventory is used: only writing depends on it.

Exit code: 0 all lines were converted; 1 some were rejected; 2 wrong arguments, or an input that cannot be read; 3 the
output cannot be written. A reader of the output that stops early is no error.)";

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
    bool m_isReadAgain;  // by kxdu encode
    std::unique_ptr<RecordFormat> m_format;
};

// Only kinds that --as names may need a configuration, so that no line has to be asked.
void RequireConfigurationFor(const Kind& kind) {
    AnyRecord records;
    Reading([&] { kind.read(kind.example, records.Fresh(kind.layout), NS_UTIL::Surroundings::OfSystem()); });
}

ExitCode Decode(const Options& options) {
    const Kind* const forced = ChosenKind(options.type);
    Layout layout;
    layout.format = options.format;
    layout.kinds = forced != nullptr ? std::span(&forced, 1) : AllKinds();
    const ServiceOptions serviceOptions{{}, options.config};  // no reader asks the inventory
    const auto services = StartServices(serviceOptions);
    if (forced != nullptr) {
        RequireConfigurationFor(*forced);
    }
    LineWork work;
    work.filesInUse = FilesInUse(serviceOptions);
    work.makeConverter = [&] { return std::make_unique<Decoder>(forced, layout); };
    work.header = MakeHeader(layout);
    return ExitCodeOf(RunLines(options.bulk, work));
}

}  // namespace

void AddDecode(CLI::App& app, Action& action) {
    Verb verb(app, action, "decode", "Convert identifiers, one per line, to records");
    const auto options = std::make_shared<Options>();
    AddInputFiles(verb, options->bulk);
    AddRunOptions(verb, options->bulk);
    AddRejectOptions(verb, options->bulk);
    AddConfigOption(verb, options->config);
    verb.AddChoice("--format", options->format,
                   {{"jsonl", FormatName::JSONL},
                    {"csv", FormatName::CSV},
                    {"tsv", FormatName::TSV},
                    {"table", FormatName::TABLE}},
                   "Format of the records: jsonl (the default), csv, tsv or table");
    AddTypeOption(verb, options->type, "Read every line as this type, whatever its last level");
    verb.SetAction(HELP + ("\n\nTypes:\n" + TypeNames()), options, Decode);
}

}  // namespace NS_KX::NS_KXDU
