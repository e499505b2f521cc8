#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace NS_KX::NS_KXDU {

/// Whether both are the same word, whatever the case of their letters.
bool IsSameWord(std::string_view one, std::string_view other);

/// Returns the word that `text` was probably meant to be, whatever the case of letters: the first word that begins with
/// `text`, else the first one that differs from it in the fewest characters. Empty if every word differs in more than
/// two characters, or in as many as `text` has.
std::string_view NearestWord(std::string_view text, const std::vector<std::string>& words);

}  // namespace NS_KX::NS_KXDU
