#include "formats/recordline.h"

#include <cstdint>
#include <span>
#include <string>
#include <utility>

#include <simdjson.h>

#include "catalogue/conversion.h"
#include "text/quoting.h"

namespace NS_KX {

namespace {

namespace ondemand = simdjson::ondemand;

// ---- Values ---------------------------------------------------------------------------------------------------------

void Set(const Field& field, ondemand::value value, std::int64_t& number) {
    if (value.get_int64().get(number) != simdjson::SUCCESS) {
        Refuse(field, "is not a whole number of 64 bits");
    }
}

void Set(const Field& field, ondemand::value value, std::int32_t& number) {
    std::int64_t whole = 0;
    if (value.get_int64().get(whole) != simdjson::SUCCESS) {
        Refuse(field, "is not a whole number of 32 bits");
    }
    number = NumberOf32Bits(field, whole);
}

void Set(const Field& field, ondemand::value value, bool& flag) {
    if (value.get_bool().get(flag) != simdjson::SUCCESS) {
        Refuse(field, "is not true or false");
    }
}

void Set(const Field& field, ondemand::value value, std::string& text) {
    std::string_view view;
    if (const auto error = value.get_string().get(view); error != simdjson::SUCCESS) {
        Refuse(field, error == simdjson::STRING_ERROR ? "holds an escape that is no character" : "is not a text");
    }
    RequireWritable(field, view);
    text = view;
}

// ---- Records --------------------------------------------------------------------------------------------------------

// A member of an object. Throws if the JSON ends or is damaged there.
ondemand::field FieldOf(simdjson::simdjson_result<ondemand::field> member) {
    ondemand::field field;
    if (const auto error = std::move(member).get(field); error != simdjson::SUCCESS) {
        throw simdjson::simdjson_error(error);
    }
    return field;
}

// The key as text; may be asked for once.
std::string_view KeyOf(ondemand::field& field) {
    return field.unescaped_key().value();
}

// Fills the fields of a record, which mostly come in their order.
class Filler {
public:
    Filler(const Kind& kind, void* record) : m_fields(kind.layout.fields), m_key(kind.layout.key), m_record(record) {}

    void Fill(ondemand::object object) {
        FillNested(object, {});
        if ((m_seen & (1ULL << m_key)) == 0) {
            Refuse(m_fields[m_key], "is missing");
        }
    }

private:
    // `nest`: the name of the record that the object is nested in, with its "."; empty for the record itself.
    void FillNested(ondemand::object object, std::string_view nest) {
        for (auto member : object) {
            ondemand::field field = FieldOf(member);
            if (IsExpected(field, nest)) {
                Take(m_next, field.value());
                continue;
            }
            const std::string_view key = KeyOf(field);
            if (const std::size_t place = Find(key, nest); place != m_fields.size()) {
                Take(place, field.value());
            } else {
                FillOther(key, field.value(), nest);
            }
        }
    }

    // Whether the member is the field that comes next; a name with escapes is not recognised.
    bool IsExpected(ondemand::field& member, std::string_view nest) const {
        return m_next < m_fields.size() && IsNested(m_fields[m_next], nest) &&
               member.key().unsafe_is_equal(m_fields[m_next].name.substr(nest.size()));
    }

    // The field of this key; the number of fields if there is none.
    [[nodiscard]] std::size_t Find(std::string_view key, std::string_view nest) const {
        std::size_t place = 0;
        while (place < m_fields.size() &&
               !(IsNested(m_fields[place], nest) && m_fields[place].name.substr(nest.size()) == key)) {
            ++place;
        }
        return place;
    }

    static bool IsNested(const Field& field, std::string_view nest) {
        return field.name.starts_with(nest) && field.name.find('.', nest.size()) == std::string_view::npos;
    }

    void Take(std::size_t place, ondemand::value value) {
        const Field& field = m_fields[place];
        const std::uint64_t bit = 1ULL << place;
        if ((m_seen & bit) != 0) {
            Refuse(field, "is there twice");
        }
        m_seen |= bit;
        m_next = place + 1;
        VisitField(field, m_record, [&](auto& taken) { Set(field, value, taken); });
    }

