#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "lines/interruptions.h"

namespace NS_KX {

/// A file that takes the place of its target in one step when it is complete. Until then the target is unchanged.
///
/// Until then the file has no name, so nothing of it remains however the process ends. On a file system that cannot
/// hold a file without a name, it has a hidden name beside the target, and remains only after SIGKILL, a crash or a
/// power failure.
class TemporaryFile {
public:
    /// Makes the file for `target`, which must not be a link. Throws `Failure` with `Cause::OUTPUT`, also if the target
    /// is write-protected.
    explicit TemporaryFile(std::filesystem::path target);
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    [[nodiscard]] int Descriptor() const noexcept { return m_descriptor; }

    /// Waits until the whole file is on the disk, then puts it in the place of the target. Throws `Failure` as above.
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
