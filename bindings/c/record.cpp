#include "bindings/c/record.h"

#include <cstdint>
#include <functional>
#include <limits>
#include <optional>
#include <string>

#include <kx_domain_util/fdnscanner.h>

#include "bindings/c/facts.h"
#include "catalogue/conversion.h"
#include "catalogue/levelcheck.h"
#include "text/number.h"

using namespace NS_KX;
using namespace NS_KX::NS_C;

namespace {

constexpr kx_facts NO_FACTS{};

kx_status FailByNull(const kx_record& record, std::string_view name) {
    return Fail(record, KX_BAD_ARGUMENT, name, " is NULL");
}

kx_status FailByTypeName(const kx_record& record, std::string_view type) {
    return Fail(record, KX_UNKNOWN_TYPE, "no type is called ", InQuotes{type});
}

// Reads into a record that holds nothing until all is read.
kx_status Read(kx_record& record, const Kind& kind) {
    record.fields = record.records.Fresh(kind.layout);
    kind.read(record.fdn, record.fields, NO_SURROUNDINGS);
    record.kind = &kind;
    return KX_OK;
}

// Keeps the text, which may be one of the record's own, before a field changes.
bool Keep(kx_record& record, const char* fdn, size_t size) {
    record.kind = nullptr;
    if (!IsText(fdn, size)) {
        FailByNull(record, "fdn");
        return false;
    }
    record.fdn.assign(ViewOf(fdn, size));
    return true;
}

const Field* FieldAt(const kx_record* record, size_t place) noexcept {
    return place < kx_field_count(record) ? &record->kind->layout.fields[place] : nullptr;
}

// Calls `use` with the field of this name, and gives its status.
template <class Use>
kx_status UseField(const kx_record* record, const char* name, bool hasOutput, Use use) {
    return Using(record, [&] {
        if (name == nullptr || !hasOutput) {
            return FailByNull(*record, name == nullptr ? "field" : "the output");
        }
        if (record->kind == nullptr) {
            return Fail(*record, KX_UNKNOWN_FIELD, "the record holds nothing");
        }
        const Field* const field = FindField(*record->kind, name);
        if (field == nullptr) {
            return Fail(*record, KX_UNKNOWN_FIELD, record->kind->type, " has no field ", InQuotes{name});
        }
        return use(*field);
    });
}

kx_status FailByType(const kx_record& record, const Field& field) {
    return Fail(record, KX_WRONG_TYPE, "field \"", field.name,
                field.type == FieldType::TEXT ? "\" is a text" : "\" is no text");
}

kx_status FailByRange(const kx_record& record, const Field& field, std::string_view range, int64_t number) {
    return Fail(record, KX_OUT_OF_RANGE, "field \"", field.name, "\" is not ", range, ": ", std::to_string(number));
}

// Finds the problem of this number.
class ProblemCounter {
public:
    explicit ProblemCounter(size_t index) : m_left(index) {}

    void operator()(const Problem& problem) {
        if (m_left-- == 0) {
            found = problem;
        }
    }

    std::optional<Problem> found;

private:
    size_t m_left;
};

}  // namespace

// ---- Life -----------------------------------------------------------------------------------------------------------

kx_record* kx_record_new() {
    return new (std::nothrow) kx_record;
}

void kx_record_free(kx_record* record) {
    delete record;
}

// ---- Reading and writing --------------------------------------------------------------------------------------------

kx_status kx_decode(kx_record* record, const char* fdn, size_t size) {
    return Using(record, [&]() -> kx_status {
        if (!Keep(*record, fdn, size)) {
            return KX_BAD_ARGUMENT;
        }
        const Kind* const kind = FindKind(record->fdn);
        return kind != nullptr
                   ? Read(*record, *kind)
                   : Fail(*record, KX_UNKNOWN_TYPE, NO_KIND_ENDS_IN, InQuotes{NS_UTIL::NS_FDN::LastTag(record->fdn)});
    });
}

kx_status kx_decode_as(kx_record* record, const char* type, const char* fdn, size_t size) {
    return Using(record, [&]() -> kx_status {
        if (!Keep(*record, fdn, size)) {
            return KX_BAD_ARGUMENT;
        }
        if (type == nullptr) {
            return FailByNull(*record, "type");
        }
        const Kind* const kind = FindKindByType(type);
        return kind != nullptr ? Read(*record, *kind) : FailByTypeName(*record, type);
    });
}

kx_status kx_clear_as(kx_record* record, const char* type) {
    return Using(record, [&]() -> kx_status {
        if (type == nullptr) {
            return FailByNull(*record, "type");
        }
        const Kind* const kind = FindKindByType(type);
        if (kind == nullptr) {
            return FailByTypeName(*record, type);
        }
        record->fields = record->records.Fresh(kind->layout);
        record->kind = kind;
        return KX_OK;
    });
}

