// Bad input of every sort: the tool reports it with the exit code that --help promises, and never holds more than a
// little of it in memory.
#include <algorithm>
#include <filesystem>
#include <initializer_list>
#include <random>
#include <string>
#include <tuple>
#include <utility>

#include <sys/resource.h>

#include "kxdu/program.h"
#include "lineverbs.h"
#include "support/scale.h"

namespace {

// In MiB. Sanitizers keep freed memory for a while.
#ifdef KX_TEST_SANITIZED
constexpr long MOST_MEMORY = 768;
#else
constexpr long MOST_MEMORY = 64;
#endif

// The greatest memory of any program that this process ran, in MiB.
long MemoryOfLargestRun() {
    rusage usage{};
    getrusage(RUSAGE_CHILDREN, &usage);
    return usage.ru_maxrss / 1024;
}

std::ptrdiff_t Lines(const std::string& text) {
    return std::count(text.begin(), text.end(), '\n');
}

std::string LastLine(std::string text) {
    text.resize(text.empty() ? 0 : text.size() - 1);
    return text.substr(text.rfind('\n') + 1);
}

}  // namespace

// ---- What would steer a terminal -----------------------------------------------------------------------------------

class ToolMessages : public ProgramTest {};

TEST_F(ToolMessages, SteerNoTerminal) {
    const std::string name =
        "no\x1b[31m\xc2\x9b"
        "1m\xe2\x80\xae\xff"
        "file";
    const std::string shown = R"(no\x1b[31m\xc2\x9b1m\xe2\x80\xae\xfffile)";
    EXPECT_EQ(Shell("kxdu check '" + name + "'").err, "kxdu: " + shown + ": No such file or directory\n");
    EXPECT_EQ(Shell("kxdu decode --no-such='" + name + "' '" + name + "'").err.find(name), std::string::npos);
    const Ended verb = Shell("kxdu '" + name + "'");
    EXPECT_NE(verb.err.find("unknown verb \"" + shown + "\""), std::string::npos) << verb.err;
    WriteFile(name, "NE=1,no level\n");
    const Ended line = Shell("kxdu decode '" + name + "'");
    EXPECT_TRUE(line.err.starts_with(shown + ":1:")) << line.err;
    const Ended rejects = Shell("kxdu decode --rejects rejects '" + name + "'; cat rejects");
    EXPECT_TRUE(rejects.out.starts_with(name + ":1:")) << rejects.out;
}

// ---- Binary garbage -------------------------------------------------------------------------------------------------

class ToolWithGarbage : public ProgramTest {
protected:
    static std::string MakeGarbage() {
        std::mt19937 random(20);
        std::string garbage(NS_TEST::Scaled(1U << 20U), '\0');
        std::generate(garbage.begin(), garbage.end(), [&] { return static_cast<char>(random()); });
        return garbage + "\n";
    }

    const std::string garbage = MakeGarbage();
    const std::string lines = std::to_string(Lines(garbage)) + " lines";
};

TEST_F(ToolWithGarbage, EachLineIsConvertedOrRejected) {
    for (const char* const verb : {"decode", "encode", "get NE"}) {
        const Ended ended = Shell(std::string("kxdu ") + verb + " --rejects rejects", garbage);
        EXPECT_EQ(ended.code, 1) << verb;
        EXPECT_EQ(Lines(ended.out) + Lines(ReadFile("rejects")), Lines(garbage)) << verb;
        EXPECT_TRUE(LastLine(ended.err).ends_with(" in " + lines)) << LastLine(ended.err);
    }
}

TEST_F(ToolWithGarbage, CheckFindsSomethingInEachLine) {
    const Ended ended = Shell("kxdu check --levels-only | cut -d : -f 1,2 | uniq", garbage);
    EXPECT_EQ(Lines(ended.out), Lines(garbage));
    EXPECT_TRUE(LastLine(ended.err).ends_with(" in " + std::to_string(Lines(garbage)) + " of " + lines))
        << LastLine(ended.err);
}

TEST_F(ToolWithGarbage, FilterPassesItByteForByte) {
    Configure();
    const Ended ended = Shell("kxdu filter --config config", garbage);
    EXPECT_EQ(ended.code, 1);
    EXPECT_TRUE(ended.out == garbage);
}