    // A member that is no field: a nested record, or unknown.
    void FillOther(std::string_view key, ondemand::value value, std::string_view nest) {
        const std::string nested = std::string(key) + ".";
        for (const Field& field : m_fields) {
            if (nest.empty() && field.name.starts_with(nested)) {
                ondemand::object object;
                if (value.get_object().get(object) != simdjson::SUCCESS) {
                    throw BadRecord(Quoted(key) + " is not an object");
                }
                // A view of the field's name, which lives longer than `nested`.
                FillNested(object, field.name.substr(0, nested.size()));
                return;
            }
        }
        throw BadRecord("unknown field " + Quoted(std::string(nest).append(key)));
    }

    std::span<const Field> m_fields;
    std::size_t m_key;
    void* m_record;
    std::size_t m_next = 0;  // the field that is expected
    std::uint64_t m_seen = 0;
};

}  // namespace

// ---- Lines ----------------------------------------------------------------------------------------------------------

class RecordLine::Reader {
public:
    void Read(std::string_view text, RecordLine& line) {
        m_text.assign(text).append(simdjson::SIMDJSON_PADDING, '\0');
        m_isRecordSeen = false;
        m_isTypeSeen = false;
        m_later = {};
        try {
            ondemand::document document = m_parser.iterate(m_text.data(), text.size(), m_text.size());
            ReadMembers(document, line);
            if (document.current_location().error() != simdjson::OUT_OF_BOUNDS) {
                throw BadRecord("JSON: there is text after the object");
            }
            if (!m_isTypeSeen) {
                line.SetType({});
            }
            if (!m_isRecordSeen) {
                throw BadRecord("\"record\" is missing");
            }
            FillLater(line);
        } catch (const simdjson::simdjson_error& error) {
            throw BadRecord(std::string("JSON: ") + simdjson::error_message(error.error()));
        }
    }

private:
    void ReadMembers(ondemand::document& document, RecordLine& line) {
        ondemand::object object;
        if (const auto error = document.get_object().get(object); error != simdjson::SUCCESS) {
            if (error == simdjson::INCORRECT_TYPE) {
                throw BadRecord("not an object");
            }
            throw simdjson::simdjson_error(error);
        }
        for (auto member : object) {
            ondemand::field field = FieldOf(member);
            const std::string_view key = KeyOf(field);
            if (key == "fdn") {
                RefuseTwice(key, line.Fdn().data() != nullptr);
                line.SetFdn(TextOf(key, field.value()));
            } else if (key == "type") {
                RefuseTwice(key, m_isTypeSeen);
                m_isTypeSeen = true;
                line.SetType(TextOf(key, field.value()));
            } else if (key == "record") {
                RefuseTwice(key, m_isRecordSeen);
                m_isRecordSeen = true;
                ReadRecord(field.value(), line);
            } else {
                throw BadRecord("unknown member " + Quoted(key));
            }
        }
    }

    static void RefuseTwice(std::string_view key, bool isSeen) {
        if (isSeen) {
            throw BadRecord(Quoted(key) + " is there twice");
        }
    }

    static std::string_view TextOf(std::string_view key, ondemand::value value) {
        std::string_view text;
        if (value.get_string().get(text) != simdjson::SUCCESS) {
            throw BadRecord(Quoted(key) + " is not a text");
        }
        return text;
    }

    void ReadRecord(ondemand::value value, RecordLine& line) {
        ondemand::object record;
        if (value.get_object().get(record) != simdjson::SUCCESS) {
            throw BadRecord("\"record\" is not an object");
        }
        if (!line.HasKind()) {
            m_later = record.raw_json().value();  // its fields are known only after the type
        } else {
            Filler(line.GetKind(), line.MutableRecord()).Fill(record);
        }
    }

    void FillLater(RecordLine& line) {
        if (m_later.data() != nullptr) {
            const auto padding = static_cast<std::size_t>(m_text.data() + m_text.size() - m_later.data());
            ondemand::document document = m_laterParser.iterate(m_later.data(), m_later.size(), padding);
            Filler(line.GetKind(), line.MutableRecord()).Fill(document.get_object());
        }
    }

    std::string m_text;  // the line, and the bytes that the parser may read past it
    ondemand::parser m_parser;
    ondemand::parser m_laterParser;
    std::string_view m_later;  // the record, if it comes before its type
    bool m_isRecordSeen = false;
    bool m_isTypeSeen = false;
};

RecordLine::RecordLine(const Kind* usual) : RecordReader(usual), m_reader(std::make_unique<Reader>()) {}

RecordLine::~RecordLine() = default;

void RecordLine::Read(std::string_view line) {
    Begin();
    m_reader->Read(line, *this);
}

}  // namespace NS_KX
