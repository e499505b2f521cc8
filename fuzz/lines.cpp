/// The text helpers of `UtilCommon` beside their literal counterparts, and the splitters below them: their parts,
/// joined again, give the text.
#include <kx_domain_util/utilcommon.h>
#include <kx_platform/textutil.h>

#include "fuzz/input.h"
#include "support/exacttext.h"
#include "support/literalutilcommon.h"

namespace {

using NS_FUZZ::ExpectEqual;
using NS_TEST::LiteralUtilCommon;

using Texts = std::map<std::string, std::string>;
using Fields = std::map<int, std::string>;
using Path = std::map<int, int>;

std::string Joined(const std::vector<std::string>& pieces, const std::string& separator) {
    std::string text;
    for (const std::string& piece : pieces) {
        text.append(&piece == &pieces.front() ? "" : separator).append(piece);
    }
    return text;
}

void CheckParser(const std::string& text, const std::string& separator) {
    std::vector<std::string> pieces;
    NS_UTIL::Parser::SplitStrByTag(text, separator, pieces);
    ExpectEqual(Joined(pieces, separator), text, "SplitStrByTag at " + separator, text);
    std::string name;
    std::string value;
    const bool isCut = NS_UTIL::Parser::ParseItemNVByTag(text, name, value, separator);
    ExpectEqual(name + (isCut ? separator + value : ""), text, "ParseItemNVByTag at " + separator, text);
    ExpectEqual(name.find(separator) == std::string::npos || separator.empty(), true, "the first " + separator, text);
}

void CheckTokens(const std::string& text, char separator) {
    std::vector<std::string> all;
    NS_UTIL::SplitStringByTag(text, all, separator, std::bitset<8>(1U << NS_UTIL::KEEP_EMPTY_TOKENS));
    ExpectEqual(Joined(all, {separator}), text, "SplitStringByTag with empty tokens", text);
    std::vector<std::string> tokens;
    const bool hasTokens = NS_UTIL::SplitStringByTag(text, tokens, separator, {});
    std::erase(all, "");
    ExpectEqual(tokens, all, "SplitStringByTag without empty tokens", text);
    ExpectEqual(hasTokens, !all.empty(), "whether SplitStringByTag gives tokens", text);
}

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
        items = {{"NE", "old"}};
        utilCommon.GetSplitNameValueMapbyTag(items, exact, separator);
        ExpectEqual(items, expectedItems, "GetSplitNameValueMapbyTag at " + separator, text);
        CheckParser(exact, separator);
    }
    CheckTokens(exact, ',');
    return 0;
}
