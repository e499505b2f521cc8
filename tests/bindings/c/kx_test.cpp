#include <array>
#include <atomic>
#include <cstring>
#include <optional>
#include <thread>

#include <gmock/gmock.h>
#include <kx/kx.h>

#include <kx_domain_util/constanttables.h>
#include <kx_domain_util/fbtype.h>

#include "bindings/c/comparison.h"
#include "bindings/c/identifiers.h"
#include "bindings/c/owned.h"
#include "catalogue/vocabulary.h"
#include "support/allocations.h"
#include "support/exacttext.h"
#include "support/scale.h"
#include "support/services.h"

using namespace NS_KX;
using namespace NS_TEST;

namespace {

void ExpectNoDifference(const std::vector<std::string>& identifiers) {
    Comparison comparison;
    for (const std::string& fdn : identifiers) {
        ASSERT_EQ(comparison.DifferenceOf(ExactView(fdn)), "") << fdn;
    }
    EXPECT_GT(comparison.CountRecords(), identifiers.size() / 20);
}

// So many, some of each.
std::vector<std::string> MixedIdentifiers(std::size_t count) {
    std::vector<std::string> mixed = SampleIdentifiersOf(20);
    mixed.resize(std::min(mixed.size(), count / 2));
    for (const std::string& fdn : SeedIdentifiers()) {
        mixed.push_back(fdn);
    }
    for (const std::string& fdn : OddIdentifiers(count - mixed.size())) {
        mixed.push_back(fdn);
    }
    return mixed;
}

}  // namespace

// ---- Answers --------------------------------------------------------------------------------------------------------

TEST(CAnswers, AreThoseOfTheCatalogueForASampleNetwork) {
    const auto identifiers = SampleIdentifiersOf(static_cast<std::int32_t>(Scaled(150)));
    ASSERT_GT(identifiers.size(), 1000U);
    ExpectNoDifference(identifiers);
}

TEST(CAnswers, AreThoseOfTheCatalogueForTheSeedsOfTheFuzzers) {
    const auto identifiers = SeedIdentifiers();
    ASSERT_GT(identifiers.size(), 100U);
    ExpectNoDifference(identifiers);
}

