#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

#include <kx_domain_util/domainindex.h>
#include <kx_domain_util/levelfinder.h>

#include "bindings/sqlite/extension.h"
#include "bindings/sqlite/filelines.h"
#include "bindings/sqlite/virtualtable.h"
#include "catalogue/kinds.h"
#include "catalogue/levelcheck.h"
#include "catalogue/readport.h"

namespace NS_KX::NS_SQLITE {

namespace {

using NS_DOMAIN::PortIndex;
using NS_UTIL::NS_FDN::LevelFinder;

enum Column : int {
    LINE,
    FDN,
    TYPE,
    KIND,
    NE,
    SHELF,
    SLOT,
    SUB_SLOT,
    PP_TYPE,
    FB_TYPE,
    PORT,
    NAME,
    IS_LOGICAL,
    PROBLEM,
    PATH
};

constexpr const char* DECLARATION =
    "CREATE TABLE fdn_file(line INTEGER, fdn TEXT, type TEXT, kind TEXT, ne INTEGER, shelf INTEGER, slot INTEGER, "
    "sub_slot INTEGER, pp_type INTEGER, fb_type INTEGER, port INTEGER, name TEXT, is_logical INTEGER, problem TEXT, "
    "path TEXT HIDDEN)";

constexpr unsigned BitOf(Column column) {
    return 1U << static_cast<unsigned>(column);
}

constexpr unsigned ALL_COLUMNS = BitOf(PATH) * 2 - 1;

// ---- Reading of a line ----------------------------------------------------------------------------------------------

// What the columns from NE to IS_LOGICAL show.
struct Place {
    PortIndex port;
    bool isPort = false;
};

template <class Levels>
void ReadContainersFrom(const Levels& levels, PortIndex& port) {
    levels.template ReadNumber<"NE">(port.neId);
    levels.template ReadNumber<"FR">(port.shelfId);
    levels.template ReadNumber<"S">(port.slotId);
    levels.template ReadNumber<"SS">(port.subSlotId);
}

void ReadNothing(std::string_view /*fdn*/, Place& /*place*/) {}

void ReadNe(std::string_view fdn, Place& place) {
    LevelFinder<"NE">(fdn).ReadNumber<"NE">(place.port.neId);
}

void ReadContainers(std::string_view fdn, Place& place) {
    ReadContainersFrom(LevelFinder<"NE", "FR", "S", "SS">(fdn), place.port);
}

void ReadPortOf(std::string_view fdn, Place& place) {
    place.isPort = ReadPort(fdn, place.port);
    // The library reads nothing from the text that stands for no port, not even its containers.
    if (!place.isPort && place.port.neId == -1) {
        ReadContainers(fdn, place);
    }
}

using PlaceReader = void (*)(std::string_view fdn, Place& place);

// A reader that does no more than these columns, bits of `BitOf`, need.
PlaceReader ReaderFor(unsigned columns) {
    constexpr unsigned OF_PORTS = BitOf(PP_TYPE) | BitOf(FB_TYPE) | BitOf(PORT) | BitOf(NAME) | BitOf(IS_LOGICAL);
    constexpr unsigned OF_CONTAINERS = BitOf(SHELF) | BitOf(SLOT) | BitOf(SUB_SLOT);
    if ((columns & OF_PORTS) != 0) {
        return ReadPortOf;
    }
    if ((columns & OF_CONTAINERS) != 0) {
        return ReadContainers;
    }
    return (columns & BitOf(NE)) != 0 ? ReadNe : ReadNothing;
}

// ---- The table ------------------------------------------------------------------------------------------------------

struct Table : sqlite3_vtab {
    // Only for direct use: a view or trigger of somebody else's database must not read this user's files.
    static constexpr int RISK = SQLITE_VTAB_DIRECTONLY;

    explicit Table(const void* /*given*/) : sqlite3_vtab{} {}

    [[nodiscard]] static std::string Declare() { return DECLARATION; }

    // The plan is the set of columns that are asked for.
    static int Plan(sqlite3_index_info& info) {
        constexpr int LINES = 1'000'000;
        bool isPathToCome = false;
        for (int place = 0; place < info.nConstraint; ++place) {
            const auto& constraint = info.aConstraint[place];
            if (constraint.iColumn != PATH || constraint.op != SQLITE_INDEX_CONSTRAINT_EQ) {
                continue;
            }
            if (constraint.usable == 0) {
                isPathToCome = true;
                continue;
            }
            info.aConstraintUsage[place].argvIndex = 1;
            info.aConstraintUsage[place].omit = 1;
            info.idxNum = static_cast<int>(info.colUsed & ALL_COLUMNS);
            info.estimatedCost = LINES;
            info.estimatedRows = LINES;
            info.orderByConsumed = IsOrderOfLines(info) ? 1 : 0;
            return SQLITE_OK;
        }
        if (isPathToCome) {
            return SQLITE_CONSTRAINT;  // the tables must be joined in another order
        }
        throw std::invalid_argument("fdn_file: the path is missing; name a file: fdn_file('network.fdn')");
    }

private:
    // The row id is the number of the line too.
    static bool IsOrderOfLines(const sqlite3_index_info& info) {
        return info.nOrderBy == 1 && info.aOrderBy[0].iColumn <= LINE && info.aOrderBy[0].desc == 0;
    }
};

// A number, unless it says "none".
void GiveKnown(std::int32_t number, sqlite3_context* context) {
    if (number != -1) {
        sqlite3_result_int(context, number);
    }
}

class Cursor : public sqlite3_vtab_cursor {
public:
    explicit Cursor(const Table& /*table*/) : sqlite3_vtab_cursor{} {}

