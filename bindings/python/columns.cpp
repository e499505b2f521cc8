#include "bindings/python/columns.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <pybind11/numpy.h>

#include "bindings/python/errors.h"
#include "bindings/python/identifiers.h"
#include "bindings/python/parallel.h"
#include "bindings/python/piecename.h"
#include "bindings/python/text.h"
#include "catalogue/pieces.h"
#include "text/quoting.h"

namespace NS_KX::NS_PYTHON {

namespace {

// ---- What is asked for ----------------------------------------------------------------------------------------------

enum class ColumnType { INT32, STR, BYTES };

struct Request {
    py::object key;  // in the dict that is returned
    PieceName piece;
    ColumnType type;
};

ColumnType ReadColumnType(const py::handle& name) {
    const TextBytes text(name, "the type of a column");
    if (text.View() == "int32") {
        return ColumnType::INT32;
    }
    if (text.View() == "str") {
        return ColumnType::STR;
    }
    if (text.View() == "bytes") {
        return ColumnType::BYTES;
    }
    Raise(BAD_ARGUMENT, "unknown type of a column " + Quoted(text.View()) + "; choose int32, str or bytes");
}

std::vector<Request> ReadRequests(const py::object& pieces) {
    std::vector<Request> requests;
    if (py::hasattr(pieces, "items")) {
        for (const auto& [piece, type] : py::dict(pieces)) {
            requests.push_back({py::reinterpret_borrow<py::object>(piece), ReadPieceName(piece), ReadColumnType(type)});
        }
        return requests;
    }
    if (PyUnicode_Check(pieces.ptr()) || PyBytes_Check(pieces.ptr())) {
        Raise(WRONG_TYPE, "pieces is one text; give a list of pieces, or a dict from piece to type");
    }
    for (const py::handle piece : pieces) {
        PieceName name = ReadPieceName(piece);
        const ColumnType type = IsOneNumber(name) ? ColumnType::INT32 : ColumnType::STR;
        requests.push_back({py::reinterpret_borrow<py::object>(piece), std::move(name), type});
    }
    return requests;
}

// ---- What is read ---------------------------------------------------------------------------------------------------

// Memory that another object lends, in one piece. Made and destroyed under the interpreter's lock.
class Buffer {
public:
    explicit Buffer(const py::handle& object) {
        if (PyObject_GetBuffer(object.ptr(), &m_view, PyBUF_ND | PyBUF_FORMAT) != 0) {
            throw py::error_already_set();
        }
    }
    ~Buffer() { PyBuffer_Release(&m_view); }
    Buffer(const Buffer&) = delete;
    Buffer& operator=(const Buffer&) = delete;

    // The code of its items in the module struct.
    [[nodiscard]] std::string_view Format() const { return m_view.format != nullptr ? m_view.format : "B"; }
    [[nodiscard]] bool HoldsBytes() const { return Format() == "B" || Format() == "b" || Format() == "c"; }

    template <class Item>
    [[nodiscard]] std::span<const Item> Items() const {
        return {static_cast<const Item*>(m_view.buf), static_cast<std::size_t>(m_view.len) / sizeof(Item)};
    }
    template <class Item>
    [[nodiscard]] bool HoldsSigned() const {
        const std::string_view code = Format().substr(Format().starts_with('@') || Format().starts_with('=') ? 1 : 0);
        return m_view.ndim == 1 && m_view.itemsize == sizeof(Item) && (code == "i" || code == "l" || code == "q");
    }
    [[nodiscard]] std::string_view Bytes() const {
        const auto bytes = Items<char>();
        return {bytes.data(), bytes.size()};
    }

private:
    Py_buffer m_view{};
};

// The objects of a list, each None or the owner of a text's bytes: neither changes, so that no lock is needed.
class ItemRows : public CountedIdentifiers {
public:
    explicit ItemRows(std::span<const py::object> items) : CountedIdentifiers(items.size()), m_items(items) {}