TEST_F(ToolWithGarbage, IsNeitherInventoryNorConfiguration) {
    WriteFile("garbage", garbage);
    Configure(garbage);
    for (const char* const command :
         {"inventory list garbage", "inventory import garbage csv", "inventory export garbage out",
          "encode --inventory garbage", "check --inventory garbage", "explain --inventory garbage NE=5",
          "ne-type 1912 --inventory garbage", "decode --config config", "encode --config config",
          "check --config config", "filter --config config", "explain --config config NE=5"}) {
        for (const char* const table : {"ne.csv", "ne_type.csv", "domain_member.csv"}) {
            WriteFile(std::string("csv/") + table, garbage);
        }
        const Ended ended = Shell(std::string("kxdu ") + command, "NE=5\n");
        EXPECT_EQ(ended.code, 2) << command;
        EXPECT_EQ(ended.out, "") << command;
        EXPECT_EQ(ended.err.rfind("kxdu: ", 0), 0U) << command;
        EXPECT_EQ(Lines(ended.err), 1) << command;
    }
    EXPECT_EQ(ReadFile("garbage"), garbage);
    EXPECT_EQ(Shell("kxdu inventory init n.db && kxdu inventory import n.db csv").code, 2);
    EXPECT_EQ(Shell("kxdu inventory list n.db --format csv | wc -l").out, "1\n");
}

TEST_F(ToolWithGarbage, AsAnArgumentItHasAnAnswerToo) {
    WriteFile("garbage", garbage);
    const auto run = [this](const std::string& verb) {
        return Shell("kxdu " + verb + " -- \"$(head -c 20000 garbage | tr -d '\\0')\"").code;
    };
    EXPECT_EQ(run("explain"), 0);
    EXPECT_EQ(run("path"), 2);
    EXPECT_EQ(run("ctp"), 2);
    EXPECT_EQ(run("level"), 2);
    EXPECT_EQ(run("fb"), 2);
    EXPECT_EQ(run("ne-type"), 2);
    EXPECT_EQ(run("tables"), 2);
    EXPECT_EQ(run("get"), 2);
    EXPECT_EQ(run("decode"), 2);
    EXPECT_EQ(Shell("kxdu \"$(tr -d '\\0' <garbage | head -c 20000)\"").code, 2);
}

// ---- Too much of it -------------------------------------------------------------------------------------------------

class ToolWithMuch : public ProgramTest {
protected:
    void SetUp() override { Configure(); }

    void TearDown() override { EXPECT_LE(MemoryOfLargestRun(), MOST_MEMORY); }
};

TEST_F(ToolWithMuch, OfALineOfTwoGigabytesNothingIsHeldAndTheNextOneCounts) {
    const std::string line = "dd if=/dev/zero bs=64K count=" + std::to_string(NS_TEST::Scaled(32768)) + " status=none";
    const auto between = [&line](const std::string& first, const std::string& last) {
        return "{ echo '" + first + "'; " + line + "; echo; echo '" + last + "'; } | kxdu ";
    };
    const std::string input = between("NE=5", "NE=6");
    const std::string complaint = "<stdin>:2: the line is longer than 1 MiB\n";

    const Ended got = Shell(input + "get NE");
    EXPECT_EQ(got.out, "5\n6\n");
    EXPECT_EQ(got.err, complaint + "kxdu: 1 rejected in 3 lines\n");

    const std::string five = R"({"fdn":"NE=5","type":"NEIndex","record":{"reserved":0,"neId":5}})";
    const std::string six = R"({"fdn":"NE=6","type":"NEIndex","record":{"reserved":0,"neId":6}})";
    const Ended decoded = Shell(input + "decode");
    EXPECT_EQ(decoded.out, five + "\n" + six + "\n");
    EXPECT_EQ(decoded.err, complaint + "kxdu: 1 rejected in 3 lines\n");

    const Ended encoded = Shell(between(five, six) + "encode");
    EXPECT_EQ(encoded.out, "NE=5\nNE=6\n");
    EXPECT_EQ(encoded.err, complaint + "kxdu: 1 rejected or changed in 3 lines\n");

    const Ended checked = Shell(input + "check --levels-only");
    EXPECT_EQ(checked.out, complaint);
    EXPECT_EQ(checked.err, "kxdu: 1 problem in 1 of 3 lines\n");

    const Ended filtered = Shell(input + "filter --config config");
    EXPECT_EQ(filtered.out, "NE=5\nNE=6\n");
    EXPECT_NE(filtered.err.find(complaint), std::string::npos) << filtered.err;
}

// A verb that gets three lines over and over; the second line is bad.
struct VerbWithThreeLines {
    const char* name;
    const char* command;
    const char* lines;
    std::string (*summary)(const std::string& bad, const std::string& all);
    bool isGoodWritten;
    bool isBadWritten;
};

template <const auto& finding>
std::string Summary(const std::string& bad, const std::string& all) {
    return "kxdu: " + bad + " " + finding + " in " + all + " lines\n";
}

constexpr char REJECTED[] = "rejected";
constexpr char CHANGED[] = "rejected or changed";