    void Begin(int plan, std::span<sqlite3_value* const> arguments) {
        m_lines.reset();
        if (sqlite3_value_type(arguments[0]) == SQLITE_NULL) {
            return;
        }
        m_path = TextOf(arguments[0]);
        if (m_path.empty() || m_path.find('\0') != std::string::npos) {
            throw std::invalid_argument("fdn_file: the path is empty or holds a NUL byte");
        }
        const auto columns = static_cast<unsigned>(plan);
        m_readPlace = ReaderFor(columns);
        m_lines.emplace(m_path, (columns & ~BitOf(LINE)) != 0);
        Next();
    }

    void Next() {
        m_isPlaceRead = false;
        if (!m_lines->Next()) {
            m_lines.reset();
        }
    }

    [[nodiscard]] bool IsAtEnd() const { return !m_lines; }

    [[nodiscard]] sqlite3_int64 RowId() const { return static_cast<sqlite3_int64>(m_lines->Number()); }

    void Give(int column, sqlite3_context* context) {
        switch (column) {
            case LINE:
                return sqlite3_result_int64(context, RowId());
            case FDN:
                return GiveLine(context);
            case PROBLEM:
                return GiveProblem(context);
            case PATH:
                return GiveText(context, m_path);
            default:
                if (m_lines->State() == LineState::TEXT) {
                    GiveRead(column, context);
                }
        }
    }

private:
    // What is no text is shown byte for byte.
    void GiveLine(sqlite3_context* context) const {
        const std::string_view line = m_lines->Text();
        switch (m_lines->State()) {
            case LineState::TOO_LONG:
                return;
            case LineState::NO_TEXT:
                if (!line.empty()) {
                    return sqlite3_result_blob64(context, line.data(), line.size(), SQLITE_TRANSIENT);
                }
                [[fallthrough]];
            case LineState::TEXT:
                GiveText(context, line);
        }
    }

    void GiveProblem(sqlite3_context* context) const {
        if (m_lines->State() == LineState::TOO_LONG) {
            GiveText(context, std::string("1: ") + LINE_TOO_LONG);
        } else if (const auto problem = FindFirstProblem(m_lines->Text())) {
            GiveText(context, problem->ColumnAndText());
        }
    }

    void GiveRead(int column, sqlite3_context* context) {
        switch (column) {
            case TYPE:
            case KIND:
                if (const Kind* const kind = FindKind(m_lines->Text())) {
                    GiveConstantText(context, column == TYPE ? kind->type : kind->word);
                }
                return;
            case NE:
                return GiveKnown(ThePlace().port.neId, context);
            case SHELF:
                return GiveKnown(ThePlace().port.shelfId, context);
            case SLOT:
                return GiveKnown(ThePlace().port.slotId, context);
            case SUB_SLOT:
                return GiveKnown(ThePlace().port.subSlotId, context);
            case PP_TYPE:
                return GiveKnown(KnownTypeOrNone(ThePlace().port.ppType), context);
            case FB_TYPE:
                return GiveKnown(KnownTypeOrNone(ThePlace().port.fbType), context);
            case PORT:
                return GiveKnown(ThePlace().port.portId, context);
            case NAME:
                if (const std::string& name = ThePlace().port.portLabel; !name.empty()) {
                    GiveText(context, name);
                }
                return;
            default:
                if (ThePlace().isPort) {
                    sqlite3_result_int(context, m_place.port.isLogical ? 1 : 0);
                }
        }
    }

    // Read once for each line, when the first of these columns is given.
    const Place& ThePlace() {
        if (!m_isPlaceRead) {
            static const Place UNKNOWN;
            m_place = UNKNOWN;
            m_readPlace(m_lines->Text(), m_place);
            m_isPlaceRead = true;
        }
        return m_place;
    }

    std::string m_path;
    std::optional<FileLines> m_lines;  // none at the end
    PlaceReader m_readPlace = ReadNothing;
    Place m_place;
    bool m_isPlaceRead = false;  // of the current line
};

}  // namespace

void AddFileTable(sqlite3* connection) {
    ReadOnlyModule<Table, Cursor>::Add(connection, "fdn_file");
}

}  // namespace NS_KX::NS_SQLITE
