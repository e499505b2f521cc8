#include "verbs/filterconfiguration.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <stdexcept>
#include <string_view>

#include <kx_platform/textutil.h>

#include "cli/configurationdoubts.h"
#include "cli/services.h"
#include "lines/descriptor.h"
#include "text/quoting.h"

namespace NS_KX::NS_KXDU {

namespace {

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
        for (const std::string& word : WordsOf(text)) {
            if (const int identifier = NS_UTIL::Str2Int(word); identifier > 0) {
                identifiers.push_back(identifier);
            }
        }
    }
    return identifiers;
}

// A filter that lacks an item passes everything, and looks like one that works. Empty if nothing is missing.
std::string WhatIsMissing(const std::string& list) {
    std::string text;
    if (!ReadItem(EVENT_SWITCH, text)) {
        return "the configuration has no EventSwitch: all notifications pass";
    }
    if (list.empty() || ReadItem(list, text)) {
        return {};
    }
    const std::string whatPasses = list == WHITE_LIST
                                       ? "only " + std::to_string(NS_UTIL::ALWAYS_PASSING_NOTIFICATION) + " passes"
                                       : "all notifications pass";
    return "EventSwitch is " + std::to_string(NS_UTIL::Str2Int(text)) + ", but the configuration has no " + list +
           ": " + whatPasses;
}

void TellWhatIsMissing(const std::string& list) {
    if (const std::string missing = WhatIsMissing(list); !missing.empty()) {
        WriteMessage("kxdu: " + missing + "\n");
    }
}

// The items that decide, with their values.
std::string DescribeItems(const std::string& list) {
    std::string text;
    if (!ReadItem(EVENT_SWITCH, text)) {
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
    TellWhatIsMissing(m_list);
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
    TellDoubtsOfConfiguration(m_host->ConfigurationItems());
    TellWhatIsMissing(m_list);
}

void FilterConfiguration::NoteItems() {
    NS_UTIL::NtfFilter::Destroy();  // the next one reads the items of now
    m_filter = NS_UTIL::NtfFilter::Instance();
    std::string text;
    m_list = ReadItem(EVENT_SWITCH, text) ? ListOf(NS_UTIL::Str2Int(text)) : "";
    m_isWhiteList = m_list == WHITE_LIST;
    const auto identifiers = IdentifiersIn(m_list);
    const auto [smallest, largest] = std::minmax_element(identifiers.begin(), identifiers.end());
    m_least = identifiers.empty() ? 0 : LeastAsLong(*smallest);
    m_most = identifiers.empty() ? std::numeric_limits<int>::max() : MostAsLong(*largest);
}

}  // namespace NS_KX::NS_KXDU
