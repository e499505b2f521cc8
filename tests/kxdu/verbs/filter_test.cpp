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
              "kxdu: the configuration has an unknown item \"WhiteList\"; did you mean Whitelist?\n"
              "kxdu: EventSwitch is 1, but the configuration has no Whitelist: only 2101250 passes\n"
              "kxdu: 1 held back, 0 passed on\n");
    Configure("EventSwitch = 2\nBlackList = \"7\"\n");
    EXPECT_EQ(Shell("kxdu filter --config config", "7 a\n").err,
              "kxdu: the configuration has an unknown item \"BlackList\"; did you mean Blacklist?\n"
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
    EXPECT_EQ(Shell("kxdu filter --config config --field 1", "7 8\n8\t7\n7 9 7\n").out, "7 8\n");
    EXPECT_EQ(Shell("kxdu filter --config config --json id", "{\"id\":7}\n{\"a\":7,\"id\":8}\n{\"id\":\"9\"}\n").out,
              "{\"a\":7,\"id\":8}\n");
}

TEST_F(FilterVerb, FieldsMayBeThoseOfCsv) {
    const std::string lines = "\"LOS, port 2\",7,x\n\"say \"\"8\"\"\",\"8\",x\n,9\n";
    EXPECT_EQ(Shell("kxdu filter --config config --delimiter , --field 1", lines).out, "\"say \"\"8\"\"\",\"8\",x\n");
    EXPECT_EQ(Shell("kxdu filter --config config --delimiter '|'", "a|| 7 |\na||8|7\n").out, "a||8|7\n");
    EXPECT_EQ(Shell("kxdu filter --config config --delimiter '\\t' --field 2", "5\t\t7\n5\t\t8\n").out, "5\t\t8\n");
}

TEST_F(FilterVerb, AFirstNumberThatCannotBeInTheListIsReportedIfALaterOneIs) {
    const std::string lines = "20240501 x 7 a\n20240501 x 8 b\n7 9 c\n20240501 8,9 d\n8 9 e\n";
    const Ended ended = Shell("kxdu filter --config config", lines);
    EXPECT_EQ(ended.code, 1);
    EXPECT_EQ(ended.out, "20240501 x 7 a\n20240501 x 8 b\n20240501 8,9 d\n8 9 e\n");
    EXPECT_EQ(ended.err,
              "<stdin>:1: the first number, 20240501, is not in Blacklist, but 7 in field 2 is; if that is the "
              "identifier, give --field 2\n"
              "kxdu: 1 held back, 4 passed on, 1 in doubt\n");
    EXPECT_EQ(Shell("kxdu filter --config config --field 0", lines).code, 0) << "the user said so";
    EXPECT_EQ(Shell("kxdu filter --config config", "0 7\n").code, 1) << "0 is no identifier at all";
    Configure("EventSwitch = 1\nWhitelist = \"77,99\"\n");
    EXPECT_EQ(Shell("kxdu filter --config config --delimiter ,", "1,2101250\n").err,
              "<stdin>:1: the first number, 1, is not in Whitelist, but 2101250 in field 1 is; if that is the "
              "identifier, give --field 1\n"
              "kxdu: 1 held back, 0 passed on, 1 in doubt\n");
    Configure("EventSwitch = 0\nBlacklist = \"7\"\n");
    EXPECT_EQ(Shell("kxdu filter --config config", lines).code, 0) << "no list decides";
}

TEST_F(FilterVerb, KeepsWhatIsHeldBack) {
    WriteFile("held", "old\nbroken");
    EXPECT_EQ(Shell("kxdu filter --config config --held held -o passed", "7 a\n8 b\n9 c\r\nx\n").code, 1);
    EXPECT_EQ(ReadFile("passed"), "8 b\nx\n");
    EXPECT_EQ(ReadFile("held"), "old\nbroken\n7 a\n9 c\r\n") << "a line that lacked its end got one";
}

TEST_F(FilterVerb, AppendsWhatPasses) {
    WriteFile("passed", "old\n");
    const Ended ended = Shell("kxdu filter --config config --append passed", "7 a\n8 b\n");
    EXPECT_EQ(ended.code, 0);
    EXPECT_EQ(ended.out, "");
    EXPECT_EQ(ReadFile("passed"), "old\n8 b\n");
}

TEST_F(FilterVerb, AppendsToNothingThatItReads) {
    WriteFile("alarms", "8 a\n");
    for (const auto& [arguments, complaint] : std::initializer_list<std::pair<std::string, std::string>>{
             {"--append alarms alarms", "alarms: is the input, so the output cannot be appended to it"},
             {"--held ./alarms alarms", "./alarms: is the input, so the lines put aside cannot be appended to it"},
             {"--held out -o out", "out: is the output, so the lines put aside cannot be appended to it"},
             {"--held -", "-: is the output, so the lines put aside cannot be appended to it"},
             {"--rejects out --held out", "out: the rejected lines would replace the file of the lines put aside"},
             {"--append out.gz", "out.gz: lines cannot be appended to a compressed file; choose another name"},
             {"--append config", "config: Is a directory"}}) {
        const Ended ended = Shell("kxdu filter --config config " + arguments);
        EXPECT_EQ(ended.err, "kxdu: " + complaint + "\n") << arguments;
        EXPECT_NE(ended.code, 0) << arguments;
    }
    EXPECT_EQ(ReadFile("alarms"), "8 a\n");
    EXPECT_NE(Shell("kxdu filter --config config --append " + std::string(CONFIG)).code, 0);
}

