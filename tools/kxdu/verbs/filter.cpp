#include <algorithm>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "cli/bulkoptions.h"
#include "cli/services.h"
#include "cli/verb.h"
#include "cli/verbs.h"
#include "lines/failure.h"
#include "lines/output.h"
#include "text/number.h"
#include "text/quoting.h"
#include "verbs/filterconfiguration.h"
#include "verbs/notificationid.h"

namespace NS_KX::NS_KXDU {

namespace {

constexpr auto HELP = R"(Examples:
  tail -F alarms.log | kxdu filter --config /etc/nms | northbound-feed
  kxdu filter --config /etc/nms --delimiter , --field 3 alarms.csv -o passed.csv --held held.csv
  kxdu filter --config /etc/nms --json notificationId alarms.jsonl -o passed.jsonl

Three items of the configuration decide:
  EventSwitch = 1  only notifications in Whitelist pass, and 2101250 always
  EventSwitch = 2  notifications in Blacklist are held back
  otherwise        all notifications pass
If EventSwitch or the list that it selects is missing or holds anything but such numbers, a warning says so on standard
error at the start. If the configuration changes during the run, it applies from the next line that is read, and a
message says so; if it cannot be read then, a message says that too, and the one read before stays in force. The number
of lines held back is shown at the end, unless --strict ended the run early.

A notification identifier is a decimal number from 0 to 2147483647. Blanks or tabs separate the fields of a line, any
number of them. With --delimiter, each delimiter separates two fields; fields may be empty, or in quotes as in CSV, and
blanks around a number do not count. The identifier is the first field that is such a number, or the field that --field
selects. Lines that begin with other numbers, such as a date, need --field. Without it, a line is reported if its first
number is longer or shorter than all identifiers in the list that decides, and a later number is in this list. With
--json, each line is a JSON object, and its first member named KEY is the identifier, as a number or a text; the rest of
the line is not looked at.

No alarm gets lost: a line without an identifier, even an empty one, passes, and is reported and counted. Lines pass
byte for byte and at once, even from a slow pipe; the last line gets a line end if it lacks one. Only lines longer than
1 MiB are rejected.

--append and --held add lines to the end of a file at once. If another program renames the file to rotate it, a new one
is made. With --confirm, rsyslogd may run kxdu as the program of an omprog action with confirmMessages="on": standard
output gets the line OK once kxdu is ready, and again for each line as soon as that line is in its file or rejected. So
an alarm may come twice, but none is lost if kxdu is killed. docs/guide.md has the whole recipe.

Exit code: 0 every line had an identifier; 1 some had none or are in doubt, or were too long; 2 wrong arguments, or an
input or a configuration that cannot be read; 3 the output cannot be written. A reader of the output that stops early is
no error.)";

struct Options {
    BulkOptions bulk;
    std::string config;
    std::string append;
    bool isConfirmed = false;
    char delimiter = BLANKS;
    std::optional<std::size_t> field;  // none: the first number
    std::optional<std::string> jsonKey;
};

// Places among the tallies of a run.
constexpr std::size_t HELD_BACK = 0;
constexpr std::size_t PASSED = 1;
constexpr std::size_t WITHOUT_ID = 2;
constexpr std::size_t IN_DOUBT = 3;

void AppendLine(std::string_view line, TextBuffer& out) {
    char* const to = out.Push(line.size() + 1);
    std::copy(line.begin(), line.end(), to);
    to[line.size()] = '\n';
}

std::unique_ptr<NotificationIdReader> MakeReader(const Options& options) {
    if (options.jsonKey) {
        return MakeJsonMemberReader(*options.jsonKey);
    }
    return options.field ? MakeFieldReader(*options.field, options.delimiter)
                         : MakeFirstNumberReader(options.delimiter);
}

class Filter : public LineConverter {
public:
    Filter(std::unique_ptr<NotificationIdReader> reader, const Options& options,
           const FilterConfiguration& configuration)
        : m_reader(std::move(reader)),
          m_configuration(configuration),
          m_delimiter(options.delimiter),
          m_isFirstNumber(!options.field && !options.jsonKey),
          m_isHeldKept(!options.bulk.aside.empty()) {}

    void Convert(std::string_view line, LineResult& result) override {
        const auto id = m_reader->Read(line);
        if (!id) {
            result.Count(WITHOUT_ID);
            result.Report("no notification identifier; the line is passed on");
        } else {
            const bool isHeldBack = m_configuration.IsHeldBack(*id);
            if (m_isFirstNumber && m_configuration.IsImplausible(*id)) {
                ReportDoubt(line, *id, result);
            }
            if (isHeldBack) {
                HoldBack(line, result);
                return;
            }
        }
        result.Count(PASSED);
        AppendLine(line, result.output);
    }

private:
    void HoldBack(std::string_view line, LineResult& result) const {
        result.Count(HELD_BACK);
        if (m_isHeldKept) {
            AppendLine(line, result.aside);
        }
    }

    // The first number of a line may be a date or a counter.
    void ReportDoubt(std::string_view line, int id, LineResult& result) const {
        const auto isListed = [this](int number) { return m_configuration.IsListed(number); };
        if (const auto other = FindNumberField(line, m_delimiter, isListed)) {
            const std::string field = std::to_string(other->field);
            result.Count(IN_DOUBT);
            result.Report("the first number, " + std::to_string(id) + ", is not in " + m_configuration.ListName() +
                          ", but " + std::to_string(other->number) + " in field " + field +
                          " is; if that is the identifier, give --field " + field);
        }
    }

