#pragma once

#include <chrono>
#include <cstdint>

namespace NS_KX {

/// A bar on standard error that shows how far a run is and how fast it goes. It is one line, and goes away when the run
/// ends.
class Progress {
public:
    /// `totalBytes` is 0 when it is not known.
    Progress(bool isShown, std::uint64_t totalBytes);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// Draws anew when enough time has gone by.
    void Update(std::uint64_t bytes, std::uint64_t lines);
    /// Takes the bar away, to make room for other text.
    void Clear();

private:
    using Clock = std::chrono::steady_clock;

    bool m_isShown;
    bool m_isDrawn = false;
    std::uint64_t m_totalBytes;
    Clock::time_point m_begin = Clock::now();
    Clock::time_point m_lastDrawn = m_begin;
};

}  // namespace NS_KX
