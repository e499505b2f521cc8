/// The identifiers that everything is measured on.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <kx_standalone/inventoryfile.h>

namespace NS_BENCH {

/// The first identifiers of a made-up network, of every kind and as often as networks have them, in random order: no
/// conversion is helped by a neighbour that looks the same. The same ones on every machine.
class Corpus {
public:
    static constexpr std::size_t SIZE = 20'000;

    explicit Corpus(std::size_t size = SIZE);

    [[nodiscard]] const std::vector<std::string>& All() const noexcept { return m_identifiers; }

    /// The identifiers that hold a level of one of `tags`, in the order of the corpus. Rare ones are repeated, so
    /// that a walk over the answer takes at least `LEAST` calls. Throws when there is none.
    [[nodiscard]] std::vector<std::string> Holding(std::span<const std::string_view> tags) const;

    /// The ports of 58 to 62 bytes.
    [[nodiscard]] std::vector<std::string> SixtyBytePorts() const;

    /// What the NEs of these identifiers are.
    [[nodiscard]] const NS_STANDALONE::Inventory& GetInventory() const noexcept { return m_inventory; }

    static constexpr std::size_t LEAST = 1000;

private:
    std::vector<std::string> m_identifiers;
    NS_STANDALONE::Inventory m_inventory;
};

}  // namespace NS_BENCH