std::string CheckSummary(const std::string& bad, const std::string& all) {
    return "kxdu: " + bad + " problems in " + bad + " of " + all + " lines\n";
}

std::string FilterSummary(const std::string& bad, const std::string& all) {
    return "kxdu: 0 held back, " + all + " passed on, " + bad + " of these without an identifier\n";
}

class ToolWithManyBadLines : public ToolWithMuch, public testing::WithParamInterface<VerbWithThreeLines> {};

TEST_P(ToolWithManyBadLines, CountsEachOfThem) {
    const auto& [name, command, lines, summary, isGoodWritten, isBadWritten] = GetParam();
    const std::size_t count = NS_TEST::Scaled(10'000'000);
    const std::size_t bad = (count + 1) / 3;
    const Ended ended = Shell("{ yes '" + std::string(lines) + "' | head -n " + std::to_string(count) + " | { kxdu " +
                              command + "; echo $? >code; } | wc -l >written; } 3>&1 | wc -l >reported");
    EXPECT_EQ(ReadFile("code"), "1\n");
    EXPECT_EQ(ReadFile("written"), std::to_string((isGoodWritten ? count - bad : 0) + (isBadWritten ? bad : 0)) + "\n");
    EXPECT_EQ(ReadFile("reported"), std::to_string(isGoodWritten ? bad : 0) + "\n");
    EXPECT_NE(ended.err.find(summary(std::to_string(bad), std::to_string(count))), std::string::npos) << ended.err;
}

INSTANTIATE_TEST_SUITE_P(
    All, ToolWithManyBadLines,
    testing::Values(VerbWithThreeLines{"decode", "decode --rejects /dev/fd/3", "NE=5\nNE=5,XY=1\nNE=6,FR=1,S=3",
                                       Summary<REJECTED>, true, false},
                    VerbWithThreeLines{"encode", "encode --rejects /dev/fd/3",
                                       R"({"type":"NEIndex","record":{"reserved":0,"neId":7}})"
                                       "\n{\"type\":\"NEIndex\"}\n"
                                       R"({"record":{"reserved":0,"neId":8},"type":"NEIndex"})",
                                       Summary<CHANGED>, true, false},
                    VerbWithThreeLines{"check", "check --levels-only", "NE=5\nNE=5,XY=1\nNE=6,FR=1,S=3", CheckSummary,
                                       false, true},
                    VerbWithThreeLines{"get", "get NE --rejects /dev/fd/3", "NE=5\n\nNE=6,FR=1,S=3", Summary<REJECTED>,
                                       true, false},
                    VerbWithThreeLines{"filter", "filter --config config --rejects /dev/fd/3", "8 a\nb\n9 c",
                                       FilterSummary, true, true}),
    [](const auto& parameter) { return std::string(parameter.param.name); });

// A verb that gets the same word over and over.
struct VerbWithOneWord {
    const char* name;
    const char* command;
    const char* word;
    int linesOfHead;
};

class ToolWithManyWords : public ToolWithMuch, public testing::WithParamInterface<VerbWithOneWord> {};

TEST_P(ToolWithManyWords, AnswersEachOfThem) {
    const auto& [name, command, word, linesOfHead] = GetParam();
    const std::size_t count = NS_TEST::Scaled(1'000'000);
    const Ended ended =
        Shell("yes " + std::string(word) + " | head -n " + std::to_string(count) + " | kxdu " + command + " | wc -l");
    EXPECT_EQ(ended.out, std::to_string(count + static_cast<std::size_t>(linesOfHead)) + "\n");
    EXPECT_EQ(ended.err, "");
}

INSTANTIATE_TEST_SUITE_P(All, ToolWithManyWords,
                         testing::Values(VerbWithOneWord{"fb", "fb - --format csv", "860", 1},
                                         VerbWithOneWord{"fbTable", "fb -", "860", 2},
                                         VerbWithOneWord{"level", "level - --format jsonl", "ODU2", 0},
                                         VerbWithOneWord{"ctp", "ctp - --format md", "E0", 2},
                                         VerbWithOneWord{"path", "path - --format csv", "ODU2:1", 1},
                                         VerbWithOneWord{"neType", "ne-type - --format csv", "1912", 1}),
                         [](const auto& parameter) { return std::string(parameter.param.name); });

