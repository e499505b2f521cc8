#include "lines/temporaryfile.h"

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <thread>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "lines/failure.h"
#include "support/foldertest.h"

namespace {

bool isUnnamedRefused = false;

}  // namespace

// Replace the system's functions.
extern "C" int __real_openat(int folder, const char* name, int flags, ...);
extern "C" int __wrap_openat(int folder, const char* name, int flags, ...);
int __wrap_openat(int folder, const char* name, int flags, ...) {
    if (isUnnamedRefused && (flags & O_TMPFILE) == O_TMPFILE) {
        errno = EOPNOTSUPP;
        return -1;
    }
    std::va_list rights;
    va_start(rights, flags);
    const auto mode = va_arg(rights, mode_t);
    va_end(rights);
    return __real_openat(folder, name, flags, mode);
}

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
        EXPECT_EQ(Files(), 1) << "it has no name yet";
    }
    EXPECT_EQ(ReadFile("out"), "old");
    EXPECT_EQ(Files(), 1);
}

// Simulates a file system that cannot hold a file without a name.
class NamedTemporaryFileTest : public FolderTest {
protected:
    NamedTemporaryFileTest() { isUnnamedRefused = true; }
    ~NamedTemporaryFileTest() override { isUnnamedRefused = false; }
};

TEST_F(NamedTemporaryFileTest, AppearsWhenItIsKept) {
    WriteFile("out", "old");
    for (const char* const target : {"out", "new"}) {
        TemporaryFile file(folder / target);
        ASSERT_EQ(write(file.Descriptor(), "new", 3), 3);
        EXPECT_NE(ReadFile("out") == "old", target == std::string("new"));
        file.Keep();
        EXPECT_EQ(ReadFile(target), "new");
    }
    EXPECT_EQ(Files(), 2);
}

TEST_F(NamedTemporaryFileTest, GoesAwayWhenItIsNot) {
    WriteFile("out", "old");
    {
        const TemporaryFile file(folder / "out");
        EXPECT_EQ(Files(), 2);
    }
    EXPECT_EQ(ReadFile("out"), "old");
    EXPECT_EQ(Files(), 1);
}

TEST_F(NamedTemporaryFileTest, ASignalRemovesIt) {
    for (const int signal : {SIGTERM, SIGQUIT, SIGUSR1, SIGALRM, SIGRTMIN}) {
        EXPECT_EXIT(
            {
                const TemporaryFile file(folder / "out");
                std::raise(signal);
            },
            testing::KilledBySignal(signal), "");
        EXPECT_EQ(Files(), 0) << signal;
    }
}

TEST(InterruptionsTest, WaitUntilTheLastOneThatHoldsThemIsGone) {
    EXPECT_EXIT(
        {
            {
                const InterruptionsHeld outer;
                {
                    const InterruptionsHeld inner;
                    std::raise(SIGTERM);
                    std::thread([] { std::raise(SIGHUP); }).join();
                }
                std::fputs("still there", stderr);
            }
            std::_Exit(0);
        },
        [](int status) { return WIFSIGNALED(status) != 0; }, "still there");
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
