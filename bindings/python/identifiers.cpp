#include "bindings/python/identifiers.h"

#include <algorithm>
#include <limits>
#include <stdexcept>
#include <string>

#include "bindings/python/parallel.h"
#include "text/line.h"
#include "text/utf8.h"

namespace NS_KX::NS_PYTHON {

namespace {

// Like std::count, but added up in bytes, of which the compiler adds many at a time.
std::size_t CountLineFeeds(std::string_view text) {
    constexpr std::size_t MOST = std::numeric_limits<unsigned char>::max();
    std::size_t count = 0;
    while (!text.empty()) {
        unsigned char few = 0;
        for (const char character : text.substr(0, MOST)) {
            few = static_cast<unsigned char>(few + (character == '\n' ? 1 : 0));
        }
        count += few;
        text.remove_prefix(std::min(MOST, text.size()));
    }
    return count;
}

std::size_t CountLines(std::string_view text) {
    return CountLineFeeds(text) + (text.empty() || text.ends_with('\n') ? 0 : 1);
}

}  // namespace

// ---- Rows whose number is known -------------------------------------------------------------------------------------

std::size_t CountedIdentifiers::RowsOf(std::size_t chunk) const {
    return std::min(ROWS, m_count - FirstRow(chunk));
}

template <class Offset>
std::span<const std::string_view> OffsetRows<Offset>::Read(std::size_t chunk,
                                                           std::vector<std::string_view>& room) const {
    room.clear();
    const std::size_t first = FirstRow(chunk);
    std::size_t begin = ReadOffset(first, 0);
    for (std::size_t row = first; row < first + RowsOf(chunk); ++row) {
        const std::size_t end = ReadOffset(row + 1, begin);
        room.push_back(m_text.substr(begin, end - begin));
        begin = end;
    }
    return room;
}

// Read once, then checked and used: other threads may change the offsets meanwhile.
template <class Offset>
std::size_t OffsetRows<Offset>::ReadOffset(std::size_t place, std::size_t least) const {
    const Offset offset = *static_cast<const volatile Offset*>(&m_offsets[place]);
    if (offset < 0 || static_cast<std::size_t>(offset) < least || static_cast<std::size_t>(offset) > m_text.size()) {
        throw std::invalid_argument("offset " + std::to_string(place) + " is " + std::to_string(offset) +
                                    ", not from " + std::to_string(least) + " to " + std::to_string(m_text.size()));
    }
    return static_cast<std::size_t>(offset);
}

template class OffsetRows<std::int32_t>;
template class OffsetRows<std::int64_t>;

// ---- Lines ----------------------------------------------------------------------------------------------------------

LineRows::LineRows(std::string_view text) {
    constexpr std::size_t CHUNK = std::size_t{64} << 10U;
    text = WithoutByteOrderMark(text);
    while (!text.empty()) {
        const auto end = text.find('\n', std::min(CHUNK, text.size()) - 1);
        const std::size_t size = end == std::string_view::npos ? text.size() : end + 1;
        m_chunks.push_back({text.substr(0, size)});
        text.remove_prefix(size);
    }
    RunInParallel(m_chunks.size(), [&](std::size_t chunk) { m_chunks[chunk].rows = CountLines(m_chunks[chunk].text); });
    for (Chunk& chunk : m_chunks) {
        chunk.firstRow = m_count;
        m_count += chunk.rows;
    }
}

std::span<const std::string_view> LineRows::Read(std::size_t chunk, std::vector<std::string_view>& room) const {
    room.clear();
    std::string_view text = m_chunks[chunk].text;
    // The number that was counted, also if another thread has changed the text since.
    for (std::size_t row = 0; row < m_chunks[chunk].rows; ++row) {
        room.push_back(TakeLine(text));
    }
    return room;
}

}  // namespace NS_KX::NS_PYTHON
