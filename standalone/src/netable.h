#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include <kx_standalone/inventoryfile.h>

namespace NS_STANDALONE {

/// The NEs of an inventory by their numbers. Rows lie in one array, each at the place that its number hashes to, or at
/// the next free one: a look-up goes to memory once, and a row takes 16 to 32 bytes.
class NeTable {
public:
    /// Numbers are unique and not negative, as in every inventory. Throws std::bad_alloc.
    explicit NeTable(std::span<const NeRow> rows) : m_rows(std::bit_ceil(2 * rows.size() + 1), NeRow{NO_NE}) {
        for (const NeRow& row : rows) {
            m_rows[PlaceOf(row.neId)] = row;
        }
    }

    /// Returns null for an unknown NE.
    [[nodiscard]] const NeRow* Find(std::int64_t neId) const noexcept {
        const NeRow& row = m_rows[PlaceOf(neId)];
        return row.neId != NO_NE ? &row : nullptr;
    }

private:
    static constexpr std::int32_t NO_NE = -1;  // a free place

    // Where the row of this NE is, or belongs.
    [[nodiscard]] std::size_t PlaceOf(std::int64_t neId) const noexcept {
        const std::size_t last = m_rows.size() - 1;
        std::size_t place = Hash(neId) & last;
        while (m_rows[place].neId != NO_NE && m_rows[place].neId != neId) {
            place = (place + 1) & last;
        }
        return place;
    }

    // Spreads numbers that have their low digits in common.
    static std::size_t Hash(std::int64_t neId) noexcept {
        constexpr std::uint64_t GOLDEN_RATIO = 0x9E3779B97F4A7C15;
        return static_cast<std::size_t>(static_cast<std::uint64_t>(neId) * GOLDEN_RATIO >> 32U);
    }

    std::vector<NeRow> m_rows;
};

}  // namespace NS_STANDALONE
