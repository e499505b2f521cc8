#include "support/conversions.h"

#include <gtest/gtest.h>

#include "support/conversionsurroundings.h"
#include "support/exacttext.h"
#include "support/generated.h"
#include "support/scale.h"

namespace {

using NS_TEST::CONVERSION_PROFILES;
using NS_TEST::ConversionProfile;
using NS_TEST::ConversionSurroundings;
using NS_TEST::ExactText;
using NS_TEST::ForEachReader;
using NS_TEST::ForEachWriter;
using NS_TEST::IdentifierGenerator;
using NS_TEST::LacksService;
using NS_TEST::Reader;
using NS_TEST::RecordFields;
using NS_TEST::RecordGenerator;
using NS_TEST::Scaled;
using NS_TEST::Writer;
using NS_TEST::WriterArguments;

class Conversions : public testing::TestWithParam<ConversionProfile> {
protected:
    const ConversionSurroundings m_surroundings{GetParam()};
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

INSTANTIATE_TEST_SUITE_P(Under, Conversions, testing::ValuesIn(CONVERSION_PROFILES),
                         [](const auto& profile) { return std::string(profile.param.name); });

}  // namespace
