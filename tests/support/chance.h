/// Random numbers: the same seed gives the same ones everywhere.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace NS_TEST {

/// Does not use the standard library's distributions: they differ between libraries.
class Chance {
public:
    explicit Chance(std::uint64_t seed) : m_state(seed) {}

    std::uint64_t Next() {
        m_state += 0x9E3779B97F4A7C15U;
        std::uint64_t mixed = m_state;
        mixed = (mixed ^ (mixed >> 30U)) * 0xBF58476D1CE4E5B9U;
        mixed = (mixed ^ (mixed >> 27U)) * 0x94D049BB133111EBU;
        return mixed ^ (mixed >> 31U);
    }
    /// From 0 to `bound` - 1.
    std::size_t Below(std::size_t bound) { return static_cast<std::size_t>(Next() % bound); }
    /// True once in `times`.
    bool Once(std::size_t times) { return Below(times) == 0; }

    /// One of `values`, an array or a span.
    template <class Values>
    const auto& From(const Values& values) {
        return values[Below(values.size())];
    }

private:
    std::uint64_t m_state;
};

}  // namespace NS_TEST
