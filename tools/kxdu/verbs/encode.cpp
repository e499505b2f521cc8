#include <memory>
#include <string>
#include <string_view>

#include <kx_domain_util/fdnscanner.h>

#include "catalogue/fieldvalues.h"
#include "catalogue/kinds.h"
#include "cli/bulkoptions.h"
#include "cli/missingnes.h"
#include "cli/services.h"
#include "cli/typeoption.h"
#include "cli/verb.h"
#include "cli/verbs.h"
#include "formats/recordline.h"
#include "formats/recordrow.h"
#include "lines/failure.h"
#include "text/line.h"
#include "text/quoting.h"

namespace NS_KX::NS_KXDU {

namespace {

constexpr auto HELP = R"(Examples:
  kxdu decode network.fdn | kxdu encode --inventory network.db | cmp - network.fdn
  kxdu decode --format csv network.fdn -o network.csv; kxdu encode --ignore-fdn network.csv
  echo '{"type":"NEIndex","record":{"neId":7}}' | kxdu encode
  printf 'neId,shelfId\n7,1\n' | kxdu encode --as ShelfIndex

Reads what kxdu decode writes: JSON lines, CSV or TSV. The first line of each file says which: JSON lines begin with
"{", CSV and TSV with a line of column names. Members and columns may have any order; kxdu types lists those of each
type. In CSV, a row is one line. Flags may be in capitals, as spreadsheets write them: TRUE.

The identifier is written from the record alone. If it differs from the "fdn" beside the record, it is written all the
same, and the line is reported and counted, so that no identifier changes unnoticed. After changing records on purpose,
leave "fdn" out or give --ignore-fdn.

A field that is missing, or a cell that is empty, means that nothing is known, as in a fresh record: kxdu types shows
each field's default. Only the field that says what is named must be there: neId, port.neId of an access point, osId,
oneId, groupId or trailResId. Numbers must fit their fields. Names of ports and of maintenance levels must not hold ","
or "|", which would end them. Also rejected are
  - lines that are no such JSON or row, name no type or an unknown one, or have fields that the type lacks
  - texts that hold a line end or half a surrogate pair
  - lines that are empty, hold a NUL byte, are not UTF-8 or are longer than 1 MiB
  - records that keep their text, as services and trails do, and have other fields that contradict it: change both
  - access points whose "neId", "fbType" or "apText" contradict "port.neId", "port.fbType" or "apValue2": only the
    latter are written, so change both, or leave the former out
The run stops if the first line of a file is neither a JSON object nor a line of column names: the file probably holds
identifiers or another format.

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
    std::string type;
};

bool LooksLikeIdentifier(std::string_view line) {
    NS_UTIL::NS_FDN::LevelScanner scanner(line);
    NS_UTIL::NS_FDN::Level first;
    return scanner.Next(first) && first.HasEquals() && FindTag(first.tag) != nullptr;
}

// The reader of a file's records, and whether the file's first line is one of them.
struct RecordSource {
    std::unique_ptr<RecordReader> reader;
    bool isHeadRecord = true;
};

[[noreturn]] void RefuseOtherThanRecords(std::string_view head) {
    throw Failure(Cause::INPUT, LooksLikeIdentifier(head)
                                    ? "this is an identifier, not a record; did you mean kxdu decode?"
                                    : "this is neither a JSON line nor a line of column names; kxdu encode reads what "
                                      "kxdu decode writes with --format jsonl, csv or tsv");
}

// Throws `Failure` for a file of another format: otherwise each of its lines would be a complaint.
RecordSource OpenRecords(std::string_view head, const Kind* usual) {
    const auto begin = head.find_first_not_of(" \t");
    const bool isRejected = begin == std::string_view::npos || FindFlaw(head);
    if (isRejected || head[begin] == '{') {
        return {std::make_unique<RecordLine>(usual)};
    }
    const auto separator = FindSeparator(head);
    if (!separator) {
        RefuseOtherThanRecords(head);
    }
    if (*separator == ';') {
        throw Failure(
            Cause::INPUT,
            "the columns are separated by \";\"; kxdu encode reads CSV with \",\", and TSV: save it as one of "
            "them");
    }
    try {
        return {std::make_unique<RecordRow>(head, *separator, usual), false};
    } catch (const BadRecord& bad) {
        throw Failure(Cause::INPUT, bad.what());
    }
}

class Encoder : public LineConverter {
public:
    Encoder(bool isFdnIgnored, const Kind* usual) : m_isFdnIgnored(isFdnIgnored), m_usual(usual) {}

    void Convert(std::string_view line, LineResult& result) override {
        if (m_head != result.Head()) {
            m_source = OpenRecords(*result.Head(), m_usual);
            m_head = result.Head();
        }
        if (m_source.isHeadRecord || !result.IsFirstLine()) {
            ConvertRecord(line, result);
        }
    }

private:
    void ConvertRecord(std::string_view line, LineResult& result) {
        RecordReader& reader = *m_source.reader;
        try {
            reader.Read(line);
            if (const std::string contradiction = ContradictionIn(reader.GetKind(), reader.Record());
                !contradiction.empty()) {
                throw BadRecord(contradiction);
            }
            Writing([&] { reader.GetKind().write(reader.Record(), m_fdn, NS_UTIL::Surroundings::OfSystem()); });
        } catch (const BadRecord& bad) {
            result.Report(bad.what());
            return;
        }
        const std::string_view fdn = reader.Fdn();
        if (!m_isFdnIgnored && fdn.data() != nullptr && fdn != m_fdn) {
            result.Report("written as " + QuotedWhole(m_fdn) + ", which differs from its \"fdn\" " + QuotedWhole(fdn));
        }
        Append(result.output, m_fdn);
        result.output.Put('\n');
    }

    bool m_isFdnIgnored;
    const Kind* m_usual;
    std::shared_ptr<const std::string> m_head;  // of the file that `m_source` reads
    RecordSource m_source;
    std::string m_fdn;
};

ExitCode Encode(const Options& options) {
    const Kind* const usual = ChosenKind(options.type);
    MissingNes missing;
    const auto services = StartServices(options.services, &missing);
    LineWork work;
    work.areHeadsKept = true;
    work.filesInUse = FilesInUse(options.services);
    work.makeConverter = [&] { return std::make_unique<Encoder>(options.isFdnIgnored, usual); };
    work.finding = "rejected or changed";
    const ExitCode code = ExitCodeOf(RunLines(options.bulk, work));
    missing.Tell();
    return code;
}

}  // namespace

void AddEncode(CLI::App& app, Action& action) {
    Verb verb(app, action, "encode", "Convert records, as decode writes them, to identifiers");
    const auto options = std::make_shared<Options>();
    AddInputFiles(verb, options->bulk);
    AddRunOptions(verb, options->bulk);
    AddRejectOptions(verb, options->bulk);
    AddServiceOptions(verb, options->services);
    verb.AddFlag("--ignore-fdn", options->isFdnIgnored,
                 "Do not compare the written identifier with the line's \"fdn\"");
    AddTypeOption(verb, options->type, "Type of the records that name none; kxdu types lists all");
    verb.SetAction(HELP, options, Encode);
}

}  // namespace NS_KX::NS_KXDU
