// The extension module kx_domain_util._native. Its package, in kx_domain_util/, has the exceptions and the type hints.

#include <pybind11/pybind11.h>

#include "bindings/python/columns.h"
#include "bindings/python/errors.h"
#include "bindings/python/piecename.h"
#include "bindings/python/record.h"
#include "bindings/python/text.h"
#include "catalogue/conversion.h"
#include "catalogue/explanation.h"
#include "catalogue/kinds.h"
#include "catalogue/levelcheck.h"
#include "formats/explanationdrawing.h"

namespace NS_KX::NS_PYTHON {

namespace {

constexpr std::string_view FDN = "the identifier";

constexpr const char* DECODE = R"(decode(fdn: str | bytes) -> dict

Return what an identifier says, as a line of "kxdu decode" has it:

    {"fdn": "NE=7", "type": "NEIndex", "record": {"reserved": 0, "neId": 7}}

Raise UnknownType if its last level means no kind of identifier.)";

constexpr const char* ENCODE = R"(encode(record: dict, facts=None) -> str

Return the identifier of a record, given as decode() returns it; its "fdn" does not matter and may be missing.

Some identifiers depend on more than the record. facts is a dict, or an object with attributes, of any of

    carrier_profile            a number; 0 if it is missing
    sub_slot_ne_types          the NE types whose ports spell out an absent sub-slot; [] for none
    ne_type(ne)                the type of an NE, or None if it is not known
    oam_numbers_omitted(ne)    whether an NE leaves the numbers of maintenance domains and associations out

Raise NoFacts if the identifier depends on a fact that is missing. UnknownType, UnknownField, NotThere (a field is
missing), WrongType, OutOfRange and BadRecord say what is wrong with the record.)";

constexpr const char* TYPE = R"(type(fdn: str | bytes) -> str | None

Return the name of the record that the identifier is read into, such as "PortIndex". None if its last level means no
kind of identifier.)";

constexpr const char* KIND = R"(kind(fdn: str | bytes) -> str | None

Return what people call the thing that the identifier names, such as "port". None if its last level means no kind.)";

constexpr const char* GET = R"(get(fdn: str | bytes, piece: str) -> str | None

Return a piece of the identifier as it stands there: a level's value ("NE") or one of its sub-values ("PP:2", from 0).
None if it is not there. The first of several levels with the same tag counts.

Raise BadArgument if identifiers have no such piece.)";

constexpr const char* CHECK = R"(check(fdn: str | bytes) -> list[Problem]

Return what is wrong with the identifier by itself, as "kxdu check --levels-only" reports it: malformed levels, unknown
tags, numbers out of range. A Problem has a column, which counts bytes from 1, and a text. Empty if nothing is wrong.)";

constexpr const char* EXPLAIN = R"(explain(fdn: str | bytes) -> str

Return a drawing of the identifier for people, with a line from each of its pieces to what the piece means.)";

constexpr const char* COLUMNS = R"(columns(data, pieces, offsets=None) -> dict[str, numpy.ma.MaskedArray]

Return pieces of very many identifiers, each as a masked array with an item for each identifier.

data is one of
    a list (or another sequence) of str, bytes or None
    a buffer of lines (bytes, bytearray, memoryview, mmap, numpy array of bytes); each line is an identifier
    a buffer of texts one after the other, if offsets is there: text i goes from offsets[i] to offsets[i + 1]

offsets is a buffer of int32 or int64 with one item more than there are texts, as Arrow has it.

pieces is a list of pieces, such as ["NE", "PP:2"], or a dict from piece to the type of its column:
    "int32"   an array of numpy.int32, in which text without digits is 0 and a larger number keeps its low 32 bits
    "str"     an array of str objects
    "bytes"   an array of bytes objects
A list takes "int32" for numbers, and "str" for all else.

Masked are pieces that are not there or are the number -1, which means "none", and in columns of numbers empty ones.

The interpreter's lock is not held, and all cores work, while the identifiers are read.

