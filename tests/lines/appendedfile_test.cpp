#include "lines/appendedfile.h"

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
