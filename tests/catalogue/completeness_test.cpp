// What fails when a kind is added to the catalogue and forgotten elsewhere.
#include <set>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "catalogue/kinds.h"
#include "catalogue/levelcheck.h"
#include "sample/sampleidentifiers.h"
#include "support/examplelist.h"
#include "support/files.h"

namespace NS_KX {
namespace {

bool IsFoundByItsLastLevel(const Kind& kind) {
    return !kind.lastTags.front().empty();
}

// The types of the identifiers that stand in quotes in a JSON text.
std::set<std::string_view> TypesIn(std::string_view json) {
    std::set<std::string_view> types;
    for (auto begin = json.find('"'); begin != std::string_view::npos;) {
        auto end = json.find('"', begin + 1);
        while (end != std::string_view::npos && json[end - 1] == '\\') {
            end = json.find('"', end + 1);
        }
        if (const Kind* const kind = FindKind(json.substr(begin + 1, end - begin - 1))) {
            types.insert(kind->type);
        }
        begin = end == std::string_view::npos ? end : json.find('"', end + 1);
    }
    return types;
}

std::set<std::string_view> TypesInVectors() {
    static std::string texts;
    for (const auto* const family : {"equipment", "port", "service", "oam"}) {
        texts += NS_TEST::ReadFile(std::string(KX_TEST_DATA "/vectors/") + family + "readers.json");
        texts += NS_TEST::ReadFile(std::string(KX_TEST_DATA "/vectors/") + family + "writers.json");
    }
    return TypesIn(texts);
}

TEST(Completeness, TheExampleOfAKindIsOfItWellFormedAndWrittenJustSo) {
    class Inventory : public NS_UTIL::Surroundings {
        unsigned short NEType(int) const override { return 0; }
        bool SpellsOutSubSlot(int) const override { return false; }
        bool IsMdNumberOmitted(int) const override { return false; }
        bool IsMaNumberOmitted(int) const override { return false; }
    };
    for (const Kind* const kind : AllKinds()) {
        EXPECT_EQ(!IsFoundByItsLastLevel(*kind) || FindKind(kind->example) == kind, true) << kind->type;
        CheckLevels(kind->example,
                    [&](const Problem& problem) { ADD_FAILURE() << kind->example << ": " << problem.text; });
        std::string written;
        AnyRecord records;
        Rewrite(*kind, kind->example, Inventory(), records, written);
        EXPECT_EQ(written, kind->example) << kind->type;
    }
}

TEST(Completeness, EveryKindIsAmongTheVectors) {
    const std::set<std::string_view> types = TypesInVectors();
    for (const Kind* const kind : AllKinds()) {
        EXPECT_TRUE(!IsFoundByItsLastLevel(*kind) || types.contains(kind->type)) << kind->type;
    }
}

TEST(Completeness, EveryKindIsInASampleNetwork) {
    const SampleNetwork network(1);
    const SampleInventoryService service(network);
    SampleIdentifiers identifiers(network);
    std::set<std::string_view> types;
    for (std::int32_t neId = 1; neId <= 200; ++neId) {
        identifiers.Write(neId, [&](const std::string& fdn) { types.insert(FindKind(fdn)->type); });
    }
    for (const Kind* const kind : AllKinds()) {
        EXPECT_TRUE(!IsFoundByItsLastLevel(*kind) || types.contains(kind->type)) << kind->type;
    }
}

TEST(Completeness, EveryKindIsAmongTheExamplesThatOtherTestsVary) {
    const std::set<std::string_view> examples(NS_TEST::EXAMPLES.begin(), NS_TEST::EXAMPLES.end());
    for (const Kind* const kind : AllKinds()) {
        EXPECT_TRUE(examples.contains(kind->example)) << kind->type;
    }
}

}  // namespace
}  // namespace NS_KX
