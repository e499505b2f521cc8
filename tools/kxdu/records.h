/// The fields of every record, described once: what is written, read or listed anywhere follows from these rows. A
/// field's name in any format is its name in the record.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <tuple>

#include <kx_domain_util/domainindex.h>

namespace NS_KXDU {

/// An NE that is written behind the container that it stands in.
struct ContainedNE {
    std::int32_t oneId = 0;  ///< "ONE"; 0: none
    std::int32_t neId = -1;  ///< "NE"

    bool operator==(const ContainedNE&) const = default;
};

template <class Record, class Value>
struct Field {
    std::string_view name;
    Value Record::*member;
};
template <class Record, class Value>
Field(const char*, Value Record::*) -> Field<Record, Value>;

/// The fields of Record, in the order of their declaration.
template <class Record>
inline constexpr std::tuple<> FIELDS{};

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

/// Calls visit(name, value) for each field of record in turn.
template <class Record, class Visit>
void ForEachField(Record& record, Visit visit) {
    std::apply([&](const auto&... field) { (visit(field.name, record.*field.member), ...); },
               FIELDS<std::remove_const_t<Record>>);
}

}  // namespace NS_KXDU
