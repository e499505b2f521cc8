#include <algorithm>
#include <list>
#include <map>
#include <string>

#include <kx_domain_util/devicedomainmgr.h>
#include <kx_domain_util/netype.h>

#include "bindings/c/guard.h"

using namespace NS_KX::NS_C;
using NS_UTIL::DeviceDomainMgr;
using NS_UTIL::EQUIPMENT_TYPE_LISTS;
using NS_UTIL::NE_TYPE_LISTS;

namespace {

using Lists = std::map<std::string, std::list<int>>;

// Stores an empty list for each domain that has none: the first question of a list that was never stored would insert
// it, beside other threads that look at the lists.
bool StoreMissingLists(DeviceDomainMgr& manager) {
    Lists stored;
    manager.GetDomainDevTypelistCache(stored);
    for (const std::string_view domain : NE_TYPE_LISTS) {
        if (!stored.contains(std::string(domain))) {
            manager.AddDomainDevTypelistCache(std::string(domain), {});
        }
    }
    manager.GetDomainEqtCache(stored);
    for (const std::string_view domain : EQUIPMENT_TYPE_LISTS) {
        if (!stored.contains(std::string(domain))) {
            manager.AddDomainEqtCache(std::string(domain), {});
        }
    }
    return true;
}

// The lists of the process, complete; null if a lock of the system fails.
DeviceDomainMgr* CompleteLists() {
    DeviceDomainMgr* const manager = DeviceDomainMgr::Instance();
    if (manager != nullptr) {
        static const bool areComplete = StoreMissingLists(*manager);
        static_cast<void>(areComplete);
    }
    return manager;
}

bool IsListed(bool (*isListed)(unsigned short neType), std::uint16_t neType) noexcept {
    bool answer = false;
    Guarded([&]() -> kx_status {
        answer = CompleteLists() != nullptr && isListed(neType);
        return KX_OK;
    });
    return answer;
}

template <class Domains>
bool Has(const Domains& domains, std::string_view domain) {
    return std::find(domains.begin(), domains.end(), domain) != domains.end();
}

}  // namespace

kx_status kx_load_ne_types(const char* domain, const uint16_t* ne_types, size_t count) {
    return Guarded([&]() -> kx_status {
        const bool isOfNETypes = domain != nullptr && Has(NE_TYPE_LISTS, domain);
        if (!isOfNETypes && (domain == nullptr || !Has(EQUIPMENT_TYPE_LISTS, domain))) {
            return KX_BAD_ARGUMENT;
        }
        if (ne_types == nullptr && count != 0) {
            return KX_BAD_ARGUMENT;
        }
        const std::list<int> list(ne_types, ne_types + count);
        DeviceDomainMgr* const manager = CompleteLists();
        if (manager == nullptr) {
            return KX_FAILED;
        }
        if (isOfNETypes) {
            manager->AddDomainDevTypelistCache(domain, list);
        } else {
            manager->AddDomainEqtCache(domain, list);
        }
        return KX_OK;
    });
}

// ---- Fixed answers --------------------------------------------------------------------------------------------------

bool kx_is_ptn41(uint16_t ne_type) {
    return NS_UTIL::IsPTN41(ne_type);
}

bool kx_is_ptn31(uint16_t ne_type) {
    return NS_UTIL::IsPTN31(ne_type);
}

bool kx_is_ptn470(uint16_t ne_type) {
    return NS_UTIL::IsPTN470(ne_type);
}

bool kx_is_klv_by_ne_type(uint16_t ne_type) {
    return NS_UTIL::IsKLVByNEType(ne_type);
}

// ---- Answers of lists -----------------------------------------------------------------------------------------------

bool kx_is_route_ne(uint16_t ne_type) {
    return IsListed(NS_UTIL::IsRouteNE, ne_type);
}

bool kx_is_trans_ne(uint16_t ne_type) {
    return IsListed(NS_UTIL::IsTransNE, ne_type);
}

bool kx_is_access_ne(uint16_t ne_type) {
    return IsListed(NS_UTIL::IsAccessNE, ne_type);
}

bool kx_is_ptn_class_ne(uint16_t ne_type) {
    return IsListed(NS_UTIL::IsPTNClasssNE, ne_type);
}

bool kx_is_ptn_dmt_ne(uint16_t ne_type) {
    return IsListed(NS_UTIL::IsPTNDMTNE, ne_type);
}

bool kx_is_ptn_ne(uint16_t ne_type) {
    return IsListed(NS_UTIL::IsPTNNE, ne_type);
}

bool kx_is_mstp_ne(uint16_t ne_type) {
    return IsListed(NS_UTIL::IsMSTPNE, ne_type);
}

bool kx_is_ip_mstp_ne(uint16_t ne_type) {
    return IsListed(NS_UTIL::IsIPMSTPNE, ne_type);
}

bool kx_is_ip_klv_ne(uint16_t ne_type) {
    return IsListed(NS_UTIL::IsIPKLVNE, ne_type);
}

bool kx_is_klv600_ne(uint16_t ne_type) {
    return IsListed(NS_UTIL::IsKLV600NE, ne_type);
}

bool kx_is_otn_ne(uint16_t ne_type) {
    return IsListed(NS_UTIL::IsOTNNE, ne_type);
}

bool kx_is_wdm_ne(uint16_t ne_type) {
    return IsListed(NS_UTIL::IsWDMNE, ne_type);
}

bool kx_is_otn_na(uint16_t ne_type) {
    return IsListed(NS_UTIL::IsOTN_NA, ne_type);
}

bool kx_is_wdm_na(uint16_t ne_type) {
    return IsListed(NS_UTIL::IsWDM_NA, ne_type);
}

bool kx_is_na_wdm_by_ne_type(uint16_t ne_type) {
    return IsListed(NS_UTIL::IsNAWDMByNEType, ne_type);
}

bool kx_is_otn4750_ne(uint16_t ne_type) {
    return IsListed(NS_UTIL::IsOTN4750NE, ne_type);
}

bool kx_is_big_slot_ne(uint16_t ne_type) {
    return IsListed(NS_UTIL::IsBIGSLOTNE, ne_type);
}

bool kx_is_acc_bits_ne(uint16_t ne_type) {
    return IsListed(NS_UTIL::IsAccBitsNE, ne_type);
}

bool kx_is_multi_shelf_type_ne(uint16_t ne_type) {
    return IsListed(NS_UTIL::IsMultiShelfTypeNE, ne_type);
}
