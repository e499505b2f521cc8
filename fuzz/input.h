/// Shared by all fuzzers: gives the input as text, and ends a run at the first unexpected answer.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace NS_FUZZ {

inline std::string_view ToText(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

/// Ends the process, so that the fuzzer keeps the input.
[[noreturn]] inline void Fail(const std::string& message) {
    std::cerr << message << std::endl;
    std::abort();
}

/// Fails unless both are equal. The message names `what` was compared, and the input `of` which it comes.
template <class Actual, class Expected, class Of>
void ExpectEqual(const Actual& actual, const Expected& expected, std::string_view what, const Of& of) {
    if (!(actual == expected)) {
        Fail(std::string(what) + " of " + testing::PrintToString(of) + "\n  is       " +
             testing::PrintToString(actual) + "\n  and not  " + testing::PrintToString(expected));
    }
}

}  // namespace NS_FUZZ

/// Called with each input.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
