#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <kx_domain_util/surroundings.h>

#include "catalogue/kind.h"
#include "catalogue/levelcheck.h"

namespace NS_KX {

/// Compares identifiers with what the library writes. Keeps its memory for the next identifier. One thread at a time.
class WritingCheck {
public:
    /// What is wrong with `fdn`, in which `CheckIdentifier` found nothing but this `kind`: nothing is read from it, or
    /// the library would write it differently. None if nothing is wrong. Throws std::bad_alloc, and what `surroundings`
    /// throw.
    std::optional<Problem> Find(const Kind& kind, std::string_view fdn, const NS_UTIL::Surroundings& surroundings);

private:
    AnyRecord m_records;
    std::string m_canonical;
};

}  // namespace NS_KX
