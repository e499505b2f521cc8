/// The fields of every record by name, in their order: for printing, for test vectors and for generated records. CMake
/// reads the fields of the index records from `domainindex.h`.
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

/// The arguments of `NEID2ResID`.
struct NEPath {
    std::int32_t oneId = 0;
    std::int32_t neId = -1;
};

/// The result of `ResID2GroupID`.
struct ServiceGroup {
    std::int32_t group = 0;

    bool operator==(const ServiceGroup&) const = default;
};

/// The results of `ResID2MepIndex`.
struct EndPointReading {
    NS_DOMAIN::MEPIndex mep;
    std::int32_t answer = 0;

    bool operator==(const EndPointReading&) const = default;
};

template <class Record>
struct RecordFields;

}  // namespace NS_TEST

#include "support/recordlists.h"

namespace NS_TEST {

template <>
struct RecordFields<NEPath> {
    static constexpr std::string_view NAME{"NEPath"};
    static constexpr std::tuple LIST{Field{"oneId", &NEPath::oneId}, Field{"neId", &NEPath::neId}};
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
