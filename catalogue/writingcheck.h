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
    struct Answer {
        /// Nothing is read, or the library would write the identifier differently; none if nothing is wrong. Without an
        /// inventory, the identifier is right on no NE.
        std::optional<Problem> problem;
        bool isUndecided = false;  ///< right on some NEs and wrong on others, and there is no inventory
    };

    /// Checks `fdn`, in which `CheckIdentifier` found nothing but this `kind`. There is no inventory from the first
    /// identifier on at which `surroundings` throw `InterfaceNotExistException`. Throws std::bad_alloc, and what else
    /// `surroundings` throw.
    Answer Find(const Kind& kind, std::string_view fdn, const NS_UTIL::Surroundings& surroundings);

private:
    std::optional<Problem> FindOnItsNe(const Kind& kind, std::string_view fdn,
                                       const NS_UTIL::Surroundings& surroundings);
    Answer FindOnAnyNe(const Kind& kind, std::string_view fdn, const NS_UTIL::Surroundings& surroundings);
    std::optional<Problem> Compare(const Kind& kind, std::string_view fdn, const NS_UTIL::Surroundings& surroundings);

    bool m_lacksInventory = false;
    AnyRecord m_records;
    std::string m_canonical;
    std::string m_onOtherNes;
};

}  // namespace NS_KX
