#include "cli/arguments.h"

#include <string_view>

namespace NS_KX::NS_KXDU {

namespace {

constexpr char MARK = '\0';
constexpr std::string_view FIRST_OF_SPECIAL = "[{+%";

}  // namespace

std::vector<std::string> HiddenArguments(int argc, const char* const* argv) {
    std::vector<std::string> arguments;
    for (int place = argc - 1; place > 0; --place) {
        std::string argument = argv[place];
        const bool isSpecial = !argument.empty() && FIRST_OF_SPECIAL.find(argument.front()) != std::string_view::npos;
        arguments.push_back(isSpecial ? MARK + argument : std::move(argument));
    }
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
