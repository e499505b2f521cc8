#include <algorithm>
#include <memory>
#include <string>
#include <string_view>

#include <kx_domain_util/fdnscanner.h>

#include "catalogue/kinds.h"
#include "cli/bulkoptions.h"
#include "cli/missingnes.h"
#include "cli/services.h"
#include "cli/verb.h"
#include "cli/verbs.h"
#include "formats/recordline.h"
#include "lines/failure.h"
#include "text/text.h"

namespace NS_KX::NS_KXDU {

namespace {

constexpr auto HELP = R"(Examples:
  kxdu decode network.fdn | kxdu encode --inventory network.db | cmp - network.fdn
  echo '{"type":"NEIndex","record":{"reserved":0,"neId":7}}' | kxdu encode

Reads lines as kxdu decode --format jsonl writes them, their members in any order. The identifier is written from the
record alone. A "fdn" beside the record that differs from it does not keep it from being written, but is reported and
counted, so that no identifier changes unseen; leave "fdn" out, or give --ignore-fdn, when records were changed on
purpose.

Every field of a record must be there, with no other beside it; numbers must fit their field, and names of ports and of
maintenance levels hold no "," or "|", which would end them. Lines that are no such JSON, name a type that there is not,
hold a text with a line end or half a surrogate pair in it, are empty, hold a NUL byte, are not UTF-8 or are longer than
1 MiB are rejected; but a file whose first line is no JSON object ends the run, since it is likely to be one of
identifiers, or of another format. Rejected are also records that keep their text, as services and trails do, when their
other fields say something else than it: change both.

The inventory is asked for the types of NEs, and whether the numbers of maintenance domains and associations are
written; it is needed from the first identifier on that depends on it. How many NEs are missing from it is told on
standard error at the end: their identifiers are written as those of NE type 0.

Exit code: 0 all lines were converted; 1 some were rejected or came out changed; 2 wrong arguments, an input that cannot
be read or begins with other than a JSON object, or no inventory where one is needed; 3 output that cannot be written.)";

struct Options {
    BulkOptions bulk;
    ServiceOptions services;
    bool isFdnIgnored = false;
};

bool LooksLikeIdentifier(std::string_view line) {
    NS_UTIL::NS_FDN::LevelScanner scanner(line);
    NS_UTIL::NS_FDN::Level first;
    return scanner.Next(first) && first.HasEquals() && FindTag(first.tag) != nullptr;
}

class Encoder : public LineConverter {
public:
    explicit Encoder(bool isFdnIgnored) : m_isFdnIgnored(isFdnIgnored) {}

    void Convert(std::string_view line, LineResult& result) override {
        if (result.IsFirstLine()) {
            RefuseOtherThanJson(line);
        }
        try {
            m_line.Parse(line);
            const Kind* const kind = FindKindByType(m_line.Type());
            if (kind == nullptr) {
                throw BadRecord("unknown type " + Quoted(m_line.Type()));
            }
            void* const record = m_records.Fresh(kind->layout);
            m_line.Fill(*kind, record);
            Writing([&] { kind->write(record, m_fdn, NS_UTIL::Surroundings::OfSystem()); });
        } catch (const BadRecord& bad) {
            result.Report(bad.what());
            return;
        }
        const std::string_view fdn = m_line.Fdn();
        if (!m_isFdnIgnored && fdn.data() != nullptr && fdn != m_fdn) {
            result.Report("written as " + QuotedWhole(m_fdn) + ", which is not its fdn " + QuotedWhole(fdn));
        }
        Append(result.output, m_fdn);
        result.output.Put('\n');
    }

private:
    // A file of something else would be a complaint a line.
    static void RefuseOtherThanJson(std::string_view line) {
        if (line.substr(std::min(line.find_first_not_of(" \t"), line.size())).starts_with('{')) {
            return;
        }
        throw Failure(Cause::USAGE, LooksLikeIdentifier(line)
                                        ? "an identifier, and no JSON line; did you mean kxdu decode?"
                                        : "no JSON line; kxdu encode reads what kxdu decode --format jsonl writes");
    }

    bool m_isFdnIgnored;
    RecordLine m_line;
    AnyRecord m_records;
    std::string m_fdn;
};

ExitCode Encode(const Options& options) {
    MissingNes missing;
    const auto services = StartServices(options.services, &missing);
    LineWork work;
    work.filesInUse = FilesInUse(options.services);
    work.makeConverter = [&] { return std::make_unique<Encoder>(options.isFdnIgnored); };
    work.finding = "rejected or changed";
    const ExitCode code = ExitCodeOf(RunLines(options.bulk, work));
    missing.Tell();
    return code;
}

}  // namespace

void AddEncode(CLI::App& app, Action& action) {
    Verb verb(app, action, "encode", "Records, as decode writes them as JSON lines, to identifiers");
    const auto options = std::make_shared<Options>();
    AddInputFiles(verb, options->bulk);
    AddRunOptions(verb, options->bulk);
    AddRejectOptions(verb, options->bulk);
    AddServiceOptions(verb, options->services);
    verb.AddFlag("--ignore-fdn", options->isFdnIgnored, "Do not compare what is written with the fdn in the line");
    verb.SetAction(HELP, options, Encode);
}

}  // namespace NS_KX::NS_KXDU
