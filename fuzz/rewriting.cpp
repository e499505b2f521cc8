/// Reads records from an identifier and compares their writing with the literal writing; then does the same with the
/// text that was written.
#include <algorithm>
#include <optional>

#include <kx_domain_util/processexception.h>

#include "catalogue/conversion.h"
#include "catalogue/kinds.h"
#include "fuzz/input.h"
#include "support/conversions.h"
#include "support/conversionsurroundings.h"

namespace {

using NS_FUZZ::ExpectEqual;
using NS_TEST::LacksService;
using NS_TEST::Reader;
using NS_TEST::Writer;
using NS_TEST::WriterArguments;

template <class Record>
void Compare(const Writer<Record>& writer, const Record& record, const WriterArguments& arguments,
             const std::string& fdn) {
    std::string text = "old";
    std::string expected = text;

    const bool isStopped = LacksService([&] { writer.library(record, text, arguments); });

    ExpectEqual(isStopped, LacksService([&] { writer.literal(record, expected, arguments); }), writer.name, fdn);
    ExpectEqual(text, expected, writer.name, fdn);
}

// Every writer of each record that some reader makes of the identifier.
void CompareWriters(const std::string& fdn) {
    NS_TEST::ForEachReader([&]<class Read>(const Reader<Read>& reader) {
        Read record;
        LacksService([&] { reader.library(fdn, record); });
        NS_TEST::ForEachWriter([&]<class Written>(const Writer<Written>& writer) {
            if constexpr (std::is_same_v<Read, Written>) {
                for (const bool flag : {false, true}) {
                    for (const unsigned long neType : {0UL, 1911UL}) {
                        Compare(writer, record, {flag, neType}, fdn);
                    }
                }
            }
        });
    });
}

// Returns nothing if the record cannot be written as an identifier.
std::optional<std::string> Rewrite(const NS_KX::Kind& kind, const std::string& fdn) {
    try {
        std::string canonical;
        NS_KX::AnyRecord record;
        NS_KX::Rewrite(kind, fdn, NS_UTIL::Surroundings::OfSystem(), record, canonical);
        return canonical;
    } catch (const NS_KX::BadRecord&) {
    } catch (const NS_UTIL::InterfaceNotExistException&) {}
    return std::nullopt;
}

// Rewriting an odd text may change it once more, and once for each backslash in a name, because each reading removes
// one. After that the text stays the same, unless it has become an identifier of another kind. A termination point on a
// port without a name never settles: its sub-interface becomes the name, then the name becomes the sub-interface, by
// turns.
void CompareRewritten(const std::string& fdn) {
    const auto rounds = 2 + std::count(fdn.begin(), fdn.end(), '\\');
    for (const NS_KX::Kind* const kind : NS_KX::AllKinds()) {
        if (kind->type == "TPIndex") {
            continue;
        }
        std::optional<std::string> settled = fdn;
        for (auto round = rounds; settled && round > 0; --round) {
            settled = Rewrite(*kind, *settled);
        }
        if (settled && NS_KX::FindKind(*settled) == kind) {
            ExpectEqual(Rewrite(*kind, *settled), settled, kind->type, fdn);
        }
    }
}

}  // namespace

// The input's size selects the profile, so that an input is an identifier and nothing else.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string fdn(NS_FUZZ::ToText(data, size));
    const auto& profiles = NS_TEST::CONVERSION_PROFILES;
    const NS_TEST::ConversionSurroundings surroundings(profiles[size % profiles.size()]);
    CompareWriters(fdn);
    CompareRewritten(fdn);
    return 0;
}
