#include <kx_domain_util/separatorfinder.h>

#include "resid/blockbyavx2.h"

#ifdef KX_DOMAIN_UTIL_AVX2
#include <immintrin.h>
#endif

namespace NS_UTIL::NS_FDN::NS_DETAIL {

#ifdef KX_DOMAIN_UTIL_AVX2

bool HasAvx2() noexcept {
    return static_cast<bool>(__builtin_cpu_supports("avx2"));
}

// Reads a port before 256 levels in two thirds of the time that SSE2 takes. Texts shorter than a block gain nothing.
[[gnu::target("avx2")]] std::uint64_t FindInBlockByAvx2(const char* text, char separator) noexcept {
    const __m256i wanted = _mm256_set1_epi8(separator);
    std::uint64_t found = 0;
    for (std::size_t place = 0; place < BLOCK_SIZE; place += sizeof(wanted)) {
        const __m256i characters = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(text + place));
        const int matches = _mm256_movemask_epi8(_mm256_cmpeq_epi8(characters, wanted));
        found |= std::uint64_t{static_cast<unsigned>(matches)} << place;
    }
    return found;
}

namespace {

// Asked once, when the library is loaded. Until then it reads as false, which is right as well.
const bool HAS_AVX2 = HasAvx2();

}  // namespace

#endif

std::uint64_t FindInBlock(const char* text, char separator) noexcept {
#ifdef KX_DOMAIN_UTIL_AVX2
    if (HAS_AVX2) {
        return FindInBlockByAvx2(text, separator);
    }
#endif
    return FindInRest(text, BLOCK_SIZE, separator);
}

}  // namespace NS_UTIL::NS_FDN::NS_DETAIL
