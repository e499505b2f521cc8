/// What the verbs that count identifiers have in common.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include <kx_standalone/inventoryfile.h>

#include "catalogue/statistics.h"
#include "cli/chosennes.h"
#include "cli/services.h"
#include "lines/linerun.h"

namespace NS_KX::NS_KXDU {

/// What the user chose.
struct CountingOptions {
    BulkOptions bulk;
    ServiceOptions services;
    ChosenNes nes;
    bool isLevelsOnly = false;
    bool isWithoutProblems = false;

    [[nodiscard]] ProblemSearch Search() const {
        return isWithoutProblems ? ProblemSearch::NONE : isLevelsOnly ? ProblemSearch::LEVELS : ProblemSearch::ALL;
    }
};

/// Adds inputs, `--ne`, `--levels-only`, services, `--jobs` and `--no-progress` to `verb`.
void AddCountingOptions(Verb& verb, CountingOptions& options);

/// Counts the identifiers of the chosen NEs. Each belongs to one thread at a time.
class LineCounter : public LineConverter {
public:
    explicit LineCounter(const CountingOptions& options);

    void Convert(std::string_view line, LineResult& result) final;
    void Refuse(std::string_view reason, std::size_t column, LineResult& result) final;

    /// The counts since the last call.
    Statistics Take() { return m_counter.Take(); }

private:
    /// Takes an identifier that was counted.
    virtual void Keep(std::string_view /*fdn*/, const IdentifierCounter::Counted& /*counted*/) {}

    const ChosenNes& m_nes;
    IdentifierCounter m_counter;
};

/// Counts the lines of the inputs. `take`, which may be empty, is called with each counter of `make` after its block,
/// in the order of the lines. Says on standard error what could not be compared, and which NEs the inventory lacks.
/// Throws `Failure` as `RunLines` does.
Statistics CountLines(const CountingOptions& options, const std::vector<FileInUse>& filesInUse,
                      const std::function<std::unique_ptr<LineCounter>()>& make,
                      const std::function<void(LineCounter&)>& take);

/// The NE types and families of the NEs of a network, by an inventory.
class NeFamilies {
public:
    explicit NeFamilies(const NS_STANDALONE::Inventory& inventory);

    /// The NE type of an NE; none if the inventory lacks it.
    [[nodiscard]] std::optional<std::uint16_t> TypeOf(std::int32_t neId) const;
    /// The name of an NE type; empty if it has none.
    [[nodiscard]] std::string_view NameOf(std::uint16_t neType) const;

    /// How many of the NEs counted in `statistics` are of which NE type.
    [[nodiscard]] std::vector<CountRow> NeTypeRows(const Statistics& statistics) const;
    /// How many of them belong to which domain of this cache. An NE may belong to several, or to none.
    [[nodiscard]] std::vector<CountRow> DomainRows(NS_STANDALONE::DomainCache cache,
                                                   const Statistics& statistics) const;

private:
    const NS_STANDALONE::Inventory& m_inventory;
};

}  // namespace NS_KX::NS_KXDU
