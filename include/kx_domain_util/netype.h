/// What kind of NE an NE type denotes.
///
/// NE types are 16-bit numbers. The answers come from one of three sources:
///
/// - numbers fixed here;
/// - the domain lists of `DeviceDomainMgr`; a list that was never loaded gives false. The thread rules are those of
///   `DeviceDomainMgr`. Throws std::bad_alloc; the process crashes if `DeviceDomainMgr::Instance` returns null.
/// - the inventory service. Throws `InterfaceNotExistException` if there is none, and std::system_error if the first
///   call cannot take a lock. Exceptions thrown by the service propagate.
///
/// Threads: any, unless a list is asked.
#pragma once

#include <array>
#include <string_view>

#include <kx_domain_util/export.h>

namespace NS_UTIL {

/// The NE-type lists of `DeviceDomainMgr` that the predicates consult. Store each of them, even if it is empty: the
/// first query of a list that was never stored inserts it, and no other thread may use the lists meanwhile.
inline constexpr std::array<std::string_view, 3> NE_TYPE_LISTS{"router and metro", "transmission", "access"};

/// The equipment-type lists of `DeviceDomainMgr` that the predicates consult. Store each of these, too.
inline constexpr std::array<std::string_view, 14> EQUIPMENT_TYPE_LISTS{
    "PTN",    "PTNDMT",    "MSTP",      "IPKLV",     "KLV6XX",           "OTN",  "WDM", "OTN_NA",
    "WDM_NA", "OTN4750NE", "BIGSLOTNE", "ACCBITSNE", "MultiShelfTypeNE", "PTN31"};

/// 1911, 1912 or 1913.
KX_DOMAIN_UTIL_API bool IsPTN41(unsigned short neType);
/// 1335. The domain list "PTN31" plays no part here; `IsIPServiceNE` asks that one.
KX_DOMAIN_UTIL_API bool IsPTN31(unsigned short neType);
/// 1888.
KX_DOMAIN_UTIL_API bool IsPTN470(unsigned short neType);
/// One of 1887, 1895, 1908, 1947, 1948, 1971, 1972, 1978, 1982, 1987. `IsKLVNE` asks the inventory instead.
KX_DOMAIN_UTIL_API bool IsKLVByNEType(unsigned short neType);

/// In the NE-type list "router and metro".
KX_DOMAIN_UTIL_API bool IsRouteNE(unsigned short neType);
/// In the NE-type list "transmission".
KX_DOMAIN_UTIL_API bool IsTransNE(unsigned short neType);
/// In the NE-type list "access".
KX_DOMAIN_UTIL_API bool IsAccessNE(unsigned short neType);

/// In the equipment-type list "PTN".
KX_DOMAIN_UTIL_API bool IsPTNClasssNE(unsigned short neType);
/// In the equipment-type list "PTNDMT".
KX_DOMAIN_UTIL_API bool IsPTNDMTNE(unsigned short neType);
/// `IsPTNClasssNE` or `IsPTNDMTNE`.
KX_DOMAIN_UTIL_API bool IsPTNNE(unsigned short neType);
/// In the equipment-type list "MSTP".
KX_DOMAIN_UTIL_API bool IsMSTPNE(unsigned short neType);
/// The answer of `IsMSTPNE`.
KX_DOMAIN_UTIL_API bool IsIPMSTPNE(unsigned short neType);
/// In the equipment-type list "IPKLV".
KX_DOMAIN_UTIL_API bool IsIPKLVNE(unsigned short neType);
/// In the equipment-type list "KLV6XX".
KX_DOMAIN_UTIL_API bool IsKLV600NE(unsigned short neType);
/// In the equipment-type list "OTN".
KX_DOMAIN_UTIL_API bool IsOTNNE(unsigned short neType);
/// In the equipment-type list "WDM".
KX_DOMAIN_UTIL_API bool IsWDMNE(unsigned short neType);
/// In the equipment-type list "OTN_NA".
KX_DOMAIN_UTIL_API bool IsOTN_NA(unsigned short neType);
/// In the equipment-type list "WDM_NA".
KX_DOMAIN_UTIL_API bool IsWDM_NA(unsigned short neType);
/// `IsOTN_NA` or `IsWDM_NA`.
KX_DOMAIN_UTIL_API bool IsNAWDMByNEType(unsigned short neType);
/// In the equipment-type list "OTN4750NE".
KX_DOMAIN_UTIL_API bool IsOTN4750NE(unsigned short neType);
/// In the equipment-type list "BIGSLOTNE".
KX_DOMAIN_UTIL_API bool IsBIGSLOTNE(unsigned short neType);
/// In the equipment-type list "ACCBITSNE".
KX_DOMAIN_UTIL_API bool IsAccBitsNE(unsigned short neType);
/// In the equipment-type list "MultiShelfTypeNE".
KX_DOMAIN_UTIL_API bool IsMultiShelfTypeNE(unsigned short neType);

/// In the equipment-type list "PTN31" or "OTN", or else counted to the IP services by the inventory. Throws
/// `InterfaceNotExistException` only if the type is in neither list.
KX_DOMAIN_UTIL_API bool IsIPServiceNE(unsigned short neType);
/// Whether the inventory counts the type to the KLV family.
KX_DOMAIN_UTIL_API bool IsKLVNE(unsigned short neType);
/// Whether the inventory says that the NE `neId`, of type `neType`, has several sub-shelves.
KX_DOMAIN_UTIL_API bool IsTransMultiSubShelfNE(unsigned long neId, unsigned short neType);

}  // namespace NS_UTIL
