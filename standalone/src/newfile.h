#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace NS_STANDALONE {

/// A file that is written whole, to the disk, before it gets its name. Until then it has none where the file system can
/// hold such a file (O_TMPFILE), so that nothing is left of a process that is killed; elsewhere its name is hidden. The
/// operations throw std::system_error, and std::bad_alloc.
class NewFile {
public:
    /// Writes `bytes`, which outlive this object, into a new file in `folder`.
    NewFile(const std::filesystem::path& folder, std::string_view bytes);
    ~NewFile();
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    /// Names it `file`, a name in the folder; throws EEXIST when there is such a file. Once.
    void Create(const std::filesystem::path& file);

    /// Puts it in the place of `file`, which is in the folder, with its permissions and, if possible, its owner. Once.
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
    std::string m_hidden;  // its hidden name; empty: it has none
    int m_descriptor = -1;
};

}  // namespace NS_STANDALONE
