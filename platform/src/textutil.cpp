
#include <array>
#include <charconv>

#include <kx_platform/textutil.h>

namespace NS_UTIL {

void Parser::SplitStrByTag(const std::string& text, const std::string& separator, std::vector<std::string>& out) {
    if (text.empty()) {
        return;
    }
    std::string::size_type begin = 0;
    if (!separator.empty()) {
        for (auto end = text.find(separator); end != std::string::npos; end = text.find(separator, begin)) {
            out.push_back(text.substr(begin, end - begin));
            begin = end + separator.size();
        }
    }
    out.push_back(text.substr(begin));
}

bool Parser::ParseItemNVByTag(const std::string& item, std::string& name, std::string& value,
                              const std::string& separator) {
    const auto cut = item.find(separator);
    if (cut == std::string::npos || separator.empty()) {
        name = item;
        value.clear();
        return false;
    }
    name = item.substr(0, cut);
    value = item.substr(cut + separator.size());
    return true;
}

bool SplitStringByTag(const std::string& text, std::vector<std::string>& out, char separator, std::bitset<8> options) {
    const bool keepEmpty = options.test(KEEP_EMPTY_TOKENS);
    const auto before = out.size();
    std::string::size_type begin = 0;
    while (begin <= text.size()) {
        const auto found = text.find(separator, begin);
        const auto end = found == std::string::npos ? text.size() : found;
        if (end > begin || (keepEmpty && !text.empty())) {
            out.push_back(text.substr(begin, end - begin));
        }
        begin = end + 1;
    }
    return out.size() > before;
}

std::string Int2Str(int number) {
    std::array<char, std::numeric_limits<int>::digits10 + 2> text{};
    const auto written = std::to_chars(text.data(), text.data() + text.size(), number);
    return {text.data(), written.ptr};
}

}  // namespace NS_UTIL
