#include "cli/unknownwords.h"

#include <utility>

#include "lines/descriptor.h"
#include "text/quoting.h"

namespace NS_KX::NS_KXDU {

void UnknownWords::Note(const std::string& word) {
    if (m_count++ == 0) {
        m_first = word;
    }
}

std::string UnknownWords::Text() const {
    if (m_count == 0) {
        return {};
    }
    const std::string more = m_count == 1 ? "" : " and " + std::to_string(m_count - 1) + " more";
    return "kxdu: " + Quoted(m_first) + more + ": " + m_meaning + "\n";
}

void UnknownWords::Tell() const {
    WriteMessage(Text());
}

void AddAnswer(Listing::Row row, const std::string& asked, Listing& listing, UnknownWords& unknown) {
    if (Listing::IsSilent(row)) {
        unknown.Note(asked);
    }
    listing.AddRow(std::move(row));
}

ExitCode CompleteAnswers(Listing& listing, const UnknownWords& unknown) {
    const ExitCode code = listing.CompleteAnswers();
    unknown.Tell();
    return code;
}

}  // namespace NS_KX::NS_KXDU
