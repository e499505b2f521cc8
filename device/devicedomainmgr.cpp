#include <algorithm>
#include <utility>

#include <kx_domain_util/devicedomainmgr.h>

#include "frame/singleton.h"

namespace NS_UTIL {

namespace {

using DomainCache = std::map<std::string, std::list<int>>;

void StoreSorted(DomainCache& cache, const std::string& domain, const std::list<int>& neTypes) {
    // Built apart from the cache, so that the cache keeps its list if memory runs out.
    std::list<int> sorted = neTypes;
    sorted.sort();
    cache[domain] = std::move(sorted);
}

bool IsMember(DomainCache& cache, const std::string& domain, int neType) {
    const std::list<int>& neTypes = cache[domain];  // adds an empty list for an unknown domain, on purpose
    const auto found = std::lower_bound(neTypes.begin(), neTypes.end(), neType);
    return found != neTypes.end() && *found == neType;
}

}  // namespace

std::atomic<DeviceDomainMgr*> DeviceDomainMgr::m_pInstance{nullptr};

DeviceDomainMgr* DeviceDomainMgr::Instance() {
    return NS_FRAME::GetInstance(m_pInstance, [] { return new DeviceDomainMgr; });
}

void DeviceDomainMgr::Destroy() {
    NS_FRAME::DestroyInstance(m_pInstance, [](DeviceDomainMgr* instance) { delete instance; });
}

void DeviceDomainMgr::AddDomainDevTypelistCache(const std::string& domain, const std::list<int>& neTypes) {
    StoreSorted(m_mapDomainDevTypelistCache, domain, neTypes);
}

void DeviceDomainMgr::AddDomainEqtCache(const std::string& domain, const std::list<int>& neTypes) {
    StoreSorted(m_mapDomainEqtCache, domain, neTypes);
}

bool DeviceDomainMgr::isInDomainDevTypelistCache(const std::string& domain, int neType) {
    return IsMember(m_mapDomainDevTypelistCache, domain, neType);
}

bool DeviceDomainMgr::isInDomainEqtCache(const std::string& domain, int neType) {
    return IsMember(m_mapDomainEqtCache, domain, neType);
}

void DeviceDomainMgr::GetDomainDevTypelistCache(std::map<std::string, std::list<int>>& out) const {
    out = m_mapDomainDevTypelistCache;
}

void DeviceDomainMgr::GetDomainEqtCache(std::map<std::string, std::list<int>>& out) const {
    out = m_mapDomainEqtCache;
}

}  // namespace NS_UTIL
