#include "catalogue/tagorder.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

#include <kx_domain_util/fdnscanner.h>
#include <kx_domain_util/levelfinder.h>

#include "catalogue/kinds.h"

namespace NS_KX {

using NS_UTIL::NS_FDN::SeparatorFinder;
using NS_UTIL::NS_FDN::SplitLevel;
using NS_UTIL::NS_FDN::NS_DETAIL::PackCharacters;
using NS_UTIL::NS_FDN::NS_DETAIL::PackHead;

namespace {

// What the order of levels depends on.
struct TagRow {
    std::string_view name;
    std::uint64_t packed = 0;  // the name's characters
    std::uint64_t bit = 0;     // the tag's own
    int depth = 0;
};

// The tags by perfect hashing: no two of them share a place. Tags of eight characters and more are searched for by
// name.
class TagRows {
public:
    TagRows() {
        std::uint64_t bit = 1;
        for (const Tag* const tag : AllTags()) {
            const std::string_view name = tag->name;
            m_rows.push_back({name, PackCharacters(name.substr(0, sizeof(std::uint64_t))), bit, tag->depth});
            bit <<= 1U;
        }
        while (!FillPlaces()) {
            m_multiplier *= 0x5851F42D4C957F2D;  // adding to it would not move the short tags apart
        }
    }

    // The row of the tag of `level`; null if it is unknown. `head` holds the level's first eight characters, packed.
    [[nodiscard]] const TagRow* Find(std::uint64_t head, SeparatorFinder<','>::Piece level) const noexcept {
        const unsigned size = CharactersBeforeEquals(head);
        if (size - 1 >= sizeof(head) - 1 || level.end - level.begin < size) [[unlikely]] {
            return FindByName(SplitLevel({level.begin, level.end}).tag);
        }
        const std::uint64_t packed = head & ~std::uint64_t{} >> 8 * (sizeof(head) - size);
        const TagRow* const row = m_places[PlaceOf(packed)];
        return row != nullptr && row->packed == packed ? row : nullptr;
    }

private:
    static constexpr unsigned BITS_OF_PLACE = 8;

    // Eight if none of the characters is "=".
    static unsigned CharactersBeforeEquals(std::uint64_t head) noexcept {
        constexpr std::uint64_t ONES = ~std::uint64_t{} / 0xFF;
        const std::uint64_t zeroAtEquals = head ^ ONES * '=';
        // The lowest bit that is set belongs to the first zero byte; higher ones may not.
        return static_cast<unsigned>(std::countr_zero((zeroAtEquals - ONES) & ~zeroAtEquals & ONES << 7U)) / 8;
    }

    [[nodiscard]] std::size_t PlaceOf(std::uint64_t packed) const noexcept {
        return packed * m_multiplier >> (64 - BITS_OF_PLACE);
    }

    // Returns false if two tags share a place.
    bool FillPlaces() {
        m_places = {};
        for (const TagRow& row : m_rows) {
            if (row.name.size() < sizeof(row.packed)) {
                const TagRow*& place = m_places[PlaceOf(row.packed)];
                if (place != nullptr) {
                    return false;
                }
                place = &row;
            }
        }
        return true;
    }

    [[nodiscard]] const TagRow* FindByName(std::string_view name) const noexcept {
        const auto row =
            std::find_if(m_rows.begin(), m_rows.end(), [name](const TagRow& each) { return each.name == name; });
        return row != m_rows.end() ? &*row : nullptr;
    }

    std::vector<TagRow> m_rows;
    std::array<const TagRow*, std::size_t{1} << BITS_OF_PLACE> m_places{};
    std::uint64_t m_multiplier = 0x9E3779B97F4A7C15;  // odd
};

// Never destroyed: other threads may still read while the process ends.
const TagRows& TheTagRows() {
    static const TagRows& rows = *new TagRows;
    return rows;
}

// The first eight characters from `begin` on, packed; zeros past the end of `text`.
std::uint64_t HeadAt(std::string_view text, const char* begin) noexcept {
    std::uint64_t head = 0;
    const char* const end = text.data() + text.size();
    const auto size = static_cast<std::size_t>(end - begin);
    if constexpr (std::endian::native == std::endian::little) {
        if (size < sizeof(head) && size != 0 && text.size() >= sizeof(head)) {
            std::memcpy(&head, end - sizeof(head), sizeof(head));
            return head >> 8 * (sizeof(head) - size);
        }
    }
    return PackHead(text, begin);
}

}  // namespace

// Forgets the states of levels that `fdn` does not begin with.
void TagOrder::GoBackTo(std::string_view fdn) {
    if (fdn.starts_with(m_text)) {
        return;
    }
    const auto common = std::mismatch(m_text.begin(), m_text.end(), fdn.begin(), fdn.end()).first - m_text.begin();
    while (m_states[m_last].end > static_cast<std::size_t>(common)) {
        --m_last;
    }
}

bool TagOrder::IsKeptBy(std::string_view fdn) {
    if (fdn.empty()) {
        return true;
    }
    GoBackTo(fdn);
    const bool isKept = IsKeptFromLast(fdn);
    m_text.assign(fdn.substr(0, m_states[m_last].end));
    return isKept;
}

// Goes on after the last state, and adds those of further levels.
bool TagOrder::IsKeptFromLast(std::string_view fdn) {
    const TagRows& rows = TheTagRows();
    State state = m_states[m_last];
    SeparatorFinder<','> levels(fdn.substr(state.end));
    for (;;) {
        const auto level = levels.Next();
        const TagRow* const row = rows.Find(HeadAt(fdn, level.begin), level);
        if (row == nullptr || row->depth < state.depth || (state.seen & row->bit) != 0) {
            return false;
        }
        if (levels.IsLast(level)) {
            return true;
        }
        state = {static_cast<std::size_t>(level.end - fdn.data()) + 1, state.seen | row->bit, row->depth};
        if (m_last != MOST_STATES) {
            m_states[++m_last] = state;
        }
    }
}

}  // namespace NS_KX