Raise BadArgument if identifiers have no such piece or an offset is out of range, and WrongType for other data.)";

TextBytes ReadFdn(const py::handle& fdn) {
    return {fdn, FDN};
}

py::object MakeOptional(const Kind* kind, std::string_view Kind::*name) {
    return kind != nullptr ? py::object(MakeText(kind->*name)) : py::none();
}

py::object Get(const py::object& fdn, const py::object& piece) {
    const TextBytes text = ReadFdn(fdn);
    const std::string_view found = FindPiece(text.View(), ReadPieceName(piece));
    return found.data() != nullptr ? py::object(MakeText(found)) : py::none();
}

py::list Check(const py::object& fdn) {
    const TextBytes text = ReadFdn(fdn);
    const py::object makeProblem = py::module_::import("kx_domain_util").attr("Problem");
    py::list problems;
    const auto report = [&](const Problem& problem) {
        problems.append(makeProblem(problem.column, MakeText(problem.text)));
    };
    FindProblems(text.View(), report);
    return problems;
}

py::str ExplainInWords(const py::object& fdn) {
    const TextBytes text = ReadFdn(fdn);
    return MakeText(Draw(Explain(text.View(), FindKind(text.View()), NO_SURROUNDINGS)));
}

void Define(py::module_& module) {
    py::options options;
    options.disable_function_signatures();  // the docstrings have them, with the types of Python
    TranslateExceptions();
    module.attr("__version__") = KX_VERSION;
    module.def(
        "decode", [](const py::object& fdn) { return Decode(ReadFdn(fdn).View()); }, py::arg("fdn"), DECODE);
    module.def(
        "encode", [](const py::object& record, const py::object& facts) { return MakeText(Encode(record, facts)); },
        py::arg("record"), py::arg("facts") = py::none(), ENCODE);
    module.def(
        "type", [](const py::object& fdn) { return MakeOptional(FindKind(ReadFdn(fdn).View()), &Kind::type); },
        py::arg("fdn"), TYPE);
    module.def(
        "kind", [](const py::object& fdn) { return MakeOptional(FindKind(ReadFdn(fdn).View()), &Kind::word); },
        py::arg("fdn"), KIND);
    module.def("get", Get, py::arg("fdn"), py::arg("piece"), GET);
    module.def("check", Check, py::arg("fdn"), CHECK);
    module.def("explain", ExplainInWords, py::arg("fdn"), EXPLAIN);
    module.def("columns", MakeColumns, py::arg("data"), py::arg("pieces"), py::arg("offsets") = py::none(), COLUMNS);
}

// Each interpreter runs this: PYBIND11_MODULE would give a second interpreter the functions of the first, with which
// its objects do not get along.
int Execute(PyObject* module) {
    if (PyInterpreterState_Get() != PyInterpreterState_Main()) {
        PyErr_SetString(PyExc_ImportError,
                        "kx_domain_util works in the main interpreter only, not in a subinterpreter");
        return -1;
    }
    try {
        auto definition = py::reinterpret_borrow<py::module_>(module);
        Define(definition);
        return 0;
    } catch (py::error_already_set& error) {
        error.restore();
    } catch (const std::exception& error) {
        PyErr_SetString(PyExc_ImportError, error.what());
    }
    return -1;
}

PyModuleDef_Slot SLOTS[] = {{Py_mod_exec, reinterpret_cast<void*>(&Execute)}, {0, nullptr}};
PyModuleDef DEFINITION = {PyModuleDef_HEAD_INIT, "_native", nullptr, 0, nullptr, SLOTS, nullptr, nullptr, nullptr};

}  // namespace

}  // namespace NS_KX::NS_PYTHON

extern "C" PYBIND11_EXPORT PyObject* PyInit__native();
extern "C" PYBIND11_EXPORT PyObject* PyInit__native() {
    return PyModuleDef_Init(&NS_KX::NS_PYTHON::DEFINITION);
}
