#include <string>

#include <kx_domain_util/devicedomainmgr.h>
#include <kx_domain_util/netype.h>

#include "frame/serviceaccess.h"

namespace NS_UTIL {

namespace {

template <unsigned short... Types>
bool IsOneOf(unsigned short neType) {
    return ((neType == Types) || ...);
}

// The keys below are never destroyed, since threads may ask while the process is ending.

bool IsInNETypeList(const std::string& domain, unsigned short neType) {
    return DeviceDomainMgr::Instance()->isInDomainDevTypelistCache(domain, neType);
}

bool IsInEquipmentTypeList(const std::string& domain, unsigned short neType) {
    return DeviceDomainMgr::Instance()->isInDomainEqtCache(domain, neType);
}

}  // namespace

bool IsPTN41(unsigned short neType) {
    return IsOneOf<1911, 1912, 1913>(neType);
}

bool IsPTN31(unsigned short neType) {
    return IsOneOf<1335>(neType);
}

bool IsPTN470(unsigned short neType) {
    return IsOneOf<1888>(neType);
}

bool IsKLVByNEType(unsigned short neType) {
    return IsOneOf<1887, 1895, 1908, 1947, 1948, 1971, 1972, 1978, 1982, 1987>(neType);
}

bool IsRouteNE(unsigned short neType) {
    static const std::string& domain = *new std::string("router and metro");
    return IsInNETypeList(domain, neType);
}

bool IsTransNE(unsigned short neType) {
    static const std::string& domain = *new std::string("transmission");
    return IsInNETypeList(domain, neType);
}

bool IsAccessNE(unsigned short neType) {
    static const std::string& domain = *new std::string("access");
    return IsInNETypeList(domain, neType);
}

bool IsPTNClasssNE(unsigned short neType) {
    static const std::string& domain = *new std::string("PTN");
    return IsInEquipmentTypeList(domain, neType);
}

bool IsPTNDMTNE(unsigned short neType) {
    static const std::string& domain = *new std::string("PTNDMT");
    return IsInEquipmentTypeList(domain, neType);
}

bool IsPTNNE(unsigned short neType) {
    return IsPTNClasssNE(neType) || IsPTNDMTNE(neType);
}

bool IsMSTPNE(unsigned short neType) {
    static const std::string& domain = *new std::string("MSTP");
    return IsInEquipmentTypeList(domain, neType);
}

bool IsIPMSTPNE(unsigned short neType) {
    return IsMSTPNE(neType);
}

bool IsIPKLVNE(unsigned short neType) {
    static const std::string& domain = *new std::string("IPKLV");
    return IsInEquipmentTypeList(domain, neType);
}

bool IsKLV600NE(unsigned short neType) {
    static const std::string& domain = *new std::string("KLV6XX");
    return IsInEquipmentTypeList(domain, neType);
}

bool IsOTNNE(unsigned short neType) {
    static const std::string& domain = *new std::string("OTN");
    return IsInEquipmentTypeList(domain, neType);
}

bool IsWDMNE(unsigned short neType) {
    static const std::string& domain = *new std::string("WDM");
    return IsInEquipmentTypeList(domain, neType);
}

bool IsOTN_NA(unsigned short neType) {
    static const std::string& domain = *new std::string("OTN_NA");
    return IsInEquipmentTypeList(domain, neType);
}

bool IsWDM_NA(unsigned short neType) {
    static const std::string& domain = *new std::string("WDM_NA");
    return IsInEquipmentTypeList(domain, neType);
}

bool IsNAWDMByNEType(unsigned short neType) {
    return IsOTN_NA(neType) || IsWDM_NA(neType);
}

bool IsOTN4750NE(unsigned short neType) {
    static const std::string& domain = *new std::string("OTN4750NE");
    return IsInEquipmentTypeList(domain, neType);
}

bool IsBIGSLOTNE(unsigned short neType) {
    static const std::string& domain = *new std::string("BIGSLOTNE");
    return IsInEquipmentTypeList(domain, neType);
}

bool IsAccBitsNE(unsigned short neType) {
    static const std::string& domain = *new std::string("ACCBITSNE");
    return IsInEquipmentTypeList(domain, neType);
}

bool IsMultiShelfTypeNE(unsigned short neType) {
    static const std::string& domain = *new std::string("MultiShelfTypeNE");
    return IsInEquipmentTypeList(domain, neType);
}

bool IsIPServiceNE(unsigned short neType) {
    // The access is prepared at every call, also when a list gives the answer.
    NS_FRAME::ServiceAccess<NS_SERVICE::InventoryBufif> inventory;
    static const std::string& ptn31 = *new std::string("PTN31");
    static const std::string& otn = *new std::string("OTN");
    return IsInEquipmentTypeList(ptn31, neType) || IsInEquipmentTypeList(otn, neType) ||
           inventory.Get().IsIPServiceNEType(neType);
}

bool IsKLVNE(unsigned short neType) {
    NS_FRAME::ServiceAccess<NS_SERVICE::InventoryBufif> inventory;
    return inventory.Get().IsKLVNEType(neType);
}

bool IsTransMultiSubShelfNE(unsigned long neId, unsigned short neType) {
    NS_FRAME::ServiceAccess<NS_SERVICE::InventoryBufif> inventory;
    return inventory.Get().IsTransMultiSubShelf(neId, neType);
}

}  // namespace NS_UTIL
