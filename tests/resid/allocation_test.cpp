// Conversions allocate nothing if their texts have room, and otherwise only what the texts need.
#include <string>
#include <type_traits>

#include <gtest/gtest.h>

#include <kx_domain_util/resIDUtil.h>

#include "support/allocations.h"
#include "support/conversions.h"
#include "support/generated.h"
#include "support/room.h"
#include "support/scale.h"
#include "support/services.h"

namespace {

using NS_TEST::AllocationCount;
using NS_TEST::Configuration;
using NS_TEST::CountingInventory;
using NS_TEST::CountTextsThatNeedRoom;
using NS_TEST::FailingAllocations;
using NS_TEST::ForEachReader;
using NS_TEST::ForEachReaderOfMap;
using NS_TEST::ForEachReaderOfText;
using NS_TEST::ForEachWriter;
using NS_TEST::IdentifierGenerator;
using NS_TEST::MakeRoom;
using NS_TEST::NeedsRoom;
using NS_TEST::Reader;
using NS_TEST::RecordGenerator;
using NS_TEST::Registration;
using NS_TEST::Scaled;
using NS_TEST::Writer;
using NS_TEST::WriterArguments;
using NS_UTIL::MocLvlValueMap;
using NS_UTIL::ResIDUtil;
using NS_UTIL::Surroundings;

class NoFile : public NS_SERVICE::DAWSvcInterface {
public:
    NS_SERVICE::ConfigObject* GetConfiguration(const std::string&, const std::string&) override { return nullptr; }
};

class Allocations : public testing::Test {
protected:
    // First calls allocate what later calls reuse.
    Allocations() {
        std::string fdn;
        ForEachWriter([&fdn]<class Record>(const Writer<Record>& writer) {
            Record record;
            if constexpr (requires { record.slotId; }) {
                record.slotId = 1;
            }
            writer.library(record, fdn, {});
        });
        ForEachReader([]<class Record>(const Reader<Record>& reader) {
            Record record;
            reader.library("NE=1", record);
        });
    }

    Configuration m_configuration{{"Telvandaire", "1"}, {"NETypeListForSubSlot", "7,8,1911"}};
    CountingInventory m_inventory{1911};
    NoFile m_dataAccess;
    Registration m_first{"InventoryBufif", m_inventory};
    Registration m_second{"DAWSvcInterface", m_dataAccess};
};

TEST_F(Allocations, AreCounted) {
    const AllocationCount count;
    EXPECT_EQ(count.Get(), 0U);
    std::string text(1000, 'x');
    text.resize(2000);
    EXPECT_EQ(count.Get(), 2U);
    EXPECT_THROW(
        {
            const FailingAllocations failing;
            text.resize(10000);
        },
        std::bad_alloc);
}

TEST_F(Allocations, AreNotMadeByReaders) {
    IdentifierGenerator identifiers(61);
    for (std::size_t round = 0; round < Scaled(20000) && !HasFailure(); ++round) {
        const std::string fdn = identifiers.Next();
        const auto expectNone = [&fdn](const auto& reader, const auto& given) {
            typename std::decay_t<decltype(reader)>::Record record;
            MakeRoom(record);

            const AllocationCount count;
            reader.library(given, record);

            EXPECT_EQ(count.Get(), 0U) << reader.name << " of " << testing::PrintToString(fdn);
        };
        MocLvlValueMap map;
        ResIDUtil::Fdn2MocLvlValueMap(fdn, map);
        ForEachReaderOfText([&](const auto& reader) { expectNone(reader, fdn); });
        ForEachReaderOfMap([&](const auto& reader) { expectNone(reader, map); });
    }
}

TEST_F(Allocations, AreNotMadeByTypedReaders) {
    IdentifierGenerator identifiers(65);
    for (std::size_t round = 0; round < Scaled(20000) && !HasFailure(); ++round) {
        const std::string fdn = identifiers.Next();
        ForEachReaderOfText([&fdn]<class Record>(const Reader<Record>& reader) {
            Record record;
            MakeRoom(record);

            const AllocationCount count;
            reader.typed(fdn, record, Surroundings::OfSystem());

            EXPECT_EQ(count.Get(), 0U) << reader.name << " of " << testing::PrintToString(fdn);
        });
    }
}

TEST_F(Allocations, AreNotMadeByWriters) {
    RecordGenerator records(62);
    std::string fdn;
    fdn.reserve(4096);
    for (std::size_t round = 0; round < Scaled(20000) && !HasFailure(); ++round) {
        ForEachWriter([&]<class Record>(const Writer<Record>& writer) {
            const Record record = records.Next<Record>();
            const WriterArguments arguments{records.Flag(), static_cast<unsigned long>(records.Number())};

            const AllocationCount count;
            writer.library(record, fdn, arguments);

            EXPECT_EQ(count.Get(), 0U) << writer.name;
        });
    }
}

// Texts without room grow once.
TEST_F(Allocations, AreMadeByReadersOnceForEachTextWithoutRoom) {
    IdentifierGenerator identifiers(63);
    const std::string name(100, 'n');
    std::size_t texts = 0;
    for (std::size_t round = 0; round < Scaled(20000) && !HasFailure(); ++round) {
        const std::string fdn = identifiers.Next() + name;
        const auto expectOnce = [&](const auto& reader, const auto& given) {
            typename std::decay_t<decltype(reader)>::Record record;

            const AllocationCount count;
            reader.library(given, record);

            EXPECT_LE(count.Get(), CountTextsThatNeedRoom(record))
                << reader.name << " of " << testing::PrintToString(fdn);
            texts += CountTextsThatNeedRoom(record);
        };
        MocLvlValueMap map;
        ResIDUtil::Fdn2MocLvlValueMap(fdn, map);
        ForEachReaderOfText([&](const auto& reader) { expectOnce(reader, fdn); });
        ForEachReaderOfMap([&](const auto& reader) { expectOnce(reader, map); });
    }
    EXPECT_GT(texts, 0U);
}

TEST_F(Allocations, AreMadeByReadersOnceForANameWithAnEscapedBar) {
    const std::string fdn = "NE=5,PP=251|1025|7|" + std::string(40, 'a') + "\\|" + std::string(200, 'b');
    NS_DOMAIN::PortIndex port;

    const AllocationCount count;
    ResIDUtil::ResID2PortIndex(fdn, port);

    EXPECT_EQ(count.Get(), 1U);
    EXPECT_EQ(port.portLabel, std::string(40, 'a') + "|" + std::string(200, 'b'));
}

TEST_F(Allocations, AreMadeByWritersOnceForATextWithoutRoom) {
    RecordGenerator records(64);
    std::size_t texts = 0;
    for (std::size_t round = 0; round < Scaled(20000) && !HasFailure(); ++round) {
        ForEachWriter([&]<class Record>(const Writer<Record>& writer) {
            const Record record = records.Next<Record>();
            const WriterArguments arguments{records.Flag(), static_cast<unsigned long>(records.Number())};
            std::string fdn;

            const AllocationCount count;
            writer.library(record, fdn, arguments);

            EXPECT_EQ(count.Get(), NeedsRoom(fdn) ? 1U : 0U) << writer.name << " of " << fdn;
            texts += count.Get();
        });
    }
    EXPECT_GT(texts, 0U);
}

}  // namespace
