/// Compares all answers of the C interface about an identifier with the catalogue's answers, also for records of types
/// that the identifier does not have.
#include "bindings/c/comparison.h"
#include "catalogue/kinds.h"
#include "fuzz/input.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static NS_TEST::Comparison comparison;
    const std::string_view fdn = NS_FUZZ::ToText(data, size);
    NS_FUZZ::ExpectEqual(comparison.DifferenceOf(fdn), std::string(), "the first difference", fdn);
    for (const NS_KX::Kind* const kind : NS_KX::AllKinds()) {
        NS_FUZZ::ExpectEqual(comparison.DifferenceAs(*kind, fdn), std::string(), kind->type, fdn);
    }
    return 0;
}
