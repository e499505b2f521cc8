#include <functional>
#include <map>
#include <stdexcept>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <kx_domain_util/processexception.h>
#include <kx_domain_util/resIDUtil.h>

#include "support/conversions.h"
#include "support/exacttext.h"
#include "support/generated.h"
#include "support/scale.h"
#include "support/services.h"

namespace {

using NS_DOMAIN::MAIndex;
using NS_DOMAIN::MDIndex;
using NS_DOMAIN::MEPIndex;
using NS_DOMAIN::MIPIndex;
using NS_TEST::ExactText;
using NS_TEST::ForEachReader;
using NS_TEST::IdentifierGenerator;
using NS_TEST::LiteralResIDUtil;
using NS_TEST::Reader;
using NS_TEST::RecordGenerator;
using NS_TEST::RecordingInventory;
using NS_TEST::RecordingLog;
using NS_TEST::Registration;
using NS_TEST::Scaled;
using NS_UTIL::InterfaceNotExistException;
using NS_UTIL::ResIDUtil;
using testing::ElementsAre;
using testing::IsEmpty;

// A writer that asks the inventory, and its text for SampleEndPoint().
struct OamWriter {
    const char* name;
    std::function<void(std::string&)> write;
    const char* whole;
    std::size_t questions;
};

MEPIndex SampleEndPoint() {
    MEPIndex mep;
    mep.neId = 5;
    mep.mdId = 3;
    mep.mdName = "md1";
    mep.maId = 4;
    mep.maName = "ma1";
    mep.mepId = 7;
    return mep;
}

template <class Record>
Record SamplePart() {
    const MEPIndex mep = SampleEndPoint();
    Record record;
    record.neId = mep.neId;
    record.mdId = mep.mdId;
    record.mdName = mep.mdName;
    return record;
}

std::vector<OamWriter> Writers() {
    auto ma = SamplePart<MAIndex>();
    ma.maId = 4;
    ma.maName = "ma1";
    auto mip = SamplePart<MIPIndex>();
    mip.mipId = 7;
    mip.mipName = "m";
    return {
        {"MDIndex2ResID", [](auto& fdn) { ResIDUtil::MDIndex2ResID(SamplePart<MDIndex>(), fdn); }, "NE=5,MD=3|md1", 1},
        {"MIPIndex2ResID", [mip](auto& fdn) { ResIDUtil::MIPIndex2ResID(mip, fdn); }, "NE=5,MD=3|md1,MIP=7|m", 1},
        {"MAIndex2ResID", [ma](auto& fdn) { ResIDUtil::MAIndex2ResID(ma, fdn); }, "NE=5,MD=3|md1,MA=4|ma1", 2},
        {"MepIndex2ResID", [](auto& fdn) { ResIDUtil::MepIndex2ResID(SampleEndPoint(), fdn); },
         "NE=5,MD=3|md1,MA=4|ma1,MEP=7", 2},
        {"RmepIndex2ResID", [](auto& fdn) { ResIDUtil::RmepIndex2ResID(SampleEndPoint(), fdn); },
         "NE=5,MD=3|md1,MA=4|ma1,RMEP=7", 2},
    };
}

// Returns the text that a writer has written if this question (the first is 1) gets no answer.
const char* TextUpTo(std::size_t question) {
    return question == 1 ? "NE=5,MD=" : "NE=5,MD=3|md1,MA=";
}

// An inventory that calls m_event at each question.
class EventfulInventory : public RecordingInventory {
public:
    bool IsOamNumberOmitted(int neId) override {
        RecordingInventory::IsOamNumberOmitted(neId);
        m_event(m_oamQuestions.size());
        return false;
    }

