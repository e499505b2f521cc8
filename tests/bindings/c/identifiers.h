/// Identifiers that tests of the C interface walk over.
#pragma once

#include <sstream>
#include <string>
#include <vector>

#include "sample/sampleidentifiers.h"
#include "sample/sampleinventoryservice.h"
#include "support/files.h"
#include "support/generated.h"

namespace NS_TEST {

/// Those of a sample network of so many NEs.
inline std::vector<std::string> SampleIdentifiersOf(std::int32_t neCount) {
    const NS_KX::SampleNetwork network(1);
    const NS_KX::SampleInventoryService service(network);
    NS_KX::SampleIdentifiers identifiers(network);
    std::vector<std::string> all;
    for (std::int32_t neId = 1; neId <= neCount; ++neId) {
        identifiers.Write(neId, [&](const std::string& fdn) { all.push_back(fdn); });
    }
    return all;
}

/// The seeds of the fuzzers that read identifiers, each from one line.
inline std::vector<std::string> SeedIdentifiers() {
    std::vector<std::string> all;
    std::istringstream lines(ReadFile(KX_TEST_DATA "/../fuzz/corpus/fdn.txt"));
    for (std::string line; std::getline(lines, line);) {
        if (!line.empty() && !line.starts_with('#')) {
            all.push_back(line);
        }
    }
    return all;
}

/// By chance, most of them damaged.
inline std::vector<std::string> OddIdentifiers(std::size_t count) {
    IdentifierGenerator generator(7);
    std::vector<std::string> all;
    while (all.size() < count) {
        all.push_back(generator.Next());
    }
    return all;
}

}  // namespace NS_TEST
