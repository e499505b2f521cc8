#include "lines/blockreader.h"

#include <cstdio>
#include <filesystem>
#include <iterator>
#include <thread>

#include <sys/stat.h>

#include "lines/failure.h"
#include "support/foldertest.h"

namespace NS_KX {
namespace {

class BlockReaderTest : public FolderTest {
protected:
    struct Block {
        std::string text;
        std::size_t firstLine;
        bool isTooLongLine;

        bool operator==(const Block&) const = default;
    };

    std::vector<Block> ReadAll(const std::vector<std::string>& names, std::size_t blockSize) {
        std::vector<std::string> files;
        for (const std::string& name : names) {
            files.push_back(folder / name);
        }
        BlockReader reader(files, blockSize);
        std::vector<Block> blocks;
        InputBlock block;
        while (reader.Next(block)) {
            blocks.push_back({std::string(block.Text()), block.firstLine, block.isTooLongLine});
        }
        return blocks;
    }
};

TEST_F(BlockReaderTest, LeavesNothingOpenWhenAnInputCannotBeRead) {
    const auto countOpen = [] {
        return std::distance(std::filesystem::directory_iterator("/proc/self/fd"),
                             std::filesystem::directory_iterator());
    };
    const auto before = countOpen();
    BlockReader folderReader({folder.string()}, 1000);
    InputBlock block;
    EXPECT_THROW(folderReader.Next(block), Failure);
    EXPECT_EQ(countOpen(), before);
}

TEST_F(BlockReaderTest, CutsAtLineEnds) {
    WriteFile("a", "one\ntwo\nthree\n");
    EXPECT_EQ(ReadAll({"a"}, 9), (std::vector<Block>{{"one\ntwo\n", 1, false}, {"three\n", 3, false}}));
}

TEST_F(BlockReaderTest, AnEmptyFileGivesNothing) {
    WriteFile("a", "");
    EXPECT_TRUE(ReadAll({"a"}, 100).empty());
}

TEST_F(BlockReaderTest, TheLastLineMayLackItsEnd) {
    WriteFile("a", "one\ntwo");
    EXPECT_EQ(ReadAll({"a"}, 100), (std::vector<Block>{{"one\n", 1, false}, {"two", 2, false}}));
}

TEST_F(BlockReaderTest, EachFileBeginsAtLineOne) {
    WriteFile("a", "one\ntwo");
    WriteFile("b", "three\n");
    EXPECT_EQ(ReadAll({"a", "b"}, 100),
              (std::vector<Block>{{"one\n", 1, false}, {"two", 2, false}, {"three\n", 1, false}}));
}

TEST_F(BlockReaderTest, ALineLongerThanABlockIsStillWhole) {
    const std::string longLine(1000, 'x');
    WriteFile("a", "one\n" + longLine + "\ntwo\n");
    std::string all;
    for (const Block& block : ReadAll({"a"}, 16)) {
        EXPECT_TRUE(block.text.ends_with('\n'));
        all += block.text;
    }
    EXPECT_EQ(all, "one\n" + longLine + "\ntwo\n");
}

TEST_F(BlockReaderTest, ALongLineMayComeInManySmallPieces) {
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
    const std::string line(LONGEST_LINE, 'x');
    std::thread writer([this, &line] {
        std::ofstream pipe(folder / "pipe", std::ios::binary);
        pipe << "\xEF" << std::flush << "\xBB" << std::flush << "\xBF" << std::flush;
        for (std::size_t at = 0; at < line.size(); at += 16) {
            pipe.write(line.data() + at, 16).flush();
        }
        pipe << "\ntwo" << std::flush << '\n';
    });
    std::string all;
    for (const Block& block : ReadAll({"pipe"}, 4096)) {
        EXPECT_TRUE(block.text.ends_with('\n'));
        all += block.text;
    }
    writer.join();
    EXPECT_EQ(all, line + "\ntwo\n");
}

TEST_F(BlockReaderTest, ATooLongLineIsNamedAndNotHeld) {
    WriteFile("a", "one\n" + std::string(3 * LONGEST_LINE, 'x') + "\nthree\n");
    EXPECT_EQ(ReadAll({"a"}, 4096), (std::vector<Block>{{"one\n", 1, false}, {"", 2, true}, {"three\n", 3, false}}));
}

TEST_F(BlockReaderTest, ATooLongLastLineIsNamed) {
    WriteFile("a", std::string(2 * LONGEST_LINE, 'x'));
    EXPECT_EQ(ReadAll({"a"}, 4096), (std::vector<Block>{{"", 1, true}}));
}

TEST_F(BlockReaderTest, ALineOfTheLongestSizeIsHeld) {
    const std::string line(LONGEST_LINE, 'x');
    WriteFile("a", line + "\n");
    EXPECT_EQ(ReadAll({"a"}, 4096), (std::vector<Block>{{line + "\n", 1, false}}));
}

TEST_F(BlockReaderTest, VeryShortLinesMakeSmallBlocks) {
    WriteFile("a", std::string(100'000, '\n'));
    std::size_t lines = 0;
    for (const Block& block : ReadAll({"a"}, 65536)) {
        EXPECT_EQ(block.firstLine, lines + 1);
        EXPECT_LE(block.text.size(), 8192U);
        lines += block.text.size();
    }
    EXPECT_EQ(lines, 100'000U);
}

TEST_F(BlockReaderTest, LinesThatWereReadWaitForNoOthers) {
    WriteFile("a", std::string(10'000, '\n'));
    const std::vector<Block> blocks = ReadAll({"a"}, 8192 + 10);
    ASSERT_GE(blocks.size(), 2U);
    EXPECT_EQ(blocks[1], (Block{std::string(10, '\n'), 8193, false}));
}

TEST_F(BlockReaderTest, AByteOrderMarkBeginsNoFirstLine) {
    WriteFile("a", "\xEF\xBB\xBFone\n\xEF\xBB\xBFtwo\n");
    WriteFile("b", "\xEF\xBB\xBFthree");
    EXPECT_EQ(ReadAll({"a", "b"}, 100),
              (std::vector<Block>{{"one\n\xEF\xBB\xBFtwo\n", 1, false}, {"three", 1, false}}));
    EXPECT_EQ(ReadAll({"a", "b"}, 1),
              (std::vector<Block>{{"one\n", 1, false}, {"\xEF\xBB\xBFtwo\n", 2, false}, {"three", 1, false}}));
}

TEST_F(BlockReaderTest, AByteOrderMarkAloneIsNoLine) {
    WriteFile("a", "\xEF\xBB\xBF");
    EXPECT_TRUE(ReadAll({"a"}, 100).empty());
    WriteFile("a", "\xEF\xBB");
    EXPECT_EQ(ReadAll({"a"}, 100), (std::vector<Block>{{"\xEF\xBB", 1, false}})) << "half a mark is text";
}

TEST_F(BlockReaderTest, ALineOfTheLongestSizeIsHeldBehindAByteOrderMark) {
    const std::string line(LONGEST_LINE, 'x');
    WriteFile("a", "\xEF\xBB\xBF" + line + "\n");
    EXPECT_EQ(ReadAll({"a"}, 4096), (std::vector<Block>{{line + "\n", 1, false}}));
}

TEST_F(BlockReaderTest, KnowsTheSizeOfFilesBeforehand) {
    WriteFile("a", "12345");
    WriteFile("b", "678");
    EXPECT_EQ(BlockReader({folder / "a", folder / "b"}, 100).TotalBytes(), 8U);
    EXPECT_EQ(BlockReader({folder / "a", "-"}, 100).TotalBytes(), 0U);
}

TEST_F(BlockReaderTest, AMissingFileIsNamed) {
    BlockReader reader({folder / "missing"}, 100);
    InputBlock block;
    try {
        reader.Next(block);
        FAIL() << "no complaint";
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.GetCause(), Cause::INPUT);
        EXPECT_EQ(failure.what(), (folder / "missing").string() + ": No such file or directory");
    }
}

TEST_F(BlockReaderTest, AFolderCannotBeRead) {
    BlockReader reader({folder}, 100);
    InputBlock block;
    EXPECT_THROW(reader.Next(block), Failure);
}

}  // namespace
}  // namespace NS_KX
