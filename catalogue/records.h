/// The fields of every record, described once: what is written, read or listed anywhere follows from these rows. A
/// field's name in any format is its name in the record.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>

#include <kx_domain_util/domainindex.h>

namespace NS_KX {

/// An NE that is written behind the container that it stands in.
struct ContainedNE {
    std::int32_t oneId = 0;  ///< "ONE"; 0: none
    std::int32_t neId = -1;  ///< "NE"

    bool operator==(const ContainedNE&) const = default;
};

/// A group, with the text of the levels that it stands in.
struct ContainedGroup {
    std::string container;     ///< what is in front of the group's level, its comma included: "NE=5,"
    std::int32_t groupId = 0;  ///< "VEGROUP"

    bool operator==(const ContainedGroup&) const = default;
};

/// A trail record of the library, which keeps the text from the trail's tag on, with the text that it drops.
template <class Trail>
struct Contained : Trail {
    std::string container;  ///< what is in front of the trail's tag, its comma included: "NE=5,"

    bool operator==(const Contained&) const = default;
};

template <class Record, class Value>
struct Field {
    std::string_view name;
    Value Record::*member;
};
template <class Record, class Value>
Field(const char*, Value Record::*) -> Field<Record, Value>;

/// The fields of `Record`, in the order of their declaration.
template <class Record>
inline constexpr std::tuple<> FIELDS{};

template <>
inline constexpr std::tuple FIELDS<ContainedGroup>{
    Field{"container", &ContainedGroup::container},
    Field{"groupId", &ContainedGroup::groupId},
};

template <>
inline constexpr std::tuple FIELDS<ContainedNE>{
    Field{"oneId", &ContainedNE::oneId},
    Field{"neId", &ContainedNE::neId},
};

template <>
inline constexpr std::tuple FIELDS<NS_DOMAIN::OSIndex>{
    Field{"osId", &NS_DOMAIN::OSIndex::osId},
};

template <>
inline constexpr std::tuple FIELDS<NS_DOMAIN::ONEIndex>{
    Field{"reserved", &NS_DOMAIN::ONEIndex::reserved},
    Field{"oneId", &NS_DOMAIN::ONEIndex::oneId},
};

template <>
inline constexpr std::tuple FIELDS<NS_DOMAIN::NEIndex>{
    Field{"reserved", &NS_DOMAIN::NEIndex::reserved},
    Field{"neId", &NS_DOMAIN::NEIndex::neId},
};

template <>
inline constexpr std::tuple FIELDS<NS_DOMAIN::ShelfIndex>{
    Field{"reserved", &NS_DOMAIN::ShelfIndex::reserved},
    Field{"neId", &NS_DOMAIN::ShelfIndex::neId},
    Field{"shelfId", &NS_DOMAIN::ShelfIndex::shelfId},
};

template <>
inline constexpr std::tuple FIELDS<NS_DOMAIN::SlotIndex>{
    Field{"reserved", &NS_DOMAIN::SlotIndex::reserved},   Field{"neId", &NS_DOMAIN::SlotIndex::neId},
    Field{"shelfId", &NS_DOMAIN::SlotIndex::shelfId},     Field{"slotId", &NS_DOMAIN::SlotIndex::slotId},
    Field{"subSlotId", &NS_DOMAIN::SlotIndex::subSlotId},
};

template <>
inline constexpr std::tuple FIELDS<NS_DOMAIN::CardIndex>{
    Field{"reserved", &NS_DOMAIN::CardIndex::reserved},
    Field{"neId", &NS_DOMAIN::CardIndex::neId},
    Field{"shelfId", &NS_DOMAIN::CardIndex::shelfId},
    Field{"slotId", &NS_DOMAIN::CardIndex::slotId},
};

template <>
inline constexpr std::tuple FIELDS<NS_DOMAIN::PortIndex>{
    Field{"reserved", &NS_DOMAIN::PortIndex::reserved},
    Field{"reserved2", &NS_DOMAIN::PortIndex::reserved2},
    Field{"neId", &NS_DOMAIN::PortIndex::neId},
    Field{"shelfId", &NS_DOMAIN::PortIndex::shelfId},
    Field{"slotId", &NS_DOMAIN::PortIndex::slotId},
    Field{"subSlotId", &NS_DOMAIN::PortIndex::subSlotId},
    Field{"portId", &NS_DOMAIN::PortIndex::portId},
    Field{"ppType", &NS_DOMAIN::PortIndex::ppType},
    Field{"fbType", &NS_DOMAIN::PortIndex::fbType},
    Field{"portLabel", &NS_DOMAIN::PortIndex::portLabel},
    Field{"isLogical", &NS_DOMAIN::PortIndex::isLogical},
    Field{"reservedFlag", &NS_DOMAIN::PortIndex::reservedFlag},
    Field{"reservedValue", &NS_DOMAIN::PortIndex::reservedValue},
};

template <>
inline constexpr std::tuple FIELDS<NS_DOMAIN::CtpKey_T>{
    Field{"neId", &NS_DOMAIN::CtpKey_T::neId},         Field{"vrId", &NS_DOMAIN::CtpKey_T::vrId},
    Field{"apValue1", &NS_DOMAIN::CtpKey_T::apValue1}, Field{"apValue2", &NS_DOMAIN::CtpKey_T::apValue2},
    Field{"apText", &NS_DOMAIN::CtpKey_T::apText},     Field{"port", &NS_DOMAIN::CtpKey_T::port},
    Field{"fbType", &NS_DOMAIN::CtpKey_T::fbType},     Field{"subIfId", &NS_DOMAIN::CtpKey_T::subIfId},
    Field{"fdnText", &NS_DOMAIN::CtpKey_T::fdnText},
};

template <>
inline constexpr std::tuple FIELDS<NS_DOMAIN::TPIndex>{
    Field{"reserved", &NS_DOMAIN::TPIndex::reserved},   Field{"neId", &NS_DOMAIN::TPIndex::neId},
    Field{"shelfId", &NS_DOMAIN::TPIndex::shelfId},     Field{"slotId", &NS_DOMAIN::TPIndex::slotId},
    Field{"subSlotId", &NS_DOMAIN::TPIndex::subSlotId}, Field{"portId", &NS_DOMAIN::TPIndex::portId},
    Field{"ppType", &NS_DOMAIN::TPIndex::ppType},       Field{"fbType", &NS_DOMAIN::TPIndex::fbType},
    Field{"portLabel", &NS_DOMAIN::TPIndex::portLabel}, Field{"reserved2", &NS_DOMAIN::TPIndex::reserved2},
    Field{"vc4Id", &NS_DOMAIN::TPIndex::vc4Id},         Field{"vc12Id", &NS_DOMAIN::TPIndex::vc12Id},
    Field{"vc3Id", &NS_DOMAIN::TPIndex::vc3Id},         Field{"vc11Id", &NS_DOMAIN::TPIndex::vc11Id},
    Field{"isLogical", &NS_DOMAIN::TPIndex::isLogical},
};

template <>
inline constexpr std::tuple FIELDS<NS_DOMAIN::PWIndex>{
    Field{"neId", &NS_DOMAIN::PWIndex::neId},
    Field{"resId", &NS_DOMAIN::PWIndex::resId},
};

template <>
inline constexpr std::tuple FIELDS<NS_DOMAIN::PWSwitchIndex>{
    Field{"neId", &NS_DOMAIN::PWSwitchIndex::neId},
    Field{"resId", &NS_DOMAIN::PWSwitchIndex::resId},
};

template <>
inline constexpr std::tuple FIELDS<NS_DOMAIN::VPNTrailIndex>{
    Field{"trailResId", &NS_DOMAIN::VPNTrailIndex::trailResId},
    Field{"trailType", &NS_DOMAIN::VPNTrailIndex::trailType},
};

template <>
inline constexpr std::tuple FIELDS<NS_DOMAIN::TunnelTrailIndex>{
    Field{"trailResId", &NS_DOMAIN::TunnelTrailIndex::trailResId},
};

template <>
inline constexpr std::tuple FIELDS<NS_DOMAIN::PWTrailIndex>{
    Field{"trailResId", &NS_DOMAIN::PWTrailIndex::trailResId},
};

template <>
inline constexpr std::tuple FIELDS<NS_DOMAIN::TNPIndex_T>{
    Field{"trailResId", &NS_DOMAIN::TNPIndex_T::trailResId},
};

// The text that stands in front comes first here too.
template <class Trail>
inline constexpr auto FIELDS<Contained<Trail>> =
    std::tuple_cat(std::tuple{Field{"container", &Contained<Trail>::container}}, FIELDS<Trail>);

template <>
inline constexpr std::tuple FIELDS<NS_DOMAIN::ServiceIndex>{
    Field{"neId", &NS_DOMAIN::ServiceIndex::neId},
    Field{"resId", &NS_DOMAIN::ServiceIndex::resId},
    Field{"svcId", &NS_DOMAIN::ServiceIndex::svcId},
    Field{"svcType", &NS_DOMAIN::ServiceIndex::svcType},
};

template <>
inline constexpr std::tuple FIELDS<NS_DOMAIN::TunnelIndex>{
    Field{"neId", &NS_DOMAIN::TunnelIndex::neId},
    Field{"tunnelInt4", &NS_DOMAIN::TunnelIndex::tunnelInt4},
    Field{"tunnelText2", &NS_DOMAIN::TunnelIndex::tunnelText2},
    Field{"tunnelText3", &NS_DOMAIN::TunnelIndex::tunnelText3},
    Field{"tunnelInt6", &NS_DOMAIN::TunnelIndex::tunnelInt6},
    Field{"tunnelInt0", &NS_DOMAIN::TunnelIndex::tunnelInt0},
    Field{"tunnelInt1", &NS_DOMAIN::TunnelIndex::tunnelInt1},
    Field{"tunnelText5", &NS_DOMAIN::TunnelIndex::tunnelText5},
    Field{"tunnelText5Copy", &NS_DOMAIN::TunnelIndex::tunnelText5Copy},
    Field{"resId", &NS_DOMAIN::TunnelIndex::resId},
};

template <>
inline constexpr std::tuple FIELDS<NS_DOMAIN::TDIndex>{
    Field{"reserved", &NS_DOMAIN::TDIndex::reserved},
    Field{"neId", &NS_DOMAIN::TDIndex::neId},
    Field{"tdId", &NS_DOMAIN::TDIndex::tdId},
};

template <>
inline constexpr std::tuple FIELDS<NS_DOMAIN::MDIndex>{
    Field{"reserved", &NS_DOMAIN::MDIndex::reserved},
    Field{"neId", &NS_DOMAIN::MDIndex::neId},
    Field{"mdId", &NS_DOMAIN::MDIndex::mdId},
    Field{"mdName", &NS_DOMAIN::MDIndex::mdName},
};

template <>
inline constexpr std::tuple FIELDS<NS_DOMAIN::MAIndex>{
    Field{"reserved", &NS_DOMAIN::MAIndex::reserved}, Field{"neId", &NS_DOMAIN::MAIndex::neId},
    Field{"mdId", &NS_DOMAIN::MAIndex::mdId},         Field{"mdName", &NS_DOMAIN::MAIndex::mdName},
    Field{"maId", &NS_DOMAIN::MAIndex::maId},         Field{"maName", &NS_DOMAIN::MAIndex::maName},
};

template <>
inline constexpr std::tuple FIELDS<NS_DOMAIN::MEPIndex>{
    Field{"reserved", &NS_DOMAIN::MEPIndex::reserved}, Field{"neId", &NS_DOMAIN::MEPIndex::neId},
    Field{"mdId", &NS_DOMAIN::MEPIndex::mdId},         Field{"mdName", &NS_DOMAIN::MEPIndex::mdName},
    Field{"maId", &NS_DOMAIN::MEPIndex::maId},         Field{"maName", &NS_DOMAIN::MEPIndex::maName},
    Field{"mepId", &NS_DOMAIN::MEPIndex::mepId},
};

template <>
inline constexpr std::tuple FIELDS<NS_DOMAIN::MIPIndex>{
    Field{"reserved", &NS_DOMAIN::MIPIndex::reserved}, Field{"neId", &NS_DOMAIN::MIPIndex::neId},
    Field{"mdId", &NS_DOMAIN::MIPIndex::mdId},         Field{"mdName", &NS_DOMAIN::MIPIndex::mdName},
    Field{"mipId", &NS_DOMAIN::MIPIndex::mipId},       Field{"mipName", &NS_DOMAIN::MIPIndex::mipName},
};

/// Whether a text field is written as one sub-value of a level, which ends at a "," or "|". Other texts hold levels.
constexpr bool IsSubValue(std::string_view field) {
    return field == "portLabel" || field == "mdName" || field == "maName" || field == "mipName";
}

/// Calls `visit(name, value)` for each field of `record` in turn.
template <class Record, class Visit>
void ForEachField(Record& record, Visit visit) {
    std::apply([&](const auto&... field) { (visit(field.name, record.*field.member), ...); },
               FIELDS<std::remove_const_t<Record>>);
}

}  // namespace NS_KX
