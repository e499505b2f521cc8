#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace NS_KX {

/// A file to whose end lines are appended as they come. Programs that rotate logs may rename or remove it meanwhile,
/// and other processes may append to it in the same way.
class AppendedFile {
public:
    /// Opens the file, or makes it. If its last line has no end, because a writer was stopped in the middle of it,
    /// appends one. Throws `Failure` with `Cause::OUTPUT`.
    explicit AppendedFile(std::filesystem::path name);
    ~AppendedFile();
    AppendedFile(const AppendedFile&) = delete;
    AppendedFile& operator=(const AppendedFile&) = delete;

    /// Appends `lines` at once, on a new line. If the file no longer has its name, first makes a new file of this name.
    /// Throws as above.
    void Write(std::string_view lines);

private:
    void Open();
    void EndLastLine() const;
    [[nodiscard]] bool HasItsName() const;
    void Close() noexcept;

    std::filesystem::path m_name;
    int m_descriptor = -1;
    bool m_isKeptByOther = false;  // someone kept the file locked for long
};

}  // namespace NS_KX
