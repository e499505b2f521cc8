/// The identifiers that all measurements use.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <kx_standalone/inventoryfile.h>

namespace NS_BENCH {

/// The first identifiers of a sample network, of every kind and in realistic shares. The order is random, so that no
/// conversion profits from a similar neighbour. The identifiers are the same on every machine.
class Corpus {
public:
    static constexpr std::size_t SIZE = 20'000;

    explicit Corpus(std::size_t size = SIZE);

    [[nodiscard]] const std::vector<std::string>& All() const noexcept { return m_identifiers; }

    /// The identifiers that hold a level with one of `tags`, in the order of the corpus. Rare ones are repeated until
    /// there are at least `LEAST`. Throws if there is none.
    [[nodiscard]] std::vector<std::string> Holding(std::span<const std::string_view> tags) const;

    /// The ports of 58 to 62 bytes.
    [[nodiscard]] std::vector<std::string> SixtyBytePorts() const;

    /// The inventory of the NEs of these identifiers.
    [[nodiscard]] const NS_STANDALONE::Inventory& GetInventory() const noexcept { return m_inventory; }

    static constexpr std::size_t LEAST = 1000;

private:
    std::vector<std::string> m_identifiers;
    NS_STANDALONE::Inventory m_inventory;
};

}  // namespace NS_BENCH
