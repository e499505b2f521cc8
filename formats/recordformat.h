/// Records as lines of text.
#pragma once

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <kx_domain_util/surroundings.h>

#include "catalogue/kinds.h"
#include "text/textbuffer.h"

namespace NS_KX {

/// JSONL: {"fdn":...,"type":...,"record":{...}}. CSV and TSV: the columns "fdn", "type" and the fields of all kinds.
/// TABLE, for people: type, identifier, and the fields that differ from a fresh record.
enum class OutputFormat { JSONL, CSV, TSV, TABLE };

/// What is written of each record, and how. The same for all records of a run.
struct FormatOptions {
    OutputFormat format = OutputFormat::JSONL;
    std::span<const Kind* const> kinds;  ///< whose fields are the columns of CSV and TSV
    /// Chosen fields: names of fields, "fdn", "type" and "kind". None: "fdn", "type" and all fields. CSV and TSV have
    /// just these columns, in this order; JSON lines keep "type" beside them. A table leaves out the other fields.
    std::vector<std::string> fields = {};
    /// A line of a table that is wider than this goes on in further lines; 0: no line does.
    std::size_t width = 0;

    [[nodiscard]] bool AreFieldsChosen() const noexcept { return !fields.empty(); }
    /// Whether `name` is among the chosen fields.
    [[nodiscard]] bool IsChosen(std::string_view name) const;
    /// Whether the value of `field` is written.
    [[nodiscard]] bool Writes(const Field& field) const { return !AreFieldsChosen() || IsChosen(field.name); }
};

/// Writes records, one a line. Each belongs to one thread.
class RecordFormat {
public:
    virtual ~RecordFormat() = default;

    /// Appends what `kind` reads from `fdn`, which is UTF-8. If this throws, `out` is unchanged. Throws std::bad_alloc
    /// and what the surroundings throw.
    void Write(std::string_view fdn, const Kind& kind, TextBuffer& out) {
        void* const record = m_record.Fresh(kind.layout);
        kind.read(fdn, record, m_surroundings);
        AppendLine(fdn, kind, record, out);
    }

protected:
    explicit RecordFormat(const NS_UTIL::Surroundings& surroundings) : m_surroundings(surroundings) {}

private:
    virtual void AppendLine(std::string_view fdn, const Kind& kind, const void* record, TextBuffer& out) = 0;

    const NS_UTIL::Surroundings& m_surroundings;
    AnyRecord m_record;
};

/// The line before all records, with its end; empty if the format has none.
std::string MakeHeader(const FormatOptions& options);

/// The format that `options` asks for. Its readers use `surroundings`, which must outlive it.
std::unique_ptr<RecordFormat> MakeFormat(const FormatOptions& options, const NS_UTIL::Surroundings& surroundings);

/// Appends the fields of a record of `kind` as a JSON object, as they stand after "record" in a JSON line.
void AppendJsonRecord(const Kind& kind, const void* record, TextBuffer& out);

}  // namespace NS_KX
