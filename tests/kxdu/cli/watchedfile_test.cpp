#include "cli/watchedfile.h"

#include <chrono>

#include "support/foldertest.h"

namespace NS_KX::NS_KXDU {
namespace {

class WatchedFileTest : public FolderTest {
protected:
    // A file that was last written a minute ago, so that no test waits.
    void WriteOld(const std::string& name, const std::string& text) const {
        WriteFile(name, text);
        std::filesystem::last_write_time(folder / name,
                                         std::filesystem::file_time_type::clock::now() - std::chrono::minutes(1));
    }
};

TEST_F(WatchedFileTest, ChangesByWritingReplacingRemovingAndAppearing) {
    WriteOld("file", "a");
    WriteOld("other", "b");
    WatchedFile file(folder / "file");
    const auto isChangedOnce = [&file] {
        const bool isChanged = file.IsChanged();
        file.Accept();
        return isChanged && !file.IsChanged();
    };
    EXPECT_FALSE(file.IsChanged());
    WriteOld("file", "ab");
    EXPECT_TRUE(isChangedOnce());
    std::filesystem::rename(folder / "other", folder / "file");
    EXPECT_TRUE(isChangedOnce());
    std::filesystem::rename(folder / "file", folder / "other");
    EXPECT_TRUE(file.IsChanged());
    WriteOld("file", "c");
    EXPECT_TRUE(isChangedOnce());
}

TEST_F(WatchedFileTest, AcceptsItAfterTheLastWrite) {
    WriteOld("file", "a");
    WatchedFile file(folder / "file");
    WriteFile("file", "b");
    const auto written = std::filesystem::last_write_time(folder / "file");
    file.Accept();
    EXPECT_GE(std::filesystem::file_time_type::clock::now() - written, std::chrono::milliseconds(100));
    EXPECT_FALSE(file.IsChanged());
}

}  // namespace
}  // namespace NS_KX::NS_KXDU
