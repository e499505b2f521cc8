#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "lines/appendedfile.h"
#include "lines/compression.h"
#include "lines/temporaryfile.h"

namespace NS_KX {

/// Where a verb's results go: standard output, or a file that appears under its name only when it is complete. A file
/// whose name ends in .gz or .zst is compressed. Named devices and pipes are written directly. So are "/dev/stdout" and
/// "/dev/stderr" if they lead to a file, whose content then stays.
class Output {
public:
    enum class Mode {
        REPLACE,
        APPEND,  ///< a file appears at once, keeps its content, and is not compressed
    };

    /// Standard output if `file` is empty, "-" or "/dev/stdout". Throws `Failure` with `Cause::OUTPUT`, and with
    /// `Cause::INPUT` for the journal of a database, for the ending of a format that is not written (see
    /// `MakeEncoder`), and if it cannot append because the name asks for compression.
    explicit Output(const std::filesystem::path& file, Mode mode = Mode::REPLACE);
    ~Output();
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    /// Writes `text` at once. Throws `ClosedPipe`, or `Failure` with `Cause::OUTPUT`.
    void Write(std::string_view text);

    /// Lets the file appear. Throws `Failure` as above.
    void Complete();

    /// Whether the output goes to a terminal.
    [[nodiscard]] bool IsTerminal() const;

private:
    void OpenToAppend(const std::filesystem::path& target);
    void WriteRaw(std::string_view bytes);

    std::string m_name;
    std::optional<TemporaryFile> m_file;
    std::optional<AppendedFile> m_appended;
    std::unique_ptr<Encoder> m_encoder;  // null: no compression
    std::string m_compressed;
    int m_device = -1;
    int m_descriptor = -1;
};

/// Writes `text` as the whole of `file`. Throws as `Output` does.
void WriteWhole(const std::filesystem::path& file, std::string_view text);

}  // namespace NS_KX
