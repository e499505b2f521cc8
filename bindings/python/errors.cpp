#include "bindings/python/errors.h"

#include <exception>
#include <new>
#include <stdexcept>

#include <pybind11/pybind11.h>

#include <kx_domain_util/processexception.h>

#include "bindings/python/text.h"
#include "catalogue/kind.h"

namespace NS_KX::NS_PYTHON {

namespace {

void Set(const char* name, const std::string& message) {
    const py::object exception = py::module_::import("kx_domain_util").attr(name);
    PyErr_SetObject(exception.ptr(), MakeText(message).ptr());
}

void Translate(std::exception_ptr thrown) {
    try {
        std::rethrow_exception(std::move(thrown));
    } catch (const py::builtin_exception&) {
        throw;  // pybind11 knows these
    } catch (const BadRecord& bad) {
        Set(BAD_RECORD, bad.what());
    } catch (const std::invalid_argument& bad) {
        Set(BAD_ARGUMENT, bad.what());
    } catch (const NS_UTIL::InterfaceNotExistException&) {
        Set(NO_FACTS, "this depends on facts that are not known");
    } catch (const std::bad_alloc&) {
        Set(NO_MEMORY, "no memory");
    } catch (const std::exception& other) {
        Set(FAILED, other.what());
    }
}

}  // namespace

void Raise(const char* name, const std::string& message) {
    Set(name, message);
    throw py::error_already_set();
}

void TranslateExceptions() {
    py::register_local_exception_translator(Translate);
}

}  // namespace NS_KX::NS_PYTHON
