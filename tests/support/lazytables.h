/// Checks of the tables that the library builds on first call: do look-ups answer right from all of a table?
#pragma once

#include <kx_domain_util/fbtype.h>
#include <kx_domain_util/utilcommon.h>

namespace NS_TEST {

inline bool NamesAreRight() {
    return NS_UTIL::GetFBTypeName(122) == "CSK" && NS_UTIL::GetFBTypeName(4350) == "POWER" &&
           NS_UTIL::GetFBTypeName(4147) == "4147";
}

inline bool PtnAidsAreRight() {
    return NS_UTIL::IsPTNAIDFBType(4149) && NS_UTIL::IsPTNAIDFBType(4258) && !NS_UTIL::IsPTNAIDFBType(4136);
}

inline bool PortObjectsAreRight() {
    return NS_UTIL::IsPortObjByFbType(919, 3) && NS_UTIL::IsPortObjByFbType(934, 3) &&
           !NS_UTIL::IsPortObjByFbType(2, 3);
}

inline bool BidirectionalTypesAreRight() {
    const NS_UTIL::UtilCommon& utilCommon = *NS_UTIL::UtilCommon::Instance();
    return utilCommon.GetBidirFBType(33) == 1 && utilCommon.GetBidirFBType(918) == 916 &&
           utilCommon.GetBidirFBType(1) == 1;
}

}  // namespace NS_TEST
