/// How many identifiers there are: of which kinds, NEs, FB types and interface levels, and what is wrong with them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <kx_domain_util/surroundings.h>

#include "catalogue/kind.h"
#include "catalogue/levelcheck.h"
#include "catalogue/writingcheck.h"

namespace NS_KX {

/// What is wrong for one reason, and where.
struct ProblemCount {
    struct Place {
        std::string place;  ///< "network.fdn:12:7"
        std::string text;   ///< what is wrong there
    };

    /// Only this many places are remembered.
    static constexpr std::size_t MOST_PLACES = 20;

    std::uint64_t count = 0;
    std::vector<Place> places;  ///< the first ones
};

/// Counts of identifiers.
struct Statistics {
    /// What has no NE: the management system, say.
    static constexpr std::int32_t NO_NE = -1;
    /// A port without an FB type.
    static constexpr std::int32_t NO_FB_TYPE = 0;

    std::uint64_t lines = 0;
    std::uint64_t problemLines = 0;                           ///< lines with a problem
    std::uint64_t notCompared = 0;                            ///< for lack of a service that the writer asks
    std::unordered_map<const Kind*, std::uint64_t> kinds;     ///< null: no kind
    std::unordered_map<std::int32_t, std::uint64_t> nes;      ///< `NO_NE`: identifiers without NE
    std::unordered_map<std::int32_t, std::uint64_t> fbTypes;  ///< of the port that an identifier names or lies on
    std::map<std::string_view, ProblemCount> problems;        ///< by `Problem::reason`

    /// Adds the counts of `later`, whose identifiers come after those counted here.
    void Add(const Statistics& later);
};

/// The number of the NE that an identifier is of; `Statistics::NO_NE` if it has none, or if that level is not a number
/// of 32 bits. Readers are more lenient: they make some number of any text.
std::int32_t NeOf(std::string_view fdn);

/// A row of a listing of counts. Empty texts stand for none.
struct CountRow {
    std::string value;  ///< what is counted: "port", "1025"
    std::string name;   ///< its name: "ODU2"
    std::uint64_t count = 0;
    std::string place = {};  ///< of the first problem
    std::string text = {};   ///< of the first problem
};

/// The rows of a count, the largest first.
std::vector<CountRow> KindRows(const Statistics& statistics);
std::vector<CountRow> NeRows(const Statistics& statistics);
std::vector<CountRow> FbTypeRows(const Statistics& statistics);
/// Counts by the interface levels of the FB types. An FB type that sits on no level counts as none.
std::vector<CountRow> LevelRows(const Statistics& statistics);
std::vector<CountRow> ProblemRows(const Statistics& statistics);
/// Puts `rows` in this order: the largest count first, equal ones by their values.
void SortByCount(std::vector<CountRow>& rows);

/// What is sought besides counting.
enum class ProblemSearch {
    NONE,    ///< nothing
    LEVELS,  ///< what `CheckIdentifier` finds
    ALL,     ///< that, and what `WritingCheck` finds
};

/// Counts identifiers, one after the other. One thread at a time.
class IdentifierCounter {
public:
    /// Names the place of a problem in a column of the identifier; 0: the whole of it.
    using PlaceOf = std::function<std::string(std::size_t column)>;

    /// What was found out about an identifier.
    struct Counted {
        const Kind* kind;  ///< null: no kind
        bool hasProblem;
        std::int32_t neId = Statistics::NO_NE;
    };

    /// `surroundings` are asked by readers and writers, and must outlive the counter.
    IdentifierCounter(ProblemSearch search, const NS_UTIL::Surroundings& surroundings) noexcept
        : m_search(search), m_surroundings(surroundings) {}

    /// Counts `fdn`, which is UTF-8. Throws std::bad_alloc, and what the surroundings throw. Without an inventory, an
    /// identifier that is right on some NEs only is not compared.
    Counted Count(std::string_view fdn, const PlaceOf& placeOf);
    /// Counts a line that is no identifier.
    void CountNoText(const Problem& problem, const PlaceOf& placeOf);

    /// The counts so far; the next ones begin with nothing.
    Statistics Take();

private:
    void Note(const Problem& problem, const PlaceOf& placeOf);
    Counted Check(std::string_view fdn, const PlaceOf& placeOf);
    bool IsWrittenDifferently(const Kind& kind, std::string_view fdn, const PlaceOf& placeOf);

    ProblemSearch m_search;
    const NS_UTIL::Surroundings& m_surroundings;
    WritingCheck m_writing;
    Statistics m_counts;
};

}  // namespace NS_KX
