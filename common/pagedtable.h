#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace NS_UTIL {

/// A constant table of cells under small numbers, in pages as an operating system keeps its page table: the upper bits
/// of a key choose the page, the lower ones the cell in it. All keys without a cell share an empty page or an empty
/// cell. A look-up takes two loads and no branch; in an ordered map it would mispredict a branch on every other level.
///
/// Keys of rows are from 0 to 16383. `PAGES` is the number of pages with a key. A wrong number fails to compile.
template <class Cell, std::size_t PAGES>
class PagedTable {
public:
    /// Enters `cellOf(row)` under `keyOf(row)` for all `rows`.
    template <class Rows, class KeyOf, class CellOf>
    constexpr PagedTable(const Rows& rows, KeyOf keyOf, CellOf cellOf) {
        std::size_t used = 0;
        for (const auto& row : rows) {
            const auto key = static_cast<std::uint64_t>(keyOf(row));
            if (key >= END) {
                throw "a key has no page";  // fails to compile
            }
            auto& page = m_pageOf[PlaceOfPage(key)];
            if (page == 0) {
                page = static_cast<unsigned char>(++used);
            }
            m_pages.at(page)[key % PAGE_SIZE] = cellOf(row);
        }
        if (used != PAGES) {
            throw "PAGES is wrong";  // fails to compile
        }
    }

    /// Returns the cell under `key`, which may be any number, or an empty one.
    [[nodiscard]] constexpr Cell Get(std::uint64_t key) const {
        return m_pages[m_pageOf[PlaceOfPage(key)]][key % PAGE_SIZE];
    }

private:
    static constexpr std::uint64_t PAGE_SIZE = 64;
    static constexpr std::uint64_t END = 16384;

    // 0 for keys from `END` on. By a mask, since compilers make a branch of "?" and of std::min.
    static constexpr std::uint64_t PlaceOfPage(std::uint64_t key) {
        return (key / PAGE_SIZE + 1) & -static_cast<std::uint64_t>(key < END);
    }

    std::array<unsigned char, END / PAGE_SIZE + 1> m_pageOf{};
    std::array<std::array<Cell, PAGE_SIZE>, PAGES + 1> m_pages{};  // the first one stays empty
};

}  // namespace NS_UTIL