kx_status kx_encode(kx_record* record, const kx_facts* facts, kx_text* fdn) {
    return Using(record, [&]() -> kx_status {
        if (fdn == nullptr) {
            return FailByNull(*record, "fdn");
        }
        if (record->kind == nullptr) {
            return Fail(*record, KX_BAD_RECORD, "the record holds nothing");
        }
        const FactSurroundings surroundings(facts != nullptr ? *facts : NO_FACTS, *record);
        try {
            record->kind->write(record->fields, record->fdn, surroundings);
        } catch (const BadRecord& bad) {
            return Fail(*record, KX_BAD_RECORD, bad.what());
        }
        if (!surroundings.AreKnown()) {
            return KX_NO_FACTS;
        }
        *fdn = TextOf(record->fdn);
        return KX_OK;
    });
}

kx_text kx_record_error(const kx_record* record) {
    return record != nullptr ? TextOf(record->error) : kx_text{nullptr, 0};
}

// ---- Fields ---------------------------------------------------------------------------------------------------------

const char* kx_record_type(const kx_record* record) {
    return record != nullptr && record->kind != nullptr ? record->kind->type.data() : nullptr;
}

size_t kx_field_count(const kx_record* record) {
    return record != nullptr && record->kind != nullptr ? record->kind->layout.fields.size() : 0;
}

const char* kx_field_name(const kx_record* record, size_t place) {
    const Field* const field = FieldAt(record, place);
    return field != nullptr ? field->name.data() : nullptr;
}

kx_field_kind kx_field_type(const kx_record* record, size_t place) {
    const Field* const field = FieldAt(record, place);
    if (field == nullptr || field->type == FieldType::NUMBER || field->type == FieldType::LONG_NUMBER) {
        return KX_NUMBER;
    }
    return field->type == FieldType::FLAG ? KX_FLAG : KX_TEXT;
}

kx_status kx_get_number(const kx_record* record, const char* field, int64_t* number) {
    return UseField(record, field, number != nullptr, [&](const Field& found) -> kx_status {
        switch (found.type) {
            case FieldType::NUMBER:
                *number = found.In<std::int32_t>(record->fields);
                return KX_OK;
            case FieldType::LONG_NUMBER:
                *number = found.In<std::int64_t>(record->fields);
                return KX_OK;
            case FieldType::FLAG:
                *number = found.In<bool>(record->fields) ? 1 : 0;
                return KX_OK;
            case FieldType::TEXT:
                break;
        }
        return FailByType(*record, found);
    });
}

kx_status kx_get_text(const kx_record* record, const char* field, kx_text* text) {
    return UseField(record, field, text != nullptr, [&](const Field& found) -> kx_status {
        if (found.type != FieldType::TEXT) {
            return FailByType(*record, found);
        }
        *text = TextOf(found.In<std::string>(record->fields));
        return KX_OK;
    });
}

kx_status kx_set_number(kx_record* record, const char* field, int64_t number) {
    return UseField(record, field, true, [&](const Field& found) -> kx_status {
        using Limits = std::numeric_limits<std::int32_t>;
        switch (found.type) {
            case FieldType::NUMBER:
                if (number < Limits::min() || number > Limits::max()) {
                    return FailByRange(*record, found, RANGE_OF_32_BITS, number);
                }
                found.In<std::int32_t>(record->fields) = static_cast<std::int32_t>(number);
                return KX_OK;
            case FieldType::LONG_NUMBER:
                found.In<std::int64_t>(record->fields) = number;
                return KX_OK;
            case FieldType::FLAG:
                if (number != 0 && number != 1) {
                    return FailByRange(*record, found, "0 or 1", number);
                }
                found.In<bool>(record->fields) = number == 1;
                return KX_OK;
            case FieldType::TEXT:
                break;
        }
        return FailByType(*record, found);
    });
}

kx_status kx_set_text(kx_record* record, const char* field, const char* text, size_t size) {
    return UseField(record, field, true, [&](const Field& found) -> kx_status {
        if (!IsText(text, size)) {
            return FailByNull(*record, "text");
        }
        if (found.type != FieldType::TEXT) {
            return FailByType(*record, found);
        }
        found.In<std::string>(record->fields).assign(ViewOf(text, size));
        return KX_OK;
    });
}

// ---- Types and problems ---------------------------------------------------------------------------------------------

size_t kx_type_count() {
    size_t count = 0;
    Guarded([&]() -> kx_status {
        count = AllKinds().size();
        return KX_OK;
    });
    return count;
}

const char* kx_type_name(size_t place) {
    return place < kx_type_count() ? AllKinds()[place]->type.data() : nullptr;
}

kx_status kx_problem(kx_record* scratch, const char* fdn, size_t size, size_t index, size_t* column, kx_text* problem) {
    return Using(scratch, [&]() -> kx_status {
        if (!IsText(fdn, size) || column == nullptr || problem == nullptr) {
            return FailByNull(*scratch, !IsText(fdn, size) ? "fdn" : column == nullptr ? "column" : "problem");
        }
        const std::string_view text = ViewOf(fdn, size);
        ProblemCounter counter(index);
        FindProblems(text, std::ref(counter));
        if (!counter.found) {
            return KX_NOT_THERE;
        }
        scratch->words = counter.found->text;
        *column = counter.found->column;
        *problem = TextOf(scratch->words);
        return KX_OK;
    });
}
