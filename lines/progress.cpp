#include "lines/progress.h"

#include <algorithm>
#include <cmath>

#include <unistd.h>

#include "lines/descriptor.h"
#include "lines/terminal.h"
#include "text/number.h"

namespace NS_KX {

namespace {

constexpr auto INTERVAL = std::chrono::milliseconds(100);
constexpr std::size_t BAR = 30;
constexpr std::size_t USUAL_WIDTH = 80;

double ShareDone(const ProgressState& state) {
    return std::min(1.0, static_cast<double>(state.bytes) / static_cast<double>(state.totalBytes));
}

std::string Bar(double share) {
    const auto filled = static_cast<std::size_t>(share * BAR);
    std::string bar = "[";
    bar.append(filled, '#').append(BAR - filled, '.').append("] ");
    return bar;
}

// The two largest units of a time, such as "2 min 5 s".
std::string Duration(std::uint64_t seconds) {
    constexpr std::uint64_t MINUTE = 60;
    constexpr std::uint64_t HOUR = 60 * MINUTE;
    const auto two = [](std::uint64_t large, const char* unit, std::uint64_t small, const char* smallUnit) {
        return std::to_string(large) + " " + unit + (small == 0 ? "" : " " + std::to_string(small) + " " + smallUnit);
    };
    if (seconds < MINUTE) {
        return std::to_string(seconds) + " s";
    }
    return seconds < HOUR ? two(seconds / MINUTE, "min", seconds % MINUTE, "s")
                          : two(seconds / HOUR, "h", seconds % HOUR / MINUTE, "min");
}

// What is left if the rest is as fast as the beginning. Nothing is said before that can be told.
std::string TimeLeft(const ProgressState& state, double share) {
    constexpr double LEAST_SHARE = 0.01;
    constexpr double LEAST_SECONDS = 0.5;
    if (share < LEAST_SHARE || state.elapsed.count() < LEAST_SECONDS) {
        return {};
    }
    const double left = state.elapsed.count() * (1 - share) / share;
    return ", " + Duration(static_cast<std::uint64_t>(std::llround(left))) + " left";
}

// Unlike a message, it steers the terminal.
void Draw(std::string_view text) {
    static_cast<void>(WriteAll(STDERR_FILENO, text));
}

}  // namespace

std::string ProgressText(const ProgressState& state, std::size_t width) {
    const double seconds = state.elapsed.count();
    const double perSecond = seconds > 0 ? static_cast<double>(state.lines) / seconds : 0;
    std::string text = Grouped(state.lines) + " lines, " + Grouped(static_cast<std::uint64_t>(perSecond)) + " lines/s";
    if (state.totalBytes != 0) {
        const double share = ShareDone(state);
        const std::string percent = std::to_string(static_cast<int>(share * 100)) + " %  ";
        text = percent + text + TimeLeft(state, share);
        if (const std::string bar = Bar(share); bar.size() + text.size() <= width) {
            text.insert(0, bar);
        }
    }
    return text.substr(0, width);
}

Progress::Progress(bool isShown, std::uint64_t totalBytes) : m_isShown(isShown), m_totalBytes(totalBytes) {}

Progress::~Progress() {
    Clear();
}

void Progress::Update(std::uint64_t bytes, std::uint64_t lines) {
    const auto now = Clock::now();
    if (!m_isShown || now - m_lastDrawn < INTERVAL) {
        return;
    }
    m_lastDrawn = now;
    m_isDrawn = true;
    const std::size_t width = ColumnsOf(STDERR_FILENO, USUAL_WIDTH) - 1;  // in the last column, some terminals wrap
    Draw("\r" + ProgressText({bytes, m_totalBytes, lines, now - m_begin}, width) + "\033[K");
}

void Progress::Clear() {
    if (m_isDrawn) {
        Draw("\r\033[K");
        m_isDrawn = false;
    }
}

}  // namespace NS_KX
