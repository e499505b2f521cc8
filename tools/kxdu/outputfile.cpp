#include "outputfile.h"

#include <cerrno>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace NS_KXDU {

namespace {

constexpr std::size_t BUFFER_SIZE = 256U << 10U;
constexpr mode_t ALL_MAY_READ_AND_WRITE = 0666;  // less what the umask takes

// Beside the file, so that it can be renamed to it.
std::filesystem::path UnfinishedName(const std::filesystem::path& path) {
    return path.parent_path() / ("." + path.filename().string() + "." + std::to_string(::getpid()) + ".part");
}

bool IsWrittenDirectly(const std::filesystem::path& path) {
    std::error_code ignored;
    const auto status = std::filesystem::status(path, ignored);
    return std::filesystem::exists(status) && !std::filesystem::is_regular_file(status);
}

}  // namespace

OutputFile::OutputFile(const std::filesystem::path& path) : m_path(path), m_descriptor(STDOUT_FILENO) {
    m_buffer.reserve(BUFFER_SIZE);
    if (path.empty() || path == "-") {
        m_path = "standard output";
        return;
    }
    int flags = O_WRONLY | O_CLOEXEC;
    if (!IsWrittenDirectly(path)) {
        std::error_code ignored;
        m_path = std::filesystem::weakly_canonical(path, ignored);  // a symbolic link stays one
        if (m_path.empty()) {
            m_path = path;
        }
        m_unfinished = UnfinishedName(m_path);
        flags |= O_CREAT | O_TRUNC;
    }
    m_descriptor = ::open(m_unfinished.empty() ? m_path.c_str() : m_unfinished.c_str(), flags, ALL_MAY_READ_AND_WRITE);
    if (m_descriptor < 0) {
        Fail(errno);
    }
}

OutputFile::~OutputFile() {
    if (m_descriptor >= 0 && m_descriptor != STDOUT_FILENO) {
        ::close(m_descriptor);
    }
    if (!m_unfinished.empty()) {
        ::unlink(m_unfinished.c_str());
    }
}

void OutputFile::Write(std::string_view text) {
    if (text.size() > BUFFER_SIZE - m_buffer.size()) {
        Flush();
    }
    if (text.size() > BUFFER_SIZE) {
        WriteThrough(text);
    } else {
        m_buffer.append(text);
    }
}

void OutputFile::Finish() {
    Flush();
    if (m_descriptor == STDOUT_FILENO) {
        return;
    }
    // Some file systems tell only now that the disk is full.
    if (::close(std::exchange(m_descriptor, -1)) != 0) {
        Fail(errno);
    }
    if (m_unfinished.empty()) {
        return;
    }
    if (::rename(m_unfinished.c_str(), m_path.c_str()) != 0) {
        Fail(errno);
    }
    m_unfinished.clear();
}

void OutputFile::Flush() {
    WriteThrough(m_buffer);
    m_buffer.clear();
}

void OutputFile::WriteThrough(std::string_view text) const {
    while (!text.empty()) {
        const ssize_t written = ::write(m_descriptor, text.data(), text.size());
        if (written >= 0) {
            text.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno == EPIPE) {
            throw ClosedPipe();
        } else if (errno != EINTR) {
            Fail(errno);
        }
    }
}

void OutputFile::Fail(int error) const {
    throw OutputError(m_path.string() + ": cannot be written: " + std::strerror(error));
}

}  // namespace NS_KXDU
