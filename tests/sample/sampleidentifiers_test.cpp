#include "sample/sampleidentifiers.h"

#include <set>
#include <string_view>
#include <unordered_set>

#include <gtest/gtest.h>

#include <kx_domain_util/fdnscanner.h>

#include "catalogue/conversion.h"
#include "catalogue/kinds.h"
#include "catalogue/levelcheck.h"
#include "sample/sampleinventoryservice.h"

using namespace NS_KX;

namespace {

void ForEachIdentifier(std::uint64_t seed, std::int32_t neCount, const TakeIdentifier& take) {
    const SampleNetwork network(seed);
    const SampleInventoryService service(network);
    SampleIdentifiers identifiers(network);
    for (std::int32_t neId = 1; neId <= neCount; ++neId) {
        identifiers.Write(neId, take);
    }
}

// FNV-1a over the identifiers as lines.
std::uint64_t HashOfLines(std::uint64_t seed, std::int32_t neCount) {
    std::uint64_t hash = 0xCBF29CE484222325U;
    const auto add = [&hash](std::string_view text) {
        for (const char character : text) {
            hash = (hash ^ static_cast<unsigned char>(character)) * 0x100000001B3U;
        }
    };
    ForEachIdentifier(seed, neCount, [&](const std::string& fdn) {
        add(fdn);
        add("\n");
    });
    return hash;
}

}  // namespace

// The bytes are a promise: files made on different machines are compared, and measurements refer to them.
TEST(SampleIdentifiers, TheSameSeedGivesTheSameBytesEverywhere) {
    EXPECT_EQ(HashOfLines(1, 100), 11537261258799432700U);
    EXPECT_EQ(HashOfLines(2, 100), 10292418871411770930U);
}

TEST(SampleIdentifiers, EachIsGivenBackByteForByte) {
    std::size_t count = 0;
    AnyRecord record;
    std::string canonical;
    ForEachIdentifier(11, 500, [&](const std::string& fdn) {
        const Kind* const kind = FindKind(fdn);
        ASSERT_NE(kind, nullptr) << fdn;
        Rewrite(*kind, fdn, NS_UTIL::Surroundings::OfSystem(), record, canonical);
        ASSERT_EQ(canonical, fdn);
        ++count;
    });
    EXPECT_GT(count, 25'000U);
}

TEST(SampleIdentifiers, EachIsWellFormed) {
    ForEachIdentifier(12, 200, [](const std::string& fdn) {
        CheckLevels(fdn, [&](const Problem& problem) { ADD_FAILURE() << fdn << ": " << problem.text; });
    });
}

TEST(SampleIdentifiers, NoneIsWrittenTwice) {
    std::unordered_set<std::string> seen;
    ForEachIdentifier(13, 300, [&](const std::string& fdn) { ASSERT_TRUE(seen.insert(fdn).second) << fdn; });
}

TEST(SampleIdentifiers, AreOfEveryKindThatIsFoundByItsLastLevel) {
    std::set<std::string_view> types;
    ForEachIdentifier(1, 200, [&](const std::string& fdn) { types.insert(FindKind(fdn)->type); });
    for (const Kind* const kind : AllKinds()) {
        if (kind->type != "PortIndex:LoopBack") {
            EXPECT_TRUE(types.contains(kind->type)) << kind->type;
        }
    }
}

TEST(SampleIdentifiers, HaveEveryLevelThatAWriterWrites) {
    std::set<std::string_view> tags;
    ForEachIdentifier(1, 200, [&](const std::string& fdn) {
        NS_UTIL::NS_FDN::LevelScanner scanner(fdn);
        for (NS_UTIL::NS_FDN::Level level; scanner.Next(level);) {
            if (const Tag* const tag = FindTag(level.tag)) {
                tags.insert(tag->name);
            }
        }
    });
    for (const Tag* const tag : AllTags()) {
        // These two can be read, but are written as an access point.
        if (tag->name != "CHANNELSET" && tag->name != "VR") {
            EXPECT_TRUE(tags.contains(tag->name)) << tag->name;
        }
    }
}

TEST(SampleIdentifiers, TwoThousandNesHaveAHundredThousand) {
    for (const std::uint64_t seed : {0U, 1U, 42U}) {
        std::size_t count = 0;
        ForEachIdentifier(seed, 2000, [&](const std::string&) { ++count; });
        EXPECT_GE(count, 100'000U) << "seed " << seed;
    }
}
