#include <array>
#include <string_view>

#include <kx_domain_util/domainindex.h>
#include <kx_domain_util/fdn.h>

#include "catalogue/rows.h"

namespace NS_KX {

using namespace NS_DOMAIN;
using NS_UTIL::NS_FDN::ContainedNE;
using NS_UTIL::NS_FDN::Conversion;
using NS_UTIL::NS_FDN::SubSlot;

// ---- Records --------------------------------------------------------------------------------------------------------

template <>
inline constexpr std::array FIELDS<OSIndex>{
    KX_FIELD(OSIndex, osId, "number of the management system, level OS"),
};

template <>
inline constexpr std::array FIELDS<ONEIndex>{
    KX_FIELD(ONEIndex, reserved, RESERVED),
    KX_FIELD(ONEIndex, oneId, "number of the container of NEs, level ONE"),
};

template <>
inline constexpr std::array FIELDS<ContainedNE>{
    KX_FIELD(ContainedNE, oneId, "number of the container of NEs, level ONE; 0: none"),
    KX_FIELD(ContainedNE, neId, NE_NUMBER),
};

template <>
inline constexpr std::array FIELDS<NEIndex>{
    KX_FIELD(NEIndex, reserved, RESERVED),
    KX_FIELD(NEIndex, neId, NE_NUMBER),
};

template <>
inline constexpr std::array FIELDS<ShelfIndex>{
    KX_FIELD(ShelfIndex, reserved, RESERVED),
    KX_FIELD(ShelfIndex, neId, NE_NUMBER),
    KX_FIELD(ShelfIndex, shelfId, SHELF_NUMBER),
};

template <>
inline constexpr std::array FIELDS<SlotIndex>{
    KX_FIELD(SlotIndex, reserved, RESERVED),         KX_FIELD(SlotIndex, neId, NE_NUMBER),
    KX_FIELD(SlotIndex, shelfId, SHELF_NUMBER),      KX_FIELD(SlotIndex, slotId, SLOT_NUMBER),
    KX_FIELD(SlotIndex, subSlotId, SUB_SLOT_NUMBER),
};

template <>
inline constexpr std::array FIELDS<CardIndex>{
    KX_FIELD(CardIndex, reserved, RESERVED),
    KX_FIELD(CardIndex, neId, NE_NUMBER),
    KX_FIELD(CardIndex, shelfId, SHELF_NUMBER),
    KX_FIELD(CardIndex, slotId, SLOT_NUMBER),
};

namespace {

// ---- Kinds ----------------------------------------------------------------------------------------------------------

bool IsContained(std::string_view fdn) {
    return fdn.starts_with("ONE=");
}

constexpr std::array KINDS{
    MakeKind<Conversion<OSIndex>>("OSIndex", "management-system", {"OS"}, "OS=1"),
    MakeKind<Conversion<ONEIndex>>("ONEIndex", "ne-container", {"ONE"}, "ONE=2"),
    MakeKind<Conversion<ContainedNE>>("NEID", "ne", {"NE"}, "ONE=2,NE=5", IsContained),
    MakeKind<Conversion<NEIndex>>("NEIndex", "ne", {"NE"}, "NE=5"),
    MakeKind<Conversion<ShelfIndex>>("ShelfIndex", "shelf", {"FR"}, "NE=5,FR=1"),
    MakeKind<Conversion<SlotIndex>>("SlotIndex", "slot", {"S"}, "NE=5,FR=1,S=3"),
    MakeKind<Conversion<SubSlot>>("SubSlotIndex", "sub-slot", {"SS"}, "NE=5,FR=1,S=3,SS=2"),
    MakeKind<Conversion<CardIndex>>("CardIndex", "card", {"CP", "SC"}, "NE=5,FR=1,S=3,CP=-1"),
};

constexpr std::array TAGS{
    AtDepth(0, NumberTag("OS", "management system", "number")),
    AtDepth(1, NumberTag("ONE", "container of NEs", "number")),
    AtDepth(2, NumberTag("NE", "network element", "NE number")),
    AtDepth(3, NumberTag("FR", "shelf", "shelf number; -1: none")),
    AtDepth(4, NumberTag("S", "slot", "slot number; -1: none")),
    AtDepth(5, NumberTag("CP", "card", "always -1")),
    AtDepth(6, NumberTag("SS", "sub-slot", "sub-slot number; -1: none")),
    AtDepth(7, NumberTag("SC", "card in the sub-slot", "always -1")),
};

}  // namespace

constinit const Family EQUIPMENT{KINDS, TAGS};

}  // namespace NS_KX
