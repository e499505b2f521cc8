#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace NS_STANDALONE {

/// A file that is completely on the disk before it gets its name. Until then it has no name if the file system supports
/// that (O_TMPFILE): a killed process leaves nothing there. On other file systems it has a hidden name. The operations
/// throw std::system_error and std::bad_alloc.
class NewFile {
public:
    /// Writes `bytes`, which outlive this object, into a new file in `folder`.
    NewFile(const std::filesystem::path& folder, std::string_view bytes);
    ~NewFile();
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    /// Gives it the name `file`, which is in the folder. Throws EEXIST if there is such a file. Call it once.
    void Create(const std::filesystem::path& file);

    /// Replaces `file`, which is in the folder; keeps its permissions and, if possible, its owner. Call it once.
    void Replace(const std::filesystem::path& file);

private:
    void OpenHidden();
    void Write();
    [[nodiscard]] bool Link(const std::filesystem::path& name) const;
    void TakeHiddenName();
    void Rename(const std::filesystem::path& file);
    void SyncFolder();
    void Discard() noexcept;

    std::filesystem::path m_folder;
    std::string_view m_bytes;
    std::string m_hidden;  // its hidden name; empty if it has none
    int m_descriptor = -1;
};

}  // namespace NS_STANDALONE
