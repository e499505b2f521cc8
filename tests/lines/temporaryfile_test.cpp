#include "lines/temporaryfile.h"

#include <sys/stat.h>
#include <unistd.h>

#include "lines/failure.h"
#include "support/foldertest.h"

namespace NS_KX {
namespace {

using TemporaryFileTest = FolderTest;

TEST_F(TemporaryFileTest, AppearsWhenItIsKept) {
    TemporaryFile file(folder / "out");
    ASSERT_EQ(write(file.Descriptor(), "new", 3), 3);
    EXPECT_FALSE(Exists("out"));
    file.Keep();
    EXPECT_EQ(ReadFile("out"), "new");
    EXPECT_EQ(Files(), 1);
}

TEST_F(TemporaryFileTest, GoesAwayWhenItIsNot) {
    WriteFile("out", "old");
    {
        TemporaryFile file(folder / "out");
        ASSERT_EQ(write(file.Descriptor(), "new", 3), 3);
        EXPECT_EQ(Files(), 2);
    }
    EXPECT_EQ(ReadFile("out"), "old");
    EXPECT_EQ(Files(), 1);
}

TEST_F(TemporaryFileTest, KeepsTheRightsOfWhatItReplaces) {
    WriteFile("out", "old");
    ASSERT_EQ(chmod((folder / "out").c_str(), 0640), 0);
    TemporaryFile file(folder / "out");
    file.Keep();
    struct stat status {};
    ASSERT_EQ(stat((folder / "out").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0640U);
}

TEST_F(TemporaryFileTest, ANewFileHasTheUsualRights) {
    const mode_t mask = umask(027);
    TemporaryFile(folder / "out").Keep();
    umask(mask);
    struct stat status {};
    ASSERT_EQ(stat((folder / "out").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0640U);
}

TEST_F(TemporaryFileTest, AMissingFolderIsAnOutputFailure) {
    try {
        const TemporaryFile file(folder / "missing/out");
        FAIL() << "no complaint";
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.GetCause(), Cause::OUTPUT);
    }
}

}  // namespace
}  // namespace NS_KX
