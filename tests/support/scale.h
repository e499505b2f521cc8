/// How much a test does. Sanitizers slow tests down, and need fewer rounds to find errors. Builds that are slow for
/// other reasons define KX_TEST_FEWER_ROUNDS.
#pragma once

#include <cstddef>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define KX_TEST_SANITIZED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define KX_TEST_SANITIZED 1
#endif
#endif
#if defined(__SANITIZE_ADDRESS__)
#define KX_TEST_ADDRESS_SANITIZED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define KX_TEST_ADDRESS_SANITIZED 1
#endif
#endif

#ifdef KX_TEST_SANITIZED
#define KX_TEST_FEWER_ROUNDS 1
#endif

namespace NS_TEST {

/// `rounds`, or a sixth of them.
constexpr std::size_t Scaled(std::size_t rounds) {
#ifdef KX_TEST_FEWER_ROUNDS
    return rounds / 6;
#else
    return rounds;
#endif
}

}  // namespace NS_TEST
