#include <algorithm>
#include <atomic>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <kx_domain_util/ntffilter.h>
#include <kx_domain_util/utilcommon.h>
#include <kx_platform/textutil.h>

#include "cli/bulkoptions.h"
#include "cli/services.h"
#include "cli/verb.h"
#include "cli/verbs.h"
#include "lines/failure.h"
#include "text/number.h"
#include "text/text.h"
#include "verbs/notificationid.h"

namespace NS_KX::NS_KXDU {

namespace {

constexpr auto HELP = R"(Examples:
  tail -F alarms.log | kxdu filter --config /etc/nms | northbound-feed
  kxdu filter --config /etc/nms --json notificationId alarms.jsonl -o passed.jsonl

The configuration's items decide: with EventSwitch 1, only the identifiers of Whitelist pass, and 2101250; with 2, those
of Blacklist are held back; otherwise all pass. Where EventSwitch, or the list that it chooses, is missing or holds what
is no identifier, that is told on standard error at the beginning; how many lines were held back is told there at the
end, unless --strict ended the run before.

An identifier is a number from 0 to 2147483647 in decimal digits. It is looked for in the fields of a line, which blanks
or tabs, one or more, separate: the first field that is one counts, or the one that --field names; lines that begin with
other bare numbers, such as a date, need --field. Commas separate nothing, so CSV is not read. With --json, a line is a
JSON object, and the identifier its first member called KEY, as a number or as a text; the line is not looked at behind
it.

No alarm gets lost: a line without an identifier in its place, an empty one too, is passed on, and reported and counted.
Lines pass byte for byte and at once, also from a slow pipe; only the last one gets the line end that it may lack. Lines
longer than 1 MiB alone are rejected.

Exit code: 0 every line had an identifier; 1 some had not, or were too long; 2 wrong arguments, or an input or a
configuration that cannot be read; 3 output that cannot be written. A reader of the output that goes away is no error.)";

struct Options {
    BulkOptions bulk;
    std::string config;
    std::size_t field = 0;  // 0: any
    std::optional<std::string> jsonKey;
};

struct Counts {
    std::atomic<std::uint64_t> heldBack = 0;
    std::atomic<std::uint64_t> passed = 0;
    std::atomic<std::uint64_t> withoutId = 0;
};

class Filter : public LineConverter {
public:
    Filter(std::unique_ptr<NotificationIdReader> reader, Counts& total) : m_reader(std::move(reader)), m_total(total) {}

    // Threads that counted together all the time would wait for each other: 6 % less time of the processor in
    // `kxdu filter --jobs 2`.
    ~Filter() override {
        m_total.heldBack += m_heldBack;
        m_total.passed += m_passed;
        m_total.withoutId += m_withoutId;
    }

    Filter(const Filter&) = delete;
    Filter& operator=(const Filter&) = delete;