// 2,000 times "./" before a name.
TEST_F(ToolWithMuch, NamesOfInputsAreNotHeldForEachReport) {
    const std::size_t count = NS_TEST::Scaled(60'000);
    const std::string make =
        "seq " + std::to_string(count) + " | sed 's/^/x/' >in; name=$(yes ./ | head -n 2000 | tr -d '\\n')in; ";
    for (const char* const verb :
         {"check --levels-only -j8 $name", "check --levels-only -j256 $name",
          "decode -j256 $name -o out --rejects /dev/fd/1", "get NE $name -j8 --rejects /dev/fd/1 -o out"}) {
        const Ended ended = Shell(make + "kxdu " + verb + " | wc -l");
        if (!std::string(verb).starts_with("get")) {
            EXPECT_GE(std::stoul(ended.out), count) << verb;
        }
    }
}

TEST_F(ToolWithMuch, ColumnsThatRepeatAreNotHeldTogether) {
    const std::string get = "kxdu get $(yes NE | head -n 1000 | paste -sd,) in ";
    const auto write = [this](std::size_t lines, std::size_t size) {
        const std::string line = "NE=" + std::string(size, 'y') + "\n";
        std::string text;
        for (std::size_t made = 0; made < lines; ++made) {
            text += line;
        }
        WriteFile("in", text);
    };
    write(20, 1'000'000);
    const Ended ended = Shell(get + "2>&1 >out | head -n 1");
    EXPECT_EQ(ended.out, "in:1: the columns would be longer than 1 MiB\n");
    write(NS_TEST::Scaled(600), 1000);
    const std::string one = Shell(get + "-j1 | cksum").out;
    for (const char* const jobs : {"-j2", "-j8", "-j256"}) {
        EXPECT_EQ(Shell(get + jobs + " | cksum").out, one) << jobs;
    }
}

TEST_F(ToolWithMuch, OfAHugeFieldOfAnImportLittleIsHeld) {
    ASSERT_EQ(Shell("kxdu inventory init n.db; mkdir csv; echo cache,domain,ne_type >csv/domain_member.csv;"
                    " echo ne_id,ne_type,multi_sub_shelf,oam_number_omitted >csv/ne.csv")
                  .code,
              0);
    const std::string size = std::to_string(NS_TEST::Scaled(300'000'000));
    for (const char* const filler : {"tr '\\0' x </dev/zero", "yes abc"}) {
        const Ended ended =
            Shell(std::string("{ echo ne_type,name,ip_service,klv; printf '5,\"'; ") + filler + " | head -c " + size +
                  "; echo '\",0,0'; } >csv/ne_type.csv; kxdu inventory import n.db csv");
        EXPECT_EQ(ended.code, 2);
        EXPECT_EQ(ended.err, "kxdu: csv/ne_type.csv:2: the row is longer than 1 MiB\n");
    }
}

TEST_F(ToolWithMuch, OfAnEndlessWordLittleIsHeld) {
    for (const char* const verb : {"fb", "level", "ctp", "path", "ne-type"}) {
        const Ended ended = Shell("tr '\\0' x </dev/zero | kxdu " + std::string(verb) + " - --format csv -o out");
        EXPECT_EQ(ended.code, 2) << verb;
        EXPECT_TRUE(ended.err.starts_with("kxdu: a word on standard input is longer than 1024 bytes: ")) << ended.err;
        EXPECT_FALSE(Exists("out")) << verb;
    }
}

TEST_F(ToolWithMuch, OfATableAsWideAsItMayBe) {
    const std::string words = "yes 1912 | head -n ";
    EXPECT_EQ(Shell(words + "1000 | kxdu ne-type - | head -n 1 | sed 's/  yes if$//' | wc -w").out, "1001\n");
    const Ended ended = Shell(words + "1001 | kxdu ne-type -");
    EXPECT_EQ(ended.code, 2);
    EXPECT_EQ(ended.out, "");
    EXPECT_EQ(ended.err, "kxdu: a table shows at most 1000 NE types; --format csv and jsonl take any number\n");
}

TEST_F(ToolWithMuch, OfAnInventoryTheRowsAreNotHeldAsText) {
    const std::size_t count = NS_TEST::Scaled(300'000);
    WriteFile("csv/ne_type.csv", "ne_type,name,ip_service,klv\n5,any,0,0\n");
    WriteFile("csv/domain_member.csv", "cache,domain,ne_type\n");
    ASSERT_EQ(Shell("{ echo ne_id,ne_type,multi_sub_shelf,oam_number_omitted; seq " + std::to_string(count) +
                    " | sed 's/$/,5,0,0/'; } >csv/ne.csv; kxdu inventory init n.db && kxdu inventory import n.db csv")
                  .code,
              0);
    EXPECT_EQ(Shell("kxdu inventory list n.db --nes | wc -l").out, std::to_string(count + 4) + "\n");
    EXPECT_EQ(Shell("kxdu inventory list n.db --nes --format csv | wc -l").out, std::to_string(count + 1) + "\n");
}

// ---- What the verbs do not take as it is ----------------------------------------------------------------------------

// A command with its standard input, and a part of its output. An empty part means no output at all.
struct OddInput {
    const char* command;
    std::string input;
    int code;
    std::string out;
    std::string err;
};

class ToolWithOddInput : public ProgramTest {
protected:
    static std::string MdRecord(const std::string& name) {
        return R"({"type":"MDIndex","record":{"reserved":0,"neId":5,"mdId":1,"mdName":")" + name + "\"}}\n";
    }

    static std::string NeRecord(const std::string& fields) {
        return R"({"type":"NEIndex","record":{)" + fields + "}}\n";
    }

    static void ExpectPart(const std::string& text, const std::string& part, const OddInput& odd) {
        EXPECT_TRUE(part.empty() ? text.empty() : text.find(part) != std::string::npos)
            << "of " << odd.command << " with " << odd.input << "\n"
            << text << "instead of\n"
            << part;
    }
};

TEST_F(ToolWithOddInput, GivesTheAnswerThatHelpPromises) {
    const std::string nes = "ne_id,ne_type,multi_sub_shelf,oam_number_omitted\n";
    const std::string types = "ne_type,name,ip_service,klv\n";
    const std::string members = "cache,domain,ne_type\n";
    constexpr auto explainManyPieces = "kxdu explain NE=1$(head -c 200 /dev/zero | tr '\\0' ,)";
    constexpr auto countMeanings = "kxdu explain NE=1$(head -c 200 /dev/zero | tr '\\0' ,) | grep -c ╰";
    constexpr auto encode = "kxdu encode";
    constexpr auto check = "kxdu check";
    constexpr auto importNes = "cat >csv/ne.csv; kxdu inventory import n.db csv";
    constexpr auto importTypes = "cat >csv/ne_type.csv; kxdu inventory import n.db csv";
    constexpr auto importMembers = "cat >csv/domain_member.csv; kxdu inventory import n.db csv";

    ASSERT_EQ(Shell("kxdu inventory init n.db").code, 0);
    for (const OddInput& odd : std::initializer_list<OddInput>{
             {explainManyPieces, "", 0, "  ! 1 more part is not drawn", ""},
             {countMeanings, "", 0, "200\n", ""},

             {encode, MdRecord("a\\ude00b"), 1, "",
              "<stdin>:1: field \"mdName\" holds an escape that is no character\n"},
             {encode, MdRecord("a\\ud83d"), 1, "",
              "<stdin>:1: field \"mdName\" holds an escape that is no character\n"},
             {encode, MdRecord("a\\nb"), 1, "", "<stdin>:1: field \"mdName\" holds a line end or NUL\n"},
             {encode, MdRecord("a\\rb"), 1, "", "<stdin>:1: field \"mdName\" holds a line end or NUL\n"},
             {encode, NeRecord(R"("reserved":0)"), 1, "", "<stdin>:1: field \"neId\" is missing\n"},
             {encode, NeRecord(R"("reserved":0,"neId":7,"x":1)"), 1, "", "<stdin>:1: unknown field \"x\"\n"},
             {encode, NeRecord(R"("reserved":0,"neId":2147483648)"), 1, "",
              "<stdin>:1: field \"neId\" is not from -2147483648 to 2147483647: 2147483648\n"},
             {encode, NeRecord(R"("reserved":0,"neId":99999999999999999999)"), 1, "",
              "<stdin>:1: field \"neId\" is not a whole number of 32 bits\n"},

             {check, "NE=1,S=2,S=2\n", 1, "<stdin>:1:10: level \"S\" occurs before; the first one counts\n",
              "1 problem in 1 of 1 line\n"},
             {check, "NE=2147483648\n", 1, "<stdin>:1:4: NE is not from -2147483648 to 2147483647: \"2147483648\"\n",
              "1 problem in 1 of 1 line\n"},
             {check, "NE=-2147483649\n", 1, "<stdin>:1:4: NE is not from -2147483648 to 2147483647: \"-2147483649\"\n",
              "1 problem in 1 of 1 line\n"},
             {check, "NE=1,LP=||4294967295|\n", 0, "", ""},
             {check, "NE=1,LP=||4294967296|\n", 1,
              "<stdin>:1:11: LP:2 is not from -2147483648 to 4294967295: \"4294967296\"\n",
              "1 problem in 1 of 1 line\n"},

             {"kxdu decode", "NE=5\r\n\r\n", 1, "{\"fdn\":\"NE=5\",", "<stdin>:2: the line is empty\n"},
             {encode, std::string(RECORD) + "\r\n\r\n", 1, "NE=7\n", "<stdin>:2: the line is empty\n"},
             {check, "NE=5\r\n\r\n", 1, "<stdin>:2: the line is empty\n", "kxdu: 1 problem in 1 of 2 lines\n"},
             {"kxdu get NE", "NE=5\r\n\r\n", 1, "5\n", "<stdin>:2: the line is empty\n"},

             {importNes, nes + "1,7,yes,0\n", 2, "", "kxdu: csv/ne.csv:2: multi_sub_shelf is \"yes\", not 0 or 1\n"},
             {importNes, nes + "1,7,0,2\n", 2, "", "kxdu: csv/ne.csv:2: oam_number_omitted is \"2\", not 0 or 1\n"},
             {importTypes, types + "7,a,,0\n", 2, "", "kxdu: csv/ne_type.csv:2: ip_service is \"\", not 0 or 1\n"},
             {importTypes, types + "7,a,0,00\n", 2, "", "kxdu: csv/ne_type.csv:2: klv is \"00\", not 0 or 1\n"},
             {importNes, nes + "2147483648,7,0,0\n", 2, "",
              "kxdu: csv/ne.csv:2: ne_id is \"2147483648\", not a number from 0 to 2147483647\n"},
             {importNes, nes + "1,65536,0,0\n", 2, "",
              "kxdu: csv/ne.csv:2: ne_type is \"65536\", not a number from 0 to 65535\n"},
             {importTypes, types + "-1,a,0,0\n", 2, "",
              "kxdu: csv/ne_type.csv:2: ne_type is \"-1\", not a number from 0 to 65535\n"},
             {importMembers, members + "EQUIPMENT_TYPE,OTN,65536\n", 2, "",
              "kxdu: csv/domain_member.csv:2: ne_type is \"65536\", not a number from 0 to 65535\n"},
             {importNes, nes + "1,7,0,0\n1,7,1,1\n", 2, "", "kxdu: csv/ne.csv:3: NE 1 is repeated\n"},
             {importTypes, types + "7,a,0,0\n7,b,0,0\n", 2, "", "kxdu: csv/ne_type.csv:3: NE type 7 is repeated\n"},
             {importMembers, members + "EQUIPMENT_TYPE,OTN,7\nEQUIPMENT_TYPE,OTN,7\n", 2, "",
              "kxdu: csv/domain_member.csv:3: NE type 7 of \"OTN\" is repeated\n"},
             {importNes, "1,7,0,0\n", 2, "", "kxdu: csv/ne.csv:1: the first line must be \"ne_id,"},
             {importTypes, "", 2, "", "kxdu: csv/ne_type.csv:1: the first line must be \"ne_type,"},
             {importMembers, "\n", 2, "", "kxdu: csv/domain_member.csv:1: the first line must be \"cache,"},
             {"rm csv/ne.csv; kxdu inventory import n.db csv", "", 2, "",
              "kxdu: csv/ne.csv: No such file or directory\n"},
             {"rm csv/ne_type.csv; kxdu inventory import n.db csv", "", 2, "",
              "kxdu: csv/ne_type.csv: No such file or directory\n"},
             {"rm csv/domain_member.csv; kxdu inventory import n.db csv", "", 2, "",
              "kxdu: csv/domain_member.csv: No such file or directory\n"}}) {
        WriteFile("csv/ne.csv", nes + "5,7,0,0\n");
        WriteFile("csv/ne_type.csv", types + "7,seven,0,0\n");
        WriteFile("csv/domain_member.csv", members);
        const Ended ended = Shell(odd.command, odd.input);
        EXPECT_EQ(ended.code, odd.code) << odd.command << " with " << odd.input;
        ExpectPart(ended.out, odd.out, odd);
        ExpectPart(ended.err, odd.err, odd);
    }
    EXPECT_EQ(Shell("kxdu inventory list n.db --nes --format csv | wc -l").out, "1\n") << "none was imported";
}

// A reader that cuts a field inside a character makes a record that is not UTF-8.
TEST_F(ToolWithOddInput, NoOutputIsOtherThanUtf8) {
    for (const char* const format : {"jsonl", "csv", "tsv"}) {
        const Ended ended = Shell(std::string("kxdu decode --format ") + format,
                                  "NE=4\nNE=5,MD=\xC3\xA9"
                                  "1,MA=2|x,MEP=7\nNE=6\n");
        EXPECT_EQ(ended.code, 1) << format;
        EXPECT_EQ(ended.out.find('\xA9'), std::string::npos) << format;
        EXPECT_EQ(Lines(ended.out), format == std::string("jsonl") ? 2 : 3) << format;
        EXPECT_TRUE(ended.err.starts_with("<stdin>:2: cannot be written as UTF-8: ")) << ended.err;
    }
    for (const char* const command : {"ctp", "level", "path"}) {
        const Ended ended = Shell(std::string("kxdu ") + command + " --format csv \"$(printf '\\303')\"");
        EXPECT_EQ(ended.code, 2) << command;
        EXPECT_EQ(ended.err, "kxdu: \"\\xc3\" is not UTF-8\n") << command;
    }
}

// ---- Arguments that look like something else ------------------------------------------------------------------------

class ToolArguments : public ProgramTest {};

TEST_F(ToolArguments, AreTheOnesThatWereGiven) {
    for (const char* const name : {"[a,b]", "[]", "++", "{}", "%%", "[a", "{a}", "+", "%"}) {
        const std::string quoted = std::string("'") + name + "'";
        EXPECT_EQ(Shell("kxdu decode " + quoted + " </dev/null").err,
                  "kxdu: " + std::string(name) + ": No such file or directory\n");
        const Ended explained = Shell("kxdu explain " + quoted);
        EXPECT_NE(explained.out.find(name), std::string::npos) << explained.out;
        WriteFile(name, "NE=5\n");
        EXPECT_EQ(Shell("kxdu get NE " + quoted).out, "5\n") << name;
        EXPECT_EQ(Shell("kxdu decode " + quoted + " -o " + quoted).code, 0) << name;
        EXPECT_TRUE(ReadFile(name).starts_with("{\"fdn\":\"NE=5\"")) << name;
        EXPECT_NE(Shell("kxdu ctp --format csv " + quoted).out.find(name), std::string::npos) << name;
        EXPECT_EQ(Shell("kxdu " + quoted).err.rfind("kxdu: unknown verb \"" + std::string(name) + "\"", 0), 0U);
    }
    const Ended both = Shell("kxdu explain '[NE=1,FR=2]'");
    EXPECT_NE(both.out.find("[NE=1,FR=2]"), std::string::npos) << both.out;
    EXPECT_EQ(Shell("kxdu sample --ne 1 '[a,b]'").err.rfind("kxdu: unexpected argument \"[a,b]\"\n", 0), 0U);
}

// ---- What is there, but cannot be read ------------------------------------------------------------------------------

// The superuser reads and writes everything, until the capabilities to do so are dropped.
class ToolWithoutRights : public ProgramTest {
protected:
    void SetUp() override {
        WriteFile("secret", "NE=5\n");
        WriteFile(CONFIG, "");
        ASSERT_EQ(Shell("kxdu sample --ne 1 -o one.fdn --inventory-csv csv && kxdu inventory init n.db &&"
                        " kxdu inventory import n.db csv && chmod 0 secret config/*/* && chmod 0444 n.db")
                      .code,
                  0);
        if (Shell("cat secret").code != 0) {
            m_run = "kxdu ";
            return;
        }
        const std::string drop =
            "setpriv --bounding-set=-dac_override,-dac_read_search --inh-caps=-dac_override,-dac_read_search ";
        m_run = drop + "'" KXDU_PROGRAM "' ";
        if (Shell(drop + "true").code != 0 || Shell(drop + "cat secret").code == 0) {
            GTEST_SKIP() << "this user reads everything and cannot give that up";
        }
    }

    void ExpectDenied(int code, const std::string& command, const std::string& complaint) const {
        const Ended ended = Shell(m_run + command, "NE=5\n");
        EXPECT_EQ(ended.code, code) << command;
        EXPECT_EQ(ended.out, "") << command;
        EXPECT_NE(ended.err.find(complaint), std::string::npos) << command << ": " << ended.err;
    }

    std::string m_run;
};

TEST_F(ToolWithoutRights, NamesWhatItCannotRead) {
    for (const char* const command : {"decode secret", "encode secret", "check --levels-only secret", "get NE secret",
                                      "decode one.fdn secret >/dev/null"}) {
        ExpectDenied(2, command, "kxdu: secret: Permission denied\n");
    }
    ExpectDenied(2, "encode --inventory secret", "kxdu: secret: ");
    ExpectDenied(2, "inventory list secret", "kxdu: secret: ");
    ExpectDenied(2, "filter --config config", "config/kx_corbaagent_bundle/bundle.cfg");
    ASSERT_EQ(Shell("chmod 0 csv/ne.csv").code, 0);
    ExpectDenied(2, "inventory import n.db csv", "csv/ne.csv: Permission denied");
}

TEST_F(ToolWithoutRights, NamesWhatItCannotWrite) {
    ExpectDenied(2, "inventory import n.db csv", "kxdu: n.db: ");
    EXPECT_EQ(Shell("kxdu inventory list n.db --nes --format csv | wc -l").out, "2\n");
    ASSERT_EQ(Shell("mkdir closed && chmod 0555 closed").code, 0);
    ExpectDenied(3, "decode -o closed/out",
                 "kxdu: closed/out: no file can be made in the folder closed: Permission denied\n");
    ExpectDenied(3, "decode --rejects closed/out",
                 "kxdu: closed/out: no file can be made in the folder closed: Permission denied\n");
    ExpectDenied(3, "tables client-rates -o closed/out",
                 "kxdu: closed/out: no file can be made in the folder closed: Permission denied\n");
    ExpectDenied(3, "sample --ne 1 -o one --inventory-csv closed",
                 "kxdu: closed/ne.csv: no file can be made in the folder closed: Permission denied\n");
    ExpectDenied(3, "inventory export n.db closed",
                 "kxdu: closed/ne.csv: no file can be made in the folder closed: Permission denied\n");
    ExpectDenied(2, "inventory init closed/n.db",
                 "kxdu: closed/n.db: cannot be written in its folder: Permission denied\n");
    EXPECT_FALSE(Exists("one"));
    ASSERT_EQ(Shell("mkdir hidden && echo NE=5 >hidden/in && chmod 0 hidden").code, 0);
    ExpectDenied(2, "decode hidden/in", "kxdu: hidden/in: the folder hidden cannot be entered: Permission denied\n");
}

class ToolWithWrongFiles : public ProgramTest {};

TEST_F(ToolWithWrongFiles, AnInputThatFailsWhileItIsReadIsNamed) {
    const Ended ended = Shell("kxdu decode -o out - /proc/self/mem", "NE=5\n");
    EXPECT_EQ(ended.code, 2);
    EXPECT_EQ(ended.err, "kxdu: /proc/self/mem: Input/output error\n");
    EXPECT_EQ(Files(), 0);
}

TEST_F(ToolWithWrongFiles, AFolderIsNoFileAndAFileNoFolder) {
    WriteFile("file", "");
    std::filesystem::create_directories(folder / "folder/kx_corbaagent_bundle/bundle.cfg");
    for (const auto& [code, command, complaint] : std::initializer_list<std::tuple<int, const char*, const char*>>{
             {2, "decode folder", "folder: Is a directory"},
             {2, "encode folder", "folder: Is a directory"},
             {2, "check --levels-only folder", "folder: Is a directory"},
             {2, "get NE folder", "folder: Is a directory"},
             {2, "decode <folder", "<stdin>: Is a directory"},
             {2, "decode file/x", "file/x: Not a directory"},
             {2, "encode --inventory folder", "folder: is not a regular file"},
             {2, "ne-type 5 --inventory folder", "folder: is not a regular file"},
             {2, "inventory list folder", "folder: is not a regular file"},
             {2, "inventory import folder folder", "folder/ne_type.csv"},
             {2, "inventory import file file", "file is a file: FOLDER is the folder that holds ne.csv"},
             {2, "inventory init folder", "folder: File exists"},
             {2, "inventory init file/x", "file/x: cannot be written in its folder: Not a directory"},
             {2, "filter --config folder", "bundle.cfg"},
             {2, "filter --config file", "file/kx_corbaagent_bundle/bundle.cfg"},
             {3, "decode -o folder", "folder: Is a directory"},
             {3, "decode --rejects folder", "folder: Is a directory"},
             {3, "decode -o file/x", "file/x: Not a directory"},
             {3, "sample -o folder", "folder: Is a directory"},
             {3, "tables -o folder", "folder: Is a directory"},
             {3, "sample --ne 1 -o out --inventory-csv file", "file: cannot be made"}}) {
        const Ended ended = Shell(std::string("kxdu ") + command, "NE=5\n");
        EXPECT_EQ(ended.code, code) << command;
        EXPECT_EQ(ended.err.rfind("kxdu: ", 0), 0U) << command << ": " << ended.err;
        EXPECT_NE(ended.err.find(complaint), std::string::npos) << command << ": " << ended.err;
    }
    EXPECT_EQ(Files(), 2);
}

TEST_F(ToolWithWrongFiles, NoLineGetsLostBeforeThem) {
    Configure();
    std::filesystem::create_directory(folder / "folder");
    constexpr std::ptrdiff_t count = 60'000;
    for (const auto& [name, command, line] : LINE_VERBS) {
        std::string lines;
        for (std::ptrdiff_t number = 0; number < count; ++number) {
            lines.append(line).append("\n");
        }
        WriteFile("good", lines);
        for (const auto& [wrong, complaint] : std::initializer_list<std::pair<std::string, std::string>>{
                 {"missing", "No such file or directory"}, {"folder", "Is a directory"}}) {
            const Ended ended = Shell(std::string("kxdu ").append(command) + " good " + wrong);
            EXPECT_EQ(ended.code, 2) << name << " with " << wrong;
            EXPECT_EQ(Lines(ended.out), count) << name << " with " << wrong;
            EXPECT_EQ(ended.err, "kxdu: " + wrong + ": " + complaint + "\n") << name;
        }
    }
}
