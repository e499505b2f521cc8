#include "domainlists.h"

#include <array>
#include <list>
#include <stdexcept>

#include <kx_domain_util/devicedomainmgr.h>

namespace NS_STANDALONE {

using NS_UTIL::DeviceDomainMgr;

namespace {

using Domain = std::pair<DomainCache, std::string>;

// What the predicates of NE types look up.
const std::array<Domain, 17> PREDICATE_DOMAINS{{
    {DomainCache::NE_TYPE_LIST, "router and metro"},
    {DomainCache::NE_TYPE_LIST, "transmission"},
    {DomainCache::NE_TYPE_LIST, "access"},
    {DomainCache::EQUIPMENT_TYPE, "PTN"},
    {DomainCache::EQUIPMENT_TYPE, "PTNDMT"},
    {DomainCache::EQUIPMENT_TYPE, "MSTP"},
    {DomainCache::EQUIPMENT_TYPE, "IPKLV"},
    {DomainCache::EQUIPMENT_TYPE, "KLV6XX"},
    {DomainCache::EQUIPMENT_TYPE, "OTN"},
    {DomainCache::EQUIPMENT_TYPE, "WDM"},
    {DomainCache::EQUIPMENT_TYPE, "OTN_NA"},
    {DomainCache::EQUIPMENT_TYPE, "WDM_NA"},
    {DomainCache::EQUIPMENT_TYPE, "OTN4750NE"},
    {DomainCache::EQUIPMENT_TYPE, "BIGSLOTNE"},
    {DomainCache::EQUIPMENT_TYPE, "ACCBITSNE"},
    {DomainCache::EQUIPMENT_TYPE, "MultiShelfTypeNE"},
    {DomainCache::EQUIPMENT_TYPE, "PTN31"},
}};

}  // namespace

DomainLists::DomainLists(const std::vector<DomainMemberRow>& members)
    : m_domains(PREDICATE_DOMAINS.begin(), PREDICATE_DOMAINS.end()) {
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
    m_domains.clear();
    for (const auto& [domain, neTypes] : lists) {
        m_domains.push_back(domain);
        if (domain.first == DomainCache::NE_TYPE_LIST) {
            manager->AddDomainDevTypelistCache(domain.second, neTypes);
        } else {
            manager->AddDomainEqtCache(domain.second, neTypes);
        }
    }
}

}  // namespace NS_STANDALONE
