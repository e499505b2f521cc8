#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "catalogue/conversion.h"
#include "catalogue/levelcheck.h"
#include "catalogue/pieces.h"
#include "cli/bulkoptions.h"
#include "cli/verb.h"
#include "cli/verbs.h"
#include "lines/blockreader.h"
#include "lines/descriptor.h"
#include "lines/failure.h"
#include "text/quoting.h"

namespace NS_KX::NS_KXDU {

namespace {

constexpr auto HELP = R"(Examples:
  kxdu set FR=2 SS=-1 network.fdn -o moved.fdn
  kxdu set PP:2=7 < ports.fdn
  echo 'NE=12,FR=1,S=3' | kxdu set NE=13,FR=2

Rewrites levels: each identifier is copied, with the new values in place of the old ones. TAG=VALUE sets the whole value
of a level, TAG:INDEX=VALUE one of its sub-values, from 0. The first of several levels with the same tag counts.
Nothing else changes: levels are neither added nor removed, and kxdu check says whether the library would write the new
text just so. A line without the level or sub-value keeps what it has; how many such lines there are is said at the end.

The tag must be known, and the value must suit it: a number where one belongs, no "," and, in a sub-value, no "|".
Arguments after the first one that sets nothing are files. Bytes pass unchanged. Rejected are lines that are empty, hold
a NUL byte, or are or would become longer than 1 MiB.

Exit code: 0 all lines were copied; 1 some were rejected; 2 wrong arguments, or an input that cannot be read; 3 the
output cannot be written.)";

struct Options {
    BulkOptions bulk;
    std::vector<std::string> arguments;  // what to set, then files
};

// A piece and its new value.
struct Setting {
    PieceName piece;
    std::string value;
};

[[noreturn]] void RefuseSetting(std::string_view text, std::string_view reason) {
    throw Failure(Cause::INPUT, Quoted(text) + ": " + std::string(reason));
}

void RequireValue(const PieceName& piece, std::string_view value, std::string_view text) {
    if (const auto reason = WhyNoValue(piece, value)) {
        RefuseSetting(text, *reason);
    }
    if (const auto problem = FindValueProblem(piece, value)) {
        RefuseSetting(text, problem->text);
    }
}

Setting ParseSetting(std::string_view text) {
    const auto equals = text.find('=');
    const std::string_view name = text.substr(0, equals);
    if (equals == std::string_view::npos || !PieceName::Parse(name)) {
        RefuseSetting(
            text,
            "is not TAG=VALUE or TAG:INDEX=VALUE, such as FR=2 or PP:2=7; a TAG has only upper-case letters and "
            "digits");
    }
    auto piece = PieceName::ParseKnown(name);
    if (!piece) {
        RefuseSetting(text, PieceName::WhyNone(name));
    }
    const std::string_view value = text.substr(equals + 1);
    RequireValue(*piece, value, text);
    return {*std::move(piece), std::string(value)};
}

// "FR=2,SS=-1" sets two levels: no value holds a comma.
void AddSettings(std::string_view argument, std::vector<Setting>& settings) {
    for (std::size_t begin = 0; begin <= argument.size();) {
        const std::size_t end = std::min(argument.find(',', begin), argument.size());
        const std::string_view part = argument.substr(begin, end - begin);
        if (begin != 0 && part.find('=') == std::string_view::npos) {
            RefuseSetting(argument, Quoted(part) +
                                        " after the comma is not TAG=VALUE or TAG:INDEX=VALUE; no value holds a comma");
        }
        Setting setting = ParseSetting(part);
        const bool isTwice = std::any_of(settings.begin(), settings.end(), [&](const Setting& other) {
            return other.piece.tag == setting.piece.tag &&
                   (!other.piece.index || !setting.piece.index || other.piece.index == setting.piece.index);
        });
        if (isTwice) {
            RefuseSetting(argument, setting.piece.tag + " is set twice");
        }
        settings.push_back(std::move(setting));
        begin = end + 1;
    }
}

// Whether an argument sets something, and is no file.
bool IsSetting(const std::string& argument) {
    std::error_code error;
    return argument.find('=') != std::string::npos &&
           (PieceName::Parse(argument.substr(0, argument.find('='))) || !std::filesystem::exists(argument, error));
}

class Setter : public LineConverter {
public:
    // What is counted.
    static constexpr std::size_t LACKING = 0;

    explicit Setter(const std::vector<Setting>& settings) : m_settings(settings) {}

    void Convert(std::string_view line, LineResult& result) override {
        m_fdn = line;
        bool isLacking = false;
        for (const Setting& setting : m_settings) {
            if (FindPiece(m_fdn, setting.piece).data() == nullptr) {
                isLacking = true;
            } else {
                m_fdn = ReplacePiece(m_fdn, setting.piece, setting.value);
            }
        }
        if (m_fdn.size() > LONGEST_LINE) {
            result.Report("the line would be longer than 1 MiB");
            return;
        }
        m_fdn.push_back('\n');
        std::copy(m_fdn.begin(), m_fdn.end(), result.Room(m_fdn.size()));
        if (isLacking) {
            result.Count(LACKING);
        }
    }

private:
    const std::vector<Setting>& m_settings;
    std::string m_fdn;
};

// What is said of the lines that lack something.
std::string LackingText(const std::vector<Setting>& settings, std::uint64_t lacking, std::uint64_t lines) {
    std::string pieces;
    for (const Setting& setting : settings) {
        pieces.append(&setting == &settings.front() ? "" : (&setting == &settings.back() ? " and " : ", "));
        pieces.append(setting.piece.tag);
        pieces.append(setting.piece.index ? ":" + std::to_string(*setting.piece.index) : "");
    }
    const char* const lack = lacking == 1 ? " lacks " : " lack ";
    return "kxdu: " + std::to_string(lacking) + " of " + std::to_string(lines) + (lines == 1 ? " line" : " lines") +
           lack + (settings.size() == 1 ? "" : "one or more of ") + pieces + "\n";
}

ExitCode Set(const Options& options) {
    std::vector<Setting> settings;
    auto argument = options.arguments.begin();
    for (; argument != options.arguments.end() && IsSetting(*argument); ++argument) {
        AddSettings(*argument, settings);
    }
    if (settings.empty()) {
        static_cast<void>(ParseSetting(*argument));  // says what is wrong
    }
    BulkOptions bulk = options.bulk;
    bulk.files.assign(argument, options.arguments.end());
    LineWork work;
    work.makeConverter = [&] { return std::make_unique<Setter>(settings); };
    work.mustBeUtf8 = false;
    const LineCounts counts = RunLines(bulk, work);
    if (const std::uint64_t lacking = counts.tallies[Setter::LACKING]; lacking != 0) {
        WriteMessage(LackingText(settings, lacking, counts.lines));
    }
    return ExitCodeOf(counts);
}

}  // namespace

void AddSet(CLI::App& app, Action& action) {
    Verb verb(app, action, "set", "Rewrite levels of identifiers");
    const auto options = std::make_shared<Options>();
    verb.AddTexts("TAG=VALUE... FILE", "", options->arguments,
                  "What to set, such as FR=2 or PP:2=7, separated by blanks or commas; then the files to read line by "
                  "line, also compressed; standard input when there are none, or for -")
        .Required();
    AddRunOptions(verb, options->bulk);
    AddRejectOptions(verb, options->bulk);
    verb.SetAction(HELP, options, Set);
}

}  // namespace NS_KX::NS_KXDU
