#include "verbs/filterconfiguration.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <stdexcept>
#include <string_view>
#include <utility>

#include <kx_domain_util/utilcommon.h>
#include <kx_platform/textutil.h>

#include "cli/services.h"
#include "lines/descriptor.h"
#include "text/number.h"
#include "text/quoting.h"

namespace NS_KX::NS_KXDU {

namespace {

constexpr auto WHITE_LIST = "Whitelist";
constexpr auto BLACK_LIST = "Blacklist";

bool ReadItem(const std::string& item, std::string& text) {
    return NS_UTIL::UtilCommon::Instance()->GetSupportCfgItem(item, text);
}

std::vector<std::string> Split(const std::string& list) {
    std::vector<std::string> identifiers;
    NS_UTIL::SplitStringByTag(list, identifiers, ',', {});
    return identifiers;
}

// The smallest number with as many digits.
int LeastAsLong(int number) {
    int least = 1;
    while (number / least >= 10) {
        least *= 10;
    }
    return least;
}

// The largest number with as many digits.
int MostAsLong(int number) {
    const std::int64_t most = std::int64_t{LeastAsLong(number)} * 10 - 1;
    return static_cast<int>(std::min(most, std::int64_t{std::numeric_limits<int>::max()}));
}

// The identifiers in the list, as the library reads them.
std::vector<int> IdentifiersIn(const std::string& list) {
    std::vector<int> identifiers;
    if (list == WHITE_LIST) {
        identifiers.push_back(NS_UTIL::ALWAYS_PASSING_NOTIFICATION);
    }
    std::string text;
    if (!list.empty() && ReadItem(list, text)) {
        for (const std::string& word : Split(text)) {
            if (const int identifier = NS_UTIL::Str2Int(word); identifier > 0) {
                identifiers.push_back(identifier);
            }
        }
    }
    return identifiers;
}

// The list that this EventSwitch selects; empty if it selects none.
std::string ListOf(int eventSwitch) {
    if (eventSwitch == NS_UTIL::EVENT_SWITCH_WHITE_LIST) {
        return WHITE_LIST;
    }
    return eventSwitch == NS_UTIL::EVENT_SWITCH_BLACK_LIST ? BLACK_LIST : "";
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
    if (!ReadItem(item, list)) {
        return "EventSwitch is " + std::to_string(eventSwitch) + ", but the configuration has no " + item + ": " +
               whatPassesWithout;
    }
    const auto identifiers = Split(list);
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
        return CaveatOfList(WHITE_LIST, eventSwitch,
                            "only " + std::to_string(NS_UTIL::ALWAYS_PASSING_NOTIFICATION) + " passes");
    }
    if (eventSwitch == NS_UTIL::EVENT_SWITCH_BLACK_LIST) {
        return CaveatOfList(BLACK_LIST, eventSwitch, "all notifications pass");
    }
    return {};
}

// A misspelt item looks like a missing one, and a filter that passes everything like one that works: one line for each
// doubt, none when there is none.
std::vector<std::string> CaveatsOfConfiguration() {
    std::string text;
    if (!ReadItem("EventSwitch", text)) {
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

void WriteCaveats() {
    for (const std::string& caveat : CaveatsOfConfiguration()) {
        WriteMessage("kxdu: " + caveat + "\n");
    }
}

// The items that decide, with their values.
std::string DescribeItems(const std::string& list) {
    std::string text;
    if (!ReadItem("EventSwitch", text)) {
        return "there is no EventSwitch";
    }
    std::string description = "EventSwitch is " + Quoted(text);
    if (!list.empty() && ReadItem(list, text)) {
        description += ", " + list + " is " + Quoted(text);
    }
    return description;
}

}  // namespace

FilterConfiguration::FilterConfiguration(const std::string& folder)
    : m_files(FilesInUse({{}, folder})),
      m_file(m_files.back().name),  // before the file is read: a change meanwhile must not go unnoticed
      m_host(StartServices({{}, folder})) {
    NoteItems();
    WriteCaveats();
}

FilterConfiguration::~FilterConfiguration() {
    NS_UTIL::NtfFilter::Destroy();  // it belongs to the items that go
}

void FilterConfiguration::TakeOver() {
    m_file.Accept();
    try {
        m_host->ReloadConfiguration();
    } catch (const std::runtime_error& error) {
        WriteMessage(std::string("kxdu: ") + error.what() + "; the configuration read before stays in force\n");
        return;
    }
    NoteItems();
    WriteMessage("kxdu: " + m_files.back().name + ": has changed: " + DescribeItems(m_list) + " from now on\n");
    WriteCaveats();
}

void FilterConfiguration::NoteItems() {
    NS_UTIL::NtfFilter::Destroy();  // the next one reads the items of now
    m_filter = NS_UTIL::NtfFilter::Instance();
    std::string text;
    m_list = ReadItem("EventSwitch", text) ? ListOf(NS_UTIL::Str2Int(text)) : "";
    m_isWhiteList = m_list == WHITE_LIST;
    const auto identifiers = IdentifiersIn(m_list);
    const auto [smallest, largest] = std::minmax_element(identifiers.begin(), identifiers.end());
    m_least = identifiers.empty() ? 0 : LeastAsLong(*smallest);
    m_most = identifiers.empty() ? std::numeric_limits<int>::max() : MostAsLong(*largest);
}

}  // namespace NS_KX::NS_KXDU
