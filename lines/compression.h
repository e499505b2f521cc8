/// Compressed files: their formats, how to recognize and read them, and how to write them.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace NS_KX {

enum class Compression { NONE, GZIP, ZSTD, XZ };

/// What a file that begins with `head` is compressed with. `isSure` is false as long as more bytes may change that.
struct Recognized {
    Compression compression = Compression::NONE;
    bool isSure = true;
};
Recognized RecognizeCompression(std::string_view head) noexcept;

/// Makes text of compressed bytes, a part at a time.
class Decoder {
public:
    virtual ~Decoder() = default;

    /// Takes bytes off the front of `input` and puts text into `room`; returns how much. 0 means that all of `input` is
    /// taken and more is needed. Throws `Failure` with `Cause::USAGE` when the data is corrupt, or needs more memory
    /// than is allowed.
    virtual std::size_t Decode(std::string_view& input, char* room, std::size_t size) = 0;

    /// Whether the input may end here.
    [[nodiscard]] virtual bool IsComplete() const = 0;
};

/// The decoder of an input that messages call `name`; null for no compression.
std::unique_ptr<Decoder> MakeDecoder(Compression compression, const std::string& name);

/// Compresses text, a part at a time.
class Encoder {
public:
    virtual ~Encoder() = default;

    /// Appends to `compressed` what `text` becomes, or some of it; all that is left when `isLast`.
    virtual void Encode(std::string_view text, bool isLast, std::string& compressed) = 0;
};

/// The encoder that the end of a file's name asks for: .gz or .zst; null for other names. Throws `Failure` with
/// `Cause::USAGE` for .xz, which is not written.
std::unique_ptr<Encoder> MakeEncoder(const std::string& name);

}  // namespace NS_KX