    std::function<void(std::size_t question)> m_event = [](std::size_t) {};
};

// ---- Writers --------------------------------------------------------------------------------------------------------

TEST(OamWriters, AskTheInventoryForEachMdAndMaLevel) {
    for (const OamWriter& writer : Writers()) {
        RecordingInventory inventory;
        const Registration registration("InventoryBufif", inventory);
        std::string fdn = "what stood here before";
        writer.write(fdn);
        EXPECT_EQ(fdn, writer.whole) << writer.name;
        EXPECT_EQ(inventory.m_oamQuestions, std::vector<int>(writer.questions, 5)) << writer.name;
        EXPECT_THAT(inventory.m_queries, IsEmpty()) << writer.name;
    }
}

TEST(OamWriters, ThrowWhenThereIsNoInventory) {
    for (const OamWriter& writer : Writers()) {
        std::string fdn = "what stood here before";
        try {
            writer.write(fdn);
            ADD_FAILURE() << writer.name << " throws nothing";
        } catch (const InterfaceNotExistException& missing) {
            EXPECT_EQ(missing.m_code, 0x41180004U);
        }
        EXPECT_EQ(fdn, TextUpTo(1)) << writer.name;
    }
}

// The inventory answers the question about the MD, and is unregistered before the one about the MA.
TEST(OamWriters, ThrowWhenTheInventoryGoesBetweenTwoQuestions) {
    for (const OamWriter& writer : Writers()) {
        EventfulInventory inventory;
        inventory.m_event = [](std::size_t) {
            NS_BUNDLEMGR1::BundleMgr::Instance()->UnregisterService("InventoryBufif");
        };
        const Registration registration("InventoryBufif", inventory);
        std::string fdn = "what stood here before";
        if (writer.questions == 1) {
            EXPECT_NO_THROW(writer.write(fdn)) << writer.name;
            EXPECT_EQ(fdn, writer.whole);
            continue;
        }
        try {
            writer.write(fdn);
            ADD_FAILURE() << writer.name << " throws nothing";
        } catch (const InterfaceNotExistException& missing) {
            EXPECT_EQ(missing.m_code, 0x41180004U);
        }
        EXPECT_EQ(fdn, TextUpTo(2)) << writer.name;
        EXPECT_THAT(inventory.m_oamQuestions, ElementsAre(5)) << writer.name;
    }
}

// Exceptions of the inventory itself propagate.
TEST(OamWriters, LetPassWhatTheInventoryThrows) {
    for (const OamWriter& writer : Writers()) {
        for (std::size_t failing = 1; failing <= writer.questions; ++failing) {
            EventfulInventory inventory;
            inventory.m_event = [failing](std::size_t question) {
                if (question == failing) {
                    throw std::runtime_error("no answer today");
                }
            };
            const Registration registration("InventoryBufif", inventory);
            std::string fdn = "what stood here before";
            EXPECT_THROW(writer.write(fdn), std::runtime_error) << writer.name;
            EXPECT_EQ(fdn, TextUpTo(failing)) << writer.name;
        }
    }
}

TEST(OamWriters, TakeTheInventoryThatIsThereAtEachQuestion) {
    RecordingInventory second;
    second.m_omitting = {5};
    EventfulInventory first;
    first.m_event = [&second](std::size_t) {
        NS_BUNDLEMGR1::BundleMgr::Instance()->RegisterService("InventoryBufif", &second);
    };
    const Registration registration("InventoryBufif", first);
    std::string fdn;
    ResIDUtil::MepIndex2ResID(SampleEndPoint(), fdn);
    EXPECT_EQ(fdn, "NE=5,MD=3|md1,MA=|ma1,MEP=7");
}

TEST(OamWriters, OfAPointWithoutDomainNeedNoInventory) {
    MIPIndex mip;
    mip.neId = 5;
    mip.mipName = "m";
    std::string fdn = "what stood here before";
    ResIDUtil::MIPIndex2ResID(mip, fdn);
    EXPECT_EQ(fdn, "NE=5,MIP=|m");
}

TEST(OamWriters, WriteNamesOfAnyLength) {
    RecordingInventory inventory;
    const Registration registration("InventoryBufif", inventory);
    MEPIndex mep = SampleEndPoint();
    for (std::size_t length = 0; length < 600; ++length) {
        mep.mdName.assign(length, 'd');
        mep.maName.assign(600 - length, 'a');
        std::string fdn;
        ResIDUtil::MepIndex2ResID(mep, fdn);
        ASSERT_EQ(fdn, "NE=5,MD=3|" + mep.mdName + ",MA=4|" + mep.maName + ",MEP=7");
    }
}

// ---- Readers --------------------------------------------------------------------------------------------------------

TEST(OamReaders, OfAMapReadWhatNoTextCouldSay) {
    const NS_UTIL::MocLvlValueMap map{
        {"NE", {" 5|6"}}, {"MD", {"3,4", "a|b,c=d", "x"}}, {"MA", {"", "ma\\"}}, {"MIP", {"-7"}}};
    MDIndex md;
    ResIDUtil::FillMDIndex(map, md);
    EXPECT_EQ(md.neId, 5);
    EXPECT_EQ(md.mdId, 3);
    EXPECT_EQ(md.mdName, "a|b,c=d");
    MAIndex ma;
    ResIDUtil::FillMAIndex(map, ma);
    EXPECT_EQ(ma.mdName, "a|b,c=d");
    EXPECT_EQ(ma.maId, 0);
    EXPECT_EQ(ma.maName, "ma\\");
    MIPIndex mip;
    mip.mipName = "kept";
    ResIDUtil::FillMIPIndex(map, mip);
    EXPECT_EQ(mip.mdId, 3);
    EXPECT_EQ(mip.mipId, -7);
    EXPECT_EQ(mip.mipName, "kept");
}

TEST(OamReaders, TellAnUnreadableEndPointByOneNumber) {
    EXPECT_EQ(ResIDUtil::MEP_NOT_READABLE, 1092092090);
    MEPIndex mep;
    EXPECT_EQ(ResIDUtil::ResID2MepIndex(ExactText("MEP"), mep), 0x411800BA);
}

// An MD number whose low 32 bits are 0 counts as none, too.
TEST(OamReaders, OfEndPointsLookAtTheNumberAsItIsKept) {
    MEPIndex mep;
    EXPECT_EQ(ResIDUtil::ResID2MepIndex(ExactText("NE=5,MD=4294967296|md1,MEP=7"), mep), 0);
    EXPECT_EQ(mep.mdId, 0);
    EXPECT_EQ(mep.mdName, "294967296|md1");
}

class OamRecords : public testing::Test {
protected:
    RecordingLog m_log;
    Registration m_registration{"LogSvcInterface", m_log};
};

TEST_F(OamRecords, ComeFromOneLogger) {
    MAIndex ma;
    ResIDUtil::ResID2MAIndex(ExactText("NE=5"), ma);
    MEPIndex mep;
    ResIDUtil::ResID2MepIndex(ExactText("NE=5,MD,MEP=7"), mep);
    using Record = RecordingLog::Record;
    EXPECT_THAT(
        m_log.m_records,
        ElementsAre(Record{"resIDUtil", "unknown", 1064, 1, "[ResIDUtil::FillMDIndex]cannot find the MDName in FDN."},
                    Record{"resIDUtil", "unknown", 1113, 1, "[ResIDUtil::FillMAIndex]cannot find the MAName in FDN."},
                    Record{"resIDUtil", "unknown", 1243, 1,
                           "[ResIDUtil::ResID2MepIndex]cannot find the equality sign in FDN."}));
    EXPECT_THAT(m_log.m_asked, ElementsAre(RecordingLog::LoggerName{"kx_domain_bundle", "kx_domain_model", "debug"}))
        << "asks for the logger once";
}

TEST_F(OamRecords, AreDroppedWhenTheLogServiceFails) {
    m_log.m_throws = true;
    MEPIndex mep;
    EXPECT_EQ(ResIDUtil::ResID2MepIndex(ExactText("NE=5,MD,MEP=7"), mep), ResIDUtil::MEP_NOT_READABLE);
    EXPECT_EQ(mep.neId, 5);
    EXPECT_THAT(m_log.m_records, IsEmpty());
}

TEST_F(OamRecords, AreThoseOfALiteralReading) {
    RecordingLog literalLog;
    LiteralResIDUtil::logger = literalLog.GetModuleLogger("", "", "");
    IdentifierGenerator identifiers(81);
    RecordGenerator records(82);
    std::map<int, std::size_t> seen;
    for (std::size_t round = 0; round < Scaled(20000) && !HasFailure(); ++round) {
        const std::string fdn = identifiers.Next();
        ForEachReader([&]<class Record>(const Reader<Record>& reader) {
            if constexpr (
                requires(Record record) { record.mdId; } || requires(Record record) { record.mep; }) {
                Record record = records.Next<Record>();
                Record expected = record;
                m_log.m_records.clear();
                literalLog.m_records.clear();

                reader.library(ExactText(fdn), record);
                reader.literal(fdn, expected);

                EXPECT_EQ(record, expected) << reader.name << " of " << testing::PrintToString(fdn);
                EXPECT_TRUE(m_log.m_records == literalLog.m_records)
                    << reader.name << " of " << testing::PrintToString(fdn);
                for (const RecordingLog::Record& logged : m_log.m_records) {
                    ++seen[logged.line];
                }
            }
        });
    }
    LiteralResIDUtil::logger = nullptr;
    for (const int line : {1064, 1113, 1238, 1243}) {
        EXPECT_GT(seen[line], 10U) << line;
    }
    EXPECT_EQ(seen.size(), 4U);
}

}  // namespace
