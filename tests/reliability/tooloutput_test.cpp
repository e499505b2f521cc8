// What may happen to the tool's output while it is written: an incomplete file never appears, and no output is lost
// without an error.
#include <cstdio>
#include <filesystem>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "kxdu/program.h"
#include "lineverbs.h"
#include "support/scale.h"

namespace {

constexpr auto OTHER_VERBS = {"sample --ne 3", "ne-type 1912",        "fb 810",
                              "level ODU2",    "path ODU2:1-ODU0",    "ctp E0",
                              "tables",        "tables client-rates", "inventory list n.db"};

// Commands that can only write to standard output.
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

    [[nodiscard]] std::string HiddenFiles() const { return Shell("ls -A | grep '^[.]'").out; }

    // Includes hidden files, which are incomplete.
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
    // They have done their work: only the message about it is missing.
    EXPECT_EQ(Shell("diff -r csv exported").code, 0);
    EXPECT_EQ(Shell("kxdu inventory export n.db now && diff -r csv now").code, 0);
    expectFull("inventory init m.db >/dev/full", "standard output");
    expectFull("decode --rejects /dev/full -o out", "/dev/full", "XY=1\n");
    EXPECT_EQ(FilesLike("out"), "");
}

// A limit on the size of files simulates a disk that fills up in the middle.
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
    // The file has no name yet, only a descriptor.
    static constexpr auto OUTPUT_HAS_BEGUN = "find -L /proc/$!/fd -type f -links 0 -size +0 2>/dev/null | grep -q .";
};

TEST_P(ToolStopped, LeavesTheOldFile) {
    for (const auto& [name, command, line] : LINE_VERBS) {
        WriteFile("out", "old");
        EXPECT_EQ(StopInMidRun(command, line).out, std::string(GetParam()) + "\n") << name;
        EXPECT_EQ(ReadFile("out"), "old") << name;
        EXPECT_EQ(HiddenFiles(), "") << name;
        EXPECT_EQ(Shell(std::string("kxdu ") + command + " -o out", std::string(line) + "\n").err.find("kxdu: out"),
                  std::string::npos);
        EXPECT_NE(ReadFile("out"), "old") << name;
    }
    WriteFile("out", "old");
    const Ended sample = Shell(InBackground("sample --ne 10000000 -o out") + StopWhen(OUTPUT_HAS_BEGUN, GetParam()));
    EXPECT_EQ(sample.out, std::string(GetParam()) + "\n");
    EXPECT_EQ(ReadFile("out"), "old");
    EXPECT_EQ(HiddenFiles(), "");
}

TEST_P(ToolStopped, LeavesNoRejectedLinesEither) {
    const Ended ended = StopInMidRun("decode --rejects bad", "XY=1\nNE=5");
    EXPECT_EQ(ended.out, std::string(GetParam()) + "\n");
    EXPECT_FALSE(Exists("out"));
    EXPECT_FALSE(Exists("bad"));
    EXPECT_EQ(HiddenFiles(), "");
}

