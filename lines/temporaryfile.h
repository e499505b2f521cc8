#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "lines/interruptions.h"

namespace NS_KX {

/// A file that takes the place of its target in one step when it is complete. Until then the target is what it was.
///
/// The file has no name before that, so that nothing is left of it however the process ends. Where the file system
/// cannot hold a file without a name, it has a hidden name beside the target, and only SIGKILL, a crash and a power
/// failure leave it.
class TemporaryFile {
public:
    /// Makes the file for `target`, which is no link. Throws `Failure` with `Cause::OUTPUT`, also when the target is
    /// write-protected.
    explicit TemporaryFile(std::filesystem::path target);
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    [[nodiscard]] int Descriptor() const noexcept { return m_descriptor; }

    /// Puts the file in the place of the target, once all of it is on the disk. Throws `Failure` as above.
    void Keep();

private:
    void Open();
    void OpenNamed();
    void SetRights();
    bool PutInPlace();
    bool LinkAs(const std::string& name) const;
    void Close() noexcept;

    std::filesystem::path m_target;
    std::string m_targetName;  // in the folder
    int m_folder = -1;
    int m_descriptor = -1;
    std::string m_name;  // empty: the file has none yet
    std::unique_ptr<RemovedWhenInterrupted> m_note;
};

}  // namespace NS_KX
