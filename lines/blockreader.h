#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "lines/input.h"

namespace NS_KX {

/// A longer line is rejected, and never held.
inline constexpr std::size_t LONGEST_LINE = std::size_t{1} << 20U;

/// Some whole lines of one input. Its memory is kept when it is filled anew.
struct InputBlock {
    std::vector<char> memory;
    std::size_t size = 0;         ///< of the text at the beginning of `memory`
    std::string_view inputName;   ///< as messages show it; lives as long as the reader
    std::size_t firstLine = 1;    ///< the number of the first line
    bool isTooLongLine = false;   ///< stands for one line that was not held; there is no text
    std::uint64_t bytesRead = 0;  ///< of all inputs, up to about here

    [[nodiscard]] std::string_view Text() const { return {memory.data(), size}; }
};

/// Reads files, one after the other, in blocks of whole lines. A compressed file (gzip, zstd, xz, by its first bytes)
/// is decompressed on a thread of its own. A UTF-8 byte-order mark at the beginning of a file is no part of its text.
class BlockReader {
public:
    /// Reads standard input when there are no `files`, and in place of the file "-". Blocks have about `blockSize`
    /// bytes. A line of more than `longestLine` bytes is not held.
    BlockReader(std::vector<std::string> files, std::size_t blockSize, std::size_t longestLine = LONGEST_LINE);
    BlockReader(const BlockReader&) = delete;
    BlockReader& operator=(const BlockReader&) = delete;

    /// Fills `block` with the next lines; false when there are none. Lines that arrive slowly do not wait until a block
    /// is full. A block is larger than `blockSize` only if one of its lines is. Throws `Failure` with `Cause::USAGE`
    /// when an input cannot be read; all whole lines before have been given then.
    bool Next(InputBlock& block);

    /// Bytes that all inputs have together, compressed as they are; 0 when that is not known beforehand.
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
    std::vector<char> m_rest;  // read, after the last whole line
    std::size_t m_line = 1;
    std::uint64_t m_totalBytes = 0;
};

}  // namespace NS_KX
