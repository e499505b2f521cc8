#include "catalogue/fieldvalues.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <type_traits>

#include <kx_platform/textutil.h>

#include "text/number.h"
#include "text/quoting.h"

namespace NS_KX {

namespace {

template <class Value>
std::string TextOf(const Value& value) {
    if constexpr (std::is_same_v<Value, std::string>) {
        return '"' + value + '"';
    } else if constexpr (std::is_same_v<Value, bool>) {
        return value ? "true" : "false";
    } else {
        return std::to_string(value);
    }
}

// A field that no writer uses, and the one that is written in its place.
struct Twins {
    std::string_view unused;
    std::string_view written;
};

constexpr std::array TWINS_OF_ACCESS_POINTS{Twins{"neId", "port.neId"}, Twins{"fbType", "port.fbType"},
                                            Twins{"apText", "apValue2"}};

// The number that `field` says, as readers take it from a text.
std::int64_t NumberIn(const Field& field, const void* record) {
    return VisitField(field, record, [](const auto& value) -> std::int64_t {
        if constexpr (std::is_same_v<std::decay_t<decltype(value)>, std::string>) {
            return NS_UTIL::Str2Int(value);
        } else {
            return value;
        }
    });
}

}  // namespace

std::string ValueOf(const Field& field, const void* record) {
    return VisitField(field, record, [](const auto& value) { return TextOf(value); });
}

std::string RangeOf(const Field& field) {
    switch (field.type) {
        case FieldType::FLAG:
            return "true or false";
        case FieldType::TEXT:
            return field.isName ? "text without \",\" and \"|\"" : "text";
        case FieldType::NUMBER:
        case FieldType::LONG_NUMBER:  // identifiers have numbers of 32 bits
            break;
    }
    return std::string(RANGE_OF_32_BITS).substr(std::string_view("from ").size());
}

bool IsKnown(const Kind& kind, const Field& field, const void* record) {
    return VisitField(field, record,
                      [&]<class Value>(const Value& value) { return value != field.In<Value>(kind.layout.fresh()); });
}

bool IsNothingRead(const Kind& kind, const void* record) {
    return std::none_of(kind.layout.fields.begin(), kind.layout.fields.end(),
                        [&](const Field& field) { return !field.IsReserved() && IsKnown(kind, field, record); });
}

std::vector<FieldValue> FieldsOf(const Kind& kind, const void* record) {
    std::vector<FieldValue> fields;
    for (const Field& field : kind.layout.fields) {
        if (!field.IsReserved()) {
            fields.push_back({field.name, ValueOf(field, record), IsKnown(kind, field, record)});
        }
    }
    return fields;
}

std::string ContradictionIn(const Kind& kind, const void* record) {
    if (kind.layout.fields[kind.layout.key].name != "port.neId") {
        return {};
    }
    for (const auto& [unusedName, writtenName] : TWINS_OF_ACCESS_POINTS) {
        const Field* const unused = FindField(kind, unusedName);
        const Field* const written = FindField(kind, writtenName);
        if (unused == nullptr || written == nullptr || !IsKnown(kind, *unused, record)) {
            continue;
        }
        if (NumberIn(*unused, record) != NumberIn(*written, record)) {
            return Quoted(unusedName) + " is " + ValueOf(*unused, record) + ", but " + Quoted(writtenName) +
                   ", which is written, is " + ValueOf(*written, record) + ": change both, or leave " +
                   Quoted(unusedName) + " out";
        }
    }
    return {};
}

}  // namespace NS_KX
