#include "domainlists.h"

#include <list>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <kx_domain_util/devicedomainmgr.h>
#include <kx_domain_util/netype.h>

namespace NS_STANDALONE {

using NS_UTIL::DeviceDomainMgr;

namespace {

using Domain = std::pair<DomainCache, std::string>;

// The domains that the predicates of NE types look up.
std::vector<Domain> PredicateDomains() {
    std::vector<Domain> domains;
    domains.reserve(NS_UTIL::NE_TYPE_LISTS.size() + NS_UTIL::EQUIPMENT_TYPE_LISTS.size());
    for (const std::string_view domain : NS_UTIL::NE_TYPE_LISTS) {
        domains.emplace_back(DomainCache::NE_TYPE_LIST, domain);
    }
    for (const std::string_view domain : NS_UTIL::EQUIPMENT_TYPE_LISTS) {
        domains.emplace_back(DomainCache::EQUIPMENT_TYPE, domain);
    }
    return domains;
}

}  // namespace

DomainLists::DomainLists(const std::vector<DomainMemberRow>& members) : m_domains(PredicateDomains()) {
    try {
        Load(members);
    } catch (...) {
        DeviceDomainMgr::Destroy();
        throw;
    }
}

DomainLists::~DomainLists() {
    DeviceDomainMgr::Destroy();
}

void DomainLists::Load(const std::vector<DomainMemberRow>& members) {
    std::map<Domain, std::list<int>> lists;
    for (const Domain& domain : m_domains) {
        lists[domain];
    }
    for (const DomainMemberRow& member : members) {
        lists[{member.cache, member.domain}].push_back(member.neType);
    }

    DeviceDomainMgr* const manager = DeviceDomainMgr::Instance();
    if (manager == nullptr) {
        throw std::runtime_error("the domain lists cannot be reached");
    }
    // Stores all names before the first list, so that none is lost if memory runs out between two lists.
    std::vector<Domain> domains;
    domains.reserve(lists.size());
    for (const auto& [domain, neTypes] : lists) {
        domains.push_back(domain);
    }
    m_domains = std::move(domains);
    for (const auto& [domain, neTypes] : lists) {
        if (domain.first == DomainCache::NE_TYPE_LIST) {
            manager->AddDomainDevTypelistCache(domain.second, neTypes);
        } else {
            manager->AddDomainEqtCache(domain.second, neTypes);
        }
    }
}

}  // namespace NS_STANDALONE
