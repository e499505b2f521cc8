#include "bindings/python/number.h"

#include <string>

#include "bindings/python/errors.h"
#include "bindings/python/text.h"

namespace NS_KX::NS_PYTHON {

std::int64_t ReadInteger(const py::handle& number, std::string_view what, std::int64_t least, std::int64_t most) {
    if (PyBool_Check(number.ptr()) != 0 || PyIndex_Check(number.ptr()) == 0) {
        Raise(WRONG_TYPE, std::string(what).append(" is ").append(TypeName(number)).append(", not int"));
    }
    const auto whole = py::reinterpret_steal<py::object>(PyNumber_Index(number.ptr()));
    if (!whole) {
        throw py::error_already_set();
    }
    int isBeyond = 0;
    const std::int64_t value = PyLong_AsLongLongAndOverflow(whole.ptr(), &isBeyond);
    if (isBeyond != 0 || value < least || value > most) {
        Raise(OUT_OF_RANGE, std::string(what)
                                .append(" is not from ")
                                .append(std::to_string(least))
                                .append(" to ")
                                .append(std::to_string(most)));
    }
    return value;
}

}  // namespace NS_KX::NS_PYTHON
