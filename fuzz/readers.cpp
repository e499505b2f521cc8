/// Every reader beside its literal counterpart.
#include "fuzz/input.h"
#include "support/conversions.h"
#include "support/conversionsurroundings.h"
#include "support/exacttext.h"
#include "support/generated.h"

namespace {

using NS_FUZZ::ExpectEqual;
using NS_TEST::LacksService;

template <class Record>
void Compare(const NS_TEST::Reader<Record>& reader, const std::string& fdn, Record record) {
    Record expected = record;
    const NS_TEST::ExactText exact(fdn);

    const bool isStopped = LacksService([&] { reader.library(exact, record); });

    ExpectEqual(isStopped, LacksService([&] { reader.literal(fdn, expected); }), reader.name, fdn);
    ExpectEqual(record, expected, reader.name, fdn);
}

}  // namespace

// The input's size selects the profile, so that an input is an identifier and nothing else.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string fdn(NS_FUZZ::ToText(data, size));
    const auto& profiles = NS_TEST::CONVERSION_PROFILES;
    const NS_TEST::ConversionSurroundings surroundings(profiles[size % profiles.size()]);
    NS_TEST::RecordGenerator records(1);
    NS_TEST::ForEachReader([&]<class Record>(const NS_TEST::Reader<Record>& reader) {
        Compare(reader, fdn, Record{});
        Compare(reader, fdn, records.Next<Record>());
    });
    return 0;
}
