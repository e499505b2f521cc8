#include <kx_domain_util/constanttables.h>

#include "common/tables.h"

namespace NS_UTIL {

std::span<const FbTypeNameRow> GetFbTypeNameRows() noexcept {
    return NS_TABLE::FB_TYPE_NAMES;
}

std::span<const int> GetPtnAidFbTypes() noexcept {
    return NS_TABLE::PTN_AID_FB_TYPES;
}

std::span<const int> GetPortObjectFbTypes() noexcept {
    return NS_TABLE::PORT_OBJECT_FB_TYPES;
}

std::span<const DomainNameRow> GetDomainNameRows() noexcept {
    return NS_TABLE::DOMAIN_NAMES;
}

std::span<const FbTypeLevelRow> GetFbTypeLevelRows() noexcept {
    return NS_TABLE::FB_TYPE_LEVELS;
}

std::span<const LevelFbTypeRow> GetLevelFbTypeRows() noexcept {
    return NS_TABLE::LEVEL_FB_TYPES;
}

std::span<const BidirFbTypeRow> GetBidirFbTypeRows() noexcept {
    return NS_TABLE::BIDIR_FB_TYPES;
}

std::span<const CtpNameRow> GetCtpNameRows() noexcept {
    return NS_TABLE::CTP_NAMES;
}

std::span<const ClientRateRow> GetClientRateRows() noexcept {
    return NS_TABLE::CLIENT_RATES;
}

std::span<const unsigned long> GetOpticalBoards() noexcept {
    return NS_TABLE::OPTICAL_BOARDS;
}

}  // namespace NS_UTIL
