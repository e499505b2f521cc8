#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <set>
#include <string>
#include <utility>

namespace NS_KX::NS_KXDU {

/// Collects the NEs that the inventory was asked about and lacks, for one message to the user. Any thread.
class MissingNes {
public:
    /// At most this many are remembered.
    static constexpr std::size_t MOST = 10'000;

    /// `consequence` ends the message; most verbs treat such an NE as NE type 0.
    explicit MissingNes(std::string consequence = "treated as NE type 0") : m_consequence(std::move(consequence)) {}

    void Note(std::int64_t neId);

    /// The message, a line for standard error; empty if no NE is missing.
    [[nodiscard]] std::string Text() const;
    /// Writes the message to standard error.
    void Tell() const;

private:
    std::string m_consequence;
    // Identifiers of the same NE mostly follow each other, so most repetitions end at this comparison.
    std::atomic<std::int64_t> m_last = NONE;
    std::atomic<bool> m_isFull = false;
    mutable std::mutex m_mutex;
    std::set<std::int64_t> m_neIds;

    static constexpr std::int64_t NONE = INT64_MIN;
};

}  // namespace NS_KX::NS_KXDU
