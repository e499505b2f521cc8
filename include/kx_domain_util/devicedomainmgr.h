#pragma once

#include <atomic>
#include <list>
#include <map>
#include <string>

#include <kx_domain_util/export.h>

namespace NS_UTIL {

/// Which NE types belong to which domain. There are two independent caches of the same shape: the NE-type lists
/// (domains "router and metro", "transmission", "access") and the equipment-type lists (all other domains). The host
/// loads the lists when it starts; the predicates of `netype.h` answer from them.
///
/// Domain keys are compared byte for byte. Lists are kept in ascending order, with repeated numbers.
///
/// Threads: no operation takes a lock. Load all lists before other threads ask. A look-up of a key that was never
/// loaded adds the key, so no other thread may use the caches meanwhile. Exceptions: std::bad_alloc.
class KX_DOMAIN_UTIL_API DeviceDomainMgr {
public:
    /// The one instance, made on the first call. Null only if the process-wide lock cannot be taken. Any thread.
    static DeviceDomainMgr* Instance();
    /// Deletes the instance with all lists; the next `Instance` starts empty. Does not wait for threads that still use
    /// it.
    static void Destroy();

    DeviceDomainMgr(const DeviceDomainMgr&) = delete;
    DeviceDomainMgr& operator=(const DeviceDomainMgr&) = delete;

    /// Stores `neTypes` as the NE-type list of `domain`, in place of the list that it had.
    void AddDomainDevTypelistCache(const std::string& domain, const std::list<int>& neTypes);
    /// Stores `neTypes` as the equipment-type list of `domain`, in place of the list that it had.
    void AddDomainEqtCache(const std::string& domain, const std::list<int>& neTypes);

    /// Whether `neType` is in the NE-type list of `domain`. Asking for an unknown domain returns false and leaves an
    /// empty list under that key.
    bool isInDomainDevTypelistCache(const std::string& domain, int neType);
    /// Whether `neType` is in the equipment-type list of `domain`. Asking for an unknown domain returns false and
    /// leaves an empty list under that key.
    bool isInDomainEqtCache(const std::string& domain, int neType);

    /// Copies all NE-type lists into `out`, in place of what it held.
    void GetDomainDevTypelistCache(std::map<std::string, std::list<int>>& out) const;
    /// Copies all equipment-type lists into `out`, in place of what it held.
    void GetDomainEqtCache(std::map<std::string, std::list<int>>& out) const;

private:
    DeviceDomainMgr() = default;
    ~DeviceDomainMgr() = default;

    static std::atomic<DeviceDomainMgr*> m_pInstance;

    std::map<std::string, std::list<int>> m_mapDomainEqtCache;
    std::map<std::string, std::list<int>> m_mapDomainDevTypelistCache;
};

}  // namespace NS_UTIL
