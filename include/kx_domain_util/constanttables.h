/// The constant tables of the vocabulary, row by row in the order in which the system shares them, for programs that
/// list them. To look something up, use `fbtype.h` and `utilcommon.h`.
///
/// The rows live as long as the library. Threads: any. Nothing throws.
#pragma once

#include <span>
#include <string_view>

#include <kx_domain_util/export.h>

namespace NS_UTIL {

/// An FB type and its name.
struct FbTypeNameRow {
    int fbType;
    std::string_view name;
};

/// A domain id and its word.
struct DomainNameRow {
    unsigned int domainId;
    std::string_view name;
};

/// An FB type and the interface level on which it sits.
struct FbTypeLevelRow {
    int fbType;
    int level;
};

/// An interface level and its canonical FB type.
struct LevelFbTypeRow {
    int level;
    int fbType;
};

/// A unidirectional FB type and the bidirectional one that it belongs to.
struct BidirFbTypeRow {
    unsigned short fbType;
    unsigned short bidirFbType;
};

/// A reserved CTP and its TMF name.
struct CtpNameRow {
    std::string_view name;
    unsigned long ctpId;
};

/// The name of a client rate and its interface level.
struct ClientRateRow {
    std::string_view name;
    unsigned int level;
};

/// The names of FB types.
KX_DOMAIN_UTIL_API std::span<const FbTypeNameRow> GetFbTypeNameRows() noexcept;
/// FB types that have a PTN AID; one stands twice.
KX_DOMAIN_UTIL_API std::span<const int> GetPtnAidFbTypes() noexcept;
/// FB types that are port objects whatever their kind.
KX_DOMAIN_UTIL_API std::span<const int> GetPortObjectFbTypes() noexcept;
/// The words of domain ids.
KX_DOMAIN_UTIL_API std::span<const DomainNameRow> GetDomainNameRows() noexcept;
/// The interface levels of FB types.
KX_DOMAIN_UTIL_API std::span<const FbTypeLevelRow> GetFbTypeLevelRows() noexcept;
/// The canonical FB types of interface levels.
KX_DOMAIN_UTIL_API std::span<const LevelFbTypeRow> GetLevelFbTypeRows() noexcept;
/// The bidirectional FB types of unidirectional ones.
KX_DOMAIN_UTIL_API std::span<const BidirFbTypeRow> GetBidirFbTypeRows() noexcept;
/// The TMF names of the reserved CTPs.
KX_DOMAIN_UTIL_API std::span<const CtpNameRow> GetCtpNameRows() noexcept;
/// The client rates.
KX_DOMAIN_UTIL_API std::span<const ClientRateRow> GetClientRateRows() noexcept;
/// Board types that are optical boards of the ROADM kind.
KX_DOMAIN_UTIL_API std::span<const unsigned long> GetOpticalBoards() noexcept;

}  // namespace NS_UTIL
