#include "formats/recordreader.h"

#include <limits>

#include "text/number.h"
#include "text/quoting.h"

namespace NS_KX {

void RecordReader::Begin() noexcept {
    m_fdn = {};
    m_kind = nullptr;
    m_record = nullptr;
}

void RecordReader::SetType(std::string_view type) {
    m_kind = type.data() != nullptr ? FindKindByType(type) : m_usual;
    if (m_kind == nullptr) {
        throw BadRecord(type.data() != nullptr ? "unknown type " + Quoted(type) : "\"type\" is missing");
    }
    m_record = m_records.Fresh(m_kind->layout);
}

void Refuse(const Field& field, std::string_view reason) {
    throw BadRecord("field " + Quoted(field.name) + " " + std::string(reason));
}

std::int32_t NumberOf32Bits(const Field& field, std::int64_t whole) {
    using Limits = std::numeric_limits<std::int32_t>;
    if (whole < Limits::min() || whole > Limits::max()) {
        Refuse(field, std::string("is not ") + RANGE_OF_32_BITS + ": " + std::to_string(whole));
    }
    return static_cast<std::int32_t>(whole);
}

}  // namespace NS_KX
