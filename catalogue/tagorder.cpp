#include "catalogue/tagorder.h"

#include <algorithm>
#include <span>

#include <kx_domain_util/fdnscanner.h>
#include <kx_domain_util/levelfinder.h>

#include "catalogue/kinds.h"

namespace NS_KX {

using NS_UTIL::NS_FDN::SeparatorFinder;
using NS_UTIL::NS_FDN::SplitLevel;
using NS_UTIL::NS_FDN::NS_DETAIL::PackCharacters;
using NS_UTIL::NS_FDN::NS_DETAIL::PackHead;

bool TagOrder::IsKeptBy(std::string_view fdn) {
    if (fdn.empty()) {
        return true;
    }
    Begin();
    SeparatorFinder<','> levels(fdn);
    SeparatorFinder<','>::Piece level{};
    do {
        level = levels.Next();
        if (!Accepts({level.begin, level.end}, PackHead(fdn, level.begin))) {
            return false;
        }
    } while (!levels.IsLast(level));
    return true;
}

// Puts a level at the latest place. Returns false if it does not belong there.
bool TagOrder::LookUp(std::string_view level) {
    m_last = m_place - 1;
    const std::string_view name = SplitLevel(level).tag;
    const Tag* const tag = FindTag(name);
    if (tag == nullptr) {
        return false;
    }
    const std::span<const Level> before = std::span(m_levels).first(m_place);
    const bool isRepeated =
        std::any_of(before.begin(), before.end(), [tag](const Level& each) { return each.tag == tag; });
    if (isRepeated || (m_last != 0 && tag->depth < before.back().tag->depth)) {
        return false;
    }
    Level& added = m_levels[m_place];
    m_last = m_place;
    added = {0, 0, tag};
    const bool isHead = name.size() < sizeof(added.head) && name.size() < level.size();
    if (isHead) {
        added.head = PackCharacters(level.substr(0, name.size() + 1));
        added.mask = ~std::uint64_t{} >> 8 * (sizeof(added.mask) - name.size() - 1);
    } else {
        added.head = 1;  // no level is known by its head: this one is looked up each time
    }
    return true;
}

}  // namespace NS_KX
