#include "lines/otherfile.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "lines/failure.h"

namespace NS_KX {

namespace {

using namespace std::string_view_literals;

// A format, by bytes that its files have at some place.
struct OtherFormat {
    std::string_view bytes;
    std::size_t place;
    std::string_view name;
    std::string_view command;  // makes lines of it
};

constexpr std::string_view UTF_16 = "UTF-16 text";
constexpr std::string_view FROM_UTF_16 = "iconv -f UTF-16 -t UTF-8";

constexpr std::array FORMATS{
    OtherFormat{"\xFF\xFE"sv, 0, UTF_16, FROM_UTF_16},
    OtherFormat{"\xFE\xFF"sv, 0, UTF_16, FROM_UTF_16},
    OtherFormat{"PK\x03\x04"sv, 0, "a zip archive or a spreadsheet", "unzip -p"},
    OtherFormat{"ustar"sv, 257, "a tar archive", "tar -xOf"},
    OtherFormat{"7z\xBC\xAF\x27\x1C"sv, 0, "a 7z archive", "7z e -so"},
    OtherFormat{"Rar!\x1A\x07"sv, 0, "a rar archive", "unrar p -inul"},
    OtherFormat{"BZh"sv, 0, "compressed by bzip2", "bzip2 -dc"},
    OtherFormat{"\x04\x22\x4D\x18"sv, 0, "compressed by lz4", "lz4 -dc"},
    OtherFormat{"\x1F\x9D"sv, 0, "compressed by compress", "gzip -dc"},
    OtherFormat{"SQLite format 3\0"sv, 0, "an SQLite database", {}},
};

// UTF-16 without a byte-order mark: every other byte of ASCII is NUL.
std::string_view Utf16WithoutMark(std::string_view head) {
    constexpr std::size_t LOOKED_AT = 8;
    if (head.size() < LOOKED_AT) {
        return {};
    }
    const auto isNul = [&](std::size_t place) { return head[place] == '\0'; };
    std::size_t even = 0;
    std::size_t odd = 0;
    for (std::size_t place = 0; place < LOOKED_AT; place += 2) {
        even += isNul(place) ? 1 : 0;
        odd += isNul(place + 1) ? 1 : 0;
    }
    if (even == 0 && odd == LOOKED_AT / 2) {
        return "iconv -f UTF-16LE -t UTF-8";
    }
    return even == LOOKED_AT / 2 && odd == 0 ? "iconv -f UTF-16BE -t UTF-8" : "";
}

[[noreturn]] void Refuse(const std::string& name, std::string_view format, std::string_view command) {
    std::string text = name + ": is " + std::string(format) + ", not lines of text in UTF-8";
    if (!command.empty()) {
        // An input without a name stands before the pipe already.
        text.append("; use a pipe: ").append(command).append(name.starts_with('<') ? "" : " " + name);
        text.append(" | ...");
    }
    throw Failure(Cause::INPUT, text);
}

}  // namespace

void RefuseOtherFile(std::string_view head, const std::string& name) {
    const auto* const format = std::find_if(FORMATS.begin(), FORMATS.end(), [head](const OtherFormat& each) {
        return head.size() >= each.place && head.substr(each.place).starts_with(each.bytes);
    });
    if (format != FORMATS.end()) {
        Refuse(name, format->name, format->command);
    }
    if (const std::string_view command = Utf16WithoutMark(head); !command.empty()) {
        Refuse(name, UTF_16, command);
    }
}

}  // namespace NS_KX
