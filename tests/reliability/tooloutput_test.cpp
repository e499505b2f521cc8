// What may happen to the tool's output while it is written: a file that is not complete never appears, and what cannot
// be written is never lost unseen.
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "kxdu/program.h"
#include "lineverbs.h"

namespace {

constexpr auto OTHER_VERBS = {"sample --ne 3", "ne-type 1912",        "fb 810",
                              "level ODU2",    "path ODU2:1-ODU0",    "ctp E0",
                              "tables",        "tables client-rates", "inventory list n.db"};

// What can only write to standard output.
constexpr auto ANSWERS = {"explain NE=5",
                          "inventory import n.db csv",
                          "inventory export n.db exported",
                          "help",
                          "help decode",
                          "--help",
                          "decode --help",
                          "inventory import --help",
                          "--version"};

}  // namespace

class ToolOutput : public ProgramTest {
protected:
    void SetUp() override {
        Configure();
        ASSERT_EQ(Shell("kxdu inventory init n.db && kxdu sample --ne 3 --inventory-csv csv").code, 0);
    }

    // Also the hidden ones that are not complete.
    [[nodiscard]] std::string FilesLike(const std::string& name) const {
        return Shell("ls -A | grep '" + name + "'").out;
    }
};

// ---- No space -------------------------------------------------------------------------------------------------------

TEST_F(ToolOutput, AFullDiskIsAnErrorOfItsOwn) {
    const auto expectFull = [this](const std::string& command, const std::string& name, const std::string& input = {}) {
        const Ended ended = Shell("kxdu " + command, input);
        EXPECT_EQ(ended.code, 3) << command;
        EXPECT_EQ(ended.err, "kxdu: " + name + ": No space left on device\n") << command;
    };
    for (const auto& [name, command, line] : LINE_VERBS) {
        expectFull(std::string(command) + " >/dev/full", "standard output", std::string(line) + "\n");
        expectFull(std::string(command) + " -o /dev/full", "/dev/full", std::string(line) + "\n");
    }
    for (const char* const command : OTHER_VERBS) {
        expectFull(std::string(command) + " >/dev/full", "standard output");
        expectFull(std::string(command) + " -o /dev/full", "/dev/full");
    }
    for (const char* const command : ANSWERS) {
        expectFull(std::string(command) + " >/dev/full", "standard output");
    }
    // What they did is done: only the word of it is missing.
    EXPECT_EQ(Shell("diff -r csv exported").code, 0);
    EXPECT_EQ(Shell("kxdu inventory export n.db now && diff -r csv now").code, 0);
    expectFull("inventory init m.db >/dev/full", "standard output");
    expectFull("decode --rejects /dev/full -o out", "/dev/full", "XY=1\n");
    EXPECT_EQ(FilesLike("out"), "");
}

// A limit on the size of files stands for a disk that fills up in the middle.
TEST_F(ToolOutput, ADiskThatFillsUpLeavesTheOldFile) {
    WriteFile("out", "old");
    for (const auto& [name, command, line] : LINE_VERBS) {
        const Ended ended =
            Shell("yes '" + std::string(line) + "' | head -n 100000 | (ulimit -f 100; kxdu " + command + " -o out)");
        EXPECT_EQ(ended.code, 3) << name;
        EXPECT_EQ(ended.err, "kxdu: out: File too large\n") << name;
        EXPECT_EQ(ReadFile("out"), "old") << name;
    }
    EXPECT_EQ(Shell("ulimit -f 100; kxdu sample -o out").code, 3);
    EXPECT_EQ(Shell("ulimit -f 1; kxdu tables fb-type-levels -o out").code, 3);
    EXPECT_EQ(Shell("yes XY=1 | head -n 100000 | (ulimit -f 100; kxdu decode -o out --rejects bad)").code, 3);
    EXPECT_EQ(ReadFile("out"), "old");
    EXPECT_EQ(FilesLike("out\\|bad"), "out\n");
}

// ---- An end before the end ------------------------------------------------------------------------------------------

class ToolStopped : public ToolOutput, public testing::WithParamInterface<const char*> {
protected:
    // Gives the verb a line and keeps it waiting for the next; stops it when it has begun to write.
    [[nodiscard]] Ended StopInMidRun(const std::string& command, const std::string& line) const {
        return Shell("rm -f in; mkfifo in; " + InBackground(command + " -o out <in") + "exec 3>in; printf '%s\\n' '" +
                     line + "' >&3; " + StopWhen(OUTPUT_HAS_BEGUN, GetParam()));
    }
    static constexpr auto OUTPUT_HAS_BEGUN = "[ -s .out.* ]";
};

