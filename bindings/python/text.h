/// Python's texts as bytes, and back. Bytes that are not UTF-8 are lone surrogates in Python ("surrogateescape").
#pragma once

#include <string_view>
#include <utility>

#include <pybind11/pybind11.h>

namespace NS_KX::NS_PYTHON {

namespace py = pybind11;

/// The bytes of a str or bytes object, copied only if it is a str that is not ASCII.
class TextBytes {
public:
    /// Throws the exception WrongType, which calls the object `what`, unless `text` is a str or bytes; and
    /// UnicodeEncodeError if it holds a surrogate that stands for no byte.
    TextBytes(const py::handle& text, std::string_view what)
        : m_owner(HoldsBytes(text) ? py::reinterpret_borrow<py::object>(text) : Encode(text, what)) {}

    /// Valid as long as the owner.
    [[nodiscard]] std::string_view View() const noexcept { return ViewOf(m_owner); }

    /// What holds the bytes: an object that never changes.
    [[nodiscard]] const py::object& Owner() const& noexcept { return m_owner; }
    [[nodiscard]] py::object Owner() && noexcept { return std::move(m_owner); }

    /// The bytes that an owner holds. Needs no lock of the interpreter.
    static std::string_view ViewOf(const py::object& owner) noexcept {
        PyObject* const object = owner.ptr();
        if (PyBytes_Check(object)) {
            return {PyBytes_AS_STRING(object), static_cast<std::size_t>(PyBytes_GET_SIZE(object))};
        }
        return {static_cast<const char*>(PyUnicode_DATA(object)),
                static_cast<std::size_t>(PyUnicode_GET_LENGTH(object))};
    }

private:
    static bool HoldsBytes(const py::handle& text) noexcept {
        PyObject* const object = text.ptr();
        return PyUnicode_Check(object) ? PyUnicode_IS_COMPACT_ASCII(object) : PyBytes_Check(object);
    }
    static py::object Encode(const py::handle& text, std::string_view what);

    py::object m_owner;
};

py::str MakeText(std::string_view bytes);

/// The name of the type of `object`, for messages.
std::string_view TypeName(const py::handle& object);

}  // namespace NS_KX::NS_PYTHON
