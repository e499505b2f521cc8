#include <CLI/CLI.hpp>

#include "kinds.h"
#include "lines.h"
#include "recordline.h"
#include "services.h"
#include "text.h"
#include "verbs.h"

namespace NS_KXDU {

namespace {

constexpr auto EXAMPLES = R"(Examples:
  kxdu decode network.fdn | kxdu encode --inventory network.db | cmp - network.fdn
  echo '{"type":"NEIndex","record":{"reserved":0,"neId":7}}' | kxdu encode

Reads lines as kxdu decode writes them, their members in any order. The identifier is written from the record alone; a
"fdn" beside the record that differs from what was written is reported, so that no identifier changes unseen; leave
"fdn" out, or give --ignore-fdn, when records were changed on purpose.

Every field of a record must be there, with no other beside it; numbers must fit their field. Lines that are no such
JSON, name a type that there is not, hold a text with a line end in it, are empty, hold a NUL byte, are not UTF-8 or
are longer than 1 MiB are rejected. So are records that keep their text, as services and trails do, when their other
fields say something else than it: change both. Whether the numbers of maintenance domains and associations are written
is asked of the inventory.

Exit code: 0 all lines were converted; 1 some were rejected or came out changed; 2 wrong arguments, an input that cannot
be read, or no inventory where one is needed; 3 output that cannot be written.)";

struct Options {
    BulkOptions bulk;
    ServiceOptions services;
    bool isFdnIgnored = false;
};

class Encoder : public LineConverter {
public:
    explicit Encoder(bool isFdnIgnored) : m_isFdnIgnored(isFdnIgnored) {}

    void Convert(std::string_view line, LineResult& result) override {
        try {
            m_record.Parse(line);
            const Kind* const kind = FindKindByType(m_record.Type());
            if (kind == nullptr) {
                throw BadRecord("unknown type " + Quoted(m_record.Type()));
            }
            Writing([&] { m_record.Encode(*kind, m_fdn); });
        } catch (const BadRecord& bad) {
            result.Report(bad.what());
            return;
        }
        const std::string_view fdn = m_record.Fdn();
        if (!m_isFdnIgnored && fdn.data() != nullptr && fdn != m_fdn) {
            result.Report("written as " + QuotedWhole(m_fdn) + ", which is not its fdn " + QuotedWhole(fdn));
        }
        Append(result.output, m_fdn);
        result.output.Put('\n');
    }

private:
    bool m_isFdnIgnored;
    RecordLine m_record;
    std::string m_fdn;
};

ExitCode Encode(const Options& options) {
    const auto services = StartServices(options.services);
    LineWork work;
    work.makeConverter = [&] { return std::make_unique<Encoder>(options.isFdnIgnored); };
    work.finding = "rejected or changed";
    return RunLines(options.bulk, work);
}

}  // namespace

void AddEncode(CLI::App& app, Action& action) {
    auto* const verb = app.add_subcommand("encode", "Records, as decode writes them as JSON lines, to identifiers");
    const auto options = std::make_shared<Options>();
    AddBulkOptions(*verb, options->bulk);
    AddServiceOptions(*verb, options->services);
    verb->add_flag("--ignore-fdn", options->isFdnIgnored, "Do not compare what is written with the fdn in the line");
    verb->footer(EXAMPLES);
    verb->callback([&action, options] { action = [options] { return Encode(*options); }; });
}

}  // namespace NS_KXDU
