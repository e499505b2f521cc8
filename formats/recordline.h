#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "catalogue/kinds.h"

namespace NS_KX {

/// Reads JSON lines as `decode` writes them: {"fdn":...,"type":...,"record":{...}}, the members in any order; "fdn" may
/// be missing. Its memory is kept for the next line. One thread at a time.
class RecordLine {
public:
    RecordLine();
    ~RecordLine();
    RecordLine(const RecordLine&) = delete;
    RecordLine& operator=(const RecordLine&) = delete;

    /// Reads `line` in the place of what was read before. Every field of the record must be there, and no other. Throws
    /// `BadRecord`; nothing that was read before may be asked for then.
    void Read(std::string_view line);

    /// The identifier beside the record; without data if there is none.
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