    std::span<const std::string_view> Read(std::size_t chunk, std::vector<std::string_view>& room) const override {
        room.clear();
        for (const py::object& item : m_items.subspan(FirstRow(chunk), RowsOf(chunk))) {
            room.push_back(item.ptr() != Py_None ? TextBytes::ViewOf(item) : std::string_view());
        }
        return room;
    }

private:
    std::span<const py::object> m_items;
};

// The identifiers in the caller's objects, with what keeps them alive.
struct Input {
    std::optional<Buffer> buffer;
    std::optional<Buffer> offsets;
    std::vector<py::object> items;
    std::unique_ptr<Identifiers> identifiers;
};

void ReadOffsetRows(const py::object& offsets, Input& input) {
    if (PyObject_CheckBuffer(offsets.ptr()) == 0) {
        Raise(WRONG_TYPE,
              std::string("offsets is ").append(TypeName(offsets)).append(", not a buffer of int32 or int64"));
    }
    const Buffer& buffer = input.offsets.emplace(offsets);
    const std::string_view text = input.buffer->Bytes();
    if (buffer.HoldsSigned<std::int32_t>() && !buffer.Items<std::int32_t>().empty()) {
        input.identifiers = std::make_unique<OffsetRows<std::int32_t>>(text, buffer.Items<std::int32_t>());
    } else if (buffer.HoldsSigned<std::int64_t>() && !buffer.Items<std::int64_t>().empty()) {
        input.identifiers = std::make_unique<OffsetRows<std::int64_t>>(text, buffer.Items<std::int64_t>());
    } else if (buffer.Bytes().empty()) {
        Raise(BAD_ARGUMENT, "offsets is empty; it has one more item than there are identifiers");
    } else {
        Raise(WRONG_TYPE, "offsets holds \"" + std::string(buffer.Format()) + "\", not int32 or int64");
    }
}

// A copy of the list, since other threads may change it; a text is copied only if it is not ASCII.
std::vector<py::object> ReadItems(const py::object& data) {
    const auto sequence =
        py::reinterpret_steal<py::object>(PySequence_Fast(data.ptr(), "data cannot be iterated over"));
    if (!sequence) {
        throw py::error_already_set();
    }
    std::vector<py::object> items;
    items.reserve(static_cast<std::size_t>(PySequence_Fast_GET_SIZE(sequence.ptr())));
    for (py::ssize_t place = 0; place < PySequence_Fast_GET_SIZE(sequence.ptr()); ++place) {
        const py::handle item = PySequence_Fast_GET_ITEM(sequence.ptr(), place);
        items.push_back(item.is_none() ? py::none() : TextBytes(item, "an identifier").Owner());
    }
    return items;
}

void ReadInput(const py::object& data, const py::object& offsets, Input& input) {
    if (PyUnicode_Check(data.ptr())) {
        Raise(WRONG_TYPE, "data is one str; give a list of str, or bytes of lines");
    }
    if (PyObject_CheckBuffer(data.ptr()) != 0) {
        input.buffer.emplace(data);
    }
    const bool holdsBytes = input.buffer && input.buffer->HoldsBytes();
    if (!offsets.is_none() && !holdsBytes) {
        Raise(WRONG_TYPE, std::string("with offsets, data is a buffer of bytes, not ").append(TypeName(data)));
    }
    if (!offsets.is_none()) {
        ReadOffsetRows(offsets, input);
    } else if (holdsBytes) {
        const py::gil_scoped_release unlocked;
        input.identifiers = std::make_unique<LineRows>(input.buffer->Bytes());
    } else {
        input.items = ReadItems(data);
        input.identifiers = std::make_unique<ItemRows>(input.items);
    }
}

// ---- Columns --------------------------------------------------------------------------------------------------------

class Column {
public:
    explicit Column(std::size_t rows) : m_mask(static_cast<py::ssize_t>(rows)), m_isMasked(m_mask.mutable_data()) {}
    virtual ~Column() = default;
    Column(const Column&) = delete;
    Column& operator=(const Column&) = delete;

    // Without the interpreter's lock; each row by one thread.
    virtual void Put(std::size_t row, std::string_view piece) = 0;
    // The masked array, when all rows are there. Under the interpreter's lock.
    py::object Finish(const py::object& makeMasked) {
        const py::object array = MakeArray();
        return makeMasked(array, py::arg("mask") = m_mask, py::arg("fill_value") = FillValue(),
                          py::arg("copy") = false);
    }

protected:
    void Mask(std::size_t row, bool isNone) noexcept { m_isMasked[row] = isNone; }

private:
    virtual py::object MakeArray() = 0;
    [[nodiscard]] virtual py::object FillValue() const = 0;

    py::array_t<bool> m_mask;
    bool* m_isMasked;
};

class NumberColumn : public Column {
public:
    explicit NumberColumn(std::size_t rows)
        : Column(rows), m_array(static_cast<py::ssize_t>(rows)), m_numbers(m_array.mutable_data()) {}

    void Put(std::size_t row, std::string_view piece) override {
        const std::optional<std::int32_t> number = NumberOf(piece);
        m_numbers[row] = number.value_or(NONE);
        Mask(row, !number);
    }

private:
    static constexpr std::int32_t NONE = -1;

    py::object MakeArray() override { return m_array; }
    [[nodiscard]] py::object FillValue() const override { return py::int_(NONE); }

