#include "report/network.h"

#include <algorithm>
#include <unordered_map>

#include "catalogue/kinds.h"
#include "lines/failure.h"

namespace NS_KX::NS_KXDU {

namespace {

constexpr std::string_view PORT = "port";

// A letter for each kind.
std::unordered_map<const Kind*, char> KindLetters() {
    std::unordered_map<const Kind*, char> letters{{nullptr, '-'}};
    for (const Kind* const kind : AllKinds()) {
        letters[kind] = LETTERS.at(letters.size() - 1);
    }
    return letters;
}

// How many levels at the beginning of both are the same, each with its comma, and where they end.
std::pair<std::size_t, std::size_t> SharedLevels(std::string_view one, std::string_view other) {
    const auto [end, otherEnd] = std::mismatch(one.begin(), one.end(), other.begin(), other.end());
    std::size_t levels = 0;
    std::size_t size = 0;
    for (std::size_t at = 0; at < static_cast<std::size_t>(end - one.begin()) && levels < LETTERS.size() - 1; ++at) {
        if (one[at] == ',') {
            ++levels;
            size = at + 1;
        }
    }
    return {levels, size};
}

// Gathers the identifiers of a block.
class NetworkCounter final : public LineCounter {
public:
    using LineCounter::LineCounter;

    // How many identifiers were gathered, and how much text they make.
    [[nodiscard]] std::pair<std::uint64_t, std::size_t> Size() const {
        std::pair<std::uint64_t, std::size_t> sum{0, 0};
        for (const auto& [neId, identifiers] : m_runs) {
            sum.first += identifiers.count;
            sum.second += identifiers.text.size();
        }
        return sum;
    }

    // Moves what was gathered to the end of `network`.
    void MoveTo(Network& network) {
        for (const auto& [neId, identifiers] : m_runs) {
            network.nes[neId].Add(identifiers);
        }
        m_runs.clear();
    }

private:
    void Keep(std::string_view fdn, const IdentifierCounter::Counted& counted) override {
        if (counted.neId == Statistics::NO_NE) {
            return;
        }
        if (m_runs.empty() || m_runs.back().first != counted.neId) {
            m_runs.emplace_back(counted.neId, NeIdentifiers());
            m_previous.clear();
        }
        NeIdentifiers& ne = m_runs.back().second;
        const auto [levels, size] = SharedLevels(fdn, m_previous);
        ne.text.append(ne.count == 0 ? "" : "\n").append(counted.hasProblem ? "!" : "");
        ne.text.append(1, m_kindLetters.at(counted.kind)).append(1, LETTERS[levels]).append(fdn.substr(size));
        ++ne.count;
        ne.ports += counted.kind != nullptr && counted.kind->word == PORT ? 1 : 0;
        ne.problems += counted.hasProblem ? 1 : 0;
        m_previous = fdn;
    }

    // Identifiers of one NE mostly follow each other.
    std::vector<std::pair<std::int32_t, NeIdentifiers>> m_runs;
    std::string m_previous;  // in the last run
    std::unordered_map<const Kind*, char> m_kindLetters = KindLetters();
};

}  // namespace

void NeIdentifiers::Add(const NeIdentifiers& later) {
    text.append(count == 0 ? "" : "\n").append(later.text);
    count += later.count;
    ports += later.ports;
    problems += later.problems;
}

Network ReadNetwork(const CountingOptions& options, const std::vector<FileInUse>& filesInUse) {
    Network network;
    std::uint64_t count = 0;
    std::size_t size = 0;
    const auto take = [&](LineCounter& counter) {
        auto& gathered = static_cast<NetworkCounter&>(counter);  // made below
        const auto [blockCount, blockSize] = gathered.Size();
        count += blockCount;
        size += blockSize;
        if (count > Network::MOST_IDENTIFIERS || size > Network::MOST_TEXT) {
            throw Failure(Cause::INPUT, "the network is too large for one page, which holds " +
                                            std::to_string(Network::MOST_IDENTIFIERS) + " identifiers and " +
                                            std::to_string(Network::MOST_TEXT >> 20U) +
                                            " MiB of them; choose NEs with --ne, such as --ne 1-2000");
        }
        gathered.MoveTo(network);
    };
    network.statistics = CountLines(
        options, filesInUse, [&] { return std::make_unique<NetworkCounter>(options); }, take);
    return network;
}

}  // namespace NS_KX::NS_KXDU
