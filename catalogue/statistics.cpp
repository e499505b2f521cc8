#include "catalogue/statistics.h"

#include <algorithm>
#include <utility>

#include <kx_domain_util/fdnscanner.h>
#include <kx_domain_util/levelfinder.h>
#include <kx_platform/textutil.h>

#include "catalogue/kinds.h"
#include "catalogue/vocabulary.h"
#include "text/number.h"

namespace NS_KX {

namespace {

using PortLevels = NS_UTIL::NS_FDN::LevelFinder<"NE", "PP", "LP">;

// The FB type of the port that an identifier names or lies on; none if it has no port.
std::optional<std::int32_t> FbTypeOf(const PortLevels& levels) {
    constexpr std::size_t SUB_VALUES = 4;  // a port with fewer is not read
    const NS_UTIL::NS_FDN::SubValues<SUB_VALUES> port(levels.Has<"PP">() ? levels.Value<"PP">() : levels.Value<"LP">());
    if (port.Count() < SUB_VALUES) {
        return std::nullopt;
    }
    return port[1].empty() ? Statistics::NO_FB_TYPE : NS_UTIL::Str2Int(port[1]);
}

template <class Levels>
std::int32_t NeIn(const Levels& levels) {
    std::int32_t neId = Statistics::NO_NE;
    return ReadWhole(NS_UTIL::NS_FDN::SubValues<1>(levels.template Value<"NE">())[0], neId) ? neId : Statistics::NO_NE;
}

template <class Counts>
void AddCounts(Counts& counts, const Counts& others) {
    for (const auto& [key, count] : others) {
        counts[key] += count;
    }
}

void AddProblems(ProblemCount& problems, const ProblemCount& later) {
    problems.count += later.count;
    const std::size_t room = ProblemCount::MOST_PLACES - problems.places.size();
    const auto end = later.places.begin() + static_cast<std::ptrdiff_t>(std::min(room, later.places.size()));
    problems.places.insert(problems.places.end(), later.places.begin(), end);
}

std::string TextOfNumber(std::int32_t number, std::int32_t none) {
    return number == none ? std::string() : std::to_string(number);
}

// The rows of counts that have a number for their key.
template <class NameOf>
std::vector<CountRow> NumberRows(const std::unordered_map<std::int32_t, std::uint64_t>& counts, std::int32_t none,
                                 NameOf nameOf) {
    std::vector<CountRow> rows;
    rows.reserve(counts.size());
    for (const auto& [number, count] : counts) {
        rows.push_back({TextOfNumber(number, none), nameOf(number), count});
    }
    SortByCount(rows);
    return rows;
}

}  // namespace

// ---- Counts ---------------------------------------------------------------------------------------------------------

void Statistics::Add(const Statistics& later) {
    lines += later.lines;
    problemLines += later.problemLines;
    notCompared += later.notCompared;
    AddCounts(kinds, later.kinds);
    AddCounts(nes, later.nes);
    AddCounts(fbTypes, later.fbTypes);
    for (const auto& [reason, count] : later.problems) {
        AddProblems(problems[reason], count);
    }
}

std::int32_t NeOf(std::string_view fdn) {
    return NeIn(NS_UTIL::NS_FDN::LevelFinder<"NE">(fdn));
}

// ---- Rows -----------------------------------------------------------------------------------------------------------

void SortByCount(std::vector<CountRow>& rows) {
    const auto isBefore = [](const CountRow& one, const CountRow& other) {
        if (one.count != other.count) {
            return one.count > other.count;
        }
        // Numbers of fewer digits are smaller.
        return std::pair(one.value.size(), std::string_view(one.value)) <
               std::pair(other.value.size(), std::string_view(other.value));
    };
    std::sort(rows.begin(), rows.end(), isBefore);
}

std::vector<CountRow> KindRows(const Statistics& statistics) {
    std::map<std::string_view, std::uint64_t> byWord;  // several kinds may share a word
    for (const auto& [kind, count] : statistics.kinds) {
        byWord[kind != nullptr ? kind->word : std::string_view()] += count;
    }
    std::vector<CountRow> rows;
    rows.reserve(byWord.size());
    for (const auto& [word, count] : byWord) {
        rows.push_back({std::string(word), {}, count});
    }
    SortByCount(rows);
    return rows;
}

std::vector<CountRow> NeRows(const Statistics& statistics) {
    return NumberRows(statistics.nes, Statistics::NO_NE, [](std::int32_t) { return std::string(); });
}

std::vector<CountRow> FbTypeRows(const Statistics& statistics) {
    return NumberRows(statistics.fbTypes, Statistics::NO_FB_TYPE,
                      [](std::int32_t fbType) { return NameOfFbType(fbType).value_or(""); });
}

std::vector<CountRow> LevelRows(const Statistics& statistics) {
    constexpr std::int32_t NO_LEVEL = -1;
    std::unordered_map<std::int32_t, std::uint64_t> levels;
    for (const auto& [fbType, count] : statistics.fbTypes) {
        levels[LevelOfFbType(fbType).value_or(NO_LEVEL)] += count;
    }
    return NumberRows(levels, NO_LEVEL, [](std::int32_t level) { return RateOfLevel(level).value_or(""); });
}

std::vector<CountRow> ProblemRows(const Statistics& statistics) {
    std::vector<CountRow> rows;
    rows.reserve(statistics.problems.size());
    for (const auto& [reason, problem] : statistics.problems) {
        const ProblemCount::Place& first = problem.places.front();
        rows.push_back({std::string(reason), {}, problem.count, first.place, first.text});
    }
    SortByCount(rows);
    return rows;
}

// ---- Counting -------------------------------------------------------------------------------------------------------

IdentifierCounter::Counted IdentifierCounter::Count(std::string_view fdn, const PlaceOf& placeOf) {
    const PortLevels levels(fdn);
    Counted counted = m_search == ProblemSearch::NONE ? Counted{FindKind(fdn), false} : Check(fdn, placeOf);
    counted.neId = NeIn(levels);
    ++m_counts.lines;
    ++m_counts.kinds[counted.kind];
    ++m_counts.nes[counted.neId];
    m_counts.problemLines += counted.hasProblem ? 1 : 0;
    if (const auto fbType = FbTypeOf(levels)) {
        ++m_counts.fbTypes[*fbType];
    }
    return counted;
}

IdentifierCounter::Counted IdentifierCounter::Check(std::string_view fdn, const PlaceOf& placeOf) {
    const Kind* const kind = CheckIdentifier(fdn, [&](const Problem& problem) { Note(problem, placeOf); });
    if (kind == nullptr) {
        return {FindKind(fdn), true};
    }
    return {kind, m_search == ProblemSearch::ALL && IsWrittenDifferently(*kind, fdn, placeOf)};
}

bool IdentifierCounter::IsWrittenDifferently(const Kind& kind, std::string_view fdn, const PlaceOf& placeOf) {
    const auto [problem, isUndecided] = m_writing.Find(kind, fdn, m_surroundings);
    if (problem) {
        Note(*problem, placeOf);
    }
    if (isUndecided) {
        ++m_counts.notCompared;
    }
    return problem.has_value();
}

void IdentifierCounter::CountNoText(const Problem& problem, const PlaceOf& placeOf) {
    ++m_counts.lines;
    ++m_counts.problemLines;
    ++m_counts.kinds[nullptr];
    ++m_counts.nes[Statistics::NO_NE];
    Note(problem, placeOf);
}

void IdentifierCounter::Note(const Problem& problem, const PlaceOf& placeOf) {
    ProblemCount& count = m_counts.problems[problem.reason];
    ++count.count;
    if (count.places.size() < ProblemCount::MOST_PLACES) {
        count.places.push_back({placeOf(problem.column), problem.text});
    }
}

Statistics IdentifierCounter::Take() {
    return std::exchange(m_counts, {});
}

}  // namespace NS_KX
