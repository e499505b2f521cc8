#include "answers.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <exception>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "catalogue/conversion.h"
#include "catalogue/kinds.h"
#include "catalogue/levelcheck.h"
#include "catalogue/pieces.h"
#include "catalogue/readport.h"
#include "catalogue/vocabulary.h"
#include "formats/plainvalue.h"
#include "formats/recordformat.h"
#include "text/quoting.h"
#include "text/utf8.h"

namespace NS_KX::NS_POSTGRESQL {

namespace {

using NS_DOMAIN::PortIndex;

std::string_view View(KxText text) {
    return {text.data, text.size};
}

// ---- Answers --------------------------------------------------------------------------------------------------------

// An argument that means nothing. The message follows "argument ... of ...:".
class BadArgument : public std::exception {
public:
    BadArgument(const char* argument, std::string message) : m_argument(argument), m_message(std::move(message)) {}

    [[nodiscard]] const char* Argument() const noexcept { return m_argument; }
    [[nodiscard]] const char* what() const noexcept override { return m_message.c_str(); }

private:
    const char* m_argument;
    std::string m_message;
};

// Null if there is no room.
char* Copied(std::string_view text) noexcept {
    char* const room = KxRoom(text.size());
    if (room != nullptr) {
        std::copy(text.begin(), text.end(), room);
    }
    return room;
}

KxAnswer NoAnswer(KxOutcome outcome) noexcept {
    return {outcome, 0, nullptr, nullptr};
}

KxAnswer Answer(std::string_view text, KxOutcome outcome = KX_ANSWER_GIVEN, const char* argument = nullptr) noexcept {
    char* const copy = Copied(text);
    return copy != nullptr ? KxAnswer{outcome, 0, copy, argument} : NoAnswer(KX_ANSWER_NO_MEMORY);
}

KxAnswer Answer(const std::optional<std::string>& text) noexcept {
    return text ? Answer(std::string_view(*text)) : NoAnswer(KX_ANSWER_NONE);
}

KxAnswer Answer(std::optional<std::int32_t> number) noexcept {
    return number ? KxAnswer{KX_ANSWER_GIVEN, *number, nullptr, nullptr} : NoAnswer(KX_ANSWER_NONE);
}

// What `work` answers; if it throws, what went wrong.
template <class Work>
KxAnswer Guarded(Work work) noexcept {
    try {
        return work();
    } catch (const BadArgument& error) {
        return Answer(error.what(), KX_ANSWER_REFUSED, error.Argument());
    } catch (const std::bad_alloc&) {
        return NoAnswer(KX_ANSWER_NO_MEMORY);
    } catch (const std::exception& error) {
        return Answer(error.what(), KX_ANSWER_FAILED);
    } catch (...) {
        return Answer("an exception of no known type", KX_ANSWER_FAILED);
    }
}

// ---- Pieces ---------------------------------------------------------------------------------------------------------

struct KnownPiece {
    std::string text;
    PieceName name;
    bool isNumber = false;
};

KnownPiece ReadPiece(std::string_view text) {
    auto name = PieceName::ParseKnown(text);
    if (!name) {
        throw BadArgument("piece", PieceName::WhyNone(text));
    }
    const bool isNumber = name->IsNumber();
    return {std::string(text), *std::move(name), isNumber};
}

// The pieces that queries asked for last: a query names the same few for each of its rows.
class RecentPieces {
public:
    // Throws BadArgument.
    const KnownPiece& Of(std::string_view text) {
        const auto* const known =
            std::find_if(m_pieces.begin(), m_pieces.end(), [&](const KnownPiece& piece) { return piece.text == text; });
        // An unused place has an empty text, and no piece has one.
        return known != m_pieces.end() && !text.empty() ? *known : Add(ReadPiece(text));
    }

private:
    const KnownPiece& Add(KnownPiece piece) {
        KnownPiece& place = m_pieces[m_oldest];
        m_oldest = (m_oldest + 1) % m_pieces.size();
        place = std::move(piece);
        return place;
    }

    std::array<KnownPiece, 8> m_pieces;
    std::size_t m_oldest = 0;
};

const KnownPiece& PieceOf(KxText text) {
    static RecentPieces pieces;
    return pieces.Of(View(text));
}

// ---- Records --------------------------------------------------------------------------------------------------------

struct ReadRecord {
    const Kind* kind;
    std::shared_ptr<void> fields;
};

// None if `fdn` is of no kind.
std::optional<ReadRecord> ReadRecordOf(std::string_view fdn) {
    const Kind* const kind = FindKind(fdn);
    if (kind == nullptr) {
        return std::nullopt;
    }
    ReadRecord record{kind, kind->layout.make()};
    kind->read(fdn, record.fields.get(), NO_SURROUNDINGS);
    return record;
}

KxAnswer AnswerField(const Field& field, const void* record) {
    static TextBuffer text;  // kept, so that it has room
    text.Clear();
    return AppendKnownValue(field, record, text) ? Answer(text.View()) : NoAnswer(KX_ANSWER_NONE);
}

}  // namespace

}  // namespace NS_KX::NS_POSTGRESQL

