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

using NS_DOMAIN::CtpKey_T;
using NS_DOMAIN::PortIndex;
using NS_DOMAIN::TPIndex;
using NS_TEST::Chance;
using NS_TEST::Configuration;
using NS_TEST::CountingInventory;
using NS_TEST::ExactText;
using NS_TEST::RecordingDataAccess;
using NS_TEST::RecordingInventory;
using NS_TEST::Registration;
using NS_TEST::Scaled;
using NS_UTIL::ResIDUtil;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

PortIndex SlotPort() {
    PortIndex port;
    port.neId = 5;
    port.slotId = 3;
    port.portId = 2;
    return port;
}

TEST(PortWriter, ReadsTheConfigurationAtEveryCall) {
    const Configuration configuration;
    RecordingInventory inventory(RecordingInventory::Types{{5, 1911}});
    const Registration registration("InventoryBufif", inventory);
    PortIndex port = SlotPort();
    std::string fdn;

    ResIDUtil::PortIndex2ResID(port, fdn, false);
    EXPECT_EQ(fdn, "NE=5,S=3,CP=-1,PP=||2|");
    Configuration::Set("NETypeListForSubSlot", "1911");
    ResIDUtil::PortIndex2ResID(port, fdn, false);
    EXPECT_EQ(fdn, "NE=5,S=3,CP=-1,SS=-1,SC=-1,PP=||2|");
    Configuration::Set("NETypeListForSubSlot", "1912");
    ResIDUtil::PortIndex2ResID(port, fdn, false);
    EXPECT_EQ(fdn, "NE=5,S=3,CP=-1,PP=||2|");
    Configuration::Remove("NETypeListForSubSlot");
    ResIDUtil::PortIndex2ResID(port, fdn, false);
    EXPECT_EQ(fdn, "NE=5,S=3,CP=-1,PP=||2|");
    EXPECT_EQ(inventory.m_queries.size(), 4U) << "asks at every call, even without a list";

    port.slotId = -1;
    ResIDUtil::PortIndex2ResID(port, fdn, false);
    EXPECT_EQ(fdn, "NE=5,PP=||2|");
    Configuration::Set("Telvandaire", "1");
    ResIDUtil::PortIndex2ResID(port, fdn, false);
    EXPECT_EQ(fdn, "NE=5,S=0,CP=-1,PP=||2|");
    Configuration::Remove("Telvandaire");
    ResIDUtil::PortIndex2ResID(port, fdn, false);
    EXPECT_EQ(fdn, "NE=5,PP=||2|");
    EXPECT_EQ(inventory.m_queries.size(), 4U) << "asks nothing without a slot";
}

TEST(PortReader, ReadsTheConfigurationAtEveryCall) {
    const Configuration configuration;
    const ExactText fdn("NE=5,S=0,SS=2,PP=16||2|");
    const auto slotOf = [&fdn] {
        PortIndex port;
        ResIDUtil::ResID2PortIndex(fdn, port);
        return std::pair(port.slotId, port.subSlotId);
    };
    EXPECT_THAT(slotOf(), Pair(0, 2));
    Configuration::Set("Telvandaire", "1");
    EXPECT_THAT(slotOf(), Pair(-1, -1));
    Configuration::Set("Telvandaire", "no number");
    EXPECT_THAT(slotOf(), Pair(0, 2));
    Configuration::Set("Telvandaire", "-2");
    EXPECT_THAT(slotOf(), Pair(-1, -1));
    Configuration::Remove("Telvandaire");
    EXPECT_THAT(slotOf(), Pair(0, 2));
}

TEST(PortReader, AsksNoService) {
    RecordingInventory inventory;
    RecordingDataAccess dataAccess;
    const Registration first("InventoryBufif", inventory);
    const Registration second("DAWSvcInterface", dataAccess);
    PortIndex port;
    CtpKey_T key;
    TPIndex tp;
    const ExactText fdn("NE=5,FR=1,S=3,CP=-1,PP=16||2|,SUBIF=4");

    ResIDUtil::ResID2PortIndex(fdn, port);
    ResIDUtil::ResID2PortIndex(fdn, key);
    ResIDUtil::ResID2APIndex(fdn, key);
    ResIDUtil::ResID2TPIndex(fdn, tp);

    EXPECT_EQ(port.portId, 2);
    EXPECT_THAT(inventory.m_queries, IsEmpty());
    EXPECT_THAT(dataAccess.m_asked, IsEmpty());
}

TEST(LoopBackPortReader, AsksTheAgentConfigurationAtEveryCall) {
    RecordingDataAccess dataAccess;
    const Registration registration("DAWSvcInterface", dataAccess);
    PortIndex port;
    const ExactText fdn("NE=5,S=0,LP=|65547|2|lo0");

    for (const int profile : {0, 1}) {
        dataAccess.m_carrierProfile = profile;
        port = {};
        ResIDUtil::ResID2LoopBackPortIndex(fdn, port);
        EXPECT_EQ(port.slotId, 0) << "whatever the file says";
    }
    EXPECT_THAT(dataAccess.m_asked,
                ElementsAre(Pair("kx_corbaagent_bundle/bundle.cfg", ""), Pair("kx_corbaagent_bundle/bundle.cfg", "")));
    EXPECT_THAT(dataAccess.m_items, ElementsAre("Telvandaire", "Telvandaire"));
}

TEST(LoopBackPortReader, TellsWhichServiceIsMissing) {
    PortIndex port;
    try {
        ResIDUtil::ResID2LoopBackPortIndex("NE=5", port);
        FAIL() << "there is no data-access service";
    } catch (const NS_UTIL::InterfaceNotExistException& missing) {
        EXPECT_EQ(missing.m_code, 0x41180004U);
    }
}

