#include "cli/arguments.h"

#include <algorithm>
#include <string_view>

namespace NS_KX::NS_KXDU {

namespace {

constexpr char MARK = '\0';
constexpr std::string_view FIRST_OF_SPECIAL = "[{+%";

// After "--", a word with a dash is an argument too.
bool IsSpecial(std::string_view argument, bool isAfterOptions) {
    return !argument.empty() && (FIRST_OF_SPECIAL.find(argument.front()) != std::string_view::npos ||
                                 (isAfterOptions && argument.size() > 1 && argument.front() == '-'));
}

}  // namespace

std::vector<std::string> HiddenArguments(int argc, const char* const* argv) {
    std::vector<std::string> arguments;
    bool isAfterOptions = false;
    for (int place = 1; place < argc; ++place) {
        std::string argument = argv[place];
        if (argument == "--" && !isAfterOptions) {
            isAfterOptions = true;
        } else {
            arguments.push_back(IsSpecial(argument, isAfterOptions) ? MARK + argument : std::move(argument));
        }
    }
    std::reverse(arguments.begin(), arguments.end());
    return arguments;
}

std::string AsGiven(const std::string& argument) {
    return argument.starts_with(MARK) ? argument.substr(1) : argument;
}

std::vector<std::string> SplitAtCommas(const std::string& list) {
    std::vector<std::string> parts;
    std::size_t begin = 0;
    for (auto comma = list.find(','); comma != std::string::npos; comma = list.find(',', begin)) {
        parts.push_back(list.substr(begin, comma - begin));
        begin = comma + 1;
    }
    parts.push_back(list.substr(begin));
    return parts;
}

}  // namespace NS_KX::NS_KXDU
