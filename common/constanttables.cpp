#include <kx_domain_util/constanttables.h>

#include "common/tables/bidirfbtype.h"
#include "common/tables/clientrate.h"
#include "common/tables/ctpname.h"
#include "common/tables/domainname.h"
#include "common/tables/fbtypelevel.h"
#include "common/tables/fbtypename.h"
#include "common/tables/levelfbtype.h"
#include "common/tables/opticalboard.h"
#include "common/tables/portobjectfbtype.h"
#include "common/tables/ptnaidfbtype.h"

namespace NS_UTIL {

std::span<const FbTypeNameRow> GetFbTypeNameRows() noexcept {
    return TABLE::FB_TYPE_NAMES;
}

std::span<const int> GetPtnAidFbTypes() noexcept {
    return TABLE::PTN_AID_FB_TYPES;
}

std::span<const int> GetPortObjectFbTypes() noexcept {
    return TABLE::PORT_OBJECT_FB_TYPES;
}

std::span<const DomainNameRow> GetDomainNameRows() noexcept {
    return TABLE::DOMAIN_NAMES;
}

std::span<const FbTypeLevelRow> GetFbTypeLevelRows() noexcept {
    return TABLE::FB_TYPE_LEVELS;
}

std::span<const LevelFbTypeRow> GetLevelFbTypeRows() noexcept {
    return TABLE::LEVEL_FB_TYPES;
}

std::span<const BidirFbTypeRow> GetBidirFbTypeRows() noexcept {
    return TABLE::BIDIR_FB_TYPES;
}

std::span<const CtpNameRow> GetCtpNameRows() noexcept {
    return TABLE::CTP_NAMES;
}

std::span<const ClientRateRow> GetClientRateRows() noexcept {
    return TABLE::CLIENT_RATES;
}

std::span<const unsigned long> GetOpticalBoards() noexcept {
    return TABLE::OPTICAL_BOARDS;
}

}  // namespace NS_UTIL
