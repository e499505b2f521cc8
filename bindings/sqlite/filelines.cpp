#include "bindings/sqlite/filelines.h"

#include "text/line.h"

namespace NS_KX::NS_SQLITE {

bool FileLines::Next() {
    if (m_rest.empty()) {
        if (!m_reader.Next(m_block)) {
            return false;
        }
        m_rest = m_block.Text();
    }
    ++m_number;
    m_line = TakeLine(m_rest);
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
