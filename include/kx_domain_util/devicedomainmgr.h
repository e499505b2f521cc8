#pragma once

#include <atomic>
#include <list>
#include <map>
#include <string>

#include <kx_domain_util/export.h>

namespace NS_UTIL {

/// Which NE types belong to which domain, in two independent caches of the same shape: the NE-type lists (domains
/// "router and metro", "transmission", "access") and the equipment-type lists (all other domains). Whoever starts the
/// management system loads the lists; the predicates of `netype.h` answer from them.
///
/// Domain keys are compared byte for byte. A list is kept in ascending order; numbers given twice stay twice.
///
/// Threads: no operation takes a lock. Load the lists before other threads ask; and since a lookup of an unknown key
/// adds that key, look-ups of keys that were never loaded must not overlap anything either. Exhausted memory throws
/// std::bad_alloc; nothing else throws.
class KX_DOMAIN_UTIL_API DeviceDomainMgr {
public:
    /// The one instance, made on the first call. Null only when the process-wide lock cannot be taken. Any thread.
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