    py::array_t<std::int32_t> m_array;
    std::int32_t* m_numbers;
};

py::object MakeBytes(std::string_view bytes) {
    PyObject* const object = PyBytes_FromStringAndSize(bytes.data(), static_cast<py::ssize_t>(bytes.size()));
    if (object == nullptr) {
        throw py::error_already_set();
    }
    return py::reinterpret_steal<py::object>(object);
}

// Makes objects of texts. A text that was seen not long ago gets the object that it had then: many columns hold few
// texts, each very often. Needs the interpreter's lock.
class ObjectMaker {
public:
    explicit ObjectMaker(py::object (*make)(std::string_view)) : m_make(make), m_seen(PLACES) {}

    py::object Make(std::string_view text) {
        Seen& seen = m_seen[std::hash<std::string_view>()(text) % PLACES];
        if (!seen.object || seen.text != text) {
            seen = {text, m_make(text)};
        }
        return seen.object;
    }

private:
    static constexpr std::size_t PLACES = 4096;

    struct Seen {
        std::string_view text;
        py::object object;
    };

    py::object (*m_make)(std::string_view);
    std::vector<Seen> m_seen;
};

// An array of objects. Texts of a fixed width would all take the memory of the longest, and numpy cuts NULs off them.
class TextColumn : public Column {
public:
    TextColumn(std::size_t rows, bool isNumber, py::object (*make)(std::string_view))
        : Column(rows), m_pieces(rows), m_isNumber(isNumber), m_make(make) {}

    void Put(std::size_t row, std::string_view piece) override {
        m_pieces[row] = piece;
        Mask(row, piece.data() == nullptr || (m_isNumber && !piece.empty() && !NumberOf(piece)));
    }

private:
    py::object MakeArray() override {
        py::array array(py::dtype("O"), static_cast<py::ssize_t>(m_pieces.size()));
        auto** const objects = static_cast<PyObject**>(array.mutable_data());
        ObjectMaker maker(m_make);
        for (std::size_t row = 0; row < m_pieces.size(); ++row) {
            PyObject* const before = std::exchange(objects[row], maker.Make(m_pieces[row]).release().ptr());
            Py_XDECREF(before);
        }
        return array;
    }
    [[nodiscard]] py::object FillValue() const override { return m_make({}); }

    std::vector<std::string_view> m_pieces;
    bool m_isNumber;
    py::object (*m_make)(std::string_view);
};

std::unique_ptr<Column> MakeColumn(const Request& request, std::size_t rows) {
    switch (request.type) {
        case ColumnType::INT32:
            return std::make_unique<NumberColumn>(rows);
        case ColumnType::STR:
            return std::make_unique<TextColumn>(rows, IsOneNumber(request.piece),
                                                [](std::string_view bytes) -> py::object { return MakeText(bytes); });
        case ColumnType::BYTES:
            break;
    }
    return std::make_unique<TextColumn>(rows, IsOneNumber(request.piece), MakeBytes);
}

void FillColumns(const Identifiers& identifiers, const PieceFinder& finder,
                 const std::vector<std::unique_ptr<Column>>& columns) {
    RunInParallel(identifiers.ChunkCount(), [&](std::size_t chunk) {
        std::vector<std::string_view> room;
        std::vector<std::string_view> found(columns.size());
        std::size_t row = identifiers.FirstRow(chunk);
        for (const std::string_view fdn : identifiers.Read(chunk, room)) {
            finder.Find(fdn, found);
            for (std::size_t place = 0; place < columns.size(); ++place) {
                columns[place]->Put(row, found[place]);
            }
            ++row;
        }
    });
}

}  // namespace

py::dict MakeColumns(const py::object& data, const py::object& pieces, const py::object& offsets) {
    const std::vector<Request> requests = ReadRequests(pieces);
    const py::object makeMasked = py::module_::import("numpy.ma").attr("MaskedArray");
    Input input;
    ReadInput(data, offsets, input);
    std::vector<PieceName> names;
    std::vector<std::unique_ptr<Column>> columns;
    for (const Request& request : requests) {
        names.push_back(request.piece);
        columns.push_back(MakeColumn(request, input.identifiers->RowCount()));
    }
    {
        const py::gil_scoped_release unlocked;
        FillColumns(*input.identifiers, PieceFinder(std::move(names)), columns);
    }
    py::dict made;
    for (std::size_t place = 0; place < columns.size(); ++place) {
        made[requests[place].key] = columns[place]->Finish(makeMasked);
    }
    return made;
}

}  // namespace NS_KX::NS_PYTHON
