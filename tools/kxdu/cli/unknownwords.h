#pragma once

#include <cstddef>
#include <string>
#include <utility>

#include "cli/listing.h"

namespace NS_KX::NS_KXDU {

/// Counts the words that a verb was asked about and knows nothing of, for one message to the user.
class UnknownWords {
public:
    /// `meaning` says what they are not, and where to look: "no FB type; kxdu tables lists them".
    explicit UnknownWords(std::string meaning) : m_meaning(std::move(meaning)) {}

    void Note(const std::string& word);

    /// The message, a line for standard error; empty if there is no such word.
    [[nodiscard]] std::string Text() const;
    /// Writes the message to standard error.
    void Tell() const;

private:
    std::string m_meaning;
    std::string m_first;
    std::size_t m_count = 0;
};

/// Adds the row that answers `asked` to `listing`, and notes `asked` if the row says nothing.
void AddAnswer(Listing::Row row, const std::string& asked, Listing& listing, UnknownWords& unknown);

/// Ends a listing of answers, and names the words that are unknown.
ExitCode CompleteAnswers(Listing& listing, const UnknownWords& unknown);

}  // namespace NS_KX::NS_KXDU
