/// The text helpers of `UtilCommon` beside their literal counterparts.
#include <kx_domain_util/utilcommon.h>

#include "fuzz/input.h"
#include "support/exacttext.h"
#include "support/literalutilcommon.h"

namespace {

using NS_FUZZ::ExpectEqual;
using NS_TEST::LiteralUtilCommon;

using Texts = std::map<std::string, std::string>;
using Fields = std::map<int, std::string>;
using Path = std::map<int, int>;

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const NS_UTIL::UtilCommon& utilCommon = *NS_UTIL::UtilCommon::Instance();
    const std::string text(NS_FUZZ::ToText(data, size));
    const NS_TEST::ExactText exact(text);
    ExpectEqual(utilCommon.GetMoc(exact), LiteralUtilCommon::GetMoc(text), "GetMoc", text);

    const Fields oldFields{{-1, "old"}, {1, "old"}, {4, "old"}};
    Fields fields = oldFields;
    Fields expectedFields = oldFields;
    utilCommon.GetSplitePPDataByLine(fields, exact);
    LiteralUtilCommon::GetSplitePPDataByLine(expectedFields, text);
    ExpectEqual(fields, expectedFields, "GetSplitePPDataByLine", text);
    fields = oldFields;
    utilCommon.GetSpliteFBDataByLine(fields, exact);
    ExpectEqual(fields, expectedFields, "GetSpliteFBDataByLine", text);

    Path path{{12327, 5}, {1, 7}};
    Path expectedPath = path;
    utilCommon.GetSplitePATHDataByLine(path, exact);
    LiteralUtilCommon::GetSplitePATHDataByLine(expectedPath, text);
    ExpectEqual(path, expectedPath, "GetSplitePATHDataByLine", text);

    for (const std::string separator : {",", "|", "::", "=", ""}) {
        Texts items{{"NE", "old"}};
        Texts expectedItems = items;
        utilCommon.GetSpliteFDNData(items, exact, separator);
        LiteralUtilCommon::GetSpliteFDNData(expectedItems, text, separator);
        ExpectEqual(items, expectedItems, "GetSpliteFDNData at " + separator, text);
    }
    return 0;
}
