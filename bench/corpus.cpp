#include "corpus.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "sample/sampleidentifiers.h"
#include "sample/sampleinventoryservice.h"
#include "sample/samplenetwork.h"
#include "sample/splitmix64.h"

namespace NS_BENCH {

namespace {

constexpr std::uint64_t SEED = 1;

bool HasLevel(std::string_view fdn, std::string_view tag) {
    const std::string level = std::string(tag) + "=";
    return fdn.starts_with(level) || fdn.find("," + level) != std::string_view::npos;
}

template <class IsWanted>
std::vector<std::string> Select(const std::vector<std::string>& identifiers, IsWanted isWanted) {
    std::vector<std::string> selected;
    for (const std::string& fdn : identifiers) {
        if (isWanted(fdn)) {
            selected.push_back(fdn);
        }
    }
    if (selected.empty()) {
        throw std::logic_error("the corpus has no such identifier");
    }
    const std::size_t found = selected.size();
    while (selected.size() < Corpus::LEAST) {
        selected.push_back(selected[selected.size() - found]);
    }
    return selected;
}

}  // namespace

Corpus::Corpus(std::size_t size) {
    const NS_KX::SampleNetwork network(SEED);
    std::int32_t neId = 0;
    {
        const NS_KX::SampleInventoryService inventory(network);
        NS_KX::SampleIdentifiers identifiers(network);
        while (m_identifiers.size() < size) {
            identifiers.Write(++neId, [this](const std::string& fdn) { m_identifiers.push_back(fdn); });
        }
    }
    m_identifiers.resize(size);
    m_inventory = network.MakeInventory(neId);

    NS_KX::SplitMix64 random(SEED);
    for (std::size_t left = m_identifiers.size(); left > 1; --left) {
        std::swap(m_identifiers[left - 1], m_identifiers[random.Below(static_cast<std::uint32_t>(left))]);
    }
}

std::vector<std::string> Corpus::Holding(std::span<const std::string_view> tags) const {
    return Select(m_identifiers, [tags](const std::string& fdn) {
        return std::any_of(tags.begin(), tags.end(),
                           [&fdn](std::string_view tag) { return !tag.empty() && HasLevel(fdn, tag); });
    });
}

std::vector<std::string> Corpus::SixtyBytePorts() const {
    return Select(m_identifiers, [](const std::string& fdn) {
        return fdn.size() >= 58 && fdn.size() <= 62 && (HasLevel(fdn, "PP") || HasLevel(fdn, "LP"));
    });
}

}  // namespace NS_BENCH
