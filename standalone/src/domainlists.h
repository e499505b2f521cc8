#pragma once

#include <string>
#include <utility>
#include <vector>

#include <kx_standalone/inventoryfile.h>

namespace NS_STANDALONE {

/// The domain lists of an inventory in `DeviceDomainMgr`, which it deletes when it goes. No other thread may use the
/// lists while they are loaded.
class DomainLists {
public:
    /// Throws what `Load` throws, and leaves no lists then.
    explicit DomainLists(const std::vector<DomainMemberRow>& members);
    ~DomainLists();
    DomainLists(const DomainLists&) = delete;
    DomainLists& operator=(const DomainLists&) = delete;

    /// Stores the list of each domain, also of those that have no member (any more): looking up a domain that was never
    /// stored would change the caches, which threads must not do at the same time. Throws std::runtime_error when the
    /// caches cannot be reached.
    void Load(const std::vector<DomainMemberRow>& members);

private:
    std::vector<std::pair<DomainCache, std::string>> m_domains;  // all that were ever stored
};

}  // namespace NS_STANDALONE
