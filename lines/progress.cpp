#include "lines/progress.h"

#include <algorithm>
#include <cstddef>
#include <string>

#include "lines/descriptor.h"

namespace NS_KX {

namespace {

constexpr auto INTERVAL = std::chrono::milliseconds(100);
constexpr std::size_t BAR = 30;

std::string Bar(std::uint64_t bytes, std::uint64_t totalBytes) {
    const auto share = std::min(1.0, static_cast<double>(bytes) / static_cast<double>(totalBytes));
    const auto filled = static_cast<std::size_t>(share * BAR);
    std::string bar = "[";
    bar.append(filled, '#').append(BAR - filled, '.').append("] ");
    bar.append(std::to_string(static_cast<int>(share * 100))).append(" %  ");
    return bar;
}

}  // namespace

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
    const std::chrono::duration<double> elapsed = now - m_begin;
    const std::string bar = m_totalBytes == 0 ? std::string() : Bar(bytes, m_totalBytes);
    const auto perSecond = static_cast<std::uint64_t>(static_cast<double>(lines) / elapsed.count());
    WriteMessage("\r" + bar + std::to_string(lines) + " lines, " + std::to_string(perSecond) + " lines/s\033[K");
}

void Progress::Clear() {
    if (m_isDrawn) {
        WriteMessage("\r\033[K");
        m_isDrawn = false;
    }
}

}  // namespace NS_KX
