#include <algorithm>
#include <cstdint>
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
#include "lines/descriptor.h"
#include "lines/failure.h"
#include "text/number.h"
#include "text/text.h"
#include "verbs/notificationid.h"

namespace NS_KX::NS_KXDU {

namespace {

constexpr auto HELP = R"(Examples:
  tail -F alarms.log | kxdu filter --config /etc/nms | northbound-feed
  kxdu filter --config /etc/nms --json notificationId alarms.jsonl -o passed.jsonl

Three items of the configuration decide:
  EventSwitch = 1  only notifications in Whitelist pass, and 2101250 always
  EventSwitch = 2  notifications in Blacklist are held back
  otherwise        all notifications pass
If EventSwitch or the list that it selects is missing or holds anything but such numbers, a warning says so on standard
error at the start. The number of lines held back is shown there at the end, unless --strict ended the run early.

A notification identifier is a decimal number from 0 to 2147483647. Blanks or tabs separate the fields of a line. The
identifier is the first field that is such a number, or the field that --field selects; give --field if lines begin with
other bare numbers, such as a date. Commas do not separate fields, so CSV is not read. With --json, each line is a JSON
object, and its first member named KEY is the identifier, as a number or a text; the rest of the line is not looked at.

No alarm gets lost: a line without an identifier, even an empty one, passes, and is reported and counted. Lines pass
byte for byte and at once, even from a slow pipe; the last line gets a line end if it lacks one. Only lines longer than
1 MiB are rejected.

Exit code: 0 every line had an identifier; 1 some had none, or were too long; 2 wrong arguments, or an input or a
configuration that cannot be read; 3 the output cannot be written. A reader of the output that stops early is no
error.)";

struct Options {
    BulkOptions bulk;
    std::string config;
    std::size_t field = 0;  // 0: any
    std::optional<std::string> jsonKey;
};

// Places among the tallies of a run.
constexpr std::size_t HELD_BACK = 0;
constexpr std::size_t PASSED = 1;
constexpr std::size_t WITHOUT_ID = 2;

class Filter : public LineConverter {
public:
    explicit Filter(std::unique_ptr<NotificationIdReader> reader) : m_reader(std::move(reader)) {}

    void Convert(std::string_view line, LineResult& result) override {
        const auto id = m_reader->Read(line);
        if (!id) {
            result.Count(WITHOUT_ID);
            result.Report("no notification identifier; the line is passed on");
        } else if (m_filter.IsFilteNtf(*id)) {
            result.Count(HELD_BACK);
            return;
        }
        result.Count(PASSED);
        Append(result.output, line);
        result.output.Put('\n');
    }

private:
    std::unique_ptr<NotificationIdReader> m_reader;
    NS_UTIL::NtfFilter& m_filter = *NS_UTIL::NtfFilter::Instance();
};

std::unique_ptr<NotificationIdReader> MakeReader(const Options& options) {
    if (options.jsonKey) {
        return MakeJsonMemberReader(*options.jsonKey);
    }
    return options.field != 0 ? MakeFieldReader(options.field) : MakeFirstNumberReader();
}

std::string Summary(const LineCounts& run) {
    const std::uint64_t withoutId = run.tallies[WITHOUT_ID];
    std::string text = "kxdu: " + std::to_string(run.tallies[HELD_BACK]) + " held back, " +
                       std::to_string(run.tallies[PASSED]) + " passed on";
    if (withoutId != 0) {
        text += ", " + std::to_string(withoutId) + " of these without an identifier";
    }
    if (run.findings != withoutId) {
        text += ", " + std::to_string(run.findings - withoutId) + " too long";
    }
    return text + "\n";
}

// Whether `text` is an identifier, blanks around it aside.
bool IsNotificationId(std::string_view text) {
    const auto begin = std::min(text.find_first_not_of(' '), text.size());
    const auto number = ReadNumber(text.substr(begin, text.find_last_not_of(' ') + 1 - begin));
    return number && *number > 0;
}

// What to warn of in a list: that it is missing, or holds a word that only looks like an identifier to the library.
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
    return item + " holds " + Quoted(*wrong) +
           ", which is not a notification identifier; separate identifiers by commas";
}

