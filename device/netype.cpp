#include <algorithm>

#include <kx_domain_util/devicedomainmgr.h>
#include <kx_domain_util/netype.h>

#include "frame/lastingtext.h"
#include "frame/serviceaccess.h"

namespace NS_UTIL {

using NS_FRAME::LastingText;
using NS_FRAME::TextArgument;

namespace {

template <unsigned short... Types>
bool IsOneOf(unsigned short neType) {
    return ((neType == Types) || ...);
}

template <class Lists>
constexpr bool IsNamedIn(const Lists& lists, std::string_view domain) {
    return std::find(lists.begin(), lists.end(), domain) != lists.end();
}

template <TextArgument Domain>
bool IsInNETypeList(unsigned short neType) {
    static_assert(IsNamedIn(NE_TYPE_LISTS, Domain.View()), "hosts load the lists that are named");
    return DeviceDomainMgr::Instance()->isInDomainDevTypelistCache(LastingText<Domain>(), neType);
}

template <TextArgument Domain>
bool IsInEquipmentTypeList(unsigned short neType) {
    static_assert(IsNamedIn(EQUIPMENT_TYPE_LISTS, Domain.View()), "hosts load the lists that are named");
    return DeviceDomainMgr::Instance()->isInDomainEqtCache(LastingText<Domain>(), neType);
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
    return IsInNETypeList<"router and metro">(neType);
}

bool IsTransNE(unsigned short neType) {
    return IsInNETypeList<"transmission">(neType);
}

bool IsAccessNE(unsigned short neType) {
    return IsInNETypeList<"access">(neType);
}

bool IsPTNClasssNE(unsigned short neType) {
    return IsInEquipmentTypeList<"PTN">(neType);
}

bool IsPTNDMTNE(unsigned short neType) {
    return IsInEquipmentTypeList<"PTNDMT">(neType);
}

bool IsPTNNE(unsigned short neType) {
    return IsPTNClasssNE(neType) || IsPTNDMTNE(neType);
}

bool IsMSTPNE(unsigned short neType) {
    return IsInEquipmentTypeList<"MSTP">(neType);
}

bool IsIPMSTPNE(unsigned short neType) {
    return IsMSTPNE(neType);
}

bool IsIPKLVNE(unsigned short neType) {
    return IsInEquipmentTypeList<"IPKLV">(neType);
}

bool IsKLV600NE(unsigned short neType) {
    return IsInEquipmentTypeList<"KLV6XX">(neType);
}

bool IsOTNNE(unsigned short neType) {
    return IsInEquipmentTypeList<"OTN">(neType);
}

bool IsWDMNE(unsigned short neType) {
    return IsInEquipmentTypeList<"WDM">(neType);
}

bool IsOTN_NA(unsigned short neType) {
    return IsInEquipmentTypeList<"OTN_NA">(neType);
}

bool IsWDM_NA(unsigned short neType) {
    return IsInEquipmentTypeList<"WDM_NA">(neType);
}

bool IsNAWDMByNEType(unsigned short neType) {
    return IsOTN_NA(neType) || IsWDM_NA(neType);
}

bool IsOTN4750NE(unsigned short neType) {
    return IsInEquipmentTypeList<"OTN4750NE">(neType);
}

bool IsBIGSLOTNE(unsigned short neType) {
    return IsInEquipmentTypeList<"BIGSLOTNE">(neType);
}

bool IsAccBitsNE(unsigned short neType) {
    return IsInEquipmentTypeList<"ACCBITSNE">(neType);
}

bool IsMultiShelfTypeNE(unsigned short neType) {
    return IsInEquipmentTypeList<"MultiShelfTypeNE">(neType);
}

bool IsIPServiceNE(unsigned short neType) {
    // Made before the lists are asked: callers see its exceptions even if a list gives the answer.
    NS_FRAME::ServiceAccess<NS_SERVICE::InventoryBufif> inventory;
    return IsInEquipmentTypeList<"PTN31">(neType) || IsInEquipmentTypeList<"OTN">(neType) ||
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
