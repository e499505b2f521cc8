// Compressed inputs and outputs of the tool. These tests are a separate program: compressing takes more memory than the
// other tests of the tool allow.
#include <algorithm>
#include <string>

#include "kxdu/program.h"
#include "support/scale.h"

struct Compressor {
    const char* name;
    const char* command;
};

class ToolWithCompressed : public ProgramTest, public testing::WithParamInterface<Compressor> {
protected:
    void SetUp() override {
        ASSERT_EQ(Shell("kxdu sample --ne 200 -o in").code, 0);
        ASSERT_EQ(Shell(compress + " <in >whole; { head -n 100 in | " + compress + "; tail -n +101 in | " + compress +
                        "; } >parts")
                      .code,
                  0);
    }
    const std::string compress = GetParam().command;
};

TEST_P(ToolWithCompressed, LinesAreTheSame) {
    const std::string decoded = Shell("kxdu decode in").out;
    const std::string got = Shell("kxdu get NE in").out;
    ASSERT_GT(std::count(got.begin(), got.end(), '\n'), 1000);
    for (const char* const file : {"whole", "parts"}) {
        EXPECT_EQ(Shell(std::string("kxdu get NE ") + file).out, got) << file;
        EXPECT_EQ(Shell(std::string("cat ") + file + " | kxdu get NE").out, got) << file;
        EXPECT_EQ(Shell(std::string("kxdu decode ") + file).out, decoded) << file;
        EXPECT_EQ(Shell(std::string("kxdu check --levels-only ") + file).code, 0) << file;
    }
    EXPECT_EQ(Shell("kxdu get NE whole in parts").out, got + got + got);
    EXPECT_EQ(Shell("kxdu decode in | " + compress + " | kxdu encode --ignore-fdn | head -n 1").out,
              Shell("head -n 1 in").out);
}

TEST_P(ToolWithCompressed, OneThatIsCutOffLeavesNoOutput) {
    const std::string whole = ReadFile("whole");
    for (const std::size_t size : {whole.size() - 1, whole.size() / 2, std::size_t{20}, std::size_t{6}}) {
        WriteFile("cut", whole.substr(0, size));
        const Ended ended = Shell("kxdu get NE cut -o out");
        EXPECT_EQ(ended.code, 2) << size;
        EXPECT_EQ(ended.err, "kxdu: cut: the compressed data is cut off: its end is missing\n") << size;
        EXPECT_FALSE(Exists("out")) << size;
    }
    std::string corrupt = whole;
    corrupt[whole.size() / 2] = static_cast<char>(~corrupt[whole.size() / 2]);
    corrupt[whole.size() / 2 + 1] = static_cast<char>(~corrupt[whole.size() / 2 + 1]);
    WriteFile("cut", corrupt);
    EXPECT_EQ(Shell("kxdu get NE cut -o out").code, 2);
    WriteFile("cut", whole + "no compressed data");
    EXPECT_EQ(Shell("kxdu get NE cut -o out").code, 2);
    EXPECT_FALSE(Exists("out"));
}

// The reader of the output goes away while the compressed input pipe stays open.
TEST_P(ToolWithCompressed, ARunEndsThoughItsPipeGoesOn) {
    WriteFile("bad", "XY=1\n");
    EXPECT_EQ(Shell("mkfifo other; { " + compress +
                    " <bad; cat whole; exec sleep 30; } >other & timeout 10 '" KXDU_PROGRAM
                    "' decode --strict <other; code=$?; kill %1; echo $code")
                  .out,
              "1\n")
        << "it was stopped by a finding";
}

INSTANTIATE_TEST_SUITE_P(By, ToolWithCompressed,
                         testing::Values(Compressor{"gzip", "gzip -c"}, Compressor{"zstd", "zstd -qc"},
                                         Compressor{"zstd_after_a_skipped_frame",
                                                    R"({ printf '\137\052\115\030\002\000\000\000ab'; zstd -qc; })"},
                                         Compressor{"xz", "xz -c"}),
                         [](const auto& parameter) { return std::string(parameter.param.name); });

class ToolWithCompression : public ProgramTest {};

#ifndef KX_TEST_SANITIZED
TEST_F(ToolWithCompression, MemoryStaysSmall) {
    ASSERT_EQ(Shell("kxdu sample --ne 4000 -o in; xz -7 <in >in.xz; zstd -q -19 --long=24 <in >in.zst").code, 0);
    for (const char* const file : {"in.xz", "in.zst"}) {
        const Ended ended =
            Shell(std::string("/usr/bin/time -f %M '" KXDU_PROGRAM "' decode -j8 ") + file + " -o out.zst");
        EXPECT_EQ(ended.code, 0) << ended.err;
        EXPECT_LE(std::stol(ended.err), 64 * 1024) << file;
    }
}
#endif

TEST_F(ToolWithCompression, WhatNeedsMoreMemoryIsRefused) {
    ASSERT_EQ(Shell("kxdu sample --ne 100 -o in; xz -9 <in >in.xz; zstd -q --ultra --long=31 <in >in.zst").code, 0);
    EXPECT_EQ(
        Shell("kxdu get NE in.xz -o out").err,
        "kxdu: in.xz: needs more memory to be decompressed than may be used here; use a pipe: xz -dc in.xz | ...\n");
    EXPECT_EQ(Shell("kxdu get NE in.zst -o out").err,
              "kxdu: in.zst: needs more memory to be decompressed than may be used here; use a pipe: zstd -dc "
              "--long=31 in.zst "
              "| ...\n");
    EXPECT_EQ(Shell("kxdu get NE <in.xz").code, 2);
    EXPECT_FALSE(Exists("out"));
    EXPECT_EQ(Shell("xz -dc in.xz | kxdu get NE | cksum").out, Shell("kxdu get NE in | cksum").out);
}

TEST_F(ToolWithCompression, AnOutputIsCompressedAsItsNameSays) {
    ASSERT_EQ(Shell("kxdu sample --ne 100 -o in; kxdu sample --ne 100 -o in.gz; kxdu sample --ne 100 -o in.zst").code,
              0);
    EXPECT_EQ(Shell("gzip -t in.gz && gzip -dc in.gz | cmp - in && zstd -qdc in.zst | cmp - in").code, 0);
    EXPECT_EQ(Shell("kxdu decode in.gz -o out.zst && zstd -qdc out.zst | kxdu encode --ignore-fdn >/dev/null").code, 2)
        << "an inventory is needed, so the lines arrived";
    const Ended ended = Shell("kxdu get NE in -o out.xz");
    EXPECT_EQ(ended.code, 2);
    EXPECT_EQ(ended.err, "kxdu: out.xz: .xz is not written; use .gz or .zst, or a pipe: ... | xz >out.xz\n");
    for (const char* const ending :
         {"bz2", "lz4", "lzma", "br", "Z", "zip", "7z", "rar", "tar", "tgz", "tbz2", "txz"}) {
        const Ended other = Shell(std::string("kxdu get NE in -o out.") + ending);
        EXPECT_EQ(other.code, 2);
        EXPECT_TRUE(other.err.starts_with(std::string("kxdu: out.") + ending + ": ." + ending +
                                          " is not written; use .gz or .zst"))
            << other.err;
        EXPECT_FALSE(Exists(std::string("out.") + ending));
    }
    EXPECT_EQ(Shell("kxdu get NE in -o zip").code, 0) << "a name without an ending promises nothing";
}
