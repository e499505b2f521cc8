#include "catalogue/fieldvalues.h"

#include <algorithm>
#include <type_traits>

#include "text/number.h"

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

}  // namespace NS_KX
