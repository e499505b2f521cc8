#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "catalogue/kinds.h"

namespace NS_KX {

/// Reads JSON lines as `decode` writes them: {"fdn":...,"type":...,"record":{...}}. The members may have any order, and
/// "fdn" may be missing. Keeps its memory for the next line. One thread at a time.
class RecordLine {
public:
    RecordLine();
    ~RecordLine();
    RecordLine(const RecordLine&) = delete;
    RecordLine& operator=(const RecordLine&) = delete;

    /// Reads `line`, which replaces the line read before. The record must have every field of its kind and no other.
    /// Throws `BadRecord`; until the next `Read` the other functions must not be called then.
    void Read(std::string_view line);

    /// The identifier beside the record; a view without data if there is none.
    [[nodiscard]] std::string_view Fdn() const noexcept { return m_fdn; }
    /// The kind that the line names.
    [[nodiscard]] const NS_KX::Kind& Kind() const noexcept { return *m_kind; }
    /// The record, of this kind.
    [[nodiscard]] const void* Record() const noexcept { return m_record; }

private:
    class Reader;

    std::unique_ptr<Reader> m_reader;  // hides the parser's headers, which take long to compile
    AnyRecord m_records;
    std::string_view m_fdn;
    const NS_KX::Kind* m_kind = nullptr;
    void* m_record = nullptr;
};

}  // namespace NS_KX