// What the list of this EventSwitch lacks; empty when there is nothing to say.
std::string CaveatOfSwitch(int eventSwitch) {
    if (eventSwitch == NS_UTIL::EVENT_SWITCH_WHITE_LIST) {
        return CaveatOfList("Whitelist", eventSwitch,
                            "only " + std::to_string(NS_UTIL::ALWAYS_PASSING_NOTIFICATION) + " passes");
    }
    if (eventSwitch == NS_UTIL::EVENT_SWITCH_BLACK_LIST) {
        return CaveatOfList("Blacklist", eventSwitch, "all notifications pass");
    }
    return {};
}

// A misspelt item looks like a missing one, and a filter that passes everything like one that works: one line for each
// doubt, none when there is none.
std::vector<std::string> CaveatsOfConfiguration() {
    std::string text;
    if (!NS_UTIL::UtilCommon::Instance()->GetSupportCfgItem("EventSwitch", text)) {
        return {"the configuration has no EventSwitch: all notifications pass"};
    }
    const int eventSwitch = NS_UTIL::Str2Int(text);
    const bool isList =
        eventSwitch == NS_UTIL::EVENT_SWITCH_WHITE_LIST || eventSwitch == NS_UTIL::EVENT_SWITCH_BLACK_LIST;
    std::vector<std::string> caveats;
    if (isList && ReadNumber(text) != eventSwitch) {
        caveats.push_back("EventSwitch is " + Quoted(text) + ", which counts as " + std::to_string(eventSwitch));
    }
    if (!isList && ReadNumber(text) != 0) {
        caveats.push_back("EventSwitch is " + Quoted(text) + ", not 0, " +
                          std::to_string(NS_UTIL::EVENT_SWITCH_WHITE_LIST) + " or " +
                          std::to_string(NS_UTIL::EVENT_SWITCH_BLACK_LIST) + ": all notifications pass");
    }
    if (std::string caveat = CaveatOfSwitch(eventSwitch); !caveat.empty()) {
        caveats.push_back(std::move(caveat));
    }
    return caveats;
}

ExitCode RunFilter(const Options& options) {
    if (options.config.empty()) {
        throw Failure(Cause::USAGE,
                      "no configuration says what to hold back: give its folder with --config DIR or in KX_CONFIG_DIR");
    }
    const ServiceOptions serviceOptions{{}, options.config};
    const auto services = StartServices(serviceOptions);
    for (const std::string& caveat : CaveatsOfConfiguration()) {
        WriteMessage("kxdu: " + caveat + "\n");
    }
    LineWork work;
    work.filesInUse = FilesInUse(serviceOptions);
    work.makeConverter = [&] { return std::make_unique<Filter>(MakeReader(options)); };
    work.isVerbatim = true;
    work.finding = "reported";
    work.summarize = Summary;
    return ExitCodeOf(RunLines(options.bulk, work));
}

}  // namespace

void AddFilter(CLI::App& app, Action& action) {
    Verb verb(app, action, "filter", "Pass on the lines whose notification the configuration does not hold back");
    const auto options = std::make_shared<Options>();
    AddInputFiles(verb, options->bulk);
    AddRunOptions(verb, options->bulk);
    AddRejectOptions(verb, options->bulk);
    AddConfigOption(verb, options->config);
    const VerbOption field =
        verb.AddNumber("--field", options->field, "Field N of each line is the identifier, counted from 1", 1);
    const auto takeKey = [options](const std::string& key) {
        options->jsonKey = key;
        return std::string();
    };
    verb.AddChecked("--json", "KEY", takeKey, "Lines are JSON objects; their member KEY is the identifier")
        .Excludes(field);
    verb.SetAction(HELP, options, RunFilter);
}

}  // namespace NS_KX::NS_KXDU
