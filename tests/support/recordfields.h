/// The fields of every record by name, in their order: one description for printing, for test vectors and for
/// generated records. The tool has a list of its own (`tools/kxdu/identifiers/records.h`), on purpose: the tests do not
/// take over its mistakes, and the library is tested without the tool.
#pragma once

#include <ostream>
#include <string_view>
#include <tuple>
#include <utility>

#include <kx_domain_util/domainindex.h>

namespace NS_TEST {

template <class Record, class Value>
struct Field {
    std::string_view name;
    Value Record::*member;
};
template <class Record, class Value>
Field(std::string_view, Value Record::*) -> Field<Record, Value>;

/// What `NEID2ResID` takes.
struct NEPath {
    std::int32_t oneId = 0;
    std::int32_t neId = -1;
};

/// What `ResID2GroupID` gives.
struct ServiceGroup {
    std::int32_t group = 0;

    bool operator==(const ServiceGroup&) const = default;
};

/// What `ResID2MepIndex` gives.
struct EndPointReading {
    NS_DOMAIN::MEPIndex mep;
    std::int32_t answer = 0;

    bool operator==(const EndPointReading&) const = default;
};

template <class Record>
struct RecordFields;

template <>
struct RecordFields<NEPath> {
    static constexpr std::string_view NAME{"NEPath"};
    static constexpr std::tuple LIST{Field{"oneId", &NEPath::oneId}, Field{"neId", &NEPath::neId}};
};

template <>
struct RecordFields<NS_DOMAIN::OSIndex> {
    using Record = NS_DOMAIN::OSIndex;
    static constexpr std::string_view NAME{"OSIndex"};
    static constexpr std::tuple LIST{Field{"osId", &Record::osId}};
};

template <>
struct RecordFields<NS_DOMAIN::ONEIndex> {
    using Record = NS_DOMAIN::ONEIndex;
    static constexpr std::string_view NAME{"ONEIndex"};
    static constexpr std::tuple LIST{Field{"reserved", &Record::reserved}, Field{"oneId", &Record::oneId}};
};

template <>
struct RecordFields<NS_DOMAIN::NEIndex> {
    using Record = NS_DOMAIN::NEIndex;
    static constexpr std::string_view NAME{"NEIndex"};
    static constexpr std::tuple LIST{Field{"reserved", &Record::reserved}, Field{"neId", &Record::neId}};
};

template <>
struct RecordFields<NS_DOMAIN::ShelfIndex> {
    using Record = NS_DOMAIN::ShelfIndex;
    static constexpr std::string_view NAME{"ShelfIndex"};
    static constexpr std::tuple LIST{Field{"reserved", &Record::reserved}, Field{"neId", &Record::neId},
                                     Field{"shelfId", &Record::shelfId}};
};

template <>
struct RecordFields<NS_DOMAIN::SlotIndex> {
    using Record = NS_DOMAIN::SlotIndex;
    static constexpr std::string_view NAME{"SlotIndex"};
    static constexpr std::tuple LIST{Field{"reserved", &Record::reserved}, Field{"neId", &Record::neId},
                                     Field{"shelfId", &Record::shelfId}, Field{"slotId", &Record::slotId},
                                     Field{"subSlotId", &Record::subSlotId}};
};

template <>
struct RecordFields<NS_DOMAIN::CardIndex> {
    using Record = NS_DOMAIN::CardIndex;
    static constexpr std::string_view NAME{"CardIndex"};
    static constexpr std::tuple LIST{Field{"reserved", &Record::reserved}, Field{"neId", &Record::neId},
                                     Field{"shelfId", &Record::shelfId}, Field{"slotId", &Record::slotId}};
};

template <>
struct RecordFields<NS_DOMAIN::PortIndex> {
    using Record = NS_DOMAIN::PortIndex;
    static constexpr std::string_view NAME{"PortIndex"};
    static constexpr std::tuple LIST{Field{"reserved", &Record::reserved},
                                     Field{"reserved2", &Record::reserved2},
                                     Field{"neId", &Record::neId},
                                     Field{"shelfId", &Record::shelfId},
                                     Field{"slotId", &Record::slotId},
                                     Field{"subSlotId", &Record::subSlotId},
                                     Field{"portId", &Record::portId},
                                     Field{"ppType", &Record::ppType},
                                     Field{"fbType", &Record::fbType},
                                     Field{"portLabel", &Record::portLabel},
                                     Field{"isLogical", &Record::isLogical},
                                     Field{"reservedFlag", &Record::reservedFlag},
                                     Field{"reservedValue", &Record::reservedValue}};
};

template <>
struct RecordFields<NS_DOMAIN::CtpKey_T> {
    using Record = NS_DOMAIN::CtpKey_T;
    static constexpr std::string_view NAME{"CtpKey_T"};
    static constexpr std::tuple LIST{
        Field{"neId", &Record::neId},         Field{"vrId", &Record::vrId},       Field{"apValue1", &Record::apValue1},
        Field{"apValue2", &Record::apValue2}, Field{"apText", &Record::apText},   Field{"port", &Record::port},
        Field{"fbType", &Record::fbType},     Field{"subIfId", &Record::subIfId}, Field{"fdnText", &Record::fdnText}};
};

template <>
struct RecordFields<NS_DOMAIN::TPIndex> {
    using Record = NS_DOMAIN::TPIndex;
    static constexpr std::string_view NAME{"TPIndex"};
    static constexpr std::tuple LIST{Field{"reserved", &Record::reserved},   Field{"neId", &Record::neId},
                                     Field{"shelfId", &Record::shelfId},     Field{"slotId", &Record::slotId},
                                     Field{"subSlotId", &Record::subSlotId}, Field{"portId", &Record::portId},
                                     Field{"ppType", &Record::ppType},       Field{"fbType", &Record::fbType},
                                     Field{"portLabel", &Record::portLabel}, Field{"reserved2", &Record::reserved2},
                                     Field{"vc4Id", &Record::vc4Id},         Field{"vc12Id", &Record::vc12Id},
                                     Field{"vc3Id", &Record::vc3Id},         Field{"vc11Id", &Record::vc11Id},
                                     Field{"isLogical", &Record::isLogical}};
};

template <>
struct RecordFields<NS_DOMAIN::PWIndex> {
    using Record = NS_DOMAIN::PWIndex;
    static constexpr std::string_view NAME{"PWIndex"};
    static constexpr std::tuple LIST{Field{"neId", &Record::neId}, Field{"resId", &Record::resId}};
};

template <>
struct RecordFields<NS_DOMAIN::PWSwitchIndex> {
    using Record = NS_DOMAIN::PWSwitchIndex;
    static constexpr std::string_view NAME{"PWSwitchIndex"};
    static constexpr std::tuple LIST{Field{"neId", &Record::neId}, Field{"resId", &Record::resId}};
};

template <>
struct RecordFields<NS_DOMAIN::VPNTrailIndex> {
    using Record = NS_DOMAIN::VPNTrailIndex;
    static constexpr std::string_view NAME{"VPNTrailIndex"};
    static constexpr std::tuple LIST{Field{"trailResId", &Record::trailResId}, Field{"trailType", &Record::trailType}};
};

template <>
struct RecordFields<NS_DOMAIN::TunnelTrailIndex> {
    using Record = NS_DOMAIN::TunnelTrailIndex;
    static constexpr std::string_view NAME{"TunnelTrailIndex"};
    static constexpr std::tuple LIST{Field{"trailResId", &Record::trailResId}};
};

template <>
struct RecordFields<NS_DOMAIN::PWTrailIndex> {
    using Record = NS_DOMAIN::PWTrailIndex;
    static constexpr std::string_view NAME{"PWTrailIndex"};
    static constexpr std::tuple LIST{Field{"trailResId", &Record::trailResId}};
};

template <>
struct RecordFields<NS_DOMAIN::TNPIndex_T> {
    using Record = NS_DOMAIN::TNPIndex_T;
    static constexpr std::string_view NAME{"TNPIndex_T"};
    static constexpr std::tuple LIST{Field{"trailResId", &Record::trailResId}};
};

template <>
struct RecordFields<NS_DOMAIN::ServiceIndex> {
    using Record = NS_DOMAIN::ServiceIndex;
    static constexpr std::string_view NAME{"ServiceIndex"};
    static constexpr std::tuple LIST{Field{"neId", &Record::neId}, Field{"resId", &Record::resId},
                                     Field{"svcId", &Record::svcId}, Field{"svcType", &Record::svcType}};
};

template <>
struct RecordFields<NS_DOMAIN::TunnelIndex> {
    using Record = NS_DOMAIN::TunnelIndex;
    static constexpr std::string_view NAME{"TunnelIndex"};
    static constexpr std::tuple LIST{Field{"neId", &Record::neId},
                                     Field{"tunnelInt4", &Record::tunnelInt4},
                                     Field{"tunnelText2", &Record::tunnelText2},
                                     Field{"tunnelText3", &Record::tunnelText3},
                                     Field{"tunnelInt6", &Record::tunnelInt6},
                                     Field{"tunnelInt0", &Record::tunnelInt0},
                                     Field{"tunnelInt1", &Record::tunnelInt1},
                                     Field{"tunnelText5", &Record::tunnelText5},
                                     Field{"tunnelText5Copy", &Record::tunnelText5Copy},
                                     Field{"resId", &Record::resId}};
};

template <>
struct RecordFields<NS_DOMAIN::TDIndex> {
    using Record = NS_DOMAIN::TDIndex;
    static constexpr std::string_view NAME{"TDIndex"};
    static constexpr std::tuple LIST{Field{"reserved", &Record::reserved}, Field{"neId", &Record::neId},
                                     Field{"tdId", &Record::tdId}};
};

template <>
struct RecordFields<NS_DOMAIN::UniResID> {
    using Record = NS_DOMAIN::UniResID;
    static constexpr std::string_view NAME{"UniResID"};
    static constexpr std::tuple LIST{Field{"uniText1", &Record::uniText1}, Field{"uniText2", &Record::uniText2},
                                     Field{"uniNum", &Record::uniNum}, Field{"uniText3", &Record::uniText3}};
};

template <>
struct RecordFields<NS_DOMAIN_SOUTHAPISET::TEUniResID> {
    using Record = NS_DOMAIN_SOUTHAPISET::TEUniResID;
    static constexpr std::string_view NAME{"TEUniResID"};
    static constexpr std::tuple LIST{Field{"uniText1", &Record::uniText1}, Field{"uniText2", &Record::uniText2},
                                     Field{"uniNum", &Record::uniNum}, Field{"uniText3", &Record::uniText3}};
};

template <>
struct RecordFields<NS_DOMAIN::MDIndex> {
    using Record = NS_DOMAIN::MDIndex;
    static constexpr std::string_view NAME{"MDIndex"};
    static constexpr std::tuple LIST{Field{"reserved", &Record::reserved}, Field{"neId", &Record::neId},
                                     Field{"mdId", &Record::mdId}, Field{"mdName", &Record::mdName}};
};

template <>
struct RecordFields<NS_DOMAIN::MAIndex> {
    using Record = NS_DOMAIN::MAIndex;
    static constexpr std::string_view NAME{"MAIndex"};
    static constexpr std::tuple LIST{Field{"reserved", &Record::reserved}, Field{"neId", &Record::neId},
                                     Field{"mdId", &Record::mdId},         Field{"mdName", &Record::mdName},
                                     Field{"maId", &Record::maId},         Field{"maName", &Record::maName}};
};

template <>
struct RecordFields<NS_DOMAIN::MEPIndex> {
    using Record = NS_DOMAIN::MEPIndex;
    static constexpr std::string_view NAME{"MEPIndex"};
    static constexpr std::tuple LIST{Field{"reserved", &Record::reserved}, Field{"neId", &Record::neId},
                                     Field{"mdId", &Record::mdId},         Field{"mdName", &Record::mdName},
                                     Field{"maId", &Record::maId},         Field{"maName", &Record::maName},
                                     Field{"mepId", &Record::mepId}};
};

template <>
struct RecordFields<NS_DOMAIN::MIPIndex> {
    using Record = NS_DOMAIN::MIPIndex;
    static constexpr std::string_view NAME{"MIPIndex"};
    static constexpr std::tuple LIST{Field{"reserved", &Record::reserved}, Field{"neId", &Record::neId},
                                     Field{"mdId", &Record::mdId},         Field{"mdName", &Record::mdName},
                                     Field{"mipId", &Record::mipId},       Field{"mipName", &Record::mipName}};
};

template <>
struct RecordFields<ServiceGroup> {
    static constexpr std::string_view NAME{"ServiceGroup"};
    static constexpr std::tuple LIST{Field{"group", &ServiceGroup::group}};
};

template <>
struct RecordFields<EndPointReading> {
    static constexpr std::string_view NAME{"EndPointReading"};
    static constexpr std::tuple LIST{Field{"mep", &EndPointReading::mep}, Field{"answer", &EndPointReading::answer}};
};

template <class Record>
concept HasFields = requires {
    RecordFields<Record>::LIST;
};

/// Calls `visit(name, value)` for each field of `record`, which may be const.
template <class Record, class Visit>
void ForEachField(Record& record, Visit visit) {
    std::apply([&](const auto&... field) { (visit(field.name, record.*field.member), ...); },
               RecordFields<std::remove_const_t<Record>>::LIST);
}

/// Writes `record` as "Name{field=1 text="abc"}", so that a failed comparison shows what differs.
template <HasFields Record>
void Print(std::ostream& out, const Record& record) {
    out << RecordFields<Record>::NAME << '{';
    std::string_view separator;
    ForEachField(record, [&](std::string_view name, const auto& value) {
        using Value = std::remove_cvref_t<decltype(value)>;
        out << std::exchange(separator, " ") << name << '=';
        if constexpr (HasFields<Value>) {
            Print(out, value);
        } else if constexpr (std::is_same_v<Value, std::string>) {
            out << '"' << value << '"';
        } else {
            out << value;
        }
    });
    out << '}';
}

template <HasFields Record>
std::ostream& operator<<(std::ostream& out, const Record& record) {
    Print(out, record);
    return out;
}

}  // namespace NS_TEST

namespace NS_DOMAIN {

template <NS_TEST::HasFields Record>
std::ostream& operator<<(std::ostream& out, const Record& record) {
    NS_TEST::Print(out, record);
    return out;
}

}  // namespace NS_DOMAIN

namespace NS_DOMAIN_SOUTHAPISET {

inline std::ostream& operator<<(std::ostream& out, const TEUniResID& record) {
    NS_TEST::Print(out, record);
    return out;
}

}  // namespace NS_DOMAIN_SOUTHAPISET