// Signals come at any moment of a run, mostly while the file is made and while it takes its place.
TEST_P(ToolStopped, LeavesNothingWheneverItComes) {
    const bool isKilled = GetParam() == std::string("KILL");
    for (int round = 0; round < 60; ++round) {
        WriteFile("out", "old");
        const Ended ended =
            Shell(InBackground("tables fb-type-levels -o out") + "sleep 0.00" + std::to_string(round / 10) +
                  std::to_string(round % 10) + "; kill -" + GetParam() + " $! 2>/dev/null; wait $!; true");
        EXPECT_EQ(ended.code, 0);
        const std::string out = ReadFile("out");
        EXPECT_TRUE(out == "old" || out.size() > 1000) << out.size();
        if (!isKilled) {  // SIGKILL may come between the two steps of replacing a file
            EXPECT_EQ(HiddenFiles(), "") << "in round " << round;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(By, ToolStopped,
                         testing::Values("INT", "TERM", "HUP", "KILL", "QUIT", "ALRM", "XCPU", "USR1", "USR2", "IO",
                                         "PROF", "RTMIN", "ABRT"),
                         [](const auto& parameter) { return std::string(parameter.param); });
#ifndef KX_TEST_SANITIZED  // a sanitizer catches this signal, and ends the program in its own way
INSTANTIATE_TEST_SUITE_P(ByAFault, ToolStopped, testing::Values("SEGV"),
                         [](const auto& parameter) { return std::string(parameter.param); });
#endif

// The kernel itself sends such signals: for a limit on the processor's time, and for a key of a terminal.
TEST_F(ToolOutput, ASignalOfTheKernelEndsTheRunToo) {
    EXPECT_EQ(
        Shell("(ulimit -St 1; exec timeout 60 '" KXDU_PROGRAM "' sample --identifiers 4000000000 -o out); kill -l $?")
            .out,
        "XCPU\n");
    WriteFile("terminal.py", R"(
import os, pty, sys, time
pid, terminal = pty.fork()
if pid == 0:
    os.execv(sys.argv[1], [sys.argv[1], "get", "NE", "-o", "out"])
time.sleep(0.5)
os.write(terminal, b"\x03")
for wait in range(50):
    ended, status = os.waitpid(pid, os.WNOHANG)
    if ended:
        print(os.WTERMSIG(status))
        break
    time.sleep(0.1)
else:
    os.kill(pid, 9)
)");
    EXPECT_EQ(Shell("python3 terminal.py '" KXDU_PROGRAM "'").out, "2\n");
    EXPECT_EQ(HiddenFiles(), "");
    EXPECT_FALSE(Exists("out"));
}

// ---- No one there ---------------------------------------------------------------------------------------------------

TEST_F(ToolOutput, AReaderThatGoesAwayIsNoError) {
    for (const auto& [name, command, line] : LINE_VERBS) {
        const Ended ended =
            Shell("yes '" + std::string(line) + "' | { kxdu " + command + "; echo $? >code; } | head -n 1 | wc -l");
        EXPECT_EQ(ended.out, "1\n") << name;
        EXPECT_EQ(ReadFile("code"), name == std::string("check") ? "1\n" : "0\n") << "findings decide the exit code";
        if (name == std::string("filter")) {
            EXPECT_TRUE(ended.err.starts_with("kxdu: 0 held back, ")) << ended.err;
        }
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

// Otherwise alarms would be lost: those held back, and all that come later.
TEST_F(ToolOutput, AReaderOfTheLinesHeldBackThatGoesAwayIsOne) {
    std::filesystem::create_directory(folder / "kx_corbaagent_bundle");
    WriteFile("kx_corbaagent_bundle/bundle.cfg", "EventSwitch = 2\nBlacklist = \"5\"\n");
    const Ended ended = Shell(
        "mkfifo held; head -n 1 held >first & seq -f '5 %.0f' 30000 | kxdu filter --config . --held held; echo $? "
        ">code");
    EXPECT_EQ(ReadFile("code"), "3\n");
    EXPECT_NE(ended.err.find("kxdu: held: the reader of the output has gone\n"), std::string::npos) << ended.err;
}

// Otherwise the output would lack lines, and no report would say which.
TEST_F(ToolOutput, AReaderOfTheRejectedLinesThatGoesAwayIsOne) {
    const Ended ended = Shell("yes XY=1 | { kxdu decode -o out --rejects /dev/fd/3 3>&1; echo $? >code; } | head -n 1");
    EXPECT_EQ(ReadFile("code"), "3\n");
    EXPECT_NE(ended.err.find("kxdu: /dev/fd/3: the reader of the output has gone\n"), std::string::npos) << ended.err;
    EXPECT_EQ(FilesLike("out"), "");
}

TEST_F(ToolOutput, NoFileTakesThePlaceOfAStandardStreamThatIsClosed) {
    WriteFile("a", "NE=5\n\n");
    EXPECT_EQ(Shell("kxdu get NE a -o out 2>&-").code, 1);
    EXPECT_EQ(ReadFile("out"), "5\n");
    EXPECT_EQ(Shell("kxdu get NE a -o out >&- <&-").code, 1);
    EXPECT_EQ(ReadFile("out"), "5\n");
    EXPECT_EQ(Shell("kxdu inventory list n.db -o list <&- >&- 2>&-").code, 0);
    EXPECT_EQ(ReadFile("list").rfind("n.db: 0 NEs", 0), 0U);

    const Ended withoutOutput = Shell("kxdu get NE a >&-");
    EXPECT_EQ(withoutOutput.code, 3);
    EXPECT_EQ(withoutOutput.err, "kxdu: standard output: Bad file descriptor\n");
    const Ended withoutInput = Shell("kxdu get NE <&-");
    EXPECT_EQ(withoutInput.code, 2);
    EXPECT_EQ(withoutInput.err, "kxdu: <stdin>: Bad file descriptor\n");
}

// Only written lines count.
TEST_F(ToolOutput, AReaderThatGoesAwayLeavesASummaryOfWhatWasWritten) {
    const Ended ended = Shell(
        "yes '8 a' | head -n 3000000 | kxdu filter --config config --field 9 2>err | head -n 1;"
        " tail -n 1 err");
    int heldBack = 0;
    int passed = 0;
    int withoutId = 0;
    const std::string summary = ended.out.substr(ended.out.find('\n') + 1);
    const int read =
        std::sscanf(summary.c_str(), "kxdu: %d held back, %d passed on, %d of these", &heldBack, &passed, &withoutId);
    ASSERT_EQ(read, passed == 0 ? 2 : 3) << summary;
    EXPECT_EQ(heldBack, 0);
    EXPECT_EQ(passed, withoutId);
    EXPECT_LT(passed, 1'000'000);
    EXPECT_EQ(summary.find("too long"), std::string::npos) << summary;
}

TEST_F(ToolOutput, ASampleEndsWithItsReader) {
    EXPECT_EQ(
        Shell("{ timeout 20 '" KXDU_PROGRAM "' sample --identifiers 4000000000; echo $? >code; } | head -n 1 | wc -l")
            .out,
        "1\n");
    EXPECT_EQ(ReadFile("code"), "0\n");
}

// ---- What stands in the way -----------------------------------------------------------------------------------------

TEST_F(ToolOutput, ALinkIsFollowedAlsoWhenItLeadsNowhereYet) {
    std::filesystem::create_directory(folder / "far");
    std::filesystem::create_symlink("far/target", folder / "link");
    std::filesystem::create_symlink("loop", folder / "loop");
    EXPECT_EQ(Shell("echo NE=5 | kxdu get NE -o link").code, 0);
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "link"));
    EXPECT_EQ(ReadFile("far/target"), "5\n");
    EXPECT_EQ(Shell("echo NE=6 | kxdu get NE -o link").code, 0);
    EXPECT_EQ(ReadFile("far/target"), "6\n");
    const Ended ended = Shell("echo NE=5 | kxdu get NE -o loop");
    EXPECT_EQ(ended.code, 3);
    EXPECT_EQ(ended.err, "kxdu: loop: Too many levels of symbolic links\n");
}

TEST_F(ToolOutput, ANameMayBeAsLongAsTheSystemAllows) {
    const std::string name(255, 'x');
    for (const std::string& expected : {std::string("5\n"), std::string("6\n")}) {
        EXPECT_EQ(Shell("kxdu get NE -o " + name, "NE=" + expected).code, 0);
        EXPECT_EQ(ReadFile(name), expected);
    }
    const Ended ended = Shell("kxdu get NE -o " + name + "x", "NE=5\n");
    EXPECT_EQ(ended.code, 3);
    EXPECT_EQ(ended.err, "kxdu: " + name + "x: File name too long\n");
}

TEST_F(ToolOutput, AWriteProtectedFileStays) {
    WriteFile("out", "old");
    const Ended ended = Shell("chmod 0444 out; kxdu get NE -o out", "NE=5\n");
    EXPECT_EQ(ended.code, 3);
    EXPECT_EQ(ended.err, "kxdu: out: is write-protected; remove it, or choose another name\n");
    EXPECT_EQ(ReadFile("out"), "old");
    EXPECT_EQ(Shell("chmod 4755 out; kxdu get NE -o out; stat -c %a out", "NE=5\n").out, "755\n");
}

TEST_F(ToolOutput, NoOutputIsTakenForAJournal) {
    for (const char* const suffix : {"-journal", "-wal", "-shm"}) {
        const std::string name = std::string("n.db") + suffix;
        for (const std::string command : {"tables -o ", "get NE -o ", "decode --rejects ", "inventory init "}) {
            const Ended ended = Shell("kxdu " + command + name, "NE=5\n");
            EXPECT_EQ(ended.code, 2) << command << name;
            EXPECT_NE(ended.err.find("would be taken for a journal of the database n.db"), std::string::npos)
                << ended.err;
            EXPECT_FALSE(Exists(name));
        }
    }
    EXPECT_EQ(Shell("kxdu get NE -o other-journal", "NE=5\n").code, 0);
}

TEST_F(ToolOutput, ReportsDoNotGoIntoTheInput) {
    WriteFile("loop", "XY=1\n");
    const Ended ended = Shell("timeout 10 '" KXDU_PROGRAM "' decode loop 2>>loop");
    EXPECT_EQ(ended.code, 2);
    EXPECT_EQ(ReadFile("loop"), "XY=1\nkxdu: loop: is standard error too, where the rejected lines are reported\n");
    WriteFile("words", "E0\n");
    EXPECT_EQ(Shell("timeout 10 '" KXDU_PROGRAM "' ctp - <words >>words").code, 2);
    EXPECT_EQ(ReadFile("words"), "E0\n");
}

// For example, another program may have made a terminal non-blocking.
TEST_F(ToolOutput, ANonBlockingStreamIsWaitedFor) {
    WriteFile("slow.py", R"(
import fcntl, os, subprocess, sys, time
program, lines = sys.argv[1], 200000
read, write = os.pipe()
out, output = os.pipe()
for end in (read, output):
    fcntl.fcntl(end, fcntl.F_SETFL, os.O_NONBLOCK)
tool = subprocess.Popen([program] + sys.argv[2:], stdin=read, stdout=output)
os.close(read)
os.close(output)
writer = os.fork()
if writer == 0:
    os.close(out)
    for part in range(4):
        time.sleep(0.1)
        os.write(write, b"")
        with os.fdopen(os.dup(write), "wb") as pipe:
            pipe.write(b"NE=5\n" * (lines // 4))
    os._exit(0)
os.close(write)
count = 0
while True:
    text = os.read(out, 1 << 20)
    if not text:
        break
    count += text.count(b"\n")
    time.sleep(0.002)
print(tool.wait(), count)
)");
    EXPECT_EQ(Shell("python3 slow.py '" KXDU_PROGRAM "' get NE").out, "0 200000\n");
    EXPECT_EQ(Shell("python3 slow.py '" KXDU_PROGRAM "' decode").out, "0 200000\n");
}

#ifndef KX_TEST_SANITIZED  // a sanitizer reserves more than any limit
TEST_F(ToolOutput, ExhaustedMemoryIsNamed) {
    ASSERT_EQ(Shell("type=$(sed -n '2s/,.*//p' csv/ne_type.csv); { head -n 1 csv/ne.csv; seq 2000000 |"
                    " sed \"s/$/,$type,0,0/\"; } >ne && mv ne csv/ne.csv")
                  .code,
              0);
    const Ended ended = Shell("ulimit -v 50000; kxdu inventory import n.db csv");
    EXPECT_EQ(ended.code, 4);
    EXPECT_EQ(ended.err, "kxdu: the memory is exhausted\n");
}
#endif
