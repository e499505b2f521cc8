#include <map>

#include <CLI/CLI.hpp>

#include "failure.h"
#include "kinds.h"
#include "lines.h"
#include "recordformat.h"
#include "services.h"
#include "text.h"
#include "verbs.h"

namespace NS_KXDU {

namespace {

constexpr auto EXAMPLES = R"(Examples:
  kxdu decode network.fdn -o records.jsonl
  kxdu decode --format csv --as PortIndex ports.fdn | head
  echo 'NE=12,FR=1,S=3,CP=-1,PP=16||7|' | kxdu decode --format table

Formats:
  jsonl  {"fdn":"...","type":"PortIndex","record":{...}}, one a line
  csv    quoted as in RFC 4180: where a value holds a comma, a quote or a line end
  tsv    nothing is quoted; tab, carriage return and backslash are written \t, \r and \\
  table  for people: type, identifier, and the fields that say something
csv and tsv begin with a line of column names: fdn, type and the fields of all kinds (of the one, with --as); a field
that a record does not have is empty, and the fields of a nested record are called like port.neId.

Services, tunnels and pseudo-wire switches keep their whole text, "resId", and the numbers in it beside that; LSP and
L3VPN have no number that is read. A pseudo-wire's "resId" is what follows its NE level. Of trails and groups the text
in front, which their records drop, is "container".

Lines that are empty, hold a NUL byte, are not UTF-8, are longer than 1 MiB or end in a level that means no kind of
identifier are rejected. A carriage return before a line's end belongs to the line end.

Exit code: 0 all lines were converted; 1 some were rejected; 2 wrong arguments, or an input that cannot be read;
3 output that cannot be written. A reader of the output that goes away is no error.)";

struct Options {
    BulkOptions bulk;
    ServiceOptions services;
    FormatName format = FormatName::JSONL;
    std::string type;
};

class Decoder : public LineConverter {
public:
    Decoder(const Kind* forced, const Layout& layout) : m_forced(forced), m_format(MakeFormat(layout)) {}

    void Convert(std::string_view line, LineResult& result) override {
        const Kind* const kind = m_forced != nullptr ? m_forced : FindKind(line);
        if (kind == nullptr) {
            result.Report("no kind of identifier ends in the level " + Quoted(MocOf(line)));
            return;
        }
        m_fdn.assign(line);
        Reading([&] { m_format->Write(m_fdn, *kind, result.output); });
    }

private:
    const Kind* m_forced;
    std::unique_ptr<RecordFormat> m_format;
    std::string m_fdn;
};

std::string TypeNames() {
    std::string names;
    for (const Kind* const kind : AllKinds()) {
        names.append(names.empty() ? "" : ", ").append(kind->Type());
    }
    return names;
}

const Kind* ForcedKind(const std::string& type) {
    const Kind* const kind = FindKindByType(type);
    if (kind == nullptr && !type.empty()) {
        throw Failure(ExitCode::USAGE, "--as: no type " + Quoted(type) + "; there are " + TypeNames());
    }
    return kind;
}

ExitCode Decode(const Options& options) {
    const Kind* const forced = ForcedKind(options.type);
    Layout layout;
    layout.format = options.format;
    layout.kinds = forced != nullptr ? std::vector{forced} : AllKinds();
    const auto services = StartServices(options.services);
    LineWork work;
    work.makeConverter = [&] { return std::make_unique<Decoder>(forced, layout); };
    work.header = MakeHeader(layout);
    return RunLines(options.bulk, work);
}

}  // namespace

void AddDecode(CLI::App& app, Action& action) {
    auto* const verb = app.add_subcommand("decode", "Identifiers, one a line, to records");
    const auto options = std::make_shared<Options>();
    AddBulkOptions(*verb, options->bulk);
    AddServiceOptions(*verb, options->services);
    const std::map<std::string, FormatName> formats{
        {"jsonl", FormatName::JSONL}, {"csv", FormatName::CSV}, {"tsv", FormatName::TSV}, {"table", FormatName::TABLE}};
    verb->add_option("--format", options->format, "How records are written: jsonl (the default), csv, tsv or table")
        ->transform(CLI::CheckedTransformer(formats))
        ->type_name("FORMAT")
        ->option_text("FORMAT");
    verb->add_option("--as", options->type, "Read every line as this type instead of by its last level: " + TypeNames())
        ->type_name("TYPE");
    verb->footer(EXAMPLES);
    verb->callback([&action, options] { action = [options] { return Decode(*options); }; });
}

}  // namespace NS_KXDU
