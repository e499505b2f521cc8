#include "lines/blockreader.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "lines/failure.h"
#include "text/utf8.h"

namespace NS_KX {

namespace {

// Very short lines make smaller blocks, so that the results of a block stay small.
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

std::string_view FirstLine(std::string_view text) {
    const std::string_view line = text.substr(0, text.find('\n'));
    return line.substr(0, line.size() - (line.ends_with('\r') ? 1 : 0));
}

// The whole lines at the beginning of a text, as many as a block may have.
struct WholeLines {
    std::size_t count;
    std::size_t end;  ///< past the last of them
};

WholeLines FindWholeLines(std::string_view text) {
    WholeLines lines{0, 0};
    while (lines.count < MOST_LINES) {
        const auto lineEnd = text.find('\n', lines.end);
        if (lineEnd == std::string_view::npos) {
            break;
        }
        lines.end = lineEnd + 1;
        ++lines.count;
    }
    return lines;
}

}  // namespace

BlockReader::BlockReader(std::vector<std::string> files, std::size_t blockSize, std::size_t longestLine)
    : m_files(std::move(files)), m_blockSize(blockSize), m_longestLine(longestLine) {
    if (m_files.empty()) {
        m_files.emplace_back(STANDARD_INPUT);
    }
    m_totalBytes = SizeOfAll(m_files);
}

bool BlockReader::OpenNext() {
    m_input.reset();
    if (m_nextFile == m_files.size()) {
        return false;
    }
    const std::string& file = m_files[m_nextFile++];
    if (file == STANDARD_INPUT) {
        m_names.emplace_back("<stdin>");
        m_input.emplace(STDIN_FILENO, m_names.back(), m_bytesRead);
    } else {
        m_names.push_back(file);
        const int descriptor = open(file.c_str(), O_RDONLY | O_CLOEXEC);
        if (descriptor == -1) {
            FailByErrno(Cause::INPUT, file);
        }
        m_input.emplace(descriptor, file, m_bytesRead);
    }
    m_isAtBegin = true;
    m_isAtEnd = false;
    m_line = 1;
    m_rest.clear();
    return true;
}

std::size_t BlockReader::Read(char* memory, std::size_t size) {
    const std::size_t count = m_input->Read(memory, size);
    m_isAtEnd = count == 0;
    return count;
}

bool BlockReader::Next(InputBlock& block) {
    while (m_input || OpenNext()) {
        if (FillFromInput(block)) {
            return true;
        }
        m_input.reset();
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
    // An input that arrives line by line is answered line by line. No line is lost if a later read fails.
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
    CutAfterLastLine(block);
    if (m_areHeadsKept && block.firstLine == 1) {
        m_head = std::make_shared<const std::string>(FirstLine(block.Text()));
    }
    block.head = m_head;
    return true;
}

// Returns whether the new bytes hold a line end. Earlier bytes are not searched again: a long line may come in many
// small pieces.
bool BlockReader::ReadMore(InputBlock& block) {
    const std::size_t sizeBefore = block.size;
    block.size += Read(block.memory.data() + block.size, block.memory.size() - block.size);
    const bool hasLine = block.Text().find('\n', sizeBefore) != std::string_view::npos;
    // The byte-order mark may come in pieces too.
    if (m_isAtBegin && (m_isAtEnd || !BYTE_ORDER_MARK.starts_with(block.Text()))) {
        m_isAtBegin = false;
        const std::string_view text = WithoutByteOrderMark(block.Text());
        std::memmove(block.memory.data(), text.data(), text.size());
        block.size = text.size();
    }
    return hasLine;
}

void BlockReader::CutAfterLastLine(InputBlock& block) {
    const WholeLines lines = FindWholeLines(block.Text());
    if (lines.count != 0) {
        KeepRest(block, lines.end);
        block.size = lines.end;
        m_line += lines.count;
    } else if (block.size > m_longestLine) {
        SkipTooLongLine(block);
        ++m_line;
    }
    // Otherwise the rest is the last line, which lacks its line end.
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
