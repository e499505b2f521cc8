#pragma once

#include <string>
#include <utility>
#include <vector>

#include <kx_standalone/inventoryfile.h>

namespace NS_STANDALONE {

/// The domain lists of an inventory in `DeviceDomainMgr`. The destructor deletes them. No other thread may use the
/// lists while they are loaded.
class DomainLists {
public:
    /// Throws what `Load` throws; no lists are left then.
    explicit DomainLists(const std::vector<DomainMemberRow>& members);
    ~DomainLists();
    DomainLists(const DomainLists&) = delete;
    DomainLists& operator=(const DomainLists&) = delete;

    /// Stores a list for each domain, also for those without members: looking up a domain that was never stored changes
    /// the caches, which threads must not do at the same time. Throws std::runtime_error if the caches cannot be
    /// reached.
    void Load(const std::vector<DomainMemberRow>& members);

private:
    std::vector<std::pair<DomainCache, std::string>> m_domains;  // all that were ever stored
};

}  // namespace NS_STANDALONE
