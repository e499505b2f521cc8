#include "formats/plainvalue.h"

#include <optional>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "catalogue/conversion.h"
#include "catalogue/kinds.h"

namespace NS_KX {
namespace {

std::optional<std::string> PlainValue(std::string_view fdn, std::string_view field) {
    const Kind& kind = *FindKind(fdn);
    AnyRecord records;
    void* const record = records.Fresh(kind.layout);
    kind.read(fdn, record, NO_SURROUNDINGS);
    TextBuffer out;
    Append(out, "=");
    const bool isKnown = AppendKnownValue(*FindField(kind, field), record, out);
    EXPECT_TRUE(isKnown || out.View() == "=");
    return isKnown ? std::optional(std::string(out.View().substr(1))) : std::nullopt;
}

TEST(PlainValue, IsANumberAFlagOrAText) {
    EXPECT_EQ(PlainValue("NE=5,LP=16||2|a\"b", "portId"), "2");
    EXPECT_EQ(PlainValue("NE=5,LP=16||2|a\"b", "isLogical"), "true");
    EXPECT_EQ(PlainValue("NE=5,LP=16||2|a\"b", "portLabel"), "a\"b");
    EXPECT_EQ(PlainValue("NE=5,PP=16||2|", "isLogical"), "false");
    EXPECT_EQ(PlainValue("NE=5,PP=16||2|", "portLabel"), "");
}

TEST(PlainValue, IsNoneForMinusOneOnly) {
    EXPECT_EQ(PlainValue("NE=5,PP=16||2|", "slotId"), std::nullopt);
    EXPECT_EQ(PlainValue("NE=5,PP=16||2|", "fbType"), "0");
    EXPECT_EQ(PlainValue("NE=-1,ATMTD=-2", "neId"), std::nullopt) << "of 64 bits";
    EXPECT_EQ(PlainValue("NE=-1,ATMTD=-2", "tdId"), "-2");
}

}  // namespace
}  // namespace NS_KX
