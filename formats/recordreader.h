#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "catalogue/kinds.h"

namespace NS_KX {

/// Reads lines that hold a record each. A field that a line lacks is that of a fresh record: nothing is known. Only the
/// key field (`RecordLayout::key`) must be there. Keeps its memory for the next line. One thread at a time.
class RecordReader {
public:
    virtual ~RecordReader() = default;
    RecordReader(const RecordReader&) = delete;
    RecordReader& operator=(const RecordReader&) = delete;

    /// Reads `line`, which replaces the line read before. Throws `BadRecord`; until the next `Read` the other functions
    /// must not be called then.
    virtual void Read(std::string_view line) = 0;

    /// The identifier beside the record; a view without data if there is none.
    [[nodiscard]] std::string_view Fdn() const noexcept { return m_fdn; }
    /// The kind that the line names.
    [[nodiscard]] const Kind& GetKind() const noexcept { return *m_kind; }
    /// The record, of this kind.
    [[nodiscard]] const void* Record() const noexcept { return m_record; }

protected:
    /// `usual`: the kind of lines that name none; null if each must name one.
    explicit RecordReader(const Kind* usual) noexcept : m_usual(usual) {}

    /// Forgets the line read before.
    void Begin() noexcept;
    void SetFdn(std::string_view fdn) noexcept { m_fdn = fdn; }
    /// Makes a fresh record of this type, or of the usual kind if `type` has no data.
    void SetType(std::string_view type);
    [[nodiscard]] bool HasKind() const noexcept { return m_kind != nullptr; }
    [[nodiscard]] void* MutableRecord() noexcept { return m_record; }

private:
    const Kind* m_usual;
    AnyRecord m_records;
    std::string_view m_fdn;
    const Kind* m_kind = nullptr;
    void* m_record = nullptr;
};

/// Throws `BadRecord` that names the field and the reason.
[[noreturn]] void Refuse(const Field& field, std::string_view reason);

/// `whole` as the value of a field of 32 bits. Throws `BadRecord` if it is out of range.
std::int32_t NumberOf32Bits(const Field& field, std::int64_t whole);

}  // namespace NS_KX
