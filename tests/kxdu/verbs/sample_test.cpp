#include <algorithm>

#include "kxdu/program.h"

namespace {

class Sample : public ProgramTest {};

std::ptrdiff_t Lines(const std::string& text) {
    return std::count(text.begin(), text.end(), '\n');
}

}  // namespace

TEST_F(Sample, TheSameSeedGivesTheSameBytes) {
    const Ended first = Shell("kxdu sample --ne 20 --seed 7");
    EXPECT_EQ(first.code, 0);
    EXPECT_GT(Lines(first.out), 100);
    EXPECT_EQ(first.out, Shell("kxdu sample --ne 20 --seed 7").out);
    EXPECT_NE(first.out, Shell("kxdu sample --ne 20 --seed 8").out);
}

TEST_F(Sample, ALargerNetworkBeginsWithTheSmallerOne) {
    const std::string small = Shell("kxdu sample --ne 5").out;
    EXPECT_EQ(Shell("kxdu sample --ne 6").out.substr(0, small.size()), small);
}

TEST_F(Sample, WritesAsManyIdentifiersAsAskedFor) {
    EXPECT_EQ(Lines(Shell("kxdu sample --identifiers 1").out), 1);
    EXPECT_EQ(Lines(Shell("kxdu sample --identifiers 12345").out), 12345);
}

TEST_F(Sample, TheInventoryHasTheNesOfTheIdentifiers) {
    EXPECT_EQ(Shell("kxdu sample --identifiers 2000 --inventory-csv network -o network.fdn").code, 0);
    const Ended highest = Shell("sed 's/,.*//' network.fdn | grep NE= | sort -t= -k2n | tail -n 1");
    const Ended last = Shell("tail -n 1 network/ne.csv | sed 's/,.*//'");
    EXPECT_EQ(highest.out, "NE=" + last.out);
}

TEST_F(Sample, WithItsInventoryIsConvertedBackAndForthAndCheckedWithoutAFinding) {
    const Ended ended = Shell(
        "kxdu sample --ne 60 --seed 3 -o a.fdn --inventory-csv csv && kxdu inventory init n.db && "
        "kxdu inventory import n.db csv && export KX_INVENTORY=n.db && kxdu decode a.fdn | kxdu encode -o b.fdn && "
        "cmp a.fdn b.fdn && kxdu check a.fdn");
    EXPECT_EQ(ended.code, 0) << ended.err;
    EXPECT_EQ(ended.err, "");
}

TEST_F(Sample, DoesNotReadAConfigurationOrInventory) {
    const std::string plain = Shell("kxdu sample --ne 5").out;
    EXPECT_EQ(Shell("KX_INVENTORY=none KX_CONFIG_DIR=none kxdu sample --ne 5").out, plain);
}

TEST_F(Sample, WrongArgumentsAreUsageErrors) {
    for (const char* const arguments :
         {"--ne 0", "--ne -1", "--ne x", "--ne 100000001", "--identifiers 0", "--seed x", "--ne 5 --identifiers 5",
          "--seed 18446744073709551616", "--seed -1", "--seed 0x10", "--identifiers 18446744073709551616"}) {
        const Ended ended = Shell(std::string("kxdu sample ") + arguments);
        EXPECT_EQ(ended.code, 2) << arguments;
        EXPECT_EQ(ended.out, "") << arguments;
        EXPECT_NE(ended.err, "") << arguments;
    }
}

TEST_F(Sample, SeedsGoUpTo64Bits) {
    EXPECT_EQ(Shell("kxdu sample --ne 1 --seed 18446744073709551615").code, 0);
    EXPECT_EQ(Shell("kxdu sample --ne 1 --seed 18446744073709551616").err,
              "kxdu: --seed: \"18446744073709551616\" is not a number from 0 to 18446744073709551615\n"
              "Run kxdu sample --help for usage.\n");
    EXPECT_EQ(Shell("kxdu sample --ne 3 --seed 010").out, Shell("kxdu sample --ne 3 --seed 10").out) << "not octal";
}

TEST_F(Sample, AFullDiskIsAnOutputError) {
    const Ended ended = Shell("kxdu sample --ne 5 -o /dev/full");
    EXPECT_EQ(ended.code, 3);
    EXPECT_NE(ended.err.find("/dev/full"), std::string::npos) << ended.err;
}

TEST_F(Sample, AMissingFolderIsAnOutputErrorAndLeavesNothing) {
    EXPECT_EQ(Shell("kxdu sample --ne 5 -o nowhere/network.fdn").code, 3);
    WriteFile("file", "");
    EXPECT_EQ(Shell("kxdu sample --ne 5 -o network.fdn --inventory-csv file").code, 3);
    EXPECT_EQ(Files(), 1);
}

TEST_F(Sample, AClosedPipeEndsQuietly) {
    const Ended ended = Shell("{ kxdu sample --identifiers 1000000; echo $? >code; } | head -n 1");
    EXPECT_EQ(ended.out, "OS=1\n");
    EXPECT_EQ(ended.err, "");
    EXPECT_EQ(ReadFile("code"), "0\n");
}

TEST_F(Sample, WritesTheInventoryEvenIfTheReaderOfTheIdentifiersStops) {
    for (const std::string count : {"--ne 300", "--identifiers 50000"}) {
        ASSERT_EQ(Shell("rm -rf whole net; kxdu sample -o all --inventory-csv whole " + count).code, 0);
        const Ended ended = Shell("{ kxdu sample --inventory-csv net " + count + "; echo $? >code; } | head -n 1");
        EXPECT_EQ(ended.out, "OS=1\n");
        EXPECT_EQ(ended.err, "");
        EXPECT_EQ(ReadFile("code"), "0\n");
        EXPECT_EQ(Shell("diff -r whole net").out, "") << count;
        EXPECT_TRUE(Exists("net/ne.csv")) << count;
    }
    WriteFile("file", "");
    const Ended ended = Shell("{ kxdu sample --ne 300 --inventory-csv file; echo $? >code; } | head -n 1");
    EXPECT_EQ(ReadFile("code"), "3\n") << ended.err;
}

TEST_F(Sample, HelpHasExamples) {
    const Ended ended = Shell("kxdu sample --help");
    EXPECT_EQ(ended.code, 0);
    EXPECT_NE(ended.out.find("Examples:"), std::string::npos);
}
