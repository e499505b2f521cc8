#include "logfile.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <utility>

#include <spdlog/sinks/rotating_file_sink.h>

namespace NS_STANDALONE {

namespace fs = std::filesystem;

LogFile::LogFile(const fs::path& file, std::size_t maxFileBytes, std::size_t maxFiles)
    : m_name(file.string()), m_maxFileBytes(maxFileBytes), m_maxFiles(maxFiles), m_rotatedBeyond(maxFileBytes) {
    constexpr std::size_t MOST_FILES = 200000;
    if (maxFileBytes == 0) {
        throw spdlog::spdlog_ex("maxFileBytes is 0, not 1 or more");
    }
    if (maxFiles > MOST_FILES) {
        throw spdlog::spdlog_ex("maxFiles is above " + std::to_string(MOST_FILES));
    }
    m_file->open(m_name);
    m_size = m_file->size();
}

void LogFile::sink_it_(const spdlog::details::log_msg& message) {
    spdlog::memory_buf_t record;
    formatter_->format(message, record);
    if (m_size + record.size() > m_rotatedBeyond) {
        RotateOrGoOn();
    }
    m_file->write(record);
    m_size += record.size();
}

void LogFile::flush_() {
    m_file->flush();
}

std::string LogFile::NameOf(std::size_t age) const {
    return spdlog::sinks::rotating_file_sink_st::calc_filename(m_name, age);
}

void LogFile::RotateOrGoOn() {
    m_file->flush();
    m_size = m_file->size();
    if (m_size == 0) {  // also if the disk was full when records were written
        m_rotatedBeyond = m_maxFileBytes;
        return;
    }
    const std::string cause = Rotate();
    m_rotatedBeyond = cause.empty() ? m_maxFileBytes : m_size + m_maxFileBytes;
    if (!cause.empty() && !std::exchange(m_hasComplained, true)) {
        static_cast<void>(std::fprintf(stderr, "%s: the log cannot be rotated, so the file grows: %s\n", m_name.c_str(),
                                       cause.c_str()));
    }
}

// Makes each file older by one, and begins a new one. Returns why it cannot; the file then stays as it is.
std::string LogFile::Rotate() {
    if (std::string cause = RenameAll(); !cause.empty()) {
        return cause;
    }
    auto next = std::make_unique<OpenFile>();
    try {
        next->open(m_name, true);
    } catch (const spdlog::spdlog_ex& error) {
        std::error_code ignored;
        if (m_maxFiles > 0) {
            fs::rename(NameOf(1), m_name, ignored);
        }
        return error.what();
    }
    m_file = std::move(next);
    m_size = 0;
    return {};
}

// Returns why a file cannot be renamed. The newest one goes first, to a name aside: if it must stay, so do all others.
std::string LogFile::RenameAll() const {
    if (m_maxFiles == 0) {
        return {};
    }
    std::error_code error;
    const std::string aside = m_name + ".rotated";
    fs::rename(m_name, aside, error);
    if (error) {
        return m_name + ": " + error.message();
    }
    std::string cause = RenameOlder();
    if (cause.empty()) {
        fs::rename(aside, NameOf(1), error);
        cause = error ? NameOf(1) + ": " + error.message() : "";
    }
    if (!cause.empty()) {
        fs::rename(aside, m_name, error);
    }
    return cause;
}

// Returns why one of the older files cannot be renamed.
std::string LogFile::RenameOlder() const {
    for (std::size_t age = m_maxFiles; age > 1; --age) {
        std::error_code error;
        fs::rename(NameOf(age - 1), NameOf(age), error);
        if (error && error != std::errc::no_such_file_or_directory) {
            return NameOf(age) + ": " + error.message();
        }
    }
    return {};
}

}  // namespace NS_STANDALONE
