// These tests fail if a kind is added to the catalogue and forgotten elsewhere.
#include <set>
#include <string>
#include <string_view>

#include <gtest/gtest.h>
#include <rapidjson/reader.h>

#include "catalogue/conversion.h"
#include "catalogue/kinds.h"
#include "catalogue/levelcheck.h"
#include "sample/sampleidentifiers.h"
#include "sample/sampleinventoryservice.h"
#include "support/files.h"

namespace NS_KX {
namespace {

bool IsFoundByItsLastLevel(const Kind& kind) {
    return !kind.lastTags.front().empty();
}

// The types of the identifiers among the texts of a JSON file.
struct TypesOfTexts : rapidjson::BaseReaderHandler<rapidjson::UTF8<>, TypesOfTexts> {
    std::set<std::string_view> types;

    bool String(const char* text, rapidjson::SizeType size, bool /*copy*/) {
        if (const Kind* const kind = FindKind({text, size})) {
            types.insert(kind->type);
        }
        return true;
    }
};

std::set<std::string_view> TypesInVectors() {
    TypesOfTexts found;
    for (const std::string family : {"equipment", "port", "service", "oam"}) {
        for (const char* const side : {"readers", "writers"}) {
            const std::string json = NS_TEST::ReadFile(KX_TEST_DATA "/vectors/" + family + side + ".json");
            rapidjson::StringStream stream(json.c_str());
            EXPECT_FALSE(rapidjson::Reader().Parse(stream, found).IsError());
        }
    }
    return found.types;
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

}  // namespace
}  // namespace NS_KX
