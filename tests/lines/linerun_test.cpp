#include "lines/linerun.h"

#include <algorithm>
#include <atomic>
#include <utility>

#include "lines/blockreader.h"
#include "lines/failure.h"
#include "support/foldertest.h"

namespace NS_KX {
namespace {

// Writes lines unchanged, and reports those that begin with "bad".
class Echo : public LineConverter {
public:
    void Convert(std::string_view line, LineResult& result) override {
        if (line.starts_with("bad")) {
            result.Report("it is bad", 2);
            return;
        }
        Append(result.output, line);
        Append(result.output, "\n");
    }
};

class LinesTest : public FolderTest {
protected:
    LinesTest() {
        options.files = {folder / "in"};
        options.output = folder / "out";
        options.rejects = folder / "rejects";
        work.makeConverter = [] { return std::make_unique<Echo>(); };
    }

    // How many findings there were.
    std::uint64_t Run(const std::string& text) {
        WriteFile("in", text);
        return RunLines(options, work).findings;
    }

    [[nodiscard]] std::string Rejects() const {
        std::string rejects = ReadFile("rejects");
        const std::string name = (folder / "in").string() + ":";
        for (auto at = rejects.find(name); at != std::string::npos; at = rejects.find(name)) {
            rejects.erase(at, name.size());
        }
        return rejects;
    }

    BulkOptions options;
    LineWork work;
};

TEST_F(LinesTest, KeepsTheOrderOfLinesOnManyThreads) {
    options.jobs = 8;
    std::string text;
    for (int line = 0; line < 300'000; ++line) {
        text += "line " + std::to_string(line) + "\n";
    }
    EXPECT_EQ(Run(text), 0U);
    EXPECT_EQ(ReadFile("out"), text);
    EXPECT_EQ(Rejects(), "");
}

TEST_F(LinesTest, NumbersOfReportedLinesCountFromTheFilesBegin) {
    options.jobs = 4;
    std::string text;
    std::string expected;
    for (int line = 1; line <= 100'000; ++line) {
        const bool isBad = line % 9973 == 0;
        text += isBad ? "bad\n" : "good\n";
        expected += isBad ? std::to_string(line) + ":2: it is bad\n" : "";
    }
    EXPECT_EQ(Run(text), 10U);
    EXPECT_EQ(Rejects(), expected);
}

// Gathers where lines are.
class Gatherer : public LineConverter {
public:
    void Convert(std::string_view line, LineResult& result) override {
        gathered += std::string(line) + " at " + NameOf(result.PlaceOf(0)) + "\n";
    }
    void Refuse(std::string_view reason, std::size_t column, LineResult& result) override {
        gathered += std::string(reason) + " at " + NameOf(result.PlaceOf(column)) + "\n";
    }

