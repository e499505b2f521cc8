#include "support/conversions.h"

#include <optional>

#include <gtest/gtest.h>

#include <kx_domain_util/processexception.h>

#include "support/exacttext.h"
#include "support/generated.h"
#include "support/scale.h"
#include "support/services.h"

namespace {

using NS_TEST::Configuration;
using NS_TEST::CountingInventory;
using NS_TEST::ExactText;
using NS_TEST::ForEachReader;
using NS_TEST::ForEachWriter;
using NS_TEST::IdentifierGenerator;
using NS_TEST::LiteralResIDUtil;
using NS_TEST::Reader;
using NS_TEST::RecordFields;
using NS_TEST::RecordGenerator;
using NS_TEST::Registration;
using NS_TEST::Scaled;
using NS_TEST::Writer;
using NS_TEST::WriterArguments;

// A data-access service with no file; it keeps nothing, so that many questions cost nothing.
class EmptyDataAccess : public NS_SERVICE::DAWSvcInterface {
public:
    NS_SERVICE::ConfigObject* GetConfiguration(const std::string& /*path*/, const std::string& /*section*/) override {
        return nullptr;
    }
};

struct Profile {
    const char* name;
    std::map<std::string, std::string> configuration;
    bool hasServices;
};

void PrintTo(const Profile& profile, std::ostream* out) {
    *out << profile.name;
}

class Conversions : public testing::TestWithParam<Profile> {
protected:
    Conversions() {
        if (GetParam().hasServices) {
            m_registrations.emplace(m_inventory, m_dataAccess);
            LiteralResIDUtil::inventory = &m_inventory;
            LiteralResIDUtil::dataAccess = &m_dataAccess;
        }
    }
    ~Conversions() override {
        LiteralResIDUtil::inventory = nullptr;
        LiteralResIDUtil::dataAccess = nullptr;
    }

    struct Registrations {
        Registrations(CountingInventory& inventory, EmptyDataAccess& dataAccess)
            : m_first("InventoryBufif", inventory), m_second("DAWSvcInterface", dataAccess) {}
        Registration m_first;
        Registration m_second;
    };

    // Whether convert was stopped by a missing service.
    template <class Convert>
    static bool LacksService(Convert convert) {
        try {
            convert();
            return false;
        } catch (const NS_UTIL::InterfaceNotExistException&) {
            return true;
        } catch (const LiteralResIDUtil::NoService&) {
            return true;
        }
    }

    Configuration m_configuration{GetParam().configuration};
    CountingInventory m_inventory{1912};
    EmptyDataAccess m_dataAccess;
    std::optional<Registrations> m_registrations;
};

TEST_P(Conversions, ReadWhatALiteralReadingReads) {
    IdentifierGenerator identifiers(1);
    RecordGenerator records(2);
    for (std::size_t round = 0; round < Scaled(8000) && !HasFailure(); ++round) {
        const std::string text = identifiers.Next();
        const ExactText fdn(text);
        ForEachReader([&]<class Record>(const Reader<Record>& reader) {
            Record record = round % 2 == 0 ? Record{} : records.Next<Record>();
            Record expected = record;
            const Record initial = record;

            const bool isStopped = LacksService([&] { reader.library(fdn, record); });

            EXPECT_EQ(isStopped, LacksService([&] { reader.literal(text, expected); }));
            EXPECT_EQ(record, expected) << reader.name << " of " << testing::PrintToString(text) << "\nread into "
                                        << initial;
        });
    }
}

TEST_P(Conversions, WriteWhatALiteralWritingWrites) {
    RecordGenerator records(3);
    std::string fdn;
    for (std::size_t round = 0; round < Scaled(8000) && !HasFailure(); ++round) {
        ForEachWriter([&]<class Record>(const Writer<Record>& writer) {
            const Record record = records.Next<Record>();
            const WriterArguments arguments{records.Flag(), static_cast<unsigned long>(records.Number())};
            if (round % 2 == 0) {
                fdn = {};  // no room
            }
            std::string expected;

            const bool isStopped = LacksService([&] { writer.library(record, fdn, arguments); });

            EXPECT_EQ(isStopped, LacksService([&] { writer.literal(record, expected, arguments); }));
            EXPECT_EQ(fdn, expected) << writer.name << " of " << RecordFields<Record>::NAME;
        });
    }
}

INSTANTIATE_TEST_SUITE_P(
    Under, Conversions,
    testing::Values(Profile{"NoItems", {}, true}, Profile{"CarrierProfile", {{"Telvandaire", "1"}}, true},
                    Profile{"SubSlotList", {{"Telvandaire", "0"}, {"NETypeListForSubSlot", "7,1912,1911"}}, true},
                    Profile{"OtherSubSlotList", {{"Telvandaire", "2"}, {"NETypeListForSubSlot", ",, 1911,x"}}, true},
                    Profile{"NoServices", {{"NETypeListForSubSlot", "1912"}}, false}),
    [](const auto& profile) { return std::string(profile.param.name); });

}  // namespace
