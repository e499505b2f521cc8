#include "bindings/python/record.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <type_traits>

#include <kx_domain_util/fdnscanner.h>

#include "bindings/python/errors.h"
#include "bindings/python/facts.h"
#include "bindings/python/number.h"
#include "bindings/python/text.h"
#include "catalogue/conversion.h"
#include "catalogue/kinds.h"
#include "text/quoting.h"

namespace NS_KX::NS_PYTHON {

namespace {

// ---- From records to Python -----------------------------------------------------------------------------------------

template <class Value>
py::object MakeValue(const Value& value) {
    if constexpr (std::is_same_v<Value, std::string>) {
        return MakeText(value);
    } else {
        return py::cast(value);
    }
}

py::dict MakeFields(const Kind& kind, const void* record) {
    py::dict fields;
    for (const Field& field : kind.layout.fields) {
        py::dict holder = fields;
        if (!field.Nest().empty()) {
            holder = fields.attr("setdefault")(MakeText(field.Nest()), py::dict());
        }
        holder[MakeText(field.Member())] =
            VisitField(field, record, [](const auto& value) { return MakeValue(value); });
    }
    return fields;
}

// ---- From Python to records -----------------------------------------------------------------------------------------

std::string Describe(std::string_view field) {
    return "field " + Quoted(field);
}

py::dict RequireDict(const py::handle& object, const std::string& what) {
    if (!py::isinstance<py::dict>(object)) {
        Raise(WRONG_TYPE, std::string(what).append(" is ").append(TypeName(object)).append(", not dict"));
    }
    return py::reinterpret_borrow<py::dict>(object);
}

// The member `name` of `dict`, which messages call `whole`.
py::object Require(const py::dict& dict, std::string_view name, const std::string& whole) {
    const py::str key = MakeText(name);
    PyObject* const value = PyDict_GetItemWithError(dict.ptr(), key.ptr());
    if (value == nullptr && PyErr_Occurred() != nullptr) {
        throw py::error_already_set();
    }
    if (value == nullptr) {
        Raise(NOT_THERE, whole + " is missing");
    }
    return py::reinterpret_borrow<py::object>(value);
}

void RefuseOtherMembers(const py::dict& decoded) {
    for (const auto& [key, value] : decoded) {
        const TextBytes name(key, "a key");
        if (name.View() != "fdn" && name.View() != "type" && name.View() != "record") {
            Raise(UNKNOWN_FIELD, "unknown member " + Quoted(name.View()) + "; a record has \"type\" and \"record\"");
        }
    }
}

bool HasNest(const Kind& kind, std::string_view name) {
    const auto fields = kind.layout.fields;
    return std::any_of(fields.begin(), fields.end(), [&](const Field& field) { return field.Nest() == name; });
}

// Refuses keys that are no fields of `kind`. `nest` is the name of the nested record that `fields` are; empty: of none.
void RefuseOtherFields(const Kind& kind, const std::string& nest, const py::dict& fields) {
    for (const auto& [key, value] : fields) {
        const TextBytes name(key, "a key");
        if (nest.empty() && HasNest(kind, name.View())) {
            const std::string nested(name.View());
            RefuseOtherFields(kind, nested, RequireDict(value, Describe(nested)));
            continue;
        }
        std::string whole(nest);
        whole.append(nest.empty() ? "" : ".").append(name.View());
        const Field* const field = FindField(kind, whole);
        if (field == nullptr || field->Member() != name.View()) {
            Raise(UNKNOWN_FIELD, std::string(kind.type).append(" has no ").append(Describe(whole)));
        }
    }
}

void Set(const Field& field, const py::handle& value, std::int32_t& number) {
    number = ReadNumber<std::int32_t>(value, Describe(field.name));
}

void Set(const Field& field, const py::handle& value, std::int64_t& number) {
    number = ReadNumber<std::int64_t>(value, Describe(field.name));
}

void Set(const Field& field, const py::handle& value, bool& flag) {
    if (!PyBool_Check(value.ptr())) {
        Raise(WRONG_TYPE, Describe(field.name).append(" is ").append(TypeName(value)).append(", not bool"));
    }
    flag = value.ptr() == Py_True;
}

void Set(const Field& field, const py::handle& value, std::string& text) {
    const TextBytes bytes(value, Describe(field.name));
    RequireWritable(field, bytes.View());
    text = bytes.View();
}

void Fill(const Kind& kind, const py::dict& fields, void* record) {
    RefuseOtherFields(kind, {}, fields);
    for (const Field& field : kind.layout.fields) {
        py::dict holder = fields;
        if (!field.Nest().empty()) {
            holder = Require(fields, field.Nest(), Describe(field.Nest()));  // a dict, as was seen just now
        }
        const py::object value = Require(holder, field.Member(), Describe(field.name));
        VisitField(field, record, [&](auto& member) { Set(field, value, member); });
    }
}

const Kind& RequireKind(const py::dict& decoded) {
    const TextBytes type(Require(decoded, "type", "\"type\""), "\"type\"");
    const Kind* const kind = FindKindByType(type.View());
    if (kind == nullptr) {
        Raise(UNKNOWN_TYPE, "unknown type " + Quoted(type.View()));
    }
    return *kind;
}

}  // namespace

// Both use a record of their own: Python's functions that are called in between may decode and encode, too.

py::dict Decode(std::string_view fdn) {
    const Kind* const kind = FindKind(fdn);
    if (kind == nullptr) {
        Raise(UNKNOWN_TYPE, OfNoKind(fdn));
    }
    const std::shared_ptr<void> record = kind->layout.make();
    kind->read(fdn, record.get(), NO_SURROUNDINGS);
    py::dict decoded;
    decoded["fdn"] = MakeText(fdn);
    decoded["type"] = MakeText(kind->type);
    decoded["record"] = MakeFields(*kind, record.get());
    return decoded;
}

std::string Encode(const py::handle& decoded, const py::object& facts) {
    const py::dict members = RequireDict(decoded, "the record");
    RefuseOtherMembers(members);
    const Kind& kind = RequireKind(members);
    const std::shared_ptr<void> record = kind.layout.make();
    Fill(kind, RequireDict(Require(members, "record", "\"record\""), "\"record\""), record.get());
    std::string fdn;
    kind.write(record.get(), fdn, Facts(facts));
    return fdn;
}

}  // namespace NS_KX::NS_PYTHON
