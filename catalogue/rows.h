/// Helpers to write the rows of a family.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include <kx_domain_util/fdn.h>

#include "catalogue/kind.h"

namespace NS_KX {

// ---- Fields ---------------------------------------------------------------------------------------------------------

template <class Value>
consteval FieldType TypeOf() {
    if constexpr (std::is_same_v<Value, std::int32_t>) {
        return FieldType::NUMBER;
    } else if constexpr (std::is_same_v<Value, std::int64_t>) {
        return FieldType::LONG_NUMBER;
    } else if constexpr (std::is_same_v<Value, bool>) {
        return FieldType::FLAG;
    } else {
        static_assert(std::is_same_v<Value, std::string>, "no type of a record's field");
        return FieldType::TEXT;
    }
}

template <class Value>
consteval Field MakeField(std::string_view name, std::size_t offset, std::string_view meaning, bool isName = false) {
    return {name, TypeOf<std::remove_reference_t<Value>>(), offset, isName, meaning};
}

// Macros keep name, type and place of a member together. Records that derive from others have no standard layout; the
// supported compilers give their offsets nevertheless.
// The warning comes where a macro is used, so it stays off for whoever includes this.
#pragma GCC diagnostic ignored "-Winvalid-offsetof"
// NOLINTBEGIN(bugprone-macro-parentheses): neither types nor members take any
/// The field of this member, and its meaning.
#define KX_FIELD(Record, member, meaning) \
    ::NS_KX::MakeField<decltype((std::declval<Record&>().member))>(#member, offsetof(Record, member), meaning)
/// The field of a member that is a name, `Field::isName`.
#define KX_NAME(Record, member, meaning) \
    ::NS_KX::MakeField<decltype((std::declval<Record&>().member))>(#member, offsetof(Record, member), meaning, true)
// NOLINTEND(bugprone-macro-parentheses)

// Meanings that several records share.
inline constexpr std::string_view RESERVED = "not used by readers and writers";
inline constexpr std::string_view NE_NUMBER = "NE number, level NE";
inline constexpr std::string_view SHELF_NUMBER = "shelf number, level FR; -1: none";
inline constexpr std::string_view SLOT_NUMBER = "slot number, level S; -1: none";
inline constexpr std::string_view SUB_SLOT_NUMBER = "sub-slot number, level SS; -1: none";

/// The fields of `Record`, in the order of their declaration.
template <class Record>
inline constexpr std::array<Field, 0> FIELDS{};

/// A record as its constructor leaves it.
template <class Record>
const Record& Fresh() {
    static const Record fresh;
    return fresh;
}

/// The place of the key field, `RecordLayout::key`. A record without one does not compile.
consteval std::size_t KeyPlace(std::span<const Field> fields) {
    std::size_t key = fields.size();
    for (const std::string_view name : {"osId", "oneId", "neId", "port.neId", "groupId", "trailResId"}) {
        for (std::size_t place = 0; place < fields.size(); ++place) {
            key = fields[place].name == name ? place : key;
        }
    }
    return key != fields.size() ? key : throw std::logic_error("no field says what the record names");
}

template <class Record>
inline constexpr RecordLayout LAYOUT{FIELDS<Record>, KeyPlace(FIELDS<Record>),
                                     [] { return std::shared_ptr<void>(std::make_shared<Record>()); },
                                     [](void* record) { *static_cast<Record*>(record) = Fresh<Record>(); },
                                     []() -> const void* { return &Fresh<Record>(); }};

// ---- Kinds ----------------------------------------------------------------------------------------------------------

/// The row of a kind that `Conversion` reads and writes. It has `Record`, `Read` and `Write`, like the library's own
/// conversions.
template <class Conversion>
constexpr Kind MakeKind(std::string_view type, std::string_view word, std::array<std::string_view, 6> lastTags,
                        std::string_view example, bool (*applies)(std::string_view fdn) = nullptr) {
    using Record = typename Conversion::Record;
    static_assert(FIELDS<Record>.size() <= MOST_FIELDS);
    return {type,
            word,
            lastTags,
            example,
            LAYOUT<Record>,
            [](std::string_view fdn, void* record, const NS_UTIL::Surroundings& surroundings) {
                Conversion::Read(fdn, *static_cast<Record*>(record), surroundings);
            },
            [](const void* record, std::string& fdn, const NS_UTIL::Surroundings& surroundings) {
                Conversion::Write(*static_cast<const Record*>(record), fdn, surroundings);
            },
            applies};
}

// ---- Tags -----------------------------------------------------------------------------------------------------------

/// A level with one number.
constexpr Tag NumberTag(std::string_view name, std::string_view meaning, std::string_view number) {
    return {name, meaning, 1, 1, {{{SubValueKind::NUMBER, number}}}};
}

/// A level with any text.
constexpr Tag TextTag(std::string_view name, std::string_view meaning) {
    return {.name = name,
            .meaning = meaning,
            .least = 1,
            .most = 1,
            .subValues = {{{SubValueKind::TEXT, "free text"}}},
            .isOpen = true};
}

/// The same tag for levels of this depth.
constexpr Tag AtDepth(int depth, Tag tag) {
    tag.depth = depth;
    return tag;
}

}  // namespace NS_KX
