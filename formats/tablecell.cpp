#include "formats/tablecell.h"

#include <string>

#include "text/displaytext.h"

namespace NS_KX {

void AppendTableWord(std::string_view text, TextBuffer& out) {
    const std::string printable = Printable(text);
    if (!printable.empty() && printable.find_first_of(" \"") == std::string::npos) {
        Append(out, printable);
        return;
    }
    out.Put('"');
    for (const char character : printable) {
        if (character == '"' || character == '\\') {
            out.Put('\\');
        }
        out.Put(character);
    }
    out.Put('"');
}

void Pad(std::size_t begin, std::size_t width, TextBuffer& out) {
    for (std::size_t size = DisplayWidth(out.View().substr(begin)); size < width; ++size) {
        out.Put(' ');
    }
    Append(out, "  ");
}

void AppendPadded(std::string_view printable, std::size_t width, TextBuffer& out) {
    const std::size_t begin = out.GetSize();
    Append(out, printable);
    Pad(begin, width, out);
}

}  // namespace NS_KX
