/// Python's texts as bytes, and back. Bytes that are not UTF-8 are lone surrogates in Python ("surrogateescape").
#pragma once

#include <string_view>

#include <pybind11/pybind11.h>

namespace NS_KX::NS_PYTHON {

namespace py = pybind11;

/// The bytes of a str or bytes object, copied only if the str is not ASCII.
class TextBytes {
public:
    /// Throws the exception WrongType, which calls the object `what`, unless `text` is a str or bytes; and
    /// UnicodeEncodeError if it holds a surrogate that stands for no byte.
    TextBytes(const py::handle& text, std::string_view what);

    /// Valid as long as this object.
    [[nodiscard]] std::string_view View() const noexcept { return m_view; }

    /// What keeps the bytes alive.
    [[nodiscard]] const py::object& Owner() const noexcept { return m_owner; }

private:
    py::object m_owner;
    std::string_view m_view;
};

py::str MakeText(std::string_view bytes);

/// The name of the type of `object`, for messages.
std::string_view TypeName(const py::handle& object);

}  // namespace NS_KX::NS_PYTHON
