#include "cli/chosennes.h"

#include <algorithm>
#include <optional>

#include "cli/verb.h"
#include "text/number.h"
#include "text/quoting.h"

namespace NS_KX::NS_KXDU {

namespace {

using Range = std::pair<std::int32_t, std::int32_t>;

std::optional<Range> ParseRange(std::string_view text) {
    const auto dash = text.find('-');
    const auto first = ReadNumber(text.substr(0, dash));
    const auto last = dash == std::string_view::npos ? first : ReadNumber(text.substr(dash + 1));
    if (!first || !last || *first > *last) {
        return std::nullopt;
    }
    return Range{*first, *last};
}

}  // namespace

std::string ChosenNes::Add(std::string_view text) {
    std::vector<Range> ranges;
    for (;;) {
        const auto comma = text.find(',');
        const std::string_view part = text.substr(0, comma);
        const auto range = ParseRange(part);
        if (!range) {
            return Quoted(part) + " is neither an NE number nor a range of them, such as 10-20";
        }
        ranges.push_back(*range);
        if (comma == std::string_view::npos) {
            break;
        }
        text.remove_prefix(comma + 1);
    }
    m_ranges.insert(m_ranges.end(), ranges.begin(), ranges.end());
    return {};
}

bool ChosenNes::Has(std::int32_t neId) const noexcept {
    return std::any_of(m_ranges.begin(), m_ranges.end(),
                       [&](const Range& range) { return range.first <= neId && neId <= range.second; });
}

void AddChosenNes(Verb& verb, ChosenNes& nes) {
    verb.AddChecked(
        "--ne", "LIST", [&nes](const std::string& text) { return nes.Add(text); },
        "Only these NEs: numbers and ranges, such as 1,5,10-20; other lines are skipped");
}

}  // namespace NS_KX::NS_KXDU
