#include "cli/wrapping.h"

namespace NS_KX::NS_KXDU {

std::string Wrapped(const std::string& head, const std::vector<std::string>& words, std::size_t width) {
    const std::string indent(head.size(), ' ');
    std::string lines;
    std::string line = head;
    for (const std::string& word : words) {
        const bool isFirst = line.size() == head.size();
        if (!isFirst && line.size() + 1 + word.size() > width) {
            lines.append(line).append("\n");
            line = indent + word;
        } else {
            line.append(isFirst ? "" : " ").append(word);
        }
    }
    return lines + line;
}

}  // namespace NS_KX::NS_KXDU