    void Convert(std::string_view line, LineResult& result) override {
        const auto id = m_reader->Read(line);
        if (!id) {
            ++m_withoutId;
            result.Report("no notification identifier; the line is passed on");
        } else if (m_filter.IsFilteNtf(*id)) {
            ++m_heldBack;
            return;
        }
        ++m_passed;
        Append(result.output, line);
        result.output.Put('\n');
    }

private:
    std::unique_ptr<NotificationIdReader> m_reader;
    NS_UTIL::NtfFilter& m_filter = *NS_UTIL::NtfFilter::Instance();
    Counts& m_total;
    std::uint64_t m_heldBack = 0;
    std::uint64_t m_passed = 0;
    std::uint64_t m_withoutId = 0;
};

std::unique_ptr<NotificationIdReader> MakeReader(const Options& options) {
    if (options.jsonKey) {
        return MakeJsonMemberReader(*options.jsonKey);
    }
    return options.field != 0 ? MakeFieldReader(options.field) : MakeFirstNumberReader();
}

std::string Summary(const Counts& counts, const LineCounts& run) {
    std::string text =
        "kxdu: " + std::to_string(counts.heldBack) + " held back, " + std::to_string(counts.passed) + " passed on";
    if (counts.withoutId != 0) {
        text += ", " + std::to_string(counts.withoutId) + " of these without an identifier";
    }
    if (run.findings != counts.withoutId) {
        text += ", " + std::to_string(run.findings - counts.withoutId) + " too long";
    }
    return text + "\n";
}

// The blanks around it are no part of an identifier.
bool IsNotificationId(std::string_view text) {
    const auto begin = std::min(text.find_first_not_of(' '), text.size());
    const auto number = ReadNumber(text.substr(begin, text.find_last_not_of(' ') + 1 - begin));
    return number && *number > 0;
}

// Of a list: it is not there, or holds what is no identifier but may be read as one.
std::string CaveatOfList(const std::string& item, int eventSwitch, const std::string& whatPassesWithout) {
    std::string list;
    if (!NS_UTIL::UtilCommon::Instance()->GetSupportCfgItem(item, list)) {
        return "EventSwitch is " + std::to_string(eventSwitch) + ", but the configuration has no " + item + ": " +
               whatPassesWithout;
    }
    std::vector<std::string> identifiers;
    NS_UTIL::SplitStringByTag(list, identifiers, ',', {});
    const auto wrong = std::find_if_not(identifiers.begin(), identifiers.end(), IsNotificationId);
    if (wrong == identifiers.end()) {
        return {};
    }
    return item + " holds " + Quoted(*wrong) + ", which is no notification identifier (they are separated by commas)";
}

// What is misspelt is like what is missing, and a filter that passes all looks like one that works. Empty when there is
// nothing to tell.
std::string CaveatOfConfiguration() {
    std::string text;
    if (!NS_UTIL::UtilCommon::Instance()->GetSupportCfgItem("EventSwitch", text)) {
        return "the configuration has no EventSwitch: all notifications pass";
    }
    const int eventSwitch = NS_UTIL::Str2Int(text);
    if (eventSwitch == NS_UTIL::EVENT_SWITCH_WHITE_LIST) {
        return CaveatOfList("Whitelist", eventSwitch,
                            "only " + std::to_string(NS_UTIL::ALWAYS_PASSING_NOTIFICATION) + " passes");
    }
    if (eventSwitch == NS_UTIL::EVENT_SWITCH_BLACK_LIST) {
        return CaveatOfList("Blacklist", eventSwitch, "all notifications pass");
    }
    if (ReadNumber(text) == 0) {
        return {};  // all pass on purpose
    }
    return "EventSwitch is " + Quoted(text) + ", not 0, " + std::to_string(NS_UTIL::EVENT_SWITCH_WHITE_LIST) + " or " +
           std::to_string(NS_UTIL::EVENT_SWITCH_BLACK_LIST) + ": all notifications pass";
}

ExitCode RunFilter(const Options& options) {
    if (options.config.empty()) {
        throw Failure(Cause::USAGE,
                      "the configuration tells what is held back: give its folder with --config DIR or in "
                      "KX_CONFIG_DIR");
    }
    const ServiceOptions serviceOptions{{}, options.config};
    const auto services = StartServices(serviceOptions);
    if (const std::string caveat = CaveatOfConfiguration(); !caveat.empty()) {
        static_cast<void>(std::fprintf(stderr, "kxdu: %s\n", caveat.c_str()));
    }
    Counts counts;
    LineWork work;
    work.filesInUse = FilesInUse(serviceOptions);
    work.makeConverter = [&] { return std::make_unique<Filter>(MakeReader(options), counts); };
    work.isVerbatim = true;
    work.finding = "reported";
    work.summarize = [&](const LineCounts& run) { return Summary(counts, run); };
    return ExitCodeOf(RunLines(options.bulk, work));
}

}  // namespace

void AddFilter(CLI::App& app, Action& action) {
    Verb verb(app, action, "filter", "Pass on the lines whose notification is not held back");
    const auto options = std::make_shared<Options>();
    AddInputFiles(verb, options->bulk);
    AddRunOptions(verb, options->bulk);
    AddRejectOptions(verb, options->bulk);
    AddConfigOption(verb, options->config);
    const VerbOption field =
        verb.AddNumber("--field", options->field, "The identifier is the field N, counted from 1", 1);
    const auto takeKey = [options](const std::string& key) {
        options->jsonKey = key;
        return std::string();
    };
    verb.AddChecked("--json", "KEY", takeKey, "Lines are JSON objects; the identifier is the member KEY")
        .Excludes(field);
    verb.SetAction(HELP, options, RunFilter);
}

}  // namespace NS_KX::NS_KXDU
