#pragma once

#include <cstdint>
#include <limits>
#include <string_view>

#include <pybind11/pybind11.h>

namespace NS_KX::NS_PYTHON {

/// `number`, a whole number of Python. Throws the exceptions WrongType, also for True and False, and OutOfRange, which
/// call it `what`.
std::int64_t ReadInteger(const pybind11::handle& number, std::string_view what, std::int64_t least, std::int64_t most);

template <class Number>
Number ReadNumber(const pybind11::handle& number, std::string_view what) {
    using Limits = std::numeric_limits<Number>;
    return static_cast<Number>(ReadInteger(number, what, Limits::min(), Limits::max()));
}

}  // namespace NS_KX::NS_PYTHON
