#include <algorithm>

#include "kxdu/program.h"

namespace {

class FilterVerb : public ProgramTest {
protected:
    FilterVerb() { Configure("EventSwitch = 2\nBlacklist = \"7,9\"\n"); }
};

TEST_F(FilterVerb, HoldsBackWhatIsOnTheBlacklist) {
    const Ended ended = Shell("kxdu filter --config config", "6 a\n7 b\n8 c\n9 7\n77 d\n");
    EXPECT_EQ(ended.code, 0);
    EXPECT_EQ(ended.out, "6 a\n8 c\n77 d\n");
    EXPECT_EQ(ended.err, "kxdu: 2 held back, 3 passed on\n");
}

TEST_F(FilterVerb, HoldsBackWhatIsNotOnTheWhitelist) {
    Configure("EventSwitch = 1\nWhitelist = \"7,9\"\n");
    const Ended ended = Shell("KX_CONFIG_DIR=config kxdu filter", "6 a\n7 b\n2101250 c\n9 7\n");
    EXPECT_EQ(ended.code, 0);
    EXPECT_EQ(ended.out, "7 b\n2101250 c\n9 7\n");
    EXPECT_EQ(ended.err, "kxdu: 1 held back, 3 passed on\n");
}

TEST_F(FilterVerb, PassesAllWithoutASwitch) {
    Configure("Blacklist = \"7\"\n");
    const Ended ended = Shell("kxdu filter --config config", "7 a\n");
    EXPECT_EQ(ended.code, 0);
    EXPECT_EQ(ended.out, "7 a\n");
    EXPECT_EQ(ended.err,
              "kxdu: the configuration has no EventSwitch: all notifications pass\n"
              "kxdu: 0 held back, 1 passed on\n");
    Configure("EventSwitch = 0\n");
    EXPECT_EQ(Shell("kxdu filter --config config", "7 a\n").err, "kxdu: 0 held back, 1 passed on\n")
        << "the configuration says that all pass";
}

TEST_F(FilterVerb, SaysWhatASwitchThatIsNoNumberCountsAs) {
    for (const char* const item : {"\"2abc\"", "4294967298", "\" 2\""}) {
        Configure(std::string("EventSwitch = ") + item + "\nBlacklist = \"7\"\n");
        const Ended ended = Shell("kxdu filter --config config", "7 a\n8 b\n");
        EXPECT_EQ(ended.out, "8 b\n") << item;
        EXPECT_TRUE(ended.err.starts_with("kxdu: EventSwitch is \"")) << ended.err;
        EXPECT_NE(ended.err.find(", which counts as 2\n"), std::string::npos) << ended.err;
    }
    Configure("EventSwitch = -4294967295\n");
    EXPECT_TRUE(Shell("kxdu filter --config config", "7 a\n")
                    .err.starts_with("kxdu: EventSwitch is \"-4294967295\", which counts as 1\n"
                                     "kxdu: EventSwitch is 1, but the configuration has no Whitelist"));
}

TEST_F(FilterVerb, WarnsOfASelectedListThatIsMissing) {
    Configure("EventSwitch = 1\nWhiteList = \"7\"\n");
    EXPECT_EQ(Shell("kxdu filter --config config", "7 a\n").err,
              "kxdu: EventSwitch is 1, but the configuration has no Whitelist: only 2101250 passes\n"
              "kxdu: 1 held back, 0 passed on\n");
    Configure("EventSwitch = 2\nBlackList = \"7\"\n");
    EXPECT_EQ(Shell("kxdu filter --config config", "7 a\n").err,
              "kxdu: EventSwitch is 2, but the configuration has no Blacklist: all notifications pass\n"
              "kxdu: 0 held back, 1 passed on\n");
}

TEST_F(FilterVerb, WarnsOfAListWithWordsThatAreNotIdentifiers) {
    const auto toldOf = [this](const std::string& items) {
        Configure(items);
        const std::string told = Shell("kxdu filter --config config", "1 a\n").err;
        return told.substr(0, told.find("kxdu: 0 held back"));
    };
    const std::string end = ", which is not a notification identifier; separate identifiers by commas\n";
    for (const char* const wrong : {"7;9", "[7]", "7 9", "abc", "-7", "0", "7x", "4294967303"}) {
        EXPECT_EQ(toldOf("EventSwitch = 2\nBlacklist = \"5," + std::string(wrong) + ",x\"\n"),
                  "kxdu: Blacklist holds \"" + std::string(wrong) + "\"" + end);
    }
    EXPECT_EQ(toldOf("EventSwitch = 1\nWhitelist = \"1,2x\"\n"), "kxdu: Whitelist holds \"2x\"" + end);
    EXPECT_EQ(toldOf("EventSwitch = 1\nWhitelist = \"1, 2 ,,3,\"\nBlacklist = \"x\"\n"), "")
        << "blanks and extra commas are allowed, and the other list does not matter";
    EXPECT_EQ(toldOf("EventSwitch = 1\nWhitelist = 1\n"), "") << "a number is a list with one member";
}

TEST_F(FilterVerb, WarnsOfASwitchThatSelectsNothing) {
    for (const char* const wrong : {"7", "-1", "blacklist", ""}) {
        Configure("EventSwitch = \"" + std::string(wrong) + "\"\nBlacklist = \"7\"\n");
        EXPECT_EQ(Shell("kxdu filter --config config", "7 a\n").err,
                  "kxdu: EventSwitch is \"" + std::string(wrong) +
                      "\", not 0, 1 or 2: all notifications pass\nkxdu: 0 held back, 1 passed on\n");
    }
}

TEST_F(FilterVerb, TheIdentifierIsWhereTheUserSays) {
    EXPECT_EQ(Shell("kxdu filter --config config --field 2", "7 8\n8\t7\n7 9 7\n").out, "7 8\n");
    EXPECT_EQ(Shell("kxdu filter --config config --json id", "{\"id\":7}\n{\"a\":7,\"id\":8}\n{\"id\":\"9\"}\n").out,
              "{\"a\":7,\"id\":8}\n");
}

TEST_F(FilterVerb, ALineWithoutAnIdentifierPassesAndIsReported) {
    const Ended ended = Shell("kxdu filter --config config", "head\n7 a\n\n8 b\n");
    EXPECT_EQ(ended.code, 1);
    EXPECT_EQ(ended.out, "head\n\n8 b\n");
    EXPECT_EQ(ended.err,
              "<stdin>:1: no notification identifier; the line is passed on\n"
              "<stdin>:3: no notification identifier; the line is passed on\n"
              "kxdu: 1 held back, 3 passed on, 2 of these without an identifier\n");
    EXPECT_EQ(Shell("kxdu filter --config config --field 2", "7 7\n7\n").out, "7\n");
    EXPECT_EQ(Shell("kxdu filter --config config --json id", "{\"id\":7}\n7\n").out, "7\n");
}

TEST_F(FilterVerb, ReportsGoToAFileOnRequest) {
    const Ended ended = Shell("kxdu filter --config config --rejects why", "x\n");
    EXPECT_EQ(ended.code, 1);
    EXPECT_EQ(ReadFile("why"), "<stdin>:1: no notification identifier; the line is passed on\n");
}

TEST_F(FilterVerb, LinesPassByteForByte) {
    const std::string lines("8 a\r\n8 \xff\n\n\r\nx\0y\n8\0\n  8\t \n", 25);
    EXPECT_EQ(Shell("kxdu filter --config config", lines).out, lines);
    EXPECT_EQ(Shell("kxdu filter --config config", "7 a\r\n7\r\n8").out, "8\n") << "the last line gets a line end";
}

TEST_F(FilterVerb, OnlyALineThatIsTooLongIsRejected) {
    const std::string longest = "8 " + std::string((std::size_t{1} << 20U) - 2, 'x');
    const Ended ended = Shell("kxdu filter --config config", "8 a\n" + longest + "\n" + longest + "x\n8 b\n");
    EXPECT_EQ(ended.code, 1);
    EXPECT_EQ(ended.out, "8 a\n" + longest + "\n8 b\n");
    EXPECT_EQ(ended.err,
              "<stdin>:3: the line is longer than 1 MiB\n"
              "kxdu: 0 held back, 3 passed on, 1 too long\n");
}

TEST_F(FilterVerb, LinesKeepTheirOrderOnAnyNumberOfThreads) {
    std::string input;
    std::string expected;
    std::size_t heldBack = 0;
    for (int line = 0; line < 200'000; ++line) {
        const int id = line % 11;
        const std::string text = std::to_string(id) + "\tNE=" + std::to_string(line) + "\n";
        input += text;
        const bool passes = id != 7 && id != 9;
        expected += passes ? text : "";
        heldBack += passes ? 0 : 1;
    }
    for (const char* const jobs : {"1", "2", "7"}) {
        const Ended ended = Shell(std::string("kxdu filter --config config --jobs ") + jobs, input);
        EXPECT_EQ(ended.code, 0);
        EXPECT_TRUE(ended.out == expected) << jobs;
        EXPECT_EQ(ended.err, "kxdu: " + std::to_string(heldBack) + " held back, " + std::to_string(200'000 - heldBack) +
                                 " passed on\n");
    }
}

TEST_F(FilterVerb, NoLineGetsLostBeforeAnInputThatCannotBeRead) {
    std::string input;
    for (int line = 0; line < 60'000; ++line) {
        input += "8 alarm " + std::to_string(line) + "\n";
    }
    input += "x\n";
    WriteFile("alarms", input);
    std::filesystem::create_directory(folder / "unreadable");
    for (const std::string jobs : {"1", "2", "7"}) {
        for (const auto& [name, complaint] : std::initializer_list<std::pair<std::string, std::string>>{
                 {"missing", "No such file or directory"}, {"unreadable", "Is a directory"}}) {
            const Ended ended =
                Shell("rm -f why; kxdu filter --config config --rejects why -j " + jobs + " alarms " + name);
            EXPECT_EQ(ended.code, 2);
            EXPECT_TRUE(ended.out == input) << jobs << ": " << ended.out.size() << " of " << input.size() << " bytes";
            EXPECT_EQ(ended.err, "kxdu: " + name + ": " + complaint + "\n");
            EXPECT_EQ(ReadFile("why"), "alarms:60001: no notification identifier; the line is passed on\n") << jobs;
        }
    }
}

// The feed waits for the answer to each line before it sends the next.
TEST_F(FilterVerb, LinesFromASlowPipePassAtOnce) {
    for (const char* const jobs : {"1", "2"}) {
        const Ended ended =
            Shell("mkfifo in out; kxdu filter --config config --jobs " + std::string(jobs) +
                  " <in >out & exec 3>in 4<out\n"
                  "for id in 6 7 8; do printf '%s alarm\\n' $id >&3; [ $id = 7 ] || timeout 30 head -n 1 <&4; done\n"
                  "exec 3>&-; wait; rm in out");
        EXPECT_EQ(ended.code, 0);
        EXPECT_EQ(ended.out, "6 alarm\n8 alarm\n") << jobs;
        EXPECT_EQ(ended.err, "kxdu: 1 held back, 2 passed on\n");
    }
}

TEST_F(FilterVerb, StrictStopsAtTheFirstLineWithoutAnIdentifier) {
    const Ended ended = Shell("kxdu filter --config config --strict -o out", "8 a\nx\n8 b\n");
    EXPECT_EQ(ended.code, 1);
    EXPECT_EQ(ended.err,
              "<stdin>:2: no notification identifier; the line is passed on\n"
              "kxdu: 1 reported in 2 lines, and stopped there\n");
    EXPECT_FALSE(Exists("out"));
}

TEST_F(FilterVerb, WithoutAConfigurationItDoesNotStart) {
    const Ended ended = Shell("kxdu filter", "7 a\n");
    EXPECT_EQ(ended.code, 2);
    EXPECT_EQ(ended.out, "");
    EXPECT_EQ(ended.err,
              "kxdu: no configuration says what to hold back: give its folder with --config DIR or in "
              "KX_CONFIG_DIR\n");
}

TEST_F(FilterVerb, ExitsWithTwoOnWrongArguments) {
    for (const char* const arguments : {"--field 0", "--field x", "--field 1 --json id", "missing.log"}) {
        EXPECT_EQ(Shell(std::string("kxdu filter --config config ") + arguments).code, 2) << arguments;
    }
    EXPECT_EQ(Shell("kxdu filter --config nowhere", "7 a\n").code, 2);
}

TEST_F(FilterVerb, ExitsWithThreeIfTheOutputCannotBeWritten) {
    EXPECT_EQ(Shell("kxdu filter --config config >/dev/full", "8 a\n").code, 3);
    EXPECT_EQ(Shell("yes 8 a | head -n 100000 | kxdu filter --config config | head -n 1").out, "8 a\n");
}

}  // namespace
