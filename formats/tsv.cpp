#include "formats/tsv.h"

#include <algorithm>
#include <stdexcept>

#include "text/quoting.h"

namespace NS_KX {

namespace {

// Appends `field`, with its escapes replaced, to `room`; returns the appended text.
std::string_view TakeEscapesOut(std::string_view field, std::string& room) {
    const std::size_t begin = room.size();
    for (std::size_t at = 0; at < field.size(); ++at) {
        if (field[at] != '\\') {
            room.push_back(field[at]);
            continue;
        }
        ++at;
        const std::string_view escaped = field.substr(at, 1);
        if (escaped == "t") {
            room.push_back('\t');
        } else if (escaped == "r") {
            room.push_back('\r');
        } else if (escaped == "\\") {
            room.push_back('\\');
        } else {
            throw std::runtime_error("a single backslash in " + Quoted(field) + "; write it twice");
        }
    }
    return std::string_view(room).substr(begin);
}

}  // namespace

void SplitTsvLine(std::string_view line, std::vector<std::string_view>& fields, std::string& room) {
    fields.clear();
    room.clear();
    room.reserve(line.size());  // so that views of it stay valid
    for (std::size_t begin = 0;;) {
        const std::size_t end = std::min(line.find('\t', begin), line.size());
        const std::string_view field = line.substr(begin, end - begin);
        const bool isPlain = field.find('\\') == std::string_view::npos;
        fields.push_back(isPlain ? field : TakeEscapesOut(field, room));
        if (end == line.size()) {
            return;
        }
        begin = end + 1;
    }
}

void AppendTsvField(std::string_view field, TextBuffer& out) {
    for (const char character : field) {
        switch (character) {
            case '\t':
                Append(out, "\\t");
                break;
            case '\r':
                Append(out, "\\r");
                break;
            case '\\':
                Append(out, "\\\\");
                break;
            default:
                out.Put(character);
        }
    }
}

}  // namespace NS_KX
