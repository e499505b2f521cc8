#include "text/quoting.h"

#include "text/steering.h"

namespace NS_KX {

namespace {

// Appends `text`, with escapes for what would steer a terminal and for bytes that are not UTF-8.
void AppendHarmless(std::string& message, std::string_view text) {
    while (true) {
        const std::size_t harmless = HarmlessSize(text);
        message.append(text.substr(0, harmless));
        text.remove_prefix(harmless);
        if (text.empty()) {
            return;
        }
        const std::size_t size = SizeOfFirst(text);
        AppendInHex(message, text.substr(0, size));
        text.remove_prefix(size);
    }
}

}  // namespace

void AppendQuoted(std::string& message, std::string_view text, std::size_t longest) {
    const std::string_view shown = text.substr(0, longest);
    const bool isCut = shown.size() < text.size();
    message += '"';
    AppendHarmless(message, shown);
    message += isCut ? "...\"" : "\"";
}

}  // namespace NS_KX
