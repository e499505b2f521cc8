#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace NS_KX::NS_KXDU {

/// The word that somebody meant who mistyped it as `text`: the first that begins with it, or else the first of those
/// that differ from it in the fewest characters; whatever their case. Empty when all differ in more than two, or in
/// all.
std::string_view NearestWord(std::string_view text, const std::vector<std::string>& words);

}  // namespace NS_KX::NS_KXDU
