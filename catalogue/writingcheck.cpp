#include "catalogue/writingcheck.h"

#include <algorithm>
#include <cstddef>

#include <kx_domain_util/processexception.h>

#include "catalogue/assumed.h"
#include "catalogue/fieldvalues.h"
#include "text/quoting.h"

namespace NS_KX {

WritingCheck::Answer WritingCheck::Find(const Kind& kind, std::string_view fdn,
                                        const NS_UTIL::Surroundings& surroundings) {
    if (!m_lacksInventory) {
        try {
            return {FindOnItsNe(kind, fdn, surroundings)};
        } catch (const NS_UTIL::InterfaceNotExistException&) {
            m_lacksInventory = true;  // asked no more: an exception for each line would be slow
        }
    }
    return FindOnAnyNe(kind, fdn, surroundings);
}

std::optional<Problem> WritingCheck::FindOnItsNe(const Kind& kind, std::string_view fdn,
                                                 const NS_UTIL::Surroundings& surroundings) {
    std::optional<Problem> problem = Compare(kind, fdn, surroundings);
    if (problem && problem->column != 0) {
        if (const std::string reason = ReasonForWriting(kind, fdn, m_canonical, surroundings); !reason.empty()) {
            problem->text += ", since " + reason;
        }
    }
    return problem;
}

// Tries both sorts of NE.
WritingCheck::Answer WritingCheck::FindOnAnyNe(const Kind& kind, std::string_view fdn,
                                               const NS_UTIL::Surroundings& surroundings) {
    const Assumed ordinary(surroundings, {.isNeSpecial = false});
    std::optional<Problem> problem = Compare(kind, fdn, ordinary);
    if (ordinary.Fact() == NeFact::NONE || (problem && problem->column == 0)) {
        return {problem};
    }
    kind.write(m_records.Of(kind.layout), m_onOtherNes, Assumed(surroundings, {.isNeSpecial = true}));
    if (m_onOtherNes == m_canonical) {
        return {problem};
    }
    if (!problem || m_onOtherNes == fdn) {
        return {std::nullopt, true};
    }
    problem->text += ", or on some NEs as " + QuotedWhole(m_onOtherNes);
    return {problem};
}

std::optional<Problem> WritingCheck::Compare(const Kind& kind, std::string_view fdn,
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
