#include "bindings/python/text.h"

#include <string>

#include "bindings/python/errors.h"

namespace NS_KX::NS_PYTHON {

namespace {

constexpr const char* ERRORS = "surrogateescape";

}  // namespace

py::object TextBytes::Encode(const py::handle& text, std::string_view what) {
    if (!PyUnicode_Check(text.ptr())) {
        Raise(WRONG_TYPE, std::string(what).append(" is ").append(TypeName(text)).append(", not str or bytes"));
    }
    // Not PyUnicode_AsUTF8AndSize: that leaves its copy in the caller's object.
    PyObject* const bytes = PyUnicode_AsEncodedString(text.ptr(), "utf-8", ERRORS);
    if (bytes == nullptr) {
        throw py::error_already_set();
    }
    return py::reinterpret_steal<py::object>(bytes);
}

py::str MakeText(std::string_view bytes) {
    PyObject* const text = PyUnicode_DecodeUTF8(bytes.data(), static_cast<py::ssize_t>(bytes.size()), ERRORS);
    if (text == nullptr) {
        throw py::error_already_set();
    }
    return py::reinterpret_steal<py::str>(text);
}

std::string_view TypeName(const py::handle& object) {
    return Py_TYPE(object.ptr())->tp_name;
}

}  // namespace NS_KX::NS_PYTHON
