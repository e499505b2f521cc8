#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>

namespace NS_KX {

/// How far a run is.
struct ProgressState {
    std::uint64_t bytes = 0;
    std::uint64_t totalBytes = 0;  ///< 0: not known
    std::uint64_t lines = 0;
    std::chrono::duration<double> elapsed{};
};

/// The line that shows this state, at most `width` columns: a bar, lines, speed, and the time that is left.
std::string ProgressText(const ProgressState& state, std::size_t width);

/// A bar on standard error that shows the progress of a run. It is one line, and disappears when the run ends.
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
