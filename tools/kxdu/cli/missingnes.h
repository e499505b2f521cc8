#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <set>
#include <string>
#include <utility>

namespace NS_KX::NS_KXDU {

/// The NEs that the inventory was asked about and does not have. The user gets one message for all of them. Any thread.
class MissingNes {
public:
    /// At most this many are remembered.
    static constexpr std::size_t MOST = 10'000;

    /// `consequence`: what comes of it, for the message; in general such an NE is treated as NE type 0.
    explicit MissingNes(std::string consequence = "taken to be of NE type 0") : m_consequence(std::move(consequence)) {}

    void Note(std::int64_t neId);

    /// A line for standard error; empty when none is missing.
    [[nodiscard]] std::string Text() const;
    /// Writes it there.
    void Tell() const;

private:
    std::string m_consequence;
    // Identifiers of an NE mostly stand together.
    std::atomic<std::int64_t> m_last = NONE;
    std::atomic<bool> m_isFull = false;
    mutable std::mutex m_mutex;
    std::set<std::int64_t> m_neIds;

    static constexpr std::int64_t NONE = INT64_MIN;
};

}  // namespace NS_KX::NS_KXDU
