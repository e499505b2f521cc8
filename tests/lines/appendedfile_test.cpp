#include "lines/appendedfile.h"

#include <chrono>
#include <fstream>
#include <thread>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include "lines/failure.h"
#include "support/foldertest.h"

namespace NS_KX {
namespace {

class AppendedFileTest : public FolderTest {
protected:
    void Append(const std::string& lines) const { AppendedFile(folder / "file").Write(lines); }
};

TEST_F(AppendedFileTest, KeepsWhatItHas) {
    Append("a\n");
    Append("b\n");
    EXPECT_EQ(ReadFile("file"), "a\nb\n");
}

TEST_F(AppendedFileTest, EndsALastLineThatLacksItsEnd) {
    WriteFile("file", "a");
    Append("");
    EXPECT_EQ(ReadFile("file"), "a\n");
    Append("b\n");
    EXPECT_EQ(ReadFile("file"), "a\nb\n");
}

TEST_F(AppendedFileTest, GoesOnInANewFileIfItsOwnWasRenamedOrRemoved) {
    AppendedFile file(folder / "file");
    file.Write("a\n");
    std::filesystem::rename(folder / "file", folder / "file.1");
    file.Write("b\n");
    EXPECT_EQ(ReadFile("file.1"), "a\n");
    EXPECT_EQ(ReadFile("file"), "b\n");
    std::filesystem::remove(folder / "file");
    file.Write("c\n");
    EXPECT_EQ(ReadFile("file"), "c\n");
}

TEST_F(AppendedFileTest, BeginsANewLineAfterOneThatAnotherWriterDidNotFinish) {
    AppendedFile file(folder / "file");
    file.Write("a\n");
    std::ofstream(folder / "file", std::ios::app) << "torn";
    file.Write("b\n");
    EXPECT_EQ(ReadFile("file"), "a\ntorn\nb\n");
}

TEST_F(AppendedFileTest, TakesTurnsWithOtherWriters) {
    const std::string line(100'000, 'x');
    const auto append = [&] {
        AppendedFile file(folder / "file");
        for (int lines = 0; lines < 50; ++lines) {
            file.Write(line + "\n");
        }
    };
    std::thread other(append);
    append();
    other.join();
    std::string all;
    for (int lines = 0; lines < 100; ++lines) {
        all += line + "\n";
    }
    EXPECT_EQ(ReadFile("file") == all, true) << "a line is torn, or an empty one stands between";
}

TEST_F(AppendedFileTest, DoesNotWaitForeverForItsTurn) {
    AppendedFile file(folder / "file");
    const int holder = open((folder / "file").c_str(), O_RDWR | O_CLOEXEC);
    ASSERT_EQ(flock(holder, LOCK_EX), 0);
    const auto begin = std::chrono::steady_clock::now();
    std::string all;
    for (int lines = 0; lines < 100; ++lines) {
        file.Write("a\n");
        all += "a\n";
    }
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(10)) << "it waits for each line";
    EXPECT_EQ(ReadFile("file"), all);
    close(holder);
}

TEST_F(AppendedFileTest, FailsIfItsFolderIsGone) {
    std::filesystem::create_directory(folder / "logs");
    AppendedFile file(folder / "logs/file");
    std::filesystem::rename(folder / "logs", folder / "old");
    EXPECT_THROW(file.Write("a\n"), Failure);
    EXPECT_THROW(AppendedFile(folder / "logs/file"), Failure);
    std::filesystem::create_directory(folder / "logs");
    file.Write("b\n");
    EXPECT_EQ(ReadFile("logs/file"), "b\n") << "a failure need not be the end";
}

}  // namespace
}  // namespace NS_KX
