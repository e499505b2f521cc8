#include "catalogue/writingcheck.h"

#include <algorithm>
#include <cstddef>

#include "catalogue/readfields.h"
#include "text/text.h"

namespace NS_KX {

std::optional<Problem> WritingCheck::Find(const Kind& kind, std::string_view fdn,
                                          const NS_UTIL::Surroundings& surroundings) {
    void* const record = m_records.Fresh(kind.layout);
    kind.read(fdn, record, surroundings);
    kind.write(record, m_canonical, surroundings);
    if (m_canonical == fdn) {
        return std::nullopt;
    }
    if (IsNothingRead(kind, record)) {
        return Problem{0, std::string(NOTHING_IS_READ), "nothing is read"};
    }
    const auto [place, other] = std::mismatch(fdn.begin(), fdn.end(), m_canonical.begin(), m_canonical.end());
    return Problem{static_cast<std::size_t>(place - fdn.begin()) + 1, "would be written as " + QuotedWhole(m_canonical),
                   "would be written differently"};
}

}  // namespace NS_KX
