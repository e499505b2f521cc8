#include "text/utf8sequence.h"

#include <cstdint>
#include <string>

#include <gtest/gtest.h>
#include <simdjson.h>

namespace NS_KX {
namespace {

std::string Utf8Of(std::uint32_t codePoint) {
    const auto byte = [](std::uint32_t value) { return static_cast<char>(static_cast<unsigned char>(value)); };
    const auto next = [&](unsigned shift) { return byte(0x80U | ((codePoint >> shift) & 0x3FU)); };
    if (codePoint < 0x80) {
        return {byte(codePoint)};
    }
    if (codePoint < 0x800) {
        return {byte(0xC0U | (codePoint >> 6U)), next(0)};
    }
    if (codePoint < 0x10000) {
        return {byte(0xE0U | (codePoint >> 12U)), next(6), next(0)};
    }
    return {byte(0xF0U | (codePoint >> 18U)), next(12), next(6), next(0)};
}

TEST(Utf8Sequence, EveryCodePointButSurrogatesIsOne) {
    for (std::uint32_t codePoint = 0; codePoint < 0x110000; ++codePoint) {
        const bool isSurrogate = codePoint >= 0xD800 && codePoint < 0xE000;
        const std::string text = Utf8Of(codePoint);
        ASSERT_EQ(Utf8SequenceSize(text + "a"), isSurrogate ? 0 : text.size()) << codePoint;
        ASSERT_EQ(Utf8SequenceSize(text.substr(0, text.size() - 1) + "a"), text.size() == 1 ? 1 : 0) << codePoint;
    }
    EXPECT_EQ(Utf8SequenceSize("\xf4\x90\x80\x80"), 0U) << "past the last code point";
}

TEST(Utf8Sequence, IsWhatSimdjsonTakes) {
    const std::string edges(
        "\x00\x7f\x80\x8f\x90\x9f\xa0\xbf\xc0\xc1\xc2\xdf\xe0\xe1\xec\xed\xee\xef\xf0\xf1\xf3\xf4\xf5\xff", 24);
    for (const char first : edges) {
        for (const char second : edges) {
            for (const char third : edges) {
                for (const char fourth : edges) {
                    const std::string text{first, second, third, fourth};
                    std::size_t valid = 0;
                    while (valid < text.size() && Utf8SequenceSize(std::string_view(text).substr(valid)) != 0) {
                        valid += Utf8SequenceSize(std::string_view(text).substr(valid));
                    }
                    ASSERT_EQ(valid == text.size(), simdjson::validate_utf8(text)) << testing::PrintToString(text);
                }
            }
        }
    }
}

}  // namespace
}  // namespace NS_KX
