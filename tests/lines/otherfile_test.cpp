#include "lines/otherfile.h"

#include <gtest/gtest.h>

#include "lines/failure.h"

namespace NS_KX {
namespace {

using namespace std::string_view_literals;

std::string Refusal(std::string_view head, const std::string& name = "in") {
    try {
        RefuseOtherFile(head, name);
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.GetCause(), Cause::INPUT);
        return failure.what();
    }
    return "none";
}

TEST(OtherFile, TextIsNotRefused) {
    for (const std::string_view text : {""sv, "NE=5\n"sv, "N\0"sv, "NE=5\n\xFF"sv, "a\0b\0c\0d"sv, "PK=1\n"sv}) {
        EXPECT_EQ(Refusal(text), "none") << text;
    }
}

TEST(OtherFile, TheMessageSaysWhatToDo) {
    EXPECT_EQ(Refusal("\xFF\xFEN\0"sv),
              "in: is UTF-16 text, not lines of text in UTF-8; use a pipe: iconv -f UTF-16 "
              "-t UTF-8 in | ...");
    EXPECT_EQ(Refusal("PK\x03\x04", "<stdin>"),
              "<stdin>: is a zip archive or a spreadsheet, not lines of text in UTF-8; use a pipe: unzip -p | ...");
    EXPECT_EQ(Refusal("SQLite format 3\0\x10"sv), "in: is an SQLite database, not lines of text in UTF-8");
}

TEST(OtherFile, Utf16IsRecognizedWithoutAMark) {
    EXPECT_NE(Refusal("N\0E\0=\0005\0"sv).find("-f UTF-16LE"), std::string::npos);
    EXPECT_NE(Refusal("\0N\0E\0=\0005"sv).find("-f UTF-16BE"), std::string::npos);
}

TEST(OtherFile, AnArchiveMayBeRecognizedByLaterBytes) {
    const std::string tar = "network.fdn" + std::string(246, '\0') + "ustar";
    EXPECT_NE(Refusal(tar).find("use a pipe: tar -xOf in | ..."), std::string::npos) << Refusal(tar);
    EXPECT_EQ(Refusal(tar.substr(1)), "none");
}

}  // namespace
}  // namespace NS_KX
