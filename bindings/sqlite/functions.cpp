#include <algorithm>
#include <array>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "bindings/sqlite/extension.h"
#include "bindings/sqlite/sqlite.h"
#include "catalogue/conversion.h"
#include "catalogue/kinds.h"
#include "catalogue/levelcheck.h"
#include "catalogue/pieces.h"
#include "catalogue/vocabulary.h"
#include "formats/plainvalue.h"
#include "formats/recordformat.h"
#include "text/quoting.h"
#include "text/utf8.h"

namespace NS_KX::NS_SQLITE {

namespace {

// One call of a function, none of whose arguments is NULL.
class Call {
public:
    Call(sqlite3_context* context, sqlite3_value** arguments) noexcept : m_context(context), m_arguments(arguments) {}

    [[nodiscard]] sqlite3_context* Context() const noexcept { return m_context; }

    [[nodiscard]] std::string_view Text(int place) const { return TextOf(m_arguments[place]); }

    // None if the argument is no integer of 32 bits.
    [[nodiscard]] std::optional<int> Number(int place) const {
        if (sqlite3_value_numeric_type(m_arguments[place]) != SQLITE_INTEGER) {
            return std::nullopt;
        }
        const sqlite3_int64 number = sqlite3_value_int64(m_arguments[place]);
        const bool isInt = number >= std::numeric_limits<int>::min() && number <= std::numeric_limits<int>::max();
        return isInt ? std::optional(static_cast<int>(number)) : std::nullopt;
    }

    // Fails the statement.
    [[noreturn]] void Refuse(const std::string& why) const {
        throw std::invalid_argument(std::string(static_cast<const char*>(sqlite3_user_data(m_context))) + ": " + why);
    }

private:
    sqlite3_context* m_context;
    sqlite3_value** m_arguments;
};

// What is made of an argument. SQLite keeps it with the statement, and it is made once, if the argument is a constant.
template <class Made>
class Prepared {
public:
    Prepared(const Call& call, int place)
        : m_context(call.Context()),
          m_place(place),
          m_kept(static_cast<const Made*>(sqlite3_get_auxdata(m_context, place))) {
        if (m_kept == nullptr) {
            m_new = std::make_unique<Made>(call, place);
        }
    }
    // Handed over only now: SQLite may free it at once.
    ~Prepared() {
        if (m_new) {
            sqlite3_set_auxdata(m_context, m_place, m_new.release(),
                                [](void* made) { delete static_cast<Made*>(made); });
        }
    }
    Prepared(const Prepared&) = delete;
    Prepared& operator=(const Prepared&) = delete;

    const Made* operator->() const noexcept { return m_kept != nullptr ? m_kept : m_new.get(); }

private:
    sqlite3_context* m_context;
    int m_place;
    const Made* m_kept;
    std::unique_ptr<Made> m_new;
};

// ---- Pieces ---------------------------------------------------------------------------------------------------------

struct PieceArgument {
    PieceArgument(const Call& call, int place) {
        const std::string_view text = call.Text(place);
        auto parsed = PieceName::ParseKnown(text);
        if (!parsed) {
            call.Refuse(PieceName::WhyNone(text));
        }
        name = *std::move(parsed);
        isNumber = name.IsNumber();
    }

    PieceName name;
    bool isNumber = false;
};

void GivePieceNumber(const Call& call, const PieceName& name) {
    GiveNumber(call.Context(), NumberOf(FindPiece(call.Text(0), name)));
}

void GiveNe(const Call& call) {
    static const PieceName NE{"NE", std::nullopt};
    GivePieceNumber(call, NE);
}

void GiveNumberOfPiece(const Call& call) {
    GivePieceNumber(call, Prepared<PieceArgument>(call, 1)->name);
}

void GivePiece(const Call& call) {
    const Prepared<PieceArgument> argument(call, 1);
    const std::string_view piece = FindPiece(call.Text(0), argument->name);
    if (!SaysNone(piece, argument->isNumber)) {
        GiveText(call.Context(), piece);
    }
}

void GiveReplaced(const Call& call) {
    const Prepared<PieceArgument> argument(call, 1);
    const PieceName& name = argument->name;
    const std::string_view value = call.Text(2);
    if (const auto why = WhyNoValue(name, value)) {
        call.Refuse(*why);
    }
    GiveText(call.Context(), ReplacePiece(call.Text(0), name, value));
}

// ---- Kinds and records ----------------------------------------------------------------------------------------------

// Kept by the thread, so that reading allocates nothing once there is room.
struct Scratch {
    AnyRecord first;
    AnyRecord second;
    TextBuffer text;
};

Scratch& TheScratch() {
    static thread_local Scratch scratch;
    return scratch;
}

const void* ReadRecord(const Kind& kind, std::string_view fdn) {
    void* const record = TheScratch().first.Fresh(kind.layout);
    kind.read(fdn, record, NO_SURROUNDINGS);
    return record;
}

void GiveType(const Call& call) {
    if (const Kind* const kind = FindKind(call.Text(0))) {
        GiveConstantText(call.Context(), kind->type);
    }
}

void GiveKind(const Call& call) {
    if (const Kind* const kind = FindKind(call.Text(0))) {
        GiveConstantText(call.Context(), kind->word);
    }
}

struct FieldArgument {
    FieldArgument(const Call& call, int place) : name(call.Text(place)) {
        if (!IsFieldOfSomeKind(name)) {
            call.Refuse("unknown field " + Quoted(name) + "; for the fields of a record see fdn_record");
        }
    }

