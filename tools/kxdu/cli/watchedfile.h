#pragma once

#include <cstdint>
#include <filesystem>

namespace NS_KX::NS_KXDU {

/// Notices that a file was changed or replaced.
class WatchedFile {
public:
    /// The file as it is now is not a change. It may be missing.
    explicit WatchedFile(std::filesystem::path file);

    /// Whether the file has changed since it was last accepted.
    [[nodiscard]] bool IsChanged() const;

    /// Accepts the file as it is, for a reader that reads it next. First waits, at most a second, until it has
    /// not been written to for a tenth of a second: an editor may need several writes.
    void Accept();

private:
    // Two states are equal if the file did not change between them.
    struct State {
        bool exists = false;
        std::uint64_t device = 0;
        std::uint64_t node = 0;
        std::int64_t size = 0;
        std::int64_t modified = 0;  // nanoseconds, as all times here
        std::int64_t changed = 0;

        bool operator==(const State&) const = default;
    };

    [[nodiscard]] State Now() const;

    std::filesystem::path m_file;
    State m_accepted;
};

}  // namespace NS_KX::NS_KXDU
