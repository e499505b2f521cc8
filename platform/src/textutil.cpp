#include <array>
#include <charconv>
#include <iterator>
#include <utility>

#include <kx_platform/textutil.h>

namespace NS_UTIL {

namespace {

// The text may be one of those that out holds, so out grows only when all pieces are there.
void Append(std::vector<std::string>&& pieces, std::vector<std::string>& out) {
    out.insert(out.end(), std::make_move_iterator(pieces.begin()), std::make_move_iterator(pieces.end()));
}

}  // namespace

void Parser::SplitStrByTag(const std::string& text, const std::string& separator, std::vector<std::string>& out) {
    if (text.empty()) {
        return;
    }
    std::vector<std::string> pieces;
    std::string::size_type begin = 0;
    if (!separator.empty()) {
        for (auto end = text.find(separator); end != std::string::npos; end = text.find(separator, begin)) {
            pieces.push_back(text.substr(begin, end - begin));
            begin = end + separator.size();
        }
    }
    pieces.push_back(text.substr(begin));
    Append(std::move(pieces), out);
}

bool Parser::ParseItemNVByTag(const std::string& item, std::string& name, std::string& value,
                              const std::string& separator) {
    const auto cut = separator.empty() ? std::string::npos : item.find(separator);
    const bool isFound = cut != std::string::npos;
    std::string cutName = item.substr(0, cut);
    std::string cutValue = isFound ? item.substr(cut + separator.size()) : std::string();
    name = std::move(cutName);
    value = std::move(cutValue);
    return isFound;
}

bool SplitStringByTag(const std::string& text, std::vector<std::string>& out, char separator, std::bitset<8> options) {
    const bool keepEmpty = options.test(KEEP_EMPTY_TOKENS);
    std::vector<std::string> tokens;
    std::string::size_type begin = 0;
    while (begin <= text.size()) {
        const auto found = text.find(separator, begin);
        const auto end = found == std::string::npos ? text.size() : found;
        if (end > begin || (keepEmpty && !text.empty())) {
            tokens.push_back(text.substr(begin, end - begin));
        }
        begin = end + 1;
    }
    const bool isAnyFound = !tokens.empty();
    Append(std::move(tokens), out);
    return isAnyFound;
}

std::string Int2Str(int number) {
    std::array<char, std::numeric_limits<int>::digits10 + 2> text{};
    const auto written = std::to_chars(text.data(), text.data() + text.size(), number);
    return {text.data(), written.ptr};
}

}  // namespace NS_UTIL
