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
    /// Who may open it until it has its name.
    enum class Access { UMASK, OWNER };

    /// Writes `bytes`, which outlive this object, into a new file in `folder`.
    NewFile(const std::filesystem::path& folder, std::string_view bytes, Access access);
    ~NewFile();
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    /// Gives it the name `file`, which is in the folder. Throws EEXIST if there is such a file. Call it once.
    void Create(const std::filesystem::path& file);

    /// Replaces `file`, which is in the folder; keeps its permissions and, if possible, its owner. Call it once.
    /// Only for a file made with Access::OWNER: `file` may be secret.
    void Replace(const std::filesystem::path& file);

private:
    void OpenHidden();
    void Write();
    [[nodiscard]] bool Link(const std::filesystem::path& name) const;
    void TakeHiddenName();
    void TakeRightsOf(const std::filesystem::path& file) const;
    void Rename(const std::filesystem::path& file);
    void SyncFolder();
    void Discard() noexcept;

    std::filesystem::path m_folder;
    std::string_view m_bytes;
    unsigned m_permissions;  // less the bits of the umask
    std::string m_hidden;    // its hidden name; empty if it has none
    int m_descriptor = -1;
};

}  // namespace NS_STANDALONE
