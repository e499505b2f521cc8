/// Compressed input that is read whole gives the same text in small parts, and never more than there is room for.
#include <optional>

#include "fuzz/input.h"
#include "lines/compression.h"
#include "lines/failure.h"
#include "support/chance.h"

namespace {

using namespace NS_KX;

constexpr std::size_t MOST_TEXT = std::size_t{1} << 20U;  // an archive of a few bytes may hold gigabytes

// The text of `compressed`, of which the decoder gets up to `most` bytes at a time; nothing if it is refused or cut
// off.
std::optional<std::string> TextOf(std::string_view compressed, Compression compression, std::size_t most) {
    NS_TEST::Chance chance(most);
    std::string text;
    std::string room(1 + chance.Below(most), '\0');
    try {
        const auto decoder = MakeDecoder(compression, "input");
        while (!compressed.empty()) {
            const std::size_t size = std::min(compressed.size(), 1 + chance.Below(most));
            std::string_view part = compressed.substr(0, size);
            compressed.remove_prefix(size);
            while (const std::size_t count = decoder->Decode(part, room.data(), room.size())) {
                NS_FUZZ::ExpectEqual(count <= room.size(), true, "whether there is room", count);
                text.append(room, 0, count);
                if (text.size() > MOST_TEXT) {
                    return text.substr(0, MOST_TEXT);
                }
            }
            NS_FUZZ::ExpectEqual(part, "", "what the decoder leaves", size);
        }
        return decoder->IsComplete() ? std::optional(text) : std::nullopt;
    } catch (const Failure&) {
        return std::nullopt;
    }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input = NS_FUZZ::ToText(data, size);
    const Recognized recognized = RecognizeCompression(input);
    if (recognized.compression != Compression::NONE) {
        const auto whole = TextOf(input, recognized.compression, std::size_t{1} << 16U);
        if (!whole) {
            return 0;  // in parts, the library for zstd overlooks an empty last block in a frame that should hold text
        }
        for (const std::size_t most : {std::size_t{1}, std::size_t{7}, std::size_t{100}}) {
            NS_FUZZ::ExpectEqual(TextOf(input, recognized.compression, most), whole, "the text in parts", input);
        }
    }
    return 0;
}
