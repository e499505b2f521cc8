/// The items of the configuration, and what looks wrong with them.
#pragma once

#include <string>
#include <vector>

namespace NS_KX::NS_KXDU {

inline constexpr auto EVENT_SWITCH = "EventSwitch";
inline constexpr auto WHITE_LIST = "Whitelist";
inline constexpr auto BLACK_LIST = "Blacklist";

/// Reads the item called `item`. Returns false, and leaves `text` untouched, if the configuration lacks it.
bool ReadItem(const std::string& item, std::string& text);

/// The words between the commas of an item that is a list, as the library splits it.
std::vector<std::string> WordsOf(const std::string& list);

/// The list of notifications that this EventSwitch selects; empty if it selects none.
std::string ListOf(int eventSwitch);

/// What looks wrong with the configuration: items with misspelt names, and values that the library reads as
/// something else. A line for each, without a line end. `names` are those of all items in the file. An item that is
/// missing is no doubt.
std::vector<std::string> DoubtsOfConfiguration(const std::vector<std::string>& names);
/// Writes them to standard error.
void TellDoubtsOfConfiguration(const std::vector<std::string>& names);

}  // namespace NS_KX::NS_KXDU
