#include "cli/nearestword.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <numeric>

namespace NS_KX::NS_KXDU {

namespace {

bool IsSameLetter(char one, char other) {
    return std::tolower(static_cast<unsigned char>(one)) == std::tolower(static_cast<unsigned char>(other));
}

bool IsBegun(std::string_view word, std::string_view text) {
    return !text.empty() && std::ranges::equal(text, word.substr(0, text.size()), IsSameLetter);
}

// The Levenshtein distance: how many characters to insert, delete or change, whatever their case.
std::size_t Distance(std::string_view from, std::string_view to) {
    std::vector<std::size_t> row(to.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t taken = 0; taken < from.size(); ++taken) {
        std::size_t diagonal = row[0]++;
        for (std::size_t at = 0; at < to.size(); ++at) {
            const std::size_t changed = diagonal + (IsSameLetter(from[taken], to[at]) ? 0 : 1);
            diagonal = row[at + 1];
            row[at + 1] = std::min({changed, row[at] + 1, diagonal + 1});
        }
    }
    return row.back();
}

}  // namespace

bool IsSameWord(std::string_view one, std::string_view other) {
    return std::ranges::equal(one, other, IsSameLetter);
}

std::string_view NearestWord(std::string_view text, const std::vector<std::string>& words) {
    const auto begun = std::ranges::find_if(words, [text](std::string_view word) { return IsBegun(word, text); });
    if (begun != words.end()) {
        return *begun;
    }
    constexpr std::size_t LARGEST_DISTANCE = 2;
    std::size_t least = std::min(LARGEST_DISTANCE + 1, text.size());
    std::string_view nearest;
    for (const std::string& word : words) {
        if (const std::size_t distance = Distance(text, word); distance < least) {
            least = distance;
            nearest = word;
        }
    }
    return nearest;
}

}  // namespace NS_KX::NS_KXDU