using namespace NS_KX;
using namespace NS_KX::NS_POSTGRESQL;

// ---- Texts ----------------------------------------------------------------------------------------------------------

KxAnswer KxType(KxText fdn) {
    return Guarded([&] {
        const Kind* const kind = FindKind(View(fdn));
        return kind != nullptr ? Answer(kind->type) : NoAnswer(KX_ANSWER_NONE);
    });
}

KxAnswer KxKind(KxText fdn) {
    return Guarded([&] {
        const Kind* const kind = FindKind(View(fdn));
        return kind != nullptr ? Answer(kind->word) : NoAnswer(KX_ANSWER_NONE);
    });
}

KxAnswer KxGet(KxText fdn, KxText piece) {
    return Guarded([&] {
        const KnownPiece& known = PieceOf(piece);
        const std::string_view found = FindPiece(View(fdn), known.name);
        return SaysNone(found, known.isNumber) ? NoAnswer(KX_ANSWER_NONE) : Answer(found);
    });
}

KxAnswer KxField(KxText fdn, KxText field) {
    return Guarded([&] {
        const std::string_view name = View(field);
        const Kind* const kind = FindKind(View(fdn));
        const Field* const found = kind != nullptr ? FindField(*kind, name) : nullptr;
        if (found != nullptr) {
            return AnswerField(*found, ReadRecordOf(View(fdn))->fields.get());
        }
        if (!IsFieldOfSomeKind(name)) {
            throw BadArgument("field", "unknown field " + Quoted(name) + "; for the fields of a record see fdn_record");
        }
        return NoAnswer(KX_ANSWER_NONE);
    });
}

KxAnswer KxRecord(KxText fdn) {
    return Guarded([&] {
        const auto record = ReadRecordOf(View(fdn));
        if (!record) {
            return NoAnswer(KX_ANSWER_NONE);
        }
        if (!IsUtf8(View(fdn))) {
            throw BadArgument("fdn", "the text is not UTF-8: " + Quoted(View(fdn)));
        }
        TextBuffer json;
        AppendJsonRecord(*record->kind, record->fields.get(), json);
        if (!IsUtf8(json.View())) {
            throw BadArgument("fdn", "a field of its record begins or ends inside a character: " + Quoted(View(fdn)));
        }
        return Answer(json.View());
    });
}

KxAnswer KxProblem(KxText fdn) {
    return Guarded([&] {
        const auto problem = FindFirstProblem(View(fdn));
        return problem ? Answer(std::string_view(problem->ColumnAndText())) : NoAnswer(KX_ANSWER_NONE);
    });
}

KxAnswer KxSet(KxText fdn, KxText piece, KxText value) {
    return Guarded([&] {
        const PieceName& name = PieceOf(piece).name;
        if (auto why = WhyNoValue(name, View(value))) {
            throw BadArgument("value", *std::move(why));
        }
        return Answer(std::string_view(ReplacePiece(View(fdn), name, View(value))));
    });
}

KxAnswer KxFbName(int32_t fbType) {
    return Guarded([&] { return Answer(NameOfFbType(fbType)); });
}

// ---- Numbers --------------------------------------------------------------------------------------------------------

KxAnswer KxNe(KxText fdn) {
    return Guarded([&] {
        static const PieceName NE{"NE", std::nullopt};
        return Answer(NumberOf(FindPiece(View(fdn), NE)));
    });
}

KxAnswer KxNumber(KxText fdn, KxText piece) {
    return Guarded([&] { return Answer(NumberOf(FindPiece(View(fdn), PieceOf(piece).name))); });
}

KxAnswer KxFbLevel(int32_t fbType) {
    return Guarded([&] { return Answer(LevelOfFbType(fbType)); });
}

// ---- Truths ---------------------------------------------------------------------------------------------------------

KxAnswer KxUnder(KxText fdn, KxText container) {
    return Guarded([&] { return Answer(std::optional<std::int32_t>(LiesIn(View(fdn), View(container)))); });
}

KxAnswer KxSame(KxText one, KxText other) {
    return Guarded([&] {
        AnyRecord first;
        AnyRecord second;
        return Answer(std::optional<std::int32_t>(AreSame(View(one), View(other), NO_SURROUNDINGS, first, second)));
    });
}

// ---- Ports ----------------------------------------------------------------------------------------------------------

KxAnswer KxReadPort(KxText fdn, KxPort* port) {
    return Guarded([&] {
        PortIndex read;
        if (!ReadPort(View(fdn), read)) {
            return NoAnswer(KX_ANSWER_NONE);
        }
        char* const name = read.portLabel.empty() ? nullptr : Copied(read.portLabel);
        if (name == nullptr && !read.portLabel.empty()) {
            return NoAnswer(KX_ANSWER_NO_MEMORY);
        }
        *port = {read.neId,
                 read.shelfId,
                 read.slotId,
                 read.subSlotId,
                 KnownTypeOrNone(read.ppType),
                 KnownTypeOrNone(read.fbType),
                 read.portId,
                 read.isLogical,
                 name};
        return NoAnswer(KX_ANSWER_GIVEN);
    });
}
