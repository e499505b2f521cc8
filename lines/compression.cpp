#include "lines/compression.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <new>
#include <utility>

#include <lzma.h>
#include <zlib.h>
#include <zstd.h>
#include <zstd_errors.h>

#include "lines/failure.h"

namespace NS_KX {

namespace {

constexpr std::string_view GZIP_HEAD = "\x1F\x8B";
constexpr std::string_view ZSTD_HEAD = "\x28\xB5\x2F\xFD";
constexpr std::string_view XZ_HEAD{
    "\xFD"
    "7zXZ\0",
    6};

// A part of the 64 MiB of memory that a run over lines may take.
constexpr std::uint64_t MOST_MEMORY = std::uint64_t{20} << 20U;
constexpr int LARGEST_WINDOW_LOG = 24;  // 16 MiB

// As zlib takes what it only reads.
Bytef* ReadOnlyBytes(std::string_view text) noexcept {
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-const-cast): its interface has no const
    return reinterpret_cast<Bytef*>(const_cast<char*>(text.data()));
}

// Reports what is wrong with an input.
class Complaint {
public:
    explicit Complaint(std::string name) : m_name(std::move(name)) {}

    [[noreturn]] void OfCorruption(const char* program) const {
        throw Failure(Cause::INPUT, m_name + ": the compressed data is corrupt; " + program + " -t checks a file");
    }
    [[noreturn]] void OfMemory(const std::string& program) const {
        const std::string input = m_name.starts_with('<') ? "" : " " + m_name;
        throw Failure(Cause::INPUT,
                      m_name + ": needs more memory to be decompressed than may be used here; use a pipe: " + program +
                          input + " | ...");
    }

private:
    std::string m_name;
};

// ---- gzip -----------------------------------------------------------------------------------------------------------

constexpr int GZIP_WINDOW_BITS = MAX_WBITS + 16;  // zlib's way to ask for gzip's format

class GzipDecoder : public Decoder {
public:
    explicit GzipDecoder(const std::string& name) : m_complaint(name) {
        if (inflateInit2(&m_stream, GZIP_WINDOW_BITS) != Z_OK) {
            throw std::bad_alloc();
        }
    }
    ~GzipDecoder() override { inflateEnd(&m_stream); }
    GzipDecoder(const GzipDecoder&) = delete;
    GzipDecoder& operator=(const GzipDecoder&) = delete;

    std::size_t Decode(std::string_view& input, char* room, std::size_t size) override {
        for (;;) {
            if (m_isBetweenMembers) {
                // Tapes and some programs pad files with zeros.
                input.remove_prefix(std::min(input.find_first_not_of('\0'), input.size()));
                if (input.empty()) {
                    return 0;
                }
                inflateReset(&m_stream);
                m_isBetweenMembers = false;
            }
            m_stream.next_in = ReadOnlyBytes(input);
            m_stream.avail_in = static_cast<uInt>(input.size());
            m_stream.next_out = reinterpret_cast<Bytef*>(room);
            m_stream.avail_out = static_cast<uInt>(size);
            const int status = inflate(&m_stream, Z_NO_FLUSH);
            input.remove_prefix(input.size() - m_stream.avail_in);
            if (status == Z_MEM_ERROR) {
                throw std::bad_alloc();
            }
            if (status != Z_OK && status != Z_STREAM_END && status != Z_BUF_ERROR) {
                m_complaint.OfCorruption("gzip");
            }
            m_isBetweenMembers = status == Z_STREAM_END;
            if (const std::size_t made = size - m_stream.avail_out; made != 0 || !m_isBetweenMembers) {
                return made;
            }
        }
    }

    [[nodiscard]] bool IsComplete() const override { return m_isBetweenMembers; }

private:
    Complaint m_complaint;
    z_stream m_stream{};
    bool m_isBetweenMembers = false;
};

class GzipEncoder : public Encoder {
public:
    GzipEncoder() {
        constexpr int USUAL_MEMORY = 8;
        if (deflateInit2(&m_stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, GZIP_WINDOW_BITS, USUAL_MEMORY,
                         Z_DEFAULT_STRATEGY) != Z_OK) {
            throw std::bad_alloc();
        }
    }
    ~GzipEncoder() override { deflateEnd(&m_stream); }
    GzipEncoder(const GzipEncoder&) = delete;
    GzipEncoder& operator=(const GzipEncoder&) = delete;

