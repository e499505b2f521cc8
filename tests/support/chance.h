/// Random numbers: the same seed gives the same ones everywhere.
#pragma once

#include <cstddef>

#include "sample/splitmix64.h"

namespace NS_TEST {

/// Chooses sizes and elements of any number.
class Chance : private NS_KX::SplitMix64 {
public:
    using NS_KX::SplitMix64::Next;
    using NS_KX::SplitMix64::SplitMix64;

    /// From 0 to `bound` - 1.
    std::size_t Below(std::size_t bound) { return static_cast<std::size_t>(Next() % bound); }
    /// True once in `times`.
    bool Once(std::size_t times) { return Below(times) == 0; }

    /// One of `values`, an array or a span.
    template <class Values>
    const auto& From(const Values& values) {
        return values[Below(values.size())];
    }
};

}  // namespace NS_TEST