    std::string gathered;

private:
    static std::string NameOf(const std::string& place) { return place.substr(place.rfind('/') + 1); }
};

TEST_F(LinesTest, WhatConvertersGatherIsTakenInTheOrderOfTheLines) {
    options.jobs = 8;
    work.makeConverter = [] { return std::make_unique<Gatherer>(); };
    std::string all;
    work.takeGathered = [&all](LineConverter& converter) {
        all += std::exchange(static_cast<Gatherer&>(converter).gathered, {});
    };
    std::string text;
    std::string expected;
    for (int line = 1; line <= 100'000; ++line) {
        const std::string number = std::to_string(line);
        text += line % 30'000 == 1 ? "\n" : "line\n";
        expected += (line % 30'000 == 1 ? "the line is empty at in:" : "line at in:") + number + "\n";
    }
    text += std::string(LONGEST_LINE + 1, 'x') + "\na" + std::string(1, '\0') + "\n";
    expected += "the line is longer than 1 MiB at in:100001\nNUL byte at in:100002:2\n";
    EXPECT_EQ(Run(text), 0U) << "what a converter refuses is not reported besides";
    EXPECT_TRUE(all == expected) << "too long to show";
    EXPECT_EQ(Rejects(), "");
}

TEST_F(LinesTest, LinesThatNobodyConvertsAreReported) {
    EXPECT_EQ(Run(std::string("a\n\nb\0c\nd\xff\n", 10)), 3U);
    EXPECT_EQ(ReadFile("out"), "a\n");
    EXPECT_EQ(Rejects(), "2: the line is empty\n3:2: NUL byte\n4:2: not UTF-8\n");
}

TEST_F(LinesTest, BytesPassWhereTheyMay) {
    work.mustBeUtf8 = false;
    EXPECT_EQ(Run("d\xff\n"), 0U);
    EXPECT_EQ(ReadFile("out"), "d\xff\n");
}

TEST_F(LinesTest, OutputThatIsNotUtf8IsRejected) {
    class Cutter : public Echo {
        void Convert(std::string_view line, LineResult& result) override { Echo::Convert(line.substr(1), result); }
    };
    work.makeConverter = [] { return std::make_unique<Cutter>(); };
    EXPECT_EQ(Run("ab\n\u00e9b\na\u00e9\n"), 1U);
    EXPECT_EQ(ReadFile("out"), "b\n\u00e9\n");
    EXPECT_EQ(Rejects(), "2: cannot be written as UTF-8: a field of what is read begins or ends inside a character\n");
}

TEST_F(LinesTest, ALineThatNeedsMuchRoomIsConvertedInItsTurn) {
    class Repeater : public LineConverter {
        void Convert(std::string_view line, LineResult& result) override {
            const std::size_t size = line.starts_with("long") ? std::size_t{30} << 20U : 1;
            char* const to = result.Room(size + 1);
            std::fill_n(to, size, line.front());
            to[size] = '\n';
            result.Count(1);
            if (line.ends_with("bad")) {
                result.Report("bad");
            }
        }
    };
    work.makeConverter = [] { return std::make_unique<Repeater>(); };
    options.jobs = 4;
    WriteFile("in", "a\nlong\nbad\nlong bad\nc\n");
    const LineCounts counts = RunLines(options, work);
    EXPECT_EQ(counts.lines, 5U);
    EXPECT_EQ(counts.findings, 2U);
    EXPECT_EQ(counts.tallies[1], 5U);
    const std::string repeated(std::size_t{30} << 20U, 'l');
    EXPECT_TRUE(ReadFile("out") == "a\n" + repeated + "\nb\n" + repeated + "\nc\n");
    EXPECT_EQ(Rejects(), "3: bad\n4: bad\n");
}

TEST_F(LinesTest, VerbatimLinesAreConvertedAsTheyAre) {
    work.isVerbatim = true;
    EXPECT_EQ(Run(std::string("a\r\n\nb\0c\nd\xff\n\r\nlast", 17)), 0U);
    EXPECT_EQ(ReadFile("out"), std::string("a\r\n\nb\0c\nd\xff\n\r\nlast\n", 18));
    EXPECT_EQ(Run(std::string((std::size_t{1} << 20U) + 1, 'x')), 1U);
    EXPECT_EQ(Rejects(), "1: the line is longer than 1 MiB\n");
}

TEST_F(LinesTest, ACarriageReturnBelongsToTheLineEnd) {
    EXPECT_EQ(Run("a\r\nb\rc\r\n\r\nlast\r"), 1U);
    EXPECT_EQ(ReadFile("out"), "a\nb\rc\nlast\r\n") << "a carriage return is removed only before a line end";
    EXPECT_EQ(Rejects(), "3: the line is empty\n");
}

TEST_F(LinesTest, AnEmptyInputGivesAnEmptyOutput) {
    EXPECT_EQ(Run(""), 0U);
    EXPECT_TRUE(Exists("out"));
    EXPECT_EQ(ReadFile("out"), "");
}

TEST_F(LinesTest, TheHeaderComesFirstAndAlways) {
    work.header = "header\n";
    EXPECT_EQ(Run(""), 0U);
    EXPECT_EQ(ReadFile("out"), "header\n");
}

TEST_F(LinesTest, LongLinesPassAndTooLongOnesAreReported) {
    const std::string longest(std::size_t{1} << 20U, 'x');
    EXPECT_EQ(Run("a\n" + longest + "\n" + longest + "y\nb\n" + longest + longest), 2U);
    EXPECT_EQ(ReadFile("out"), "a\n" + longest + "\nb\n");
    EXPECT_EQ(Rejects(), "3: the line is longer than 1 MiB\n5: the line is longer than 1 MiB\n");
}

TEST_F(LinesTest, StrictStopsAtTheFirstReportAndLeavesNoHalfOutput) {
    options.isStrict = true;
    EXPECT_EQ(Run("a\nbad\nb\nbad\n"), 1U);
    EXPECT_FALSE(Exists("out"));
    EXPECT_EQ(Rejects(), "2:2: it is bad\n");
    EXPECT_EQ(Files(), 2);
}

TEST_F(LinesTest, RejectedLinesReplaceNeitherInputNorOutput) {
    const auto refused = [&](const std::string& rejects) {
        options.rejects = rejects;
        try {
            Run("a\nbad\n");
        } catch (const Failure& failure) {
            EXPECT_EQ(failure.GetCause(), Cause::INPUT);
            EXPECT_EQ(ReadFile("in"), "a\nbad\n");
            EXPECT_EQ(Files(), 1);
            return std::string(failure.what());
        }
        return std::string("written");
    };
    EXPECT_EQ(refused(folder / "in"), (folder / "in").string() + ": the rejected lines would replace the input");
    EXPECT_EQ(refused(folder / "./out"), (folder / "./out").string() + ": the rejected lines would replace the output");
}

TEST_F(LinesTest, StrictWithoutAReportIsAsUsual) {
    options.isStrict = true;
    EXPECT_EQ(Run("a\n"), 0U);
    EXPECT_EQ(ReadFile("out"), "a\n");
}

TEST_F(LinesTest, ReportsCanBeTheOutput) {
    work.isReportTheOutput = true;
    options.rejects.clear();
    EXPECT_EQ(Run("bad\n"), 1U);
    EXPECT_EQ(ReadFile("out"), (folder / "in").string() + ":1:2: it is bad\n");
}

TEST_F(LinesTest, WhatAConverterThrowsEndsTheRunAndLeavesNoOutput) {
    class Thrower : public LineConverter {
        void Convert(std::string_view, LineResult&) override { throw Failure(Cause::INPUT, "no"); }
    };
    work.makeConverter = [] { return std::make_unique<Thrower>(); };
    EXPECT_THROW(Run("\na\n"), Failure);
    EXPECT_EQ(Files(), 2) << "the input and the rejected lines";
    EXPECT_EQ(Rejects(), "1: the line is empty\n");
}

TEST_F(LinesTest, WhatComesBeforeAnInputThatCannotBeReadIsConverted) {
    std::string text;
    for (int line = 1; line <= 60'000; ++line) {
        text += "line " + std::to_string(line) + "\n";
    }
    WriteFile("in", text + "bad\n");
    options.files.push_back(folder / "missing");
    options.output.clear();
    for (const unsigned jobs : {1U, 2U, 8U}) {
        options.jobs = jobs;
        testing::internal::CaptureStdout();
        EXPECT_THROW(RunLines(options, work), Failure);
        EXPECT_TRUE(testing::internal::GetCapturedStdout() == text) << jobs;
        EXPECT_EQ(Rejects(), "60001:2: it is bad\n") << jobs;
        std::filesystem::remove(folder / "rejects");
    }
}

TEST_F(LinesTest, StrictStopsBeforeAnInputThatCannotBeRead) {
    WriteFile("in", "a\nbad\n");
    options.files.push_back(folder / "missing");
    options.isStrict = true;
    for (const unsigned jobs : {1U, 8U}) {
        options.jobs = jobs;
        EXPECT_EQ(RunLines(options, work).findings, 1U);
        EXPECT_EQ(Rejects(), "2:2: it is bad\n");
    }
}

TEST_F(LinesTest, PutsLinesAsideInTheirOrder) {
    class Divider : public LineConverter {
        void Convert(std::string_view line, LineResult& result) override {
            if (line == "line 60007") {
                result.Report("stop");
            }
            TextBuffer& out = line.ends_with('7') ? result.aside : result.output;
            Append(out, line);
            out.Put('\n');
        }
    };
    work.makeConverter = [] { return std::make_unique<Divider>(); };
    options.aside = folder / "aside";
    options.jobs = 4;
    std::string text;
    std::string output;
    std::string aside;
    std::string asideBefore;
    for (int number = 0; number < 100'000; ++number) {
        const std::string line = "line " + std::to_string(number) + "\n";
        text += line;
        (number % 10 == 7 ? aside : output) += line;
        asideBefore += number % 10 == 7 && number < 60'007 ? line : "";
    }
    EXPECT_EQ(Run(text), 1U);
    EXPECT_TRUE(ReadFile("out") == output);
    EXPECT_TRUE(ReadFile("aside") == aside);
    std::filesystem::remove(folder / "aside");
    options.isStrict = true;
    EXPECT_EQ(Run(text), 1U);
    EXPECT_TRUE(ReadFile("aside") == asideBefore);
}

// Counts the lines that are being converted.
class Working : public Echo {
public:
    explicit Working(std::atomic<int>& working) : m_working(working) {}
    void Convert(std::string_view line, LineResult& result) override {
        ++m_working;
        Echo::Convert(line, result);
        --m_working;
    }

private:
    std::atomic<int>& m_working;
};

TEST_F(LinesTest, APauseComesBetweenLinesAfterAllEarlierOnesAreWritten) {
    std::atomic<int> working = 0;
    std::string text;
    for (int line = 0; line < 200'000; ++line) {
        text += line == 50'000 ? "x" + std::string(900'000, 'x') + "\n" : "line " + std::to_string(line) + "\n";
    }
    int asked = 0;
    int pauses = 0;
    std::size_t written = 0;
    work.makeConverter = [&] { return std::make_unique<Working>(working); };
    work.isPauseDue = [&] { return ++asked % 3 == 1; };
    work.written = [&](std::size_t lines) { written += lines; };
    work.pause = [&] {
        ++pauses;
        EXPECT_EQ(working, 0);
        const std::string out = ReadFile("out");
        EXPECT_EQ(static_cast<std::size_t>(std::count(out.begin(), out.end(), '\n')), written);
        EXPECT_TRUE(text.starts_with(out));
    };
    options.isAppending = true;
    options.jobs = 4;
    EXPECT_EQ(Run(text), 0U);
    EXPECT_TRUE(ReadFile("out") == text);
    EXPECT_EQ(written, 200'000U);
    EXPECT_EQ(pauses, (asked + 2) / 3);
    EXPECT_GT(pauses, 3);
}

TEST_F(LinesTest, IsReadyWhenEverythingIsOpen) {
    work.header = "header\n";
    options.isAppending = true;
    options.aside = folder / "aside";
    std::size_t written = 0;
    work.ready = [&] {
        EXPECT_EQ(ReadFile("out"), "header\n");
        EXPECT_TRUE(Exists("aside"));
        EXPECT_EQ(written, 0U);
    };
    work.written = [&](std::size_t lines) { written += lines; };
    EXPECT_EQ(Run("a\nbad\n" + std::string((std::size_t{1} << 20U) + 1, 'x') + "\nb"), 2U);
    EXPECT_EQ(written, 4U) << "rejected lines count too";
}

TEST_F(LinesTest, WhatComesBeforeAThrowIsWritten) {
    class Thrower : public Echo {
        void Convert(std::string_view line, LineResult& result) override {
            if (line == "throw") {
                throw Failure(Cause::INPUT, "no");
            }
            Echo::Convert(line, result);
        }
    };
    work.makeConverter = [] { return std::make_unique<Thrower>(); };
    options.output.clear();
    options.rejects.clear();
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    try {
        Run("a\nbad\nthrow\nb\n");
        ADD_FAILURE();
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.what(), (folder / "in").string() + ":3: no");
    }
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "a\n");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), (folder / "in").string() + ":2:2: it is bad\n");
}

}  // namespace
}  // namespace NS_KX
