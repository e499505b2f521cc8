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

Reads lines as kxdu decode --format jsonl writes them; the order of their members does not matter. The identifier is
written from the record alone. If it differs from the line's "fdn", it is written all the same, and the line is reported
and counted, so that no identifier changes unnoticed. After changing records on purpose, leave "fdn" out or give
--ignore-fdn.

A record has all fields of its type and no others. Numbers must fit their fields. Names of ports and of maintenance
levels must not hold "," or "|", which would end them. Also rejected are
  - lines that are not such JSON, or name an unknown type
  - texts that hold a line end or half a surrogate pair
  - lines that are empty, hold a NUL byte, are not UTF-8 or are longer than 1 MiB
  - records that keep their text, as services and trails do, and have other fields that contradict it: change both
If the first line of a file is not a JSON object, the run stops: the file probably holds identifiers or another format.

The inventory gives the types of NEs, and says whether an NE writes the numbers of maintenance domains and associations.
It is needed as soon as an identifier depends on it. NEs that it lacks are counted on standard error at the end; their
identifiers are written as those of NE type 0.

Exit code: 0 all lines were converted; 1 some were rejected or came out changed; 2 wrong arguments, an input that cannot
be read, or an inventory that is needed and missing; 3 the output cannot be written. A reader of the output that stops
early is no error.)";

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
            m_line.Read(line);
            Writing([&] { m_line.Kind().write(m_line.Record(), m_fdn, NS_UTIL::Surroundings::OfSystem()); });
        } catch (const BadRecord& bad) {
            result.Report(bad.what());
            return;
        }
        const std::string_view fdn = m_line.Fdn();
        if (!m_isFdnIgnored && fdn.data() != nullptr && fdn != m_fdn) {
            result.Report("written as " + QuotedWhole(m_fdn) + ", which differs from its \"fdn\" " + QuotedWhole(fdn));
        }
        Append(result.output, m_fdn);
        result.output.Put('\n');
    }

private:
    // Otherwise each line of a wrong file would be a complaint.
    static void RefuseOtherThanJson(std::string_view line) {
        if (line.substr(std::min(line.find_first_not_of(" \t"), line.size())).starts_with('{')) {
            return;
        }
        throw Failure(Cause::USAGE,
                      LooksLikeIdentifier(line)
                          ? "this is an identifier, not a JSON line; did you mean kxdu decode?"
                          : "this is not a JSON line; kxdu encode reads what kxdu decode --format jsonl writes");
    }

    bool m_isFdnIgnored;
    RecordLine m_line;
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
    Verb verb(app, action, "encode", "Convert records, JSON lines as decode writes them, to identifiers");
    const auto options = std::make_shared<Options>();
    AddInputFiles(verb, options->bulk);
    AddRunOptions(verb, options->bulk);
    AddRejectOptions(verb, options->bulk);
    AddServiceOptions(verb, options->services);
    verb.AddFlag("--ignore-fdn", options->isFdnIgnored,
                 "Do not compare the written identifier with the line's \"fdn\"");
    verb.SetAction(HELP, options, Encode);
}

}  // namespace NS_KX::NS_KXDU
