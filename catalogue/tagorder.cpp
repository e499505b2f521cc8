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
    const auto tags = AllTags();
    const std::uint64_t bit = std::uint64_t{1} << (std::find(tags.begin(), tags.end(), tag) - tags.begin());
    const Level& before = m_levels[m_last];
    if (tag->depth < before.depth || (before.seen & bit) != 0) {
        return false;
    }
    Level& added = m_levels[++m_last];
    added = {0, 0, before.seen | bit, tag->depth};
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
