#pragma once

#include <cstddef>
#include <filesystem>
#include <string>

namespace NS_KX {

/// A file that is written under a hidden name beside its target and takes the target's place in one step when it is
/// complete. Until then the target is what it was; a file that is not kept goes away, also when the process is
/// interrupted (SIGINT, SIGTERM, SIGHUP).
class TemporaryFile {
public:
    /// Makes the file beside `target`. Throws `Failure` with `Cause::OUTPUT`.
    explicit TemporaryFile(std::filesystem::path target);
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    [[nodiscard]] int Descriptor() const noexcept { return m_descriptor; }

    /// Puts the file in the place of the target, once all of it is on the disk. Throws `Failure` as above.
    void Keep();

private:
    void Remove() noexcept;

    std::filesystem::path m_target;
    std::string m_name;
    int m_descriptor = -1;
    std::size_t m_place = 0;  // among those that an interruption removes
};

}  // namespace NS_KX
