/// `FindInBlock` by AVX2: 32 characters at a time, on the processors that have it.
#pragma once

#include <kx_domain_util/separatorfinder.h>

// KX_DOMAIN_UTIL_NO_AVX2 is for tests only: it gives the way of processors without AVX2.
#if defined(__x86_64__) && defined(KX_DOMAIN_UTIL_SSE2) && !defined(KX_DOMAIN_UTIL_NO_AVX2)
#define KX_DOMAIN_UTIL_AVX2

namespace NS_UTIL::NS_FDN::NS_DETAIL {

/// Whether this processor has AVX2.
bool HasAvx2() noexcept;

/// Only when `HasAvx2`.
std::uint64_t FindInBlockByAvx2(const char* text, char separator) noexcept;

}  // namespace NS_UTIL::NS_FDN::NS_DETAIL

#endif
