#include "lines/lineresult.h"

namespace NS_KX {

void LineResult::Begin(std::string_view inputName, std::size_t firstLine, std::size_t mostSize) {
    output.Clear();
    aside.Clear();
    m_report.Clear();
    m_mostSize = mostSize;
    m_inputName = inputName;
    m_firstLine = firstLine;
    m_line = firstLine;
    m_findings = 0;
    m_linesWithFindings = 0;
    m_lastFindingLine = 0;
    m_notices = 0;
    m_tallies = {};
}

LineResult::Mark LineResult::MarkLine() const {
    return {output.GetSize(),    aside.GetSize(), m_report.GetSize(), m_findings,
            m_linesWithFindings, m_notices,       m_tallies};
}

void LineResult::TakeBack(const Mark& mark) {
    output.Pop(output.GetSize() - mark.output);
    aside.Pop(aside.GetSize() - mark.aside);
    m_report.Pop(m_report.GetSize() - mark.report);
    m_findings = mark.findings;
    m_linesWithFindings = mark.linesWithFindings;
    m_lastFindingLine = 0;  // the line has none any more
    m_notices = mark.notices;
    m_tallies = mark.tallies;
}

void LineResult::Release() {
    output = TextBuffer();
    aside = TextBuffer();
    m_report = TextBuffer();
}

char* LineResult::Room(std::size_t size) {
    if (Size() + size > m_mostSize) {
        throw Full();
    }
    return output.Push(size);
}

std::string LineResult::PlaceOf(std::size_t column) const {
    std::string place(m_inputName);
    place.append(":").append(std::to_string(m_line));
    return column != 0 ? place.append(":").append(std::to_string(column)) : place;
}

void LineResult::Report(std::string_view reason, std::size_t column) {
    m_report.Put(':');
    AppendNumber(m_report, m_line);
    if (column != 0) {
        m_report.Put(':');
        AppendNumber(m_report, column);
    }
    Append(m_report, ": ");
    Append(m_report, reason);
    m_report.Put('\n');
    if (m_lastFindingLine != m_line) {
        m_lastFindingLine = m_line;
        ++m_linesWithFindings;
    }
    if (m_findings++ == 0) {
        m_firstFindingLine = m_line;
        m_outputBeforeFirst = output.GetSize();
        m_asideBeforeFirst = aside.GetSize();
        m_firstFindingEnd = m_report.GetSize();
    }
}

}  // namespace NS_KX
