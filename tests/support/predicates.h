#pragma once

#include <array>

#include <kx_domain_util/netype.h>

namespace NS_TEST {

using Predicate = bool (*)(unsigned short neType);

/// Every predicate of an NE type alone.
inline constexpr std::array<Predicate, 25> NE_TYPE_PREDICATES{
    NS_UTIL::IsPTN41,
    NS_UTIL::IsPTN31,
    NS_UTIL::IsPTN470,
    NS_UTIL::IsKLVByNEType,
    NS_UTIL::IsRouteNE,
    NS_UTIL::IsTransNE,
    NS_UTIL::IsAccessNE,
    NS_UTIL::IsPTNClasssNE,
    NS_UTIL::IsPTNDMTNE,
    NS_UTIL::IsPTNNE,
    NS_UTIL::IsMSTPNE,
    NS_UTIL::IsIPMSTPNE,
    NS_UTIL::IsIPKLVNE,
    NS_UTIL::IsKLV600NE,
    NS_UTIL::IsOTNNE,
    NS_UTIL::IsWDMNE,
    NS_UTIL::IsOTN_NA,
    NS_UTIL::IsWDM_NA,
    NS_UTIL::IsNAWDMByNEType,
    NS_UTIL::IsOTN4750NE,
    NS_UTIL::IsBIGSLOTNE,
    NS_UTIL::IsAccBitsNE,
    NS_UTIL::IsMultiShelfTypeNE,
    NS_UTIL::IsIPServiceNE,
    NS_UTIL::IsKLVNE,
};

}  // namespace NS_TEST