TEST_F(FilterVerb, ConfirmsThatItIsReadyAndThenEachLine) {
    const std::string lines = "7 a\n8 b\nx\n" + std::string((std::size_t{1} << 20U) + 1, 'y') + "\n";
    const Ended ended = Shell("kxdu filter --config config --append passed --held held --confirm", lines);
    EXPECT_EQ(ended.code, 1);
    EXPECT_EQ(ended.out, "OK\nOK\nOK\nOK\nOK\n") << "a rejected line would only come again";
    EXPECT_EQ(ReadFile("passed"), "8 b\nx\n");
    EXPECT_EQ(ReadFile("held"), "7 a\n");
}

// The sender looks into the files after each confirmation, before it sends the next line.
TEST_F(FilterVerb, ALineIsInItsFileBeforeItIsConfirmed) {
    const Ended ended = Shell(
        "mkfifo in out; kxdu filter --config config --append passed --held held --confirm <in >out & "
        "exec 3>in 4<out\n"
        "timeout 30 head -n 1 <&4\n"
        "for id in 6 7 8; do printf '%s\\n' $id >&3; timeout 30 head -n 1 <&4; cat passed held; done\n"
        "exec 3>&-; wait");
    EXPECT_EQ(ended.code, 0);
    EXPECT_EQ(ended.out, "OK\nOK\n6\nOK\n6\n7\nOK\n6\n8\n7\n");
}

TEST_F(FilterVerb, ConfirmsNothingThatItCannotWrite) {
    const Ended ended = Shell("kxdu filter --config config --append /dev/full --confirm", "8 a\n");
    EXPECT_EQ(ended.code, 3);
    EXPECT_EQ(ended.out, "OK\n") << "it was ready";
    EXPECT_EQ(Shell("kxdu filter --config config --append no/folder --confirm", "8 a\n").out, "");
}

TEST_F(FilterVerb, ConfirmsOnlyIfStandardOutputIsFree) {
    for (const auto& [arguments, complaint] : std::initializer_list<std::pair<std::string, std::string>>{
             {"--confirm", "--confirm needs --append FILE: standard output is for the confirmations"},
             {"--confirm --append -",
              "--append -: with --confirm, standard output is for the confirmations; name a file"},
             {"--confirm --append out --strict",
              "--strict does not go with --confirm: rsyslogd would send the line that ends the run again and again"},
             {"--append a -o b", "--append and -o name two outputs: give one of them"}}) {
        const Ended ended = Shell("kxdu filter --config config " + arguments);
        EXPECT_EQ(ended.code, 2) << arguments;
        EXPECT_EQ(ended.err, "kxdu: " + complaint + "\n");
    }
}

TEST_F(FilterVerb, TakesOverAChangedConfigurationBetweenLines) {
    const Ended ended = Shell(
        "mkfifo in out; kxdu filter --config config <in >out & exec 3>in 4<out\n"
        "change() { printf \"$1\" >new; touch -d '1 minute ago' new; mv new " +
        std::string(CONFIG) +
        "; }\n"
        "send() { printf '%s\\n' \"$1\" >&3; timeout 30 head -n 1 <&4; }\n"
        "send '8 a'; change 'EventSwitch = 2\\nBlacklist = \"8\"\\n'; send '7 b'; echo '8 c' >&3; send '9 d'\n"
        "change 'EventSwitch = '; send '7 e'; change 'EventSwitch = 3\\n'; send '8 f'\n"
        "exec 3>&-; wait");
    EXPECT_EQ(ended.out, "8 a\n7 b\n9 d\n7 e\n8 f\n");
    const std::string file = std::string("kxdu: ") + CONFIG + ":";
    const auto broken = ended.err.find(file + "1:");
    ASSERT_NE(broken, std::string::npos) << ended.err;
    EXPECT_EQ(ended.err.substr(0, broken),
              file + " has changed: EventSwitch is \"2\", Blacklist is \"8\" from now on\n");
    EXPECT_EQ(ended.err.substr(ended.err.find("; the configuration")),
              "; the configuration read before stays in force\n" + file +
                  " has changed: EventSwitch is \"3\" from now on\n"
                  "kxdu: EventSwitch is \"3\", not 0, 1 or 2: all notifications pass\n"
                  "kxdu: 1 held back, 5 passed on\n");
}

TEST_F(FilterVerb, ALineWithoutAnIdentifierPassesAndIsReported) {
    const Ended ended = Shell("kxdu filter --config config", "head\n7 a\n\n8 b\n");
    EXPECT_EQ(ended.code, 1);
    EXPECT_EQ(ended.out, "head\n\n8 b\n");
    EXPECT_EQ(ended.err,
              "<stdin>:1: no notification identifier; the line is passed on\n"
              "<stdin>:3: no notification identifier; the line is passed on\n"
              "kxdu: 1 held back, 3 passed on, 2 of these without an identifier\n");
    EXPECT_EQ(Shell("kxdu filter --config config --field 1", "7 7\n7\n").out, "7\n");
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
    for (const char* const arguments : {"--field -1", "--field x", "--field 1 --json id", "--delimiter , --json id",
                                        "--delimiter ,,", "--delimiter '\"'", "missing.log"}) {
        EXPECT_EQ(Shell(std::string("kxdu filter --config config ") + arguments).code, 2) << arguments;
    }
    EXPECT_EQ(Shell("kxdu filter --config nowhere", "7 a\n").code, 2);
}

TEST_F(FilterVerb, ExitsWithThreeIfTheOutputCannotBeWritten) {
    EXPECT_EQ(Shell("kxdu filter --config config >/dev/full", "8 a\n").code, 3);
    EXPECT_EQ(Shell("yes 8 a | head -n 100000 | kxdu filter --config config | head -n 1").out, "8 a\n");
}

}  // namespace
