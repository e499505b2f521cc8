#include "bindings/sqlite/filelines.h"

#include <cstdint>
#include <cstring>

#include "catalogue/levelcheck.h"

namespace NS_KX::NS_SQLITE {

namespace {

bool IsSuspect(char character) {
    return static_cast<signed char>(character) <= 0;
}

// The first byte that is NUL or no ASCII; `end` if there is none.
const char* FindSuspect(const char* begin, const char* end) {
    constexpr std::uint64_t ONES = 0x0101010101010101;
    constexpr std::uint64_t HIGH_BITS = 0x8080808080808080;
    std::uint64_t eight = 0;
    for (; static_cast<std::size_t>(end - begin) >= sizeof(eight); begin += sizeof(eight)) {
        std::memcpy(&eight, begin, sizeof(eight));
        // A NUL borrows from its high bit; a byte after it may too, and is then looked at for nothing.
        if (((eight | (eight - ONES)) & HIGH_BITS) != 0) {
            break;
        }
    }
    while (begin != end && !IsSuspect(*begin)) {
        ++begin;
    }
    return begin;
}

}  // namespace

bool FileLines::Next() {
    if (m_rest.empty()) {
        if (!m_reader.Next(m_block)) {
            return false;
        }
        m_rest = m_block.Text();
        m_suspect = m_rest.data();
    }
    ++m_number;
    const auto end = m_rest.find('\n');
    m_line = m_rest.substr(0, end);
    m_rest.remove_prefix(end == std::string_view::npos ? m_rest.size() : end + 1);
    if (end != std::string_view::npos && m_line.ends_with('\r')) {
        m_line.remove_suffix(1);
    }
    m_state = m_isTextAsked ? StateOfLine() : LineState::TEXT;
    return true;
}

LineState FileLines::StateOfLine() {
    if (m_block.isTooLongLine || m_line.size() > LONGEST_LINE) {
        m_line = {};
        return LineState::TOO_LONG;
    }
    const char* const end = m_line.data() + m_line.size();
    if (m_suspect < m_line.data()) {
        m_suspect = FindSuspect(m_line.data(), m_block.memory.data() + m_block.size);
    }
    const bool maybeText = m_suspect >= end && !m_line.empty();
    return maybeText || !FindNoText(m_line) ? LineState::TEXT : LineState::NO_TEXT;
}

}  // namespace NS_KX::NS_SQLITE
