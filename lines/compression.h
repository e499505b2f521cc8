/// Recognizes, reads and writes compressed files.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace NS_KX {

enum class Compression { NONE, GZIP, ZSTD, XZ };

/// How a file is compressed, by its first bytes. `isSure` is false as long as more bytes may change the answer.
struct Recognized {
    Compression compression = Compression::NONE;
    bool isSure = true;
};
Recognized RecognizeCompression(std::string_view head) noexcept;

/// Decompresses bytes into text, a part at a time.
class Decoder {
public:
    virtual ~Decoder() = default;

    /// Takes bytes from the front of `input`, puts text into `room`, and returns the number of bytes put. 0 means that
    /// `input` is used up and more is needed. Throws `Failure` with `Cause::INPUT` if the data is corrupt, or needs
    /// more memory than allowed.
    virtual std::size_t Decode(std::string_view& input, char* room, std::size_t size) = 0;

    /// Whether the input may end here.
    [[nodiscard]] virtual bool IsComplete() const = 0;
};

/// Makes the decoder of an input that messages call `name`; null for no compression.
std::unique_ptr<Decoder> MakeDecoder(Compression compression, const std::string& name);

/// Compresses text, a part at a time.
class Encoder {
public:
    virtual ~Encoder() = default;

    /// Compresses `text` and appends the bytes that are ready to `compressed`; all remaining bytes if `isLast`.
    virtual void Encode(std::string_view text, bool isLast, std::string& compressed) = 0;
};

/// Makes the encoder for a file name that ends in .gz or .zst; null for other names. Throws `Failure` with
/// `Cause::INPUT` for the endings of other formats, such as .xz and .zip: the file would not be what its name says.
std::unique_ptr<Encoder> MakeEncoder(const std::string& name);

}  // namespace NS_KX
