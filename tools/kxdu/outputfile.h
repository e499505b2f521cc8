#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>

namespace NS_KXDU {

/// Output could not be written; the text names the file and the reason. The tool ends with `ExitCode::OUTPUT`.
class OutputError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Nobody reads the output any more (`kxdu ... | head`): the tool ends quietly.
class ClosedPipe : public std::exception {};

/// Buffered output to a file or to standard output. A file appears under its name only when it is complete: until
/// `Finish` it is written beside it under another name, which is removed when the object is destroyed unfinished. What
/// is no regular file, such as /dev/null or a named pipe, is written to directly.
class OutputFile {
public:
    /// An empty path or "-" is standard output. Throws OutputError when the file cannot be made.
    explicit OutputFile(const std::filesystem::path& path);
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    /// Throws OutputError or ClosedPipe; the first throw may come late, for text written earlier.
    void Write(std::string_view text);
    /// Writes what is buffered and gives the file its name. Throws as `Write` does.
    void Finish();

private:
    void Flush();
    void WriteThrough(std::string_view text) const;
    [[noreturn]] void Fail(int error) const;

    std::filesystem::path m_path;
    std::filesystem::path m_unfinished;  // empty when written directly, and once finished
    int m_descriptor;
    std::string m_buffer;
};

}  // namespace NS_KXDU
