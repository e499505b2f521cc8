#include "cli/counting.h"

#include <algorithm>
#include <map>
#include <string>
#include <utility>

#include "cli/bulkoptions.h"
#include "cli/identifierlines.h"
#include "cli/missingnes.h"
#include "cli/verb.h"
#include "lines/descriptor.h"

namespace NS_KX::NS_KXDU {

void AddCountingOptions(Verb& verb, CountingOptions& options) {
    AddInputFiles(verb, options.bulk);
    AddChosenNes(verb, options.nes);
    AddServiceOptions(verb, options.services);
    verb.AddFlag("--levels-only", options.isLevelsOnly,
                 "Check the levels only; do not compare with what the library writes");
    AddJobOptions(verb, options.bulk);
}

// ---- Counting -------------------------------------------------------------------------------------------------------

LineCounter::LineCounter(const CountingOptions& options)
    : m_nes(options.nes), m_counter(options.Search(), NS_UTIL::Surroundings::OfSystem()) {}

void LineCounter::Convert(std::string_view line, LineResult& result) {
    if (result.IsFirstLine()) {
        RefuseOtherThanIdentifiers(line);
    }
    if (!m_nes.AreAll() && !m_nes.Has(NeOf(line))) {
        return;
    }
    Keep(line, m_counter.Count(line, [&result](std::size_t column) { return result.PlaceOf(column); }));
}

void LineCounter::Refuse(std::string_view reason, std::size_t column, LineResult& result) {
    if (m_nes.AreAll()) {
        m_counter.CountNoText({column, std::string(reason), reason},
                              [&result](std::size_t place) { return result.PlaceOf(place); });
    }
}

Statistics CountLines(const CountingOptions& options, const std::vector<FileInUse>& filesInUse,
                      const std::function<std::unique_ptr<LineCounter>()>& make,
                      const std::function<void(LineCounter&)>& take) {
    MissingNes missing;
    const bool areServicesUsed = options.Search() == ProblemSearch::ALL;
    const auto services = areServicesUsed ? StartServices(options.services, &missing) : nullptr;
    Statistics statistics;
    LineWork work;
    work.filesInUse = filesInUse;
    work.makeConverter = make;
    work.takeGathered = [&](LineConverter& converter) {
        auto& counter = static_cast<LineCounter&>(converter);  // made by `make`
        statistics.Add(counter.Take());
        take(counter);
    };
    RunLines(options.bulk, work);
    if (!options.nes.AreAll() && statistics.nes.empty()) {
        WriteMessage("kxdu: no identifier is of an NE that --ne names\n");
    }
    if (statistics.notCompared != 0) {
        WriteMessage(
            "kxdu: " + std::to_string(statistics.notCompared) +
            (statistics.notCompared == 1 ? " identifier is" : " identifiers are") +
            " right on some NEs only, and there is no inventory to tell which; give one with --inventory FILE\n");
    }
    missing.Tell();
    return statistics;
}

// ---- NE types -------------------------------------------------------------------------------------------------------

NeFamilies::NeFamilies(const NS_STANDALONE::Inventory& inventory) : m_inventory(inventory) {}

std::optional<std::uint16_t> NeFamilies::TypeOf(std::int32_t neId) const {
    const auto& nes = m_inventory.nes;  // in the order of their numbers
    const auto ne = std::lower_bound(nes.begin(), nes.end(), neId,
                                     [](const auto& row, std::int32_t number) { return row.neId < number; });
    return ne != nes.end() && ne->neId == neId ? std::optional(ne->neType) : std::nullopt;
}

std::string_view NeFamilies::NameOf(std::uint16_t neType) const {
    const auto& types = m_inventory.neTypes;
    const auto type = std::find_if(types.begin(), types.end(), [&](const auto& row) { return row.neType == neType; });
    return type != types.end() ? std::string_view(type->name) : std::string_view();
}

std::vector<CountRow> NeFamilies::NeTypeRows(const Statistics& statistics) const {
    std::map<std::optional<std::uint16_t>, std::uint64_t> counts;
    for (const auto& [neId, lines] : statistics.nes) {
        counts[TypeOf(neId)] += neId != Statistics::NO_NE ? 1 : 0;
    }
    std::vector<CountRow> rows;
    for (const auto& [type, count] : counts) {
        if (count != 0) {
            rows.push_back({type ? std::to_string(*type) : "", type ? std::string(NameOf(*type)) : "", count});
        }
    }
    SortByCount(rows);
    return rows;
}

std::vector<CountRow> NeFamilies::DomainRows(NS_STANDALONE::DomainCache cache, const Statistics& statistics) const {
    std::multimap<std::uint16_t, std::string_view> domainsOfTypes;
    for (const auto& member : m_inventory.domainMembers) {
        if (member.cache == cache) {
            domainsOfTypes.emplace(member.neType, member.domain);
        }
    }
    std::map<std::string_view, std::uint64_t> counts;
    for (const auto& [neId, lines] : statistics.nes) {
        const auto type = TypeOf(neId);
        const auto [first, end] =
            type ? domainsOfTypes.equal_range(*type) : std::pair(domainsOfTypes.end(), domainsOfTypes.end());
        std::for_each(first, end, [&](const auto& domain) { ++counts[domain.second]; });
        counts[{}] += neId != Statistics::NO_NE && first == end ? 1 : 0;
    }
    std::vector<CountRow> rows;
    for (const auto& [domain, count] : counts) {
        if (count != 0) {
            rows.push_back({std::string(domain), {}, count});
        }
    }
    SortByCount(rows);
    return rows;
}

}  // namespace NS_KX::NS_KXDU