    std::string name;
};

void GiveField(const Call& call) {
    const Prepared<FieldArgument> argument(call, 1);
    const std::string_view fdn = call.Text(0);
    const Kind* const kind = FindKind(fdn);
    const Field* const field = kind != nullptr ? FindField(*kind, argument->name) : nullptr;
    if (field == nullptr) {
        return;
    }
    TextBuffer& text = TheScratch().text;
    text.Clear();
    if (AppendKnownValue(*field, ReadRecord(*kind, fdn), text)) {
        GiveText(call.Context(), text.View());
    }
}

void GiveRecord(const Call& call) {
    const std::string_view fdn = call.Text(0);
    const Kind* const kind = FindKind(fdn);
    if (kind == nullptr) {
        return;
    }
    if (!IsUtf8(fdn)) {
        call.Refuse("fdn is not UTF-8: " + Quoted(fdn));
    }
    TextBuffer& json = TheScratch().text;
    json.Clear();
    AppendJsonRecord(*kind, ReadRecord(*kind, fdn), json);
    if (!IsUtf8(json.View())) {
        call.Refuse("a field of the record of fdn begins or ends inside a character: " + Quoted(fdn));
    }
    GiveText(call.Context(), json.View());
}

void GiveProblem(const Call& call) {
    if (const auto problem = FindFirstProblem(call.Text(0))) {
        GiveText(call.Context(), problem->ColumnAndText());
    }
}

void GiveWhetherUnder(const Call& call) {
    sqlite3_result_int(call.Context(), LiesIn(call.Text(0), call.Text(1)) ? 1 : 0);
}

void GiveWhetherSame(const Call& call) {
    Scratch& scratch = TheScratch();
    const bool areSame = AreSame(call.Text(0), call.Text(1), NO_SURROUNDINGS, scratch.first, scratch.second);
    sqlite3_result_int(call.Context(), areSame ? 1 : 0);
}

// ---- FB types -------------------------------------------------------------------------------------------------------

void GiveFbName(const Call& call) {
    const auto fbType = call.Number(0);
    if (const auto name = fbType ? NameOfFbType(*fbType) : std::nullopt) {
        GiveText(call.Context(), *name);
    }
}

void GiveFbLevel(const Call& call) {
    const auto fbType = call.Number(0);
    GiveNumber(call.Context(), fbType ? LevelOfFbType(*fbType) : std::nullopt);
}

void GiveVersion(const Call& call) {
    GiveConstantText(call.Context(), KX_VERSION);
}

// ---- How SQLite calls them ------------------------------------------------------------------------------------------

// A function that gives no answer returns NULL. If an argument is NULL, so is the answer.
template <void (*Give)(const Call&)>
void Run(sqlite3_context* context, int count, sqlite3_value** arguments) noexcept {
    for (int place = 0; place < count; ++place) {
        if (sqlite3_value_type(arguments[place]) == SQLITE_NULL) {
            return;
        }
    }
    Answer(context, [&] { Give(Call(context, arguments)); });
}

struct Function {
    const char* name;
    int argumentCount;
    void (*run)(sqlite3_context*, int, sqlite3_value**) noexcept;
};

constexpr std::array FUNCTIONS{
    Function{"fdn_type", 1, Run<GiveType>},
    Function{"fdn_kind", 1, Run<GiveKind>},
    Function{"fdn_ne", 1, Run<GiveNe>},
    Function{"fdn_get", 2, Run<GivePiece>},
    Function{"fdn_number", 2, Run<GiveNumberOfPiece>},
    Function{"fdn_field", 2, Run<GiveField>},
    Function{"fdn_record", 1, Run<GiveRecord>},
    Function{"fdn_problem", 1, Run<GiveProblem>},
    Function{"fdn_under", 2, Run<GiveWhetherUnder>},
    Function{"fdn_same", 2, Run<GiveWhetherSame>},
    Function{"fdn_set", 3, Run<GiveReplaced>},
    Function{"fdn_version", 0, Run<GiveVersion>},
    Function{"fb_name", 1, Run<GiveFbName>},
    Function{"fb_level", 1, Run<GiveFbLevel>},
};

}  // namespace

void AddFunctions(sqlite3* connection) {
    constexpr int FLAGS = SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS;
    for (const Function& function : FUNCTIONS) {
        RequireOk(sqlite3_create_function_v2(connection, function.name, function.argumentCount, FLAGS,
                                             AsUserData(function.name), function.run, nullptr, nullptr, nullptr));
    }
}

}  // namespace NS_KX::NS_SQLITE
