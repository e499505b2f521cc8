#include "lines/fileinuse.h"

#include "kxdu/program.h"
#include "lines/failure.h"

namespace NS_KX::NS_KXDU {
namespace {

class FileInUseTest : public ProgramTest {
protected:
    // Each command must be refused with this complaint, and leave every file unchanged.
    void ExpectRefused(const std::string& command, const std::string& complaint) const {
        const std::string sums = "find . -type f -exec cksum {} + | sort";
        const std::string before = Shell(sums).out;
        const Ended ended = Shell("kxdu " + command, "NE=5\n");
        EXPECT_EQ(ended.code, 2) << command;
        EXPECT_EQ(ended.out, "") << command;
        EXPECT_EQ(ended.err, "kxdu: " + complaint + "\n") << command;
        EXPECT_EQ(Shell(sums).out, before) << command;
    }
};

TEST_F(FileInUseTest, IsNotReplaced) {
    WriteFile("a", "text");
    const std::vector<FileInUse> filesInUse{{folder / "b", "table"}, {folder / "a", "list"}};
    try {
        RefuseReplacing(filesInUse, folder / "./a", "the sum");
        ADD_FAILURE() << "it would be replaced";
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.GetCause(), Cause::INPUT);
        EXPECT_EQ(failure.what(), (folder / "./a").string() + ": the sum would replace the list");
    }
    EXPECT_THROW(RefuseReplacing(filesInUse, folder / "b"), Failure) << "the file may be created later";
    EXPECT_NO_THROW(RefuseReplacing(filesInUse, folder / "c"));
}

TEST_F(FileInUseTest, StandardOutputReplacesNone) {
    EXPECT_NO_THROW(RefuseReplacing({{"", "list"}, {"-", "list"}}, ""));
    EXPECT_NO_THROW(RefuseReplacing({{"", "list"}, {"-", "list"}}, "-"));
}

TEST_F(FileInUseTest, TheInventoryIsOne) {
    ASSERT_EQ(Shell("kxdu inventory init t.db && ln -s t.db link.db && mkdir csv && ln t.db csv/ne.csv").code, 0);
    for (const std::string verb : {"inventory list t.db", "ne-type 1912 --inventory t.db", "encode --inventory t.db",
                                   "check --inventory t.db", "check --levels-only --inventory t.db"}) {
        ExpectRefused(verb + " -o t.db", "t.db: the output would replace the inventory");
        ExpectRefused(verb + " -o link.db", "link.db: the output would replace the inventory");
    }
    ExpectRefused("ne-type 1912 --inventory link.db -o ./t.db", "./t.db: the output would replace the inventory");
    ExpectRefused("encode --inventory t.db --rejects t.db", "t.db: the rejected lines would replace the inventory");
    ExpectRefused("inventory export t.db csv", "csv/ne.csv: the output would replace the inventory");
    EXPECT_EQ(Shell("KX_INVENTORY=t.db kxdu inventory list -o t.db").code, 2);
}

TEST_F(FileInUseTest, TheConfigurationIsOne) {
    Configure("EventSwitch = 0\n");
    std::filesystem::create_symlink("config", folder / "link");
    for (const std::string verb : {"filter", "decode", "encode", "check"}) {
        ExpectRefused(verb + " --config config -o " + CONFIG,
                      std::string(CONFIG) + ": the output would replace the configuration");
        ExpectRefused(verb + " --config link -o " + CONFIG,
                      std::string(CONFIG) + ": the output would replace the configuration");
    }
    ExpectRefused(std::string("filter --config config --rejects ") + CONFIG,
                  std::string(CONFIG) + ": the rejected lines would replace the configuration");
}

TEST_F(FileInUseTest, TheInventoryThatIsWrittenBesideIsOne) {
    for (const std::string table : {"ne.csv", "ne_type.csv", "domain_member.csv"}) {
        ExpectRefused("sample --ne 1 -o net/" + table + " --inventory-csv net",
                      "net/" + table + ": the output would replace the inventory");
    }
    EXPECT_FALSE(Exists("net"));
    EXPECT_EQ(Shell("mkdir net && kxdu sample --ne 1 -o net/network.fdn --inventory-csv net").code, 0);
}

}  // namespace
}  // namespace NS_KX::NS_KXDU
