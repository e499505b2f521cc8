#pragma once

#include <chrono>
#include <cstdint>

namespace NS_KX {

/// A bar on standard error that shows the progress and the speed of a run. It is one line, and disappears when the run
/// ends.
class Progress {
public:
    /// `totalBytes` is 0 if it is not known.
    Progress(bool isShown, std::uint64_t totalBytes);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// Redraws the bar if enough time has passed.
    void Update(std::uint64_t bytes, std::uint64_t lines);
    /// Removes the bar, to make room for other text.
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
