/// The identifiers of a network by their NEs, in a form that a page can hold.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "cli/counting.h"

namespace NS_KX::NS_KXDU {

/// The identifiers of one NE.
struct NeIdentifiers {
    /// One line each: "!" if the identifier has a problem; a letter for its kind ("-": none); a letter for the number
    /// of levels at its beginning that it shares with the identifier before; the rest of it. page.js reads this.
    std::string text;
    std::uint64_t count = 0;
    std::uint64_t ports = 0;
    std::uint64_t problems = 0;  ///< identifiers with a problem

    void Add(const NeIdentifiers& later);
};

/// All identifiers of a network.
struct Network {
    Statistics statistics;
    std::map<std::int32_t, NeIdentifiers> nes;

    /// What one page holds.
    static constexpr std::uint64_t MOST_IDENTIFIERS = 500'000;
    static constexpr std::size_t MOST_TEXT = std::size_t{32} << 20U;
};

/// The letters that stand for small numbers.
inline constexpr std::string_view LETTERS = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";

/// Reads the network. Throws `Failure` with `Cause::INPUT` if it is larger than one page holds, and as `CountLines`
/// does.
Network ReadNetwork(const CountingOptions& options, const std::vector<FileInUse>& filesInUse);

}  // namespace NS_KX::NS_KXDU
