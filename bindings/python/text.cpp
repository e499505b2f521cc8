#include "bindings/python/text.h"

#include <string>

#include "bindings/python/errors.h"

namespace NS_KX::NS_PYTHON {

namespace {

constexpr const char* ERRORS = "surrogateescape";

std::string_view ViewOfBytes(const py::handle& bytes) {
    return {PyBytes_AS_STRING(bytes.ptr()), static_cast<std::size_t>(PyBytes_GET_SIZE(bytes.ptr()))};
}

}  // namespace

TextBytes::TextBytes(const py::handle& text, std::string_view what) {
    PyObject* const object = text.ptr();
    if (PyUnicode_Check(object) && PyUnicode_IS_COMPACT_ASCII(object)) {
        m_owner = py::reinterpret_borrow<py::object>(text);
        m_view = {static_cast<const char*>(PyUnicode_DATA(object)),
                  static_cast<std::size_t>(PyUnicode_GET_LENGTH(object))};
        return;
    }
    if (PyUnicode_Check(object)) {
        // Not PyUnicode_AsUTF8AndSize: that leaves its copy in the caller's object.
        m_owner = py::reinterpret_steal<py::object>(PyUnicode_AsEncodedString(object, "utf-8", ERRORS));
        if (!m_owner) {
            throw py::error_already_set();
        }
    } else if (PyBytes_Check(object)) {
        m_owner = py::reinterpret_borrow<py::object>(text);
    } else {
        Raise(WRONG_TYPE, std::string(what).append(" is ").append(TypeName(text)).append(", not str or bytes"));
    }
    m_view = ViewOfBytes(m_owner);
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