    void Encode(std::string_view text, bool isLast, std::string& compressed) override {
        m_stream.next_in = ReadOnlyBytes(text);
        m_stream.avail_in = static_cast<uInt>(text.size());
        do {
            m_stream.next_out = reinterpret_cast<Bytef*>(m_room.data());
            m_stream.avail_out = static_cast<uInt>(m_room.size());
            deflate(&m_stream, isLast ? Z_FINISH : Z_NO_FLUSH);
            compressed.append(m_room.data(), m_room.size() - m_stream.avail_out);
        } while (m_stream.avail_out == 0);
    }

private:
    z_stream m_stream{};
    std::array<char, 16384> m_room{};
};

// ---- zstd -----------------------------------------------------------------------------------------------------------

class ZstdDecoder : public Decoder {
public:
    explicit ZstdDecoder(const std::string& name) : m_complaint(name), m_context(ZSTD_createDCtx()) {
        if (m_context == nullptr) {
            throw std::bad_alloc();
        }
        ZSTD_DCtx_setParameter(m_context, ZSTD_d_windowLogMax, LARGEST_WINDOW_LOG);
    }
    ~ZstdDecoder() override { ZSTD_freeDCtx(m_context); }
    ZstdDecoder(const ZstdDecoder&) = delete;
    ZstdDecoder& operator=(const ZstdDecoder&) = delete;

    std::size_t Decode(std::string_view& input, char* room, std::size_t size) override {
        if (m_isBetweenFrames && input.empty()) {
            return 0;  // another call would begin a new frame
        }
        ZSTD_inBuffer in{input.data(), input.size(), 0};
        ZSTD_outBuffer out{room, size, 0};
        do {
            const std::size_t status = ZSTD_decompressStream(m_context, &out, &in);
            if (ZSTD_isError(status) != 0) {
                Complain(ZSTD_getErrorCode(status));
            }
            m_isBetweenFrames = status == 0;
        } while (out.pos == 0 && in.pos != in.size);
        input.remove_prefix(in.pos);
        return out.pos;
    }

    [[nodiscard]] bool IsComplete() const override { return m_isBetweenFrames; }

private:
    [[noreturn]] void Complain(ZSTD_ErrorCode error) const {
        if (error == ZSTD_error_memory_allocation) {
            throw std::bad_alloc();
        }
        if (error == ZSTD_error_frameParameter_windowTooLarge) {
            m_complaint.OfMemory("zstd -dc --long=31");
        }
        m_complaint.OfCorruption("zstd");
    }

    Complaint m_complaint;
    ZSTD_DCtx* m_context;
    bool m_isBetweenFrames = false;
};

class ZstdEncoder : public Encoder {
public:
    ZstdEncoder() : m_context(ZSTD_createCCtx()) {
        if (m_context == nullptr) {
            throw std::bad_alloc();
        }
        ZSTD_CCtx_setParameter(m_context, ZSTD_c_checksumFlag, 1);
    }
    ~ZstdEncoder() override { ZSTD_freeCCtx(m_context); }
    ZstdEncoder(const ZstdEncoder&) = delete;
    ZstdEncoder& operator=(const ZstdEncoder&) = delete;

    void Encode(std::string_view text, bool isLast, std::string& compressed) override {
        ZSTD_inBuffer in{text.data(), text.size(), 0};
        bool isDone = false;
        while (!isDone) {
            ZSTD_outBuffer out{m_room.data(), m_room.size(), 0};
            const std::size_t left = ZSTD_compressStream2(m_context, &out, &in, isLast ? ZSTD_e_end : ZSTD_e_continue);
            if (ZSTD_isError(left) != 0) {
                throw std::bad_alloc();  // the only possible cause
            }
            compressed.append(m_room.data(), out.pos);
            isDone = isLast ? left == 0 : in.pos == in.size;
        }
    }

private:
    ZSTD_CCtx* m_context;
    std::array<char, 16384> m_room{};
};

// ---- xz -------------------------------------------------------------------------------------------------------------

class XzDecoder : public Decoder {
public:
    explicit XzDecoder(const std::string& name) : m_complaint(name) {
        if (lzma_stream_decoder(&m_stream, MOST_MEMORY, LZMA_CONCATENATED) != LZMA_OK) {
            throw std::bad_alloc();
        }
    }
    ~XzDecoder() override { lzma_end(&m_stream); }
    XzDecoder(const XzDecoder&) = delete;
    XzDecoder& operator=(const XzDecoder&) = delete;

    std::size_t Decode(std::string_view& input, char* room, std::size_t size) override {
        // Another stream may follow; LZMA_FINISH, at the end of the input, says that none does.
        return Step(input, room, size, LZMA_RUN);
    }

