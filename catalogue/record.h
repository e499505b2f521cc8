/// Records of any kind, seen through their fields: formats need to know no more.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace NS_KX {

enum class FieldType {
    NUMBER,       ///< std::int32_t
    LONG_NUMBER,  ///< std::int64_t
    FLAG,         ///< bool
    TEXT,         ///< std::string
};

/// A field of a record. Its name is that of the member; a field of a nested record is called "port.neId".
struct Field {
    std::string_view name;
    FieldType type;
    std::size_t offset;   ///< in bytes, from the beginning of the record
    bool isName = false;  ///< a text that is written as one sub-value, so that "," or "|" would end it
    /// What it says, and the level or sub-value that it is read from; after a ";" its special values.
    std::string_view meaning = {};

    /// The value in `record`, which has this field, of this type.
    template <class Value>
    [[nodiscard]] Value& In(void* record) const noexcept {
        return *reinterpret_cast<Value*>(static_cast<std::byte*>(record) + offset);
    }
    template <class Value>
    [[nodiscard]] const Value& In(const void* record) const noexcept {
        return *reinterpret_cast<const Value*>(static_cast<const std::byte*>(record) + offset);
    }

    /// The name of the nested record that the field is in: "port" of "port.neId". Empty for most fields.
    [[nodiscard]] constexpr std::string_view Nest() const noexcept {
        const auto dot = name.find('.');
        return name.substr(0, dot == std::string_view::npos ? 0 : dot);
    }

    /// The name without that of the nested record: "neId" of "port.neId".
    [[nodiscard]] constexpr std::string_view Member() const noexcept { return name.substr(name.find('.') + 1); }

    /// Whether conversions ignore the field.
    [[nodiscard]] constexpr bool IsReserved() const noexcept { return Member().starts_with("reserved"); }
};

/// Calls `visit(value)` with the value of `field` in `record`, a `void*` or `const void*`, as its own type.
template <class RecordPointer, class Visit>
decltype(auto) VisitField(const Field& field, RecordPointer record, Visit visit) {
    switch (field.type) {
        case FieldType::NUMBER:
            return visit(field.In<std::int32_t>(record));
        case FieldType::LONG_NUMBER:
            return visit(field.In<std::int64_t>(record));
        case FieldType::FLAG:
            return visit(field.In<bool>(record));
        case FieldType::TEXT:
            break;
    }
    return visit(field.In<std::string>(record));
}

/// No record has more fields, so that a reader can keep a bit for each.
inline constexpr std::size_t MOST_FIELDS = 64;

/// What a type of record is made of.
struct RecordLayout {
    std::span<const Field> fields;  ///< in the order of their declaration
    std::size_t key;                ///< the place of the field without which a record names nothing, mostly the NE
    std::shared_ptr<void> (*make)();
    void (*clear)(void* record);  ///< makes it fresh; its texts keep their memory
    const void* (*fresh)();       ///< a record as its constructor leaves it
};

/// A record that can be of any kind, and of another one at the next use. It keeps its memory for later uses. One thread
/// at a time.
class AnyRecord {
public:
    /// The record as its last use with this layout left it; a new one at first. Throws std::bad_alloc.
    void* Of(const RecordLayout& layout);
    /// The same, but fresh.
    void* Fresh(const RecordLayout& layout) {
        void* const record = Of(layout);
        layout.clear(record);
        return record;
    }

private:
    struct Made {
        const RecordLayout* layout;
        std::shared_ptr<void> record;
    };

    std::vector<Made> m_made;
};

}  // namespace NS_KX
