#include "lines/blockreader.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "lines/descriptor.h"
#include "lines/failure.h"
#include "text/text.h"

namespace NS_KX {

namespace {

// Very short lines make smaller blocks, so that what is said about each of a block's lines stays bounded.
constexpr std::size_t MOST_LINES = 8192;

constexpr std::string_view STANDARD_INPUT = "-";

std::uint64_t SizeOfAll(const std::vector<std::string>& files) {
    std::uint64_t total = 0;
    for (const std::string& file : files) {
        struct stat status {};
        if (file == STANDARD_INPUT || stat(file.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) {
            return 0;
        }
        total += static_cast<std::uint64_t>(status.st_size);
    }
    return total;
}

// The whole lines at the beginning of a text, as many as a block may have.
struct WholeLines {
    std::size_t count;
    std::size_t end;  ///< behind the last of them
};

WholeLines FindWholeLines(std::string_view text) {
    const auto count = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
    if (count <= MOST_LINES) {
        return {count, text.rfind('\n') + 1};
    }
    std::size_t end = 0;
    for (std::size_t line = 0; line < MOST_LINES; ++line) {
        end = text.find('\n', end) + 1;
    }
    return {MOST_LINES, end};
}

}  // namespace

BlockReader::BlockReader(std::vector<std::string> files, std::size_t blockSize, std::size_t longestLine)
    : m_files(std::move(files)), m_blockSize(blockSize), m_longestLine(longestLine) {
    if (m_files.empty()) {
        m_files.emplace_back(STANDARD_INPUT);
    }
    m_totalBytes = SizeOfAll(m_files);
}

BlockReader::~BlockReader() {
    CloseInput();
}

bool BlockReader::OpenNext() {
    CloseInput();
    if (m_nextFile == m_files.size()) {
        return false;
    }
    const std::string& file = m_files[m_nextFile++];
    if (file == STANDARD_INPUT) {
        m_names.emplace_back("<stdin>");
        m_descriptor = STDIN_FILENO;
    } else {
        m_names.push_back(file);
        m_descriptor = open(file.c_str(), O_RDONLY | O_CLOEXEC);
        if (m_descriptor == -1) {
            FailByErrno(Cause::USAGE, file);
        }
    }
    m_isAtBegin = true;
    m_isAtEnd = false;
    m_line = 1;
    m_rest.clear();
    return true;
}

void BlockReader::CloseInput() noexcept {
    if (m_descriptor > STDIN_FILENO) {
        close(m_descriptor);
    }
    m_descriptor = -1;
}

std::size_t BlockReader::Read(char* memory, std::size_t size) {
    const ssize_t count = ReadSome(m_descriptor, memory, size);
    if (count == -1) {
        FailByErrno(Cause::USAGE, m_names.back());
    }
    m_isAtEnd = count == 0;
    m_bytesRead += static_cast<std::uint64_t>(count);
    return static_cast<std::size_t>(count);
}

bool BlockReader::Next(InputBlock& block) {
    while (m_descriptor != -1 || OpenNext()) {
        if (FillFromInput(block)) {
            return true;
        }
        CloseInput();
    }
    return false;
}

bool BlockReader::FillFromInput(InputBlock& block) {
    block.inputName = m_names.back();
    block.firstLine = m_line;
    block.isTooLongLine = false;
    block.size = m_rest.size();
    block.memory.resize(std::max(m_blockSize, m_rest.size()));
    std::copy(m_rest.begin(), m_rest.end(), block.memory.begin());
    m_rest.clear();
    // Whoever feeds us line by line gets answers line by line; and no line is lost when what follows cannot be read.
    bool hasLine = block.Text().find('\n') != std::string_view::npos;
    while (!hasLine && !m_isAtEnd && block.size <= m_longestLine) {
        if (block.size == block.memory.size()) {
            block.memory.resize(std::min(block.memory.size() * 2, m_longestLine + m_blockSize));
        }
        hasLine = ReadMore(block);
    }
    block.bytesRead = m_bytesRead;
    if (block.size == 0) {
        return false;
    }
    CutBehindLastLine(block);
    return true;
}

// Whether a line end is in what was read; what was there before is not looked at again, however small the pieces are
// that a long line comes in.
bool BlockReader::ReadMore(InputBlock& block) {
    const std::size_t sizeBefore = block.size;
    block.size += Read(block.memory.data() + block.size, block.memory.size() - block.size);
    const bool hasLine = block.Text().find('\n', sizeBefore) != std::string_view::npos;
    // The mark may come in pieces, as all may.
    if (m_isAtBegin && (m_isAtEnd || !BYTE_ORDER_MARK.starts_with(block.Text()))) {
        m_isAtBegin = false;
        const std::string_view text = WithoutByteOrderMark(block.Text());
        std::memmove(block.memory.data(), text.data(), text.size());
        block.size = text.size();
    }
    return hasLine;
}

void BlockReader::CutBehindLastLine(InputBlock& block) {
    const WholeLines lines = FindWholeLines(block.Text());
    if (lines.count != 0) {
        KeepRest(block, lines.end);
        block.size = lines.end;
        m_line += lines.count;
    } else if (block.size > m_longestLine) {
        SkipTooLongLine(block);
        ++m_line;
    }
    // Otherwise it is the last line, without its end.
}

void BlockReader::SkipTooLongLine(InputBlock& block) {
    block.isTooLongLine = true;
    std::size_t lineEnd = std::string_view::npos;
    while (lineEnd == std::string_view::npos && !m_isAtEnd) {
        block.size = Read(block.memory.data(), block.memory.size());
        lineEnd = block.Text().find('\n');
    }
    if (lineEnd != std::string_view::npos) {
        KeepRest(block, lineEnd + 1);
    }
    block.size = 0;
}

void BlockReader::KeepRest(const InputBlock& block, std::size_t from) {
    m_rest.assign(block.memory.begin() + static_cast<std::ptrdiff_t>(from),
                  block.memory.begin() + static_cast<std::ptrdiff_t>(block.size));
}

}  // namespace NS_KX
