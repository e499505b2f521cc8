#pragma once

#include <cstdint>

namespace NS_KX {

/// SplitMix64: random numbers that are the same on every machine, unlike those of the standard library's distributions.
class SplitMix64 {
public:
    explicit SplitMix64(std::uint64_t seed) noexcept : m_state(seed) {}

    std::uint64_t Next() noexcept {
        m_state += 0x9E3779B97F4A7C15U;
        std::uint64_t word = m_state;
        word = (word ^ (word >> 30U)) * 0xBF58476D1CE4E5B9U;
        word = (word ^ (word >> 27U)) * 0x94D049BB133111EBU;
        return word ^ (word >> 31U);
    }

    /// A number from 0 to `bound` - 1; `bound` is above 0.
    std::uint32_t Below(std::uint32_t bound) noexcept {
        return static_cast<std::uint32_t>((Next() >> 32U) * bound >> 32U);
    }

    /// A number from `lowest` to `highest`, both included.
    std::int32_t Between(std::int32_t lowest, std::int32_t highest) noexcept {
        return lowest + static_cast<std::int32_t>(Below(static_cast<std::uint32_t>(highest - lowest) + 1));
    }

    /// True once in `times`.
    bool OneIn(std::uint32_t times) noexcept { return Below(times) == 0; }

    /// One of the elements of `container`, which is not empty.
    template <class Container>
    const auto& OneOf(const Container& container) noexcept {
        return container[Below(static_cast<std::uint32_t>(container.size()))];
    }

private:
    std::uint64_t m_state;
};

}  // namespace NS_KX
