#include "cli/configurationdoubts.h"

#include <algorithm>
#include <limits>
#include <string_view>

#include <kx_domain_util/ntffilter.h>
#include <kx_domain_util/utilcommon.h>
#include <kx_platform/configitems.h>
#include <kx_platform/textutil.h>

#include "cli/nearestword.h"
#include "lines/descriptor.h"
#include "text/number.h"
#include "text/quoting.h"

namespace NS_KX::NS_KXDU {

namespace {

using Doubts = std::vector<std::string>;

constexpr auto CARRIER_PROFILE = "Telvandaire";
constexpr auto SUB_SLOT_NE_TYPES = "NETypeListForSubSlot";
constexpr auto PACKET_SIZE = "PfmFrameRdSize";

bool Has(const std::vector<std::string>& names, std::string_view name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

// The file may hold items of other programs, so only those are doubtful that look like one of ours.
void AddMisspeltNames(const std::vector<std::string>& names, Doubts& doubts) {
    const std::vector<std::string> known{CARRIER_PROFILE, SUB_SLOT_NE_TYPES, EVENT_SWITCH,
                                         WHITE_LIST,      BLACK_LIST,        PACKET_SIZE};
    for (const std::string& name : names) {
        const std::string_view nearest = Has(known, name) ? "" : NearestWord(name, known);
        if (!nearest.empty() && !Has(names, nearest)) {
            doubts.push_back("the configuration has an unknown item " + Quoted(name) + "; did you mean " +
                             std::string(nearest) + "?");
        }
    }
}

void AddDoubtOfCarrierProfile(Doubts& doubts) {
    std::string text;
    int number = 0;
    if (ReadItem(CARRIER_PROFILE, text) &&
        !NS_BUNDLEMGR1::CorbaConfigItems::Instance()->GetIntItemInfo(CARRIER_PROFILE, number)) {
        doubts.push_back(std::string(CARRIER_PROFILE) + " is " + Quoted(text) + ", not a whole number " +
                         RANGE_OF_32_BITS + ": it counts as 0");
    }
}

void AddDoubtOfPacketSize(Doubts& doubts) {
    std::string text;
    const int used = NS_UTIL::UtilCommon::Instance()->GetPFMPacketSize();
    if (ReadItem(PACKET_SIZE, text) && ReadNumber(text) != used) {
        doubts.push_back(std::string(PACKET_SIZE) + " is " + Quoted(text) + ", which counts as " +
                         std::to_string(used));
    }
}

// Whether `text` is a number from `least` to `most`, blanks around it aside.
bool IsNumber(std::string_view text, int least, int most) {
    const auto begin = std::min(text.find_first_not_of(' '), text.size());
    const auto number = ReadNumber(text.substr(begin, text.find_last_not_of(' ') + 1 - begin));
    return number && *number >= least && *number <= most;
}

// The library makes a number of any word.
void AddDoubtOfList(const std::string& item, int least, int most, const std::string& what, Doubts& doubts) {
    std::string list;
    if (!ReadItem(item, list)) {
        return;
    }
    const auto words = WordsOf(list);
    const auto wrong = std::find_if_not(words.begin(), words.end(),
                                        [&](const std::string& word) { return IsNumber(word, least, most); });
    if (wrong != words.end()) {
        doubts.push_back(item + " holds " + Quoted(*wrong) + ", which is not " + what);
    }
}

void AddDoubtsOfFilter(Doubts& doubts) {
    std::string text;
    if (!ReadItem(EVENT_SWITCH, text)) {
        return;
    }
    const int eventSwitch = NS_UTIL::Str2Int(text);
    const std::string list = ListOf(eventSwitch);
    const auto number = ReadNumber(text);
    const std::string is = std::string(EVENT_SWITCH) + " is " + Quoted(text);
    if (!list.empty() && number != eventSwitch) {
        doubts.push_back(is + ", which counts as " + std::to_string(eventSwitch));
    }
    if (list.empty() && number != 0) {
        doubts.push_back(is + ", not 0, " + std::to_string(NS_UTIL::EVENT_SWITCH_WHITE_LIST) + " or " +
                         std::to_string(NS_UTIL::EVENT_SWITCH_BLACK_LIST) + ": all notifications pass");
    }
    if (!list.empty()) {
        AddDoubtOfList(list, 1, std::numeric_limits<int>::max(),
                       "a notification identifier; separate identifiers by commas", doubts);
    }
}

}  // namespace

bool ReadItem(const std::string& item, std::string& text) {
    return NS_UTIL::UtilCommon::Instance()->GetSupportCfgItem(item, text);
}

std::vector<std::string> WordsOf(const std::string& list) {
    std::vector<std::string> words;
    NS_UTIL::SplitStringByTag(list, words, ',', {});
    return words;
}

std::string ListOf(int eventSwitch) {
    if (eventSwitch == NS_UTIL::EVENT_SWITCH_WHITE_LIST) {
        return WHITE_LIST;
    }
    return eventSwitch == NS_UTIL::EVENT_SWITCH_BLACK_LIST ? BLACK_LIST : "";
}

std::vector<std::string> DoubtsOfConfiguration(const std::vector<std::string>& names) {
    constexpr int LARGEST_NE_TYPE = std::numeric_limits<unsigned short>::max();
    Doubts doubts;
    AddMisspeltNames(names, doubts);
    AddDoubtOfCarrierProfile(doubts);
    AddDoubtOfList(SUB_SLOT_NE_TYPES, 0, LARGEST_NE_TYPE, "an NE type; separate NE types by commas", doubts);
    AddDoubtOfPacketSize(doubts);
    AddDoubtsOfFilter(doubts);
    return doubts;
}

void TellDoubtsOfConfiguration(const std::vector<std::string>& names) {
    for (const std::string& doubt : DoubtsOfConfiguration(names)) {
        WriteMessage("kxdu: " + doubt + "\n");
    }
}

}  // namespace NS_KX::NS_KXDU