TEST(CAnswers, AreThoseOfTheCatalogueForOddIdentifiers) {
    ExpectNoDifference(OddIdentifiers(Scaled(20'000)));
}

TEST(CAnswers, AreThoseOfTheCatalogueForEachTypeWhateverTheLastLevel) {
    Comparison comparison;
    for (const std::string& fdn : SeedIdentifiers()) {
        for (const Kind* const kind : AllKinds()) {
            ASSERT_EQ(comparison.DifferenceAs(*kind, ExactView(fdn)), "") << kind->type << " of " << fdn;
        }
    }
}

TEST(CAnswers, ListAllTypes) {
    ASSERT_EQ(kx_type_count(), AllKinds().size());
    for (std::size_t place = 0; place < AllKinds().size(); ++place) {
        EXPECT_EQ(kx_type_name(place), AllKinds()[place]->type);
    }
}

// The names are handed out as strings that end with a NUL.
TEST(CAnswers, NamesOfTheCatalogueEndWithANul) {
    for (const Kind* const kind : AllKinds()) {
        EXPECT_EQ(std::strlen(kind->type.data()), kind->type.size());
        EXPECT_EQ(std::strlen(kind->word.data()), kind->word.size());
        for (const NS_KX::Field& field : kind->layout.fields) {
            EXPECT_EQ(std::strlen(field.name.data()), field.name.size());
        }
    }
}

namespace {

template <class Answer, class Look>
std::optional<Answer> AskTable(int key, Look look) {
    Answer answer{};
    const kx_status status = look(key, &answer);
    EXPECT_THAT(status, testing::AnyOf(KX_OK, KX_NOT_THERE)) << key;
    return status == KX_OK ? std::optional(answer) : std::nullopt;
}

std::optional<std::string> AskName(int key, kx_status (*look)(std::int32_t, const char**)) {
    const auto name = AskTable<const char*>(key, look);
    return name ? std::optional<std::string>(*name) : std::nullopt;
}

}  // namespace

TEST(CAnswers, AreThoseOfTheConstantTables) {
    std::size_t rows = 0;
    for (int key = -2; key < 70'000; ++key) {
        const auto name = AskName(key, kx_fb_name);
        ASSERT_EQ(name, NameOfFbType(key)) << key;
        ASSERT_EQ(AskTable<std::int32_t>(key, kx_fb_level), LevelOfFbType(key)) << key;
        ASSERT_EQ(AskTable<std::int32_t>(key, kx_fb_bidir), BidirOfFbType(key)) << key;
        ASSERT_EQ(AskTable<std::int32_t>(key, kx_level_fb_type), FbTypeOfLevel(key)) << key;
        const auto rate = AskName(key, kx_level_rate);
        ASSERT_EQ(rate, RateOfLevel(key)) << key;
        const auto ctp = AskName(key, kx_ctp_name);
        ASSERT_EQ(ctp, NameOfCtp(key)) << key;
        ASSERT_EQ(kx_fb_has_ptn_aid(key), NS_UTIL::IsPTNAIDFBType(key)) << key;
        ASSERT_EQ(kx_fb_is_logical_port(key), NS_UTIL::IsLogicalPortByType(key)) << key;
        for (const int kind : {0, 3}) {
            ASSERT_EQ(kx_fb_is_port_object(key, kind), NS_UTIL::IsPortObjByFbType(key, kind)) << key;
        }
        rows += (name ? 1 : 0) + (rate ? 1 : 0) + (ctp ? 1 : 0);
    }
    EXPECT_GT(rows, NS_UTIL::GetCtpNameRows().size() + NS_UTIL::GetClientRateRows().size());
    for (const auto& row : NS_UTIL::GetClientRateRows()) {
        std::int32_t level = 0;
        EXPECT_EQ(kx_rate_level(row.name.data(), &level), KX_OK);
        EXPECT_EQ(level, *LevelOfRate(std::string(row.name)));
    }
    for (const auto& row : NS_UTIL::GetCtpNameRows()) {
        std::int32_t ctpId = 0;
        EXPECT_EQ(kx_ctp_id(row.name.data(), &ctpId), KX_OK);
        EXPECT_EQ(ctpId, static_cast<std::int32_t>(row.ctpId));
    }
}

// A management system in the same process has a carrier profile and an inventory.
TEST(CAnswers, AreTheSameBesideAManagementSystem) {
    const auto identifiers = MixedIdentifiers(2'000);
    const Configuration configuration{{"Telvandaire", "1"}, {"NETypeListForSubSlot", "1912"}};
    CountingInventory inventory(1912);
    const Registration inventoryRegistration("InventoryBufif", inventory);
    RecordingDataAccess dataAccess;
    const Registration dataAccessRegistration("DAWSvcInterface", dataAccess);
    ExpectNoDifference(identifiers);
    EXPECT_EQ(inventory.m_calls, 0U);
    EXPECT_TRUE(dataAccess.m_asked.empty());
}

// ---- Memory ---------------------------------------------------------------------------------------------------------

namespace {

// All that a program asks about an identifier; false if memory ran out.
bool AskAll(kx_record* record, const kx_plan* plan, const std::string& fdn, std::string& room) {
    kx_text text{};
    std::array<kx_text, 3> pieces{};
    kx_port port{};
    const char* word = nullptr;
    std::int32_t number = 0;
    bool hasMemory = true;
    const auto count = [&](kx_status status) { hasMemory &= status != KX_NO_MEMORY && status != KX_FAILED; };
    count(kx_decode(record, fdn.data(), fdn.size()));
    for (std::size_t place = 0; place < kx_field_count(record); ++place) {
        std::int64_t value = 0;
        const char* const name = kx_field_name(record, place);
        count(kx_field_type(record, place) == KX_TEXT ? kx_get_text(record, name, &text)
                                                      : kx_get_number(record, name, &value));
    }
    count(kx_encode(record, nullptr, &text));
    count(kx_encode(record, &NetworkOfFacts::FACTS, &text));
    count(kx_decode_as(record, "PortIndex", fdn.data(), fdn.size()));
    count(kx_type(fdn.data(), fdn.size(), &word));
    count(kx_kind(fdn.data(), fdn.size(), &word));
    count(kx_piece(fdn.data(), fdn.size(), "PP:3", &text));
    count(kx_number(fdn.data(), fdn.size(), "TUNNELPGTRAIL", &number));
    count(kx_pieces(plan, fdn.data(), fdn.size(), pieces.data()));
    count(kx_read_port(fdn.data(), fdn.size(), &port, room.data(), room.size()));
    return hasMemory;
}

constexpr std::array<const char*, 3> PIECES{"NE", "PP:2", "LP"};

Plan MakePlan() {
    kx_plan* plan = nullptr;
    EXPECT_EQ(kx_plan_new(PIECES.data(), PIECES.size(), &plan), KX_OK);
    return Plan(plan);
}

bool IsBadRecord(kx_record* record, const std::string& fdn) {
    kx_text text{};
    return kx_decode(record, fdn.data(), fdn.size()) == KX_OK &&
           kx_encode(record, &NetworkOfFacts::FACTS, &text) == KX_BAD_RECORD;
}

}  // namespace

TEST(CMemory, ARecordThatHasRoomAllocatesNothing) {
    const Record record(kx_record_new());
    const Plan plan = MakePlan();
    std::string room(4096, ' ');
    std::vector<std::string> identifiers = MixedIdentifiers(10'000);
    // The reason why a record is not written is a text that is made anew.
    std::erase_if(identifiers, [&](const std::string& fdn) { return IsBadRecord(record.get(), fdn); });
    ASSERT_GT(identifiers.size(), 9'500U);
    for (const std::string& fdn : identifiers) {
        ASSERT_TRUE(AskAll(record.get(), plan.get(), fdn, room));
    }
    for (const std::string& fdn : identifiers) {
        const AllocationCount count;
        AskAll(record.get(), plan.get(), fdn, room);
        ASSERT_EQ(count.Get(), 0U) << fdn;
    }
}

TEST(CMemory, NothingIsKeptOfWhatWasFreed) {
    std::string room(100, ' ');
    const auto run = [&] {
        const Record record(kx_record_new());
        const Plan plan = MakePlan();
        AskAll(record.get(), plan.get(), "NE=5,LSP=a service with a long name", room);
    };
    run();
    const std::ptrdiff_t before = LiveAllocations();
    run();
    EXPECT_EQ(LiveAllocations(), before);
}

namespace {

// Calls `call`, which gives a status, with memory that ends after one allocation more each time, until it has enough.
// Each failure must be told as one and leave the outputs untouched.
template <class Call, class IsUntouched>
void ExpectToldWhereMemoryEnds(const char* what, Call call, IsUntouched isUntouched) {
    SCOPED_TRACE(what);
    std::size_t failures = 0;
    for (std::size_t spared = 0; spared < 1000; ++spared) {
        std::optional<kx_status> status;
        bool hasFailed = false;
        {
            const FailingAllocations failing(spared);
            status = call();
            hasFailed = failing.HasOneFailed();
        }
        if (!hasFailed) {
            EXPECT_NE(status, KX_NO_MEMORY);
            EXPECT_GT(failures, 0U) << "nothing was allocated, so nothing was tried";
            return;
        }
        ++failures;
        ASSERT_EQ(status, KX_NO_MEMORY);
        ASSERT_TRUE(isUntouched());
    }
    FAIL() << "it never had enough";
}

}  // namespace

TEST(CMemory, ItsEndIsToldAndLeavesOutputsUntouched) {
    constexpr std::string_view SERVICE = "NE=5,LSP=a service with a long name, longer than a short text";
    constexpr std::string_view UNKNOWN = "NE=5,A_LEVEL_THAT_IS_NOT_KNOWN_AT_ALL=1";
    Record record;
    ExpectToldWhereMemoryEnds(
        "kx_record_new",
        [&]() -> kx_status {
            record.reset(kx_record_new());
            return record != nullptr ? KX_OK : KX_NO_MEMORY;
        },
        [&] { return record == nullptr; });
    ExpectToldWhereMemoryEnds(
        "kx_decode",
        [&] {
            record.reset();
            const kx_status status = [&]() -> kx_status {
                record.reset(kx_record_new());
                return record != nullptr ? kx_decode(record.get(), SERVICE.data(), SERVICE.size()) : KX_NO_MEMORY;
            }();
            return status;
        },
        [&] { return kx_record_type(record.get()) == nullptr && kx_field_count(record.get()) == 0; });
    kx_text text{"untouched", 9};
    const auto isUntouched = [&] { return text.size == 9 && std::memcmp(text.data, "untouched", 9) == 0; };
    ASSERT_EQ(kx_decode(record.get(), UNKNOWN.data(), UNKNOWN.size()), KX_UNKNOWN_TYPE);
    ASSERT_EQ(kx_clear_as(record.get(), "ServiceIndex"), KX_OK);
    const std::string longText(10'000, 'x');
    ExpectToldWhereMemoryEnds(
        "kx_set_text", [&] { return kx_set_text(record.get(), "resId", longText.data(), longText.size()); },
        [&] { return kx_record_error(record.get()).size == std::strlen("no memory"); });
    ExpectToldWhereMemoryEnds(
        "kx_encode", [&] { return kx_encode(record.get(), nullptr, &text); }, isUntouched);
    text = {"untouched", 9};
    std::size_t column = 0;
    const std::string bad(3'000, '=');
    ExpectToldWhereMemoryEnds(
        "kx_problem", [&] { return kx_problem(record.get(), bad.data(), bad.size(), 0, &column, &text); }, isUntouched);
    kx_plan* plan = nullptr;
    ExpectToldWhereMemoryEnds(
        "kx_plan_new", [&] { return kx_plan_new(PIECES.data(), PIECES.size(), &plan); },
        [&] { return plan == nullptr; });
    kx_plan_free(plan);
    const std::string port = "NE=5,PP=||1|" + longText;
    kx_port read{};
    ExpectToldWhereMemoryEnds(
        "kx_read_port", [&] { return kx_read_port(port.data(), port.size(), &read, nullptr, 0); },
        [&] { return read.name.data == nullptr && read.ne == 0; });
}

// ---- Exceptions -----------------------------------------------------------------------------------------------------

// A fact comes from a program that may be written in C++.
TEST(CExceptions, OfTheCallersFactsBecomeAStatus) {
    constexpr std::string_view CARD = "NE=5,FR=1,S=3,CP=-1";
    const Record record(kx_record_new());
    kx_text text{"untouched", 9};
    kx_facts facts{};
    facts.ne_type = [](void*, std::int32_t, std::uint16_t*) -> bool { throw std::runtime_error("no answer"); };
    ASSERT_EQ(kx_decode(record.get(), CARD.data(), CARD.size()), KX_OK);
    EXPECT_EQ(kx_encode(record.get(), &facts, &text), KX_FAILED);
    EXPECT_EQ(std::string(kx_record_error(record.get()).data, kx_record_error(record.get()).size), "no answer");
    facts.ne_type = [](void*, std::int32_t, std::uint16_t*) -> bool { throw 5; };
    EXPECT_EQ(kx_encode(record.get(), &facts, &text), KX_FAILED);
    EXPECT_EQ(std::string(kx_record_error(record.get()).data, kx_record_error(record.get()).size), "failed");
    facts.ne_type = [](void*, std::int32_t, std::uint16_t*) -> bool { throw std::bad_alloc(); };
    EXPECT_EQ(kx_encode(record.get(), &facts, &text), KX_NO_MEMORY);
    EXPECT_EQ(text.size, 9U);
}

// ---- Threads --------------------------------------------------------------------------------------------------------

TEST(CThreads, EachWithARecordOfItsOwnGetTheSameAnswers) {
    const auto identifiers = MixedIdentifiers(2'000);
    const Plan plan = MakePlan();
    std::atomic<std::size_t> differences{0};
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&] {
            Comparison comparison;
            std::array<kx_text, PIECES.size()> pieces{};
            for (const std::string& fdn : identifiers) {
                differences += comparison.DifferenceOf(fdn).empty() ? 0 : 1;
                kx_pieces(plan.get(), fdn.data(), fdn.size(), pieces.data());
                const std::string_view ne = FindPiece(fdn, *PieceName::Parse("NE"));
                differences += pieces[0].data == ne.data() && pieces[0].size == ne.size() ? 0 : 1;
                differences += kx_is_ptn_ne(static_cast<std::uint16_t>(fdn.size())) ? 1 : 0;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(differences, 0U);
}
