#include "bindings/sqlite/filelines.h"

#include "text/lineflaw.h"

namespace NS_KX::NS_SQLITE {

bool FileLines::Next() {
    if (m_rest.empty()) {
        if (!m_reader.Next(m_block)) {
            return false;
        }
        m_rest = m_block.Text();
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
    return FindFlaw(m_line) ? LineState::NO_TEXT : LineState::TEXT;
}

}  // namespace NS_KX::NS_SQLITE