    std::unique_ptr<NotificationIdReader> m_reader;
    const FilterConfiguration& m_configuration;
    char m_delimiter;
    bool m_isFirstNumber;
    bool m_isHeldKept;
};

std::string Summary(const LineCounts& run) {
    const std::uint64_t withoutId = run.tallies[WITHOUT_ID];
    const std::uint64_t inDoubt = run.tallies[IN_DOUBT];
    std::string text = "kxdu: " + std::to_string(run.tallies[HELD_BACK]) + " held back, " +
                       std::to_string(run.tallies[PASSED]) + " passed on";
    if (withoutId != 0) {
        text += ", " + std::to_string(withoutId) + " of these without an identifier";
    }
    if (inDoubt != 0) {
        text += ", " + std::to_string(inDoubt) + " in doubt";
    }
    if (const std::uint64_t tooLong = run.findings - withoutId - inDoubt; tooLong != 0) {
        text += ", " + std::to_string(tooLong) + " too long";
    }
    return text + "\n";
}

void RefuseContradictions(const Options& options) {
    if (!options.append.empty() && !options.bulk.output.empty()) {
        throw Failure(Cause::INPUT, "--append and -o name two outputs: give one of them");
    }
    if (!options.isConfirmed) {
        return;
    }
    if (options.append.empty()) {
        throw Failure(Cause::INPUT, "--confirm needs --append FILE: standard output is for the confirmations");
    }
    if (options.append == "-" || options.append == "/dev/stdout") {
        throw Failure(Cause::INPUT, "--append " + options.append +
                                        ": with --confirm, standard output is for the confirmations; name a file");
    }
    if (options.bulk.isStrict) {
        throw Failure(Cause::INPUT,
                      "--strict does not go with --confirm: rsyslogd would send the line that ends the run "
                      "again and again");
    }
}

// Confirms to rsyslogd, on standard output, the lines that are safe.
class Confirmations {
public:
    void Confirm(std::size_t lines) {
        m_text.clear();
        for (std::size_t line = 0; line < lines; ++line) {
            m_text += "OK\n";
        }
        m_output.Write(m_text);
    }

private:
    Output m_output{""};
    std::string m_text;
};

ExitCode RunFilter(const Options& options) {
    if (options.config.empty()) {
        throw Failure(Cause::INPUT,
                      "no configuration says what to hold back: give its folder with --config DIR or in KX_CONFIG_DIR");
    }
    RefuseContradictions(options);
    FilterConfiguration configuration(options.config);
    BulkOptions bulk = options.bulk;
    if (!options.append.empty()) {
        bulk.output = options.append;
        bulk.isAppending = true;
    }
    LineWork work;
    work.filesInUse = configuration.Files();
    work.makeConverter = [&] { return std::make_unique<Filter>(MakeReader(options), options, configuration); };
    work.isVerbatim = true;
    work.finding = "reported";
    work.isPauseDue = [&] { return configuration.IsChanged(); };
    work.pause = [&] { configuration.TakeOver(); };
    Confirmations confirmations;
    if (options.isConfirmed) {
        work.ready = [&] { confirmations.Confirm(1); };
        work.written = [&](std::size_t lines) { confirmations.Confirm(lines); };
    }
    work.summarize = Summary;
    return ExitCodeOf(RunLines(bulk, work));
}

// What is wrong with a delimiter; empty if nothing is.
std::string TakeDelimiter(const std::string& text, char& delimiter) {
    if (text == "\\t") {
        delimiter = '\t';
        return {};
    }
    if (text.size() != 1 || std::string_view("\"\r\n").find(text[0]) != std::string_view::npos) {
        return Quoted(text) + " is not one character, such as \",\", \";\" or \"|\", or \"\\t\" for a tab";
    }
    delimiter = text[0];
    return {};
}

}  // namespace

void AddFilter(CLI::App& app, Action& action) {
    Verb verb(app, action, "filter", "Pass on the lines whose notification the configuration does not hold back");
    const auto options = std::make_shared<Options>();
    AddInputFiles(verb, options->bulk);
    AddRunOptions(verb, options->bulk);
    AddRejectOptions(verb, options->bulk);
    AddConfigOption(verb, options->config);
    verb.AddText("--append", "FILE", options->append, "Append the lines that pass to FILE, at once");
    verb.AddText("--held", "FILE", options->bulk.aside, "Append the lines held back to FILE, at once");
    verb.AddFlag("--confirm", options->isConfirmed,
                 "Confirm each line to rsyslogd on standard output once it is in its file; needs --append");
    const auto takeDelimiter = [options](const std::string& text) { return TakeDelimiter(text, options->delimiter); };
    const VerbOption delimiter =
        verb.AddChecked("--delimiter", "C", takeDelimiter,
                        "Each character C separates two fields, which may be in quotes as in CSV; \\t is a tab");
    const auto takeField = [options](const std::string& text) {
        std::size_t number = 0;
        if (!ReadWhole(text, number)) {
            return Quoted(text) + " is not the number of a field: 0 for the first";
        }
        options->field = number;
        return std::string();
    };
    const VerbOption field =
        verb.AddChecked("--field", "N", takeField, "Field N of each line is the identifier, counted from 0 as in get");
    const auto takeKey = [options](const std::string& key) {
        options->jsonKey = key;
        return std::string();
    };
    verb.AddChecked("--json", "KEY", takeKey, "Lines are JSON objects; their member KEY is the identifier")
        .Excludes(field)
        .Excludes(delimiter);
    verb.SetAction(HELP, options, RunFilter);
}

}  // namespace NS_KX::NS_KXDU
