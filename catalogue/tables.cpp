#include "catalogue/tables.h"

#include <algorithm>

#include <kx_domain_util/constanttables.h>

namespace NS_KX {

namespace {

using namespace NS_UTIL;

ConstantTable::Cell CellOf(std::string_view text) {
    return text;
}

template <class Number>
ConstantTable::Cell CellOf(Number number) {
    return static_cast<std::int64_t>(number);
}

// A table whose rows have two members.
template <auto GetRows, auto First, auto Second>
constexpr ConstantTable PairTable(std::string_view name, std::array<std::string_view, 2> columns,
                                  std::string_view about) {
    return {name, about, columns, [] { return GetRows().size(); },
            [](std::size_t row, std::size_t column) {
                const auto& pair = GetRows()[row];
                return column == 0 ? CellOf(pair.*First) : CellOf(pair.*Second);
            }};
}

// A table whose rows are numbers.
template <auto GetNumbers>
constexpr ConstantTable NumberTable(std::string_view name, std::string_view column, std::string_view about) {
    return {name,
            about,
            {column, {}},
            [] { return GetNumbers().size(); },
            [](std::size_t row, std::size_t /*column*/) { return CellOf(GetNumbers()[row]); }};
}

constexpr std::array TABLES{
    PairTable<GetFbTypeNameRows, &FbTypeNameRow::fbType, &FbTypeNameRow::name>("fb-type-names", {"fbType", "name"},
                                                                               "names of FB types"),
    NumberTable<GetPtnAidFbTypes>("ptn-aid-fb-types", "fbType", "FB types that have a PTN AID; one is listed twice"),
    NumberTable<GetPortObjectFbTypes>("port-object-fb-types", "fbType", "FB types that are port objects of any kind"),
    PairTable<GetDomainNameRows, &DomainNameRow::domainId, &DomainNameRow::name>("domain-names", {"domainId", "name"},
                                                                                 "names of domain ids"),
    PairTable<GetFbTypeLevelRows, &FbTypeLevelRow::fbType, &FbTypeLevelRow::level>(
        "fb-type-levels", {"fbType", "level"}, "interface levels on which FB types sit"),
    PairTable<GetLevelFbTypeRows, &LevelFbTypeRow::level, &LevelFbTypeRow::fbType>(
        "level-fb-types", {"level", "fbType"}, "canonical FB types of interface levels"),
    PairTable<GetBidirFbTypeRows, &BidirFbTypeRow::fbType, &BidirFbTypeRow::bidirFbType>(
        "bidir-fb-types", {"fbType", "bidirFbType"}, "bidirectional FB types of unidirectional ones"),
    PairTable<GetCtpNameRows, &CtpNameRow::name, &CtpNameRow::ctpId>("ctp-names", {"name", "ctpId"},
                                                                     "TMF names of reserved CTPs"),
    PairTable<GetClientRateRows, &ClientRateRow::name, &ClientRateRow::level>("client-rates", {"name", "level"},
                                                                              "interface levels of client rates"),
    NumberTable<GetOpticalBoards>("optical-boards", "boardType", "types of optical boards of the ROADM kind"),
};

}  // namespace

std::span<const ConstantTable> AllConstantTables() {
    return TABLES;
}

const ConstantTable* FindConstantTable(std::string_view name) {
    const auto* const table =
        std::find_if(TABLES.begin(), TABLES.end(), [&](const ConstantTable& known) { return known.name == name; });
    return table != TABLES.end() ? table : nullptr;
}

}  // namespace NS_KX
