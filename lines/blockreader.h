#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "lines/input.h"
#include "text/line.h"

namespace NS_KX {

/// Some whole lines of one input. Filling it again reuses its memory.
struct InputBlock {
    std::vector<char> memory;
    std::size_t size = 0;         ///< of the text at the beginning of `memory`
    std::string_view inputName;   ///< as messages show it; lives as long as the reader
    std::size_t firstLine = 1;    ///< the number of the first line
    bool isTooLongLine = false;   ///< stands for one line that was too long to hold; there is no text
    std::uint64_t bytesRead = 0;  ///< of all inputs, up to about here
    /// The first line of the input, without its line end, if `BlockReader::KeepHeads` was called. Empty if it was too
    /// long.
    std::shared_ptr<const std::string> head;

    [[nodiscard]] std::string_view Text() const { return {memory.data(), size}; }
};

/// Reads files, one after the other, in blocks of whole lines. A compressed file (gzip, zstd or xz, recognized by its
/// first bytes) is decompressed on a thread of its own. A UTF-8 byte-order mark at the beginning of a file is skipped.
class BlockReader {
public:
    /// Reads standard input if there are no `files`, and for the file "-". Blocks have about `blockSize` bytes. A line
    /// of more than `longestLine` bytes is not held.
    BlockReader(std::vector<std::string> files, std::size_t blockSize, std::size_t longestLine = LONGEST_LINE);
    BlockReader(const BlockReader&) = delete;
    BlockReader& operator=(const BlockReader&) = delete;

    /// Fills `block` with the next lines; false if there are none. Lines that arrive slowly do not wait until a block
    /// is full. A block is larger than `blockSize` only if one of its lines is. Throws `Failure` with `Cause::INPUT` if
    /// an input cannot be read, after it has returned all whole lines before.
    bool Next(InputBlock& block);

    /// From now on each block has the first line of its input. To be called before the first `Next`.
    void KeepHeads() noexcept { m_areHeadsKept = true; }

    /// The total size of all inputs in bytes, as stored, maybe compressed; 0 if it is not known beforehand.
    [[nodiscard]] std::uint64_t TotalBytes() const noexcept { return m_totalBytes; }

private:
    bool OpenNext();
    std::size_t Read(char* memory, std::size_t size);
    bool FillFromInput(InputBlock& block);
    bool ReadMore(InputBlock& block);
    void CutAfterLastLine(InputBlock& block);
    void SkipTooLongLine(InputBlock& block);
    void KeepRest(const InputBlock& block, std::size_t from);

    std::vector<std::string> m_files;
    std::deque<std::string> m_names;
    std::size_t m_nextFile = 0;
    std::size_t m_blockSize;
    std::size_t m_longestLine;
    std::atomic<std::uint64_t> m_bytesRead = 0;
    std::optional<Input> m_input;
    bool m_isAtBegin = false;  // of the open input
    bool m_isAtEnd = false;    // of the open input
    std::vector<char> m_rest;  // bytes read after the last whole line
    std::size_t m_line = 1;
    std::uint64_t m_totalBytes = 0;
    bool m_areHeadsKept = false;
    std::shared_ptr<const std::string> m_head;
};

}  // namespace NS_KX
