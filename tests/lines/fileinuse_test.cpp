#include "lines/fileinuse.h"

#include "support/foldertest.h"

namespace NS_KX {
namespace {

using SameFileTest = FolderTest;

TEST_F(SameFileTest, AFileIsItselfByAnyPathAndLink) {
    WriteFile("a", "text");
    std::filesystem::create_directory(folder / "sub");
    std::filesystem::create_symlink("a", folder / "symbolic");
    std::filesystem::create_hard_link(folder / "a", folder / "hard");
    for (const char* const name : {"a", "./a", "sub/../a", "symbolic", "hard"}) {
        EXPECT_TRUE(IsSameFile(folder / "a", folder / name)) << name;
    }
}

TEST_F(SameFileTest, OtherFilesAreOthers) {
    WriteFile("a", "text");
    WriteFile("b", "text");
    EXPECT_FALSE(IsSameFile(folder / "a", folder / "b"));
    EXPECT_FALSE(IsSameFile(folder / "a", folder / "missing"));
    EXPECT_FALSE(IsSameFile(folder / "missing", folder / "a"));
}

TEST_F(SameFileTest, FilesThatAreNotThereCompareByTheirPaths) {
    std::filesystem::create_directory(folder / "sub");
    EXPECT_TRUE(IsSameFile(folder / "missing", folder / "sub/../missing"));
    EXPECT_FALSE(IsSameFile(folder / "missing", folder / "sub/missing"));
    for (const char* const name : {"missing", "./missing", "none/../missing"}) {
        EXPECT_TRUE(IsSameFile("missing", name)) << name;
        EXPECT_TRUE(IsSameFile(name, std::filesystem::current_path() / "missing")) << name;
    }
}

TEST_F(SameFileTest, DevicesReplaceNothing) {
    EXPECT_FALSE(IsSameFile("/dev/null", "/dev/null"));
}

}  // namespace
}  // namespace NS_KX