// A text inside a key may be read into the same key.
TEST(AccessPointReader, MayReadTheTextOfItsOwnKey) {
    for (const char* const text : {"NE=12,S=3,CP=-1,PP=16||2|,CHANNELSET=5", "NE=1,PP=16||2|,VR=3,SUBIF=9",
                                   "NE=1,PP=16||2|,CHANNELSET", "NE=1"}) {
        CtpKey_T expected;
        ResIDUtil::ResID2APIndex(text, expected);
        CtpKey_T key;
        key.fdnText = text;

        ResIDUtil::ResID2APIndex(key.fdnText, key);

        EXPECT_EQ(key, expected) << text;
    }
}

TEST(TerminationPointWriter, LeavesItsRecordAlone) {
    TPIndex tp;
    tp.ppType = 251;
    tp.portLabel = "GE0/1.100";
    tp.vc4Id = 2;
    const TPIndex before = tp;
    std::string fdn;
    ResIDUtil::TPIndex2ResID(tp, fdn);
    EXPECT_EQ(tp, before);
}

TEST(PortWriters, WriteNamesOfAnyLength) {
    const Configuration configuration;
    for (std::size_t length = 0; length < 1000; length += 7) {
        PortIndex port;
        port.neId = 5;
        port.portId = 2;
        port.portLabel.assign(length, 'n');
        std::string fdn;
        ResIDUtil::PortIndex2ResID(port, fdn, false);
        EXPECT_EQ(fdn, "NE=5,PP=||2|" + port.portLabel);
        PortIndex again;
        ResIDUtil::ResID2PortIndex(ExactText(fdn), again);
        EXPECT_EQ(again.portLabel, port.portLabel);
    }
}

// Generates records of a typical network. Written and read back, they give records that are written the same way.
class PlausibleRecords {
public:
    explicit PlausibleRecords(std::uint64_t seed) : m_chance(seed) {}

    PortIndex NextPort(bool underCarrierProfile) {
        static constexpr std::array<std::int32_t, 7> FB_TYPES{0, 7, 1025, 65543, 65547, 65549, 65600};
        static constexpr std::array<std::int32_t, 4> PP_TYPES{0, 1, 16, 251};
        PortIndex port;
        port.neId = Number();
        port.isLogical = m_chance.Once(2);
        port.fbType = m_chance.From(FB_TYPES);
        port.ppType = m_chance.From(PP_TYPES);
        port.portId = m_chance.Once(5) ? -1 : Number();
        port.portLabel = m_chance.Once(2) ? "" : "GE" + std::to_string(Number()) + "/ 1";
        port.shelfId = m_chance.Once(3) ? -1 : Number();
        port.slotId = m_chance.Once(3) ? -1 : Number();
        const bool isNamed = port.ppType == 251 || (port.ppType == 0 && !port.portLabel.empty());
        if (underCarrierProfile && isNamed && (port.fbType == 65547 || port.fbType == 65549)) {
            port.slotId = -1;  // such ports have no slot under the carrier profile
        }
        port.subSlotId = m_chance.Once(2) ? -1 : Number();
        return port;
    }

    std::int32_t Number() { return static_cast<std::int32_t>(1 + m_chance.Below(100000)); }

private:
    Chance m_chance;
};

class PortConversions : public testing::TestWithParam<bool> {
protected:
    PortConversions() {
        Configuration::Set("NETypeListForSubSlot", "1911");
        if (GetParam()) {
            Configuration::Set("Telvandaire", "1");
        }
    }

    template <class Record, class Read, class Write>
    void ExpectStable(const Record& record, Read read, Write write) {
        std::string first;
        write(record, first);
        Record firstRecord;
        read(ExactText(first), firstRecord);
        std::string second;
        write(firstRecord, second);
        Record secondRecord;
        read(ExactText(second), secondRecord);
        EXPECT_EQ(second, first) << record;
        EXPECT_EQ(secondRecord, firstRecord) << first;
    }

    Configuration m_configuration;
    CountingInventory m_inventory{1911};
    Registration m_registration{"InventoryBufif", m_inventory};
    PlausibleRecords m_records{31};
};

TEST_P(PortConversions, AreStable) {
    for (std::size_t round = 0; round < Scaled(10000) && !HasFailure(); ++round) {
        const PortIndex port = m_records.NextPort(GetParam());
        ExpectStable(
            port, [](const std::string& fdn, PortIndex& record) { ResIDUtil::ResID2PortIndex(fdn, record); },
            [](const PortIndex& record, std::string& fdn) {
                ResIDUtil::PortIndex2ResID(record, fdn, record.isLogical);
            });

        TPIndex tp;
        tp.neId = port.neId;
        tp.slotId = port.slotId;
        tp.subSlotId = port.subSlotId;
        tp.portId = port.portId;
        tp.fbType = port.fbType;
        tp.isLogical = port.isLogical;
        tp.ppType = port.ppType;
        tp.portLabel = port.portLabel;
        if (tp.ppType == 251 && !tp.portLabel.empty()) {
            tp.portLabel += "." + std::to_string(m_records.Number());
        }
        ExpectStable(tp, &ResIDUtil::ResID2TPIndex, &ResIDUtil::TPIndex2ResID);

        CtpKey_T key;
        key.port = port;
        key.port.ppType = 1;
        key.apValue1 = m_records.Number();
        key.apValue2 = m_records.Number();
        key.subIfId = round % 3 == 0 ? 0 : m_records.Number();
        ExpectStable(key, &ResIDUtil::ResID2APIndex, [](const CtpKey_T& record, std::string& fdn) {
            ResIDUtil::APIndex2ResID(record, fdn, record.port.isLogical);
        });
    }
}

INSTANTIATE_TEST_SUITE_P(UnderCarrierProfile, PortConversions, testing::Bool());

}  // namespace
