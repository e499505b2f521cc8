#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>

#include <spdlog/details/file_helper.h>
#include <spdlog/details/null_mutex.h>
#include <spdlog/sinks/base_sink.h>

namespace NS_STANDALONE {

/// A log file and its older ones, named as spdlog's rotating sink names them: kx.log, kx.1.log, kx.2.log, ... Unlike
/// that sink, it loses no record if it cannot rename a file: it goes on with the file it has, says so once on standard
/// error, and tries again only when as much has been written again. While files are renamed, the newest one is
/// kx.log.rotated; a process that is killed then leaves it under this name. One thread at a time.
class LogFile final : public spdlog::sinks::base_sink<spdlog::details::null_mutex> {
public:
    /// Takes numbers as `LogTarget` does. Throws spdlog::spdlog_ex if the file cannot be opened or a number is out of
    /// range.
    LogFile(const std::filesystem::path& file, std::size_t maxFileBytes, std::size_t maxFiles);

private:
    using OpenFile = spdlog::details::file_helper;

    void sink_it_(const spdlog::details::log_msg& message) override;
    void flush_() override;

    [[nodiscard]] std::string NameOf(std::size_t age) const;
    std::string RenameAll() const;
    std::string RenameOlder() const;
    std::string Rotate();
    void RotateOrGoOn();

    std::string m_name;
    std::size_t m_maxFileBytes;
    std::size_t m_maxFiles;
    std::unique_ptr<OpenFile> m_file = std::make_unique<OpenFile>();
    std::size_t m_size = 0;
    std::size_t m_rotatedBeyond;  // a file that would grow beyond it is rotated
    bool m_hasComplained = false;
};

}  // namespace NS_STANDALONE