    [[nodiscard]] bool IsComplete() const override {
        std::string_view nothing;
        char room = 0;
        return Step(nothing, &room, 0, LZMA_FINISH) == 0 && m_isAtEnd;
    }

private:
    std::size_t Step(std::string_view& input, char* room, std::size_t size, lzma_action action) const {
        m_stream.next_in = reinterpret_cast<const std::uint8_t*>(input.data());
        m_stream.avail_in = input.size();
        m_stream.next_out = reinterpret_cast<std::uint8_t*>(room);
        m_stream.avail_out = size;
        lzma_ret status = LZMA_OK;
        do {
            status = lzma_code(&m_stream, action);
        } while (status == LZMA_OK && m_stream.avail_out == size && m_stream.avail_in != 0);
        input.remove_prefix(input.size() - m_stream.avail_in);
        switch (status) {
            case LZMA_STREAM_END:
                m_isAtEnd = true;
                break;
            case LZMA_OK:
            case LZMA_BUF_ERROR:
                break;
            case LZMA_MEM_ERROR:
                throw std::bad_alloc();
            case LZMA_MEMLIMIT_ERROR:
                m_complaint.OfMemory("xz -dc");
            default:
                m_complaint.OfCorruption("xz");
        }
        return size - m_stream.avail_out;
    }

    Complaint m_complaint;
    mutable lzma_stream m_stream = LZMA_STREAM_INIT;
    mutable bool m_isAtEnd = false;
};

// A name that promises a format that is not written. `program`, if any, writes it from a pipe.
struct UnwrittenEnding {
    std::string_view ending;
    const char* program;
};

constexpr std::array UNWRITTEN_ENDINGS{
    UnwrittenEnding{".xz", "xz"},     UnwrittenEnding{".bz2", "bzip2"}, UnwrittenEnding{".lz4", "lz4"},
    UnwrittenEnding{".lzma", "lzma"}, UnwrittenEnding{".br", "brotli"}, UnwrittenEnding{".Z", "compress"},
    UnwrittenEnding{".zip", nullptr}, UnwrittenEnding{".7z", nullptr},  UnwrittenEnding{".rar", nullptr},
    UnwrittenEnding{".tar", nullptr}, UnwrittenEnding{".tgz", nullptr}, UnwrittenEnding{".tbz2", nullptr},
    UnwrittenEnding{".txz", nullptr}};

bool MayBecome(std::string_view head, std::string_view whole) {
    return head.size() < whole.size() && whole.starts_with(head);
}

// The beginning of a frame that holds no text; some programs put one before the others. The first byte is one of 16.
std::string SkippedFrameHead(std::string_view head) {
    constexpr unsigned char ONE_OF_16 = 0xF0;
    constexpr unsigned char FIRST = 0x50;
    const bool isFirst = !head.empty() && (static_cast<unsigned char>(head.front()) & ONE_OF_16) == FIRST;
    return (isFirst ? head.front() : static_cast<char>(FIRST)) + std::string("\x2A\x4D\x18");
}

bool IsSkippedFrame(std::string_view head) {
    return head.starts_with(SkippedFrameHead(head));
}

bool MayBecomeSkippedFrame(std::string_view head) {
    return MayBecome(head, SkippedFrameHead(head));
}

}  // namespace

Recognized RecognizeCompression(std::string_view head) noexcept {
    if (head.starts_with(GZIP_HEAD)) {
        return {Compression::GZIP, true};
    }
    if (head.starts_with(ZSTD_HEAD) || IsSkippedFrame(head)) {
        return {Compression::ZSTD, true};
    }
    if (head.starts_with(XZ_HEAD)) {
        return {Compression::XZ, true};
    }
    return {Compression::NONE, !MayBecome(head, GZIP_HEAD) && !MayBecome(head, ZSTD_HEAD) &&
                                   !MayBecome(head, XZ_HEAD) && !MayBecomeSkippedFrame(head)};
}

std::unique_ptr<Decoder> MakeDecoder(Compression compression, const std::string& name) {
    switch (compression) {
        case Compression::GZIP:
            return std::make_unique<GzipDecoder>(name);
        case Compression::ZSTD:
            return std::make_unique<ZstdDecoder>(name);
        case Compression::XZ:
            return std::make_unique<XzDecoder>(name);
        case Compression::NONE:
            break;
    }
    return nullptr;
}

std::unique_ptr<Encoder> MakeEncoder(const std::string& name) {
    if (name.ends_with(".gz")) {
        return std::make_unique<GzipEncoder>();
    }
    if (name.ends_with(".zst")) {
        return std::make_unique<ZstdEncoder>();
    }
    for (const auto& [ending, program] : UNWRITTEN_ENDINGS) {
        if (name.ends_with(ending)) {
            std::string text = name;
            text.append(": ").append(ending).append(" is not written; use .gz or .zst");
            if (program != nullptr) {
                text.append(", or a pipe: ... | ").append(program).append(" >").append(name);
            }
            throw Failure(Cause::INPUT, text);
        }
    }
    return nullptr;
}

}  // namespace NS_KX
