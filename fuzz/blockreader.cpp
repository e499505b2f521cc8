/// The lines of inputs are the same for every block size, and for every number of bytes that arrive at a time.
#include "lines/blockreader.h"

#include <algorithm>

#include <unistd.h>

#include "fuzz/input.h"
#include "fuzz/memoryfile.h"
#include "lines/compression.h"
#include "support/chance.h"
#include "support/pieces.h"
#include "text/utf8.h"

namespace {

using namespace NS_KX;
using NS_FUZZ::ExpectEqual;

// Short, like the inputs: short inputs make many runs.
constexpr std::size_t LONGEST = 40;

std::size_t mostBytesAtATime = LONGEST;
NS_TEST::Chance chance(0);

struct Line {
    std::size_t number;
    std::string text;  ///< with its line end; empty when the line is too long

    bool operator==(const Line&) const = default;
};

void PrintTo(const Line& line, std::ostream* out) {
    *out << line.number << ": " << testing::PrintToString(line.text.substr(0, 100)) << " of " << line.text.size();
}

// Walks over the lines of a block. A line that is too long may still be in a larger block.
void AppendLines(std::string_view text, std::size_t firstLine, std::vector<Line>& lines) {
    while (!text.empty()) {
        const std::size_t size = std::min(text.find('\n'), text.size() - 1) + 1;
        const std::string_view line = text.substr(0, size);
        const bool isTooLong = size - (line.ends_with('\n') ? 1 : 0) > LONGEST;
        lines.push_back({firstLine++, std::string(isTooLong ? "" : line)});
        text.remove_prefix(size);
    }
}

std::vector<Line> LinesInBlocks(const std::vector<std::string>& files, std::size_t blockSize) {
    std::vector<Line> lines;
    BlockReader reader(files, blockSize, LONGEST);
    InputBlock block;
    while (reader.Next(block)) {
        ExpectEqual(block.memory.size() <= LONGEST + 2 * blockSize, true, "whether memory is bounded", blockSize);
        if (block.isTooLongLine) {
            ExpectEqual(block.Text(), "", "the text of a line that is too long", blockSize);
            lines.push_back({block.firstLine, ""});
        } else {
            ExpectEqual(block.size != 0, true, "whether there is a text", blockSize);
            AppendLines(block.Text(), block.firstLine, lines);
        }
    }
    return lines;
}

// This fuzzer splits text; what begins like a compressed file is another matter.
bool IsTakenForCompressed(std::string_view input) {
    return RecognizeCompression(input).compression != Compression::NONE;
}

}  // namespace

// Replaces the system's read: a pipe may give fewer bytes than asked for.
extern "C" ssize_t __real_read(int descriptor, void* memory, std::size_t size);
extern "C" ssize_t __wrap_read(int descriptor, void* memory, std::size_t size);
ssize_t __wrap_read(int descriptor, void* memory, std::size_t size) {
    return __real_read(descriptor, memory, std::min(size, 1 + chance.Below(mostBytesAtATime)));
}

// A byte 2 separates two inputs.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = NS_FUZZ::ToText(data, size);
    const auto cut = std::min(text.find('\2'), text.size());
    std::vector<Line> expected;
    const std::string_view first = text.substr(0, cut);
    const std::string_view second = text.substr(std::min(cut + 1, text.size()));
    if (IsTakenForCompressed(first) || IsTakenForCompressed(second)) {
        return 0;
    }
    AppendLines(WithoutByteOrderMark(first), 1, expected);
    AppendLines(WithoutByteOrderMark(second), 1, expected);
    const NS_FUZZ::MemoryFile firstFile(first);
    const NS_FUZZ::MemoryFile secondFile(second);
    for (const std::size_t blockSize : {1U, 5U, 64U, 4096U}) {
        for (const bool isPiecemeal : {true, false}) {
            chance = NS_TEST::Chance(size);
            mostBytesAtATime = isPiecemeal ? 3 + (first.size() + second.size()) / 16 : text.size() + 1;
            ExpectEqual(LinesInBlocks({firstFile.Name(), secondFile.Name()}, blockSize), expected,
                        "blocks of " + std::to_string(blockSize), text);
        }
    }
    return 0;
}