TEST_P(ToolStopped, LeavesTheOldFile) {
    const bool isKilled = GetParam() == std::string("KILL");
    for (const auto& [name, command, line] : LINE_VERBS) {
        WriteFile("out", "old");
        EXPECT_EQ(StopInMidRun(command, line).out, std::string(GetParam()) + "\n") << name;
        EXPECT_EQ(ReadFile("out"), "old") << name;
        EXPECT_EQ(FilesLike("out") != "out\n", isKilled) << name;  // nobody can clear away after that
        EXPECT_EQ(Shell(std::string("rm -f .out.*; kxdu ") + command + " -o out", std::string(line) + "\n")
                      .err.find("kxdu: out"),
                  std::string::npos);
        EXPECT_NE(ReadFile("out"), "old") << name;
    }
    WriteFile("out", "old");
    const Ended sample = Shell(InBackground("sample --ne 10000000 -o out") + StopWhen(OUTPUT_HAS_BEGUN, GetParam()));
    EXPECT_EQ(sample.out, std::string(GetParam()) + "\n");
    EXPECT_EQ(ReadFile("out"), "old");
    EXPECT_EQ(FilesLike("out") != "out\n", isKilled);
}

TEST_P(ToolStopped, LeavesNoRejectedLinesEither) {
    const Ended ended = StopInMidRun("decode --rejects bad", "XY=1\nNE=5");
    EXPECT_EQ(ended.out, std::string(GetParam()) + "\n");
    EXPECT_FALSE(Exists("out"));
    EXPECT_FALSE(Exists("bad"));
    EXPECT_EQ(FilesLike("bad") != "", GetParam() == std::string("KILL"));
}

INSTANTIATE_TEST_SUITE_P(By, ToolStopped, testing::Values("INT", "TERM", "HUP", "KILL"),
                         [](const auto& parameter) { return std::string(parameter.param); });

// ---- Nobody there ---------------------------------------------------------------------------------------------------

TEST_F(ToolOutput, AReaderThatGoesAwayIsNoError) {
    for (const auto& [name, command, line] : LINE_VERBS) {
        const Ended ended =
            Shell("yes '" + std::string(line) + "' | { kxdu " + command + "; echo $? >code; } | head -n 1 | wc -l");
        EXPECT_EQ(ended.out, "1\n") << name;
        EXPECT_EQ(ReadFile("code"), name == std::string("check") ? "1\n" : "0\n") << "what was found counts";
        const bool isSummedUp = name == std::string("check") || name == std::string("filter");
        EXPECT_EQ(ended.err.find("kxdu: ") != std::string::npos, isSummedUp) << ended.err;
    }
    std::vector<const char*> commands(OTHER_VERBS);
    commands.insert(commands.end(), ANSWERS);
    for (const char* const command : commands) {
        const Ended ended = Shell("(trap '' PIPE; while echo 2>/dev/null; do sleep 0.01; done; kxdu " +
                                  std::string(command) + "; echo $? >code) | true");
        EXPECT_EQ(ended.err, "") << command;
        EXPECT_EQ(ReadFile("code"), "0\n") << command;
    }
}

// The output would lack lines, and nobody would know which.
TEST_F(ToolOutput, AReaderOfTheRejectedLinesThatGoesAwayIsOne) {
    const Ended ended = Shell("yes XY=1 | { kxdu decode -o out --rejects /dev/fd/3 3>&1; echo $? >code; } | head -n 1");
    EXPECT_EQ(ReadFile("code"), "3\n");
    EXPECT_NE(ended.err.find("kxdu: /dev/fd/3: the reader of the output has gone\n"), std::string::npos) << ended.err;
    EXPECT_EQ(FilesLike("out"), "");
}

TEST_F(ToolOutput, NoFileTakesThePlaceOfAStandardStreamThatIsClosed) {
    WriteFile("a", "NE=5\n\n");
    EXPECT_EQ(Shell("kxdu get NE -i a -o out 2>&-").code, 1);
    EXPECT_EQ(ReadFile("out"), "5\n");
    EXPECT_EQ(Shell("kxdu get NE -i a -o out >&- <&-").code, 1);
    EXPECT_EQ(ReadFile("out"), "5\n");
    EXPECT_EQ(Shell("kxdu inventory list n.db -o list <&- >&- 2>&-").code, 0);
    EXPECT_EQ(ReadFile("list").rfind("n.db: 0 NEs", 0), 0U);

    const Ended withoutOutput = Shell("kxdu get NE -i a >&-");
    EXPECT_EQ(withoutOutput.code, 3);
    EXPECT_EQ(withoutOutput.err, "kxdu: standard output: Bad file descriptor\n");
    const Ended withoutInput = Shell("kxdu get NE <&-");
    EXPECT_EQ(withoutInput.code, 2);
    EXPECT_EQ(withoutInput.err, "kxdu: <stdin>: Bad file descriptor\n");
}
