#include "bindings/python/facts.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>

#include "bindings/python/errors.h"
#include "bindings/python/number.h"
#include "bindings/python/text.h"
#include "text/quoting.h"

namespace NS_KX::NS_PYTHON {

namespace {

constexpr const char* CARRIER_PROFILE = "carrier_profile";
constexpr const char* SUB_SLOT_NE_TYPES = "sub_slot_ne_types";
constexpr const char* NE_TYPE = "ne_type";
constexpr const char* OAM_NUMBERS_OMITTED = "oam_numbers_omitted";

void RefuseUnknown(const py::dict& facts) {
    constexpr std::array<std::string_view, 4> NAMES{CARRIER_PROFILE, SUB_SLOT_NE_TYPES, NE_TYPE, OAM_NUMBERS_OMITTED};
    for (const auto& [name, fact] : facts) {
        const TextBytes text(name, "the name of a fact");
        if (std::find(NAMES.begin(), NAMES.end(), text.View()) == NAMES.end()) {
            Raise(BAD_ARGUMENT, "unknown fact " + Quoted(text.View()) +
                                    "; facts are carrier_profile, sub_slot_ne_types, ne_type and oam_numbers_omitted");
        }
    }
}

// None if it is not known.
py::object FactOf(const py::object& facts, const char* name) {
    if (py::isinstance<py::dict>(facts)) {
        return facts.attr("get")(name);
    }
    // Not py::getattr with a default: it swallows whatever a property raises.
    PyObject* const fact = PyObject_GetAttrString(facts.ptr(), name);
    if (fact != nullptr) {
        return py::reinterpret_steal<py::object>(fact);
    }
    if (PyErr_ExceptionMatches(PyExc_AttributeError) == 0) {
        throw py::error_already_set();
    }
    PyErr_Clear();
    return py::none();
}

py::object FunctionOf(const py::object& facts, const char* name) {
    py::object function = FactOf(facts, name);
    if (!function.is_none() && PyCallable_Check(function.ptr()) == 0) {
        Raise(WRONG_TYPE, std::string(name).append(" is ").append(TypeName(function)).append(", not a function"));
    }
    return function;
}

[[noreturn]] void Miss(const char* name, int neId) {
    Raise(NO_FACTS, "the identifier depends on NE " + std::to_string(neId) + ": give facts with \"" + name + "\"");
}

// What `function`, the fact called `name`, says of an NE.
py::object Ask(const py::object& function, const char* name, int neId) {
    if (function.is_none()) {
        Miss(name, neId);
    }
    return function(neId);
}

}  // namespace

Facts::Facts(const py::object& facts)
    : m_neType(FunctionOf(facts, NE_TYPE)), m_oamNumbersOmitted(FunctionOf(facts, OAM_NUMBERS_OMITTED)) {
    if (py::isinstance<py::dict>(facts)) {
        RefuseUnknown(facts);
    }
    if (const py::object profile = FactOf(facts, CARRIER_PROFILE); !profile.is_none()) {
        m_carrierProfile = ReadNumber<std::int32_t>(profile, CARRIER_PROFILE);
    }
    if (const py::object neTypes = FactOf(facts, SUB_SLOT_NE_TYPES); !neTypes.is_none()) {
        m_subSlotNETypes.emplace();
        for (const py::handle neType : neTypes) {
            m_subSlotNETypes->insert(ReadNumber<std::uint16_t>(neType, SUB_SLOT_NE_TYPES));
        }
    }
}

unsigned short Facts::NEType(int neId) const {
    const py::object neType = Ask(m_neType, NE_TYPE, neId);
    return neType.is_none() ? 0 : ReadNumber<std::uint16_t>(neType, NE_TYPE);
}

bool Facts::SpellsOutSubSlot(int neId) const {
    if (!m_subSlotNETypes) {
        Miss(SUB_SLOT_NE_TYPES, neId);
    }
    return m_subSlotNETypes->contains(NEType(neId));
}

bool Facts::AreOamNumbersOmitted(int neId) const {
    const py::object answer = Ask(m_oamNumbersOmitted, OAM_NUMBERS_OMITTED, neId);
    const int isOmitted = PyObject_IsTrue(answer.ptr());
    if (isOmitted < 0) {
        throw py::error_already_set();
    }
    return isOmitted != 0;
}

}  // namespace NS_KX::NS_PYTHON
