// The messages about an inventory or a configuration that cannot be loaded.
#include "kxdu/program.h"

namespace {

class ServicesTest : public ProgramTest {
protected:
    void SetUp() override {
        std::filesystem::create_directory(folder / "folder");
        WriteFile("empty", "");
        WriteFile("text", std::string(1000, 'x'));
        WriteFile("csv/ne.csv", "ne_id,ne_type,multi_sub_shelf,oam_number_omitted\n");
        WriteFile("csv/ne_type.csv", "ne_type,name,ip_service,klv\n");
        WriteFile("csv/domain_member.csv", "cache,domain,ne_type\n");
    }

    void ExpectComplaint(const std::string& command, const std::string& complaint) const {
        const Ended ended = Shell(command, "NE=5\n");
        EXPECT_EQ(ended.code, 2) << command;
        EXPECT_EQ(ended.out, "") << command;
        EXPECT_EQ(ended.err, "kxdu: " + complaint + "\n") << command;
    }
};

constexpr auto MAKE_ONE = "; make one with: kxdu inventory init FILE";

TEST_F(ServicesTest, SayHowToMakeAnInventoryIfTheFileIsNone) {
    for (const auto& [file, complaint] : std::initializer_list<std::pair<std::string, std::string>>{
             {"folder",
              "folder: is not a regular file; kxdu inventory import fills an inventory from a folder of CSV "
              "files"},
             {"empty", std::string("empty: is not an inventory") + MAKE_ONE},
             {"text", std::string("text: file is not a database") + MAKE_ONE},
             {"missing", std::string("missing: no such file") + MAKE_ONE}}) {
        for (const char* const command : {"encode --inventory ", "check --inventory ", "explain NE=5 --inventory ",
                                          "ne-type 5 --inventory ", "inventory list "}) {
            ExpectComplaint(std::string("kxdu ") + command + file, complaint);
        }
        ExpectComplaint("kxdu inventory export " + file + " out", complaint);
        ExpectComplaint("kxdu inventory import " + file + " csv", complaint);
    }
}

TEST_F(ServicesTest, SayIfTheEnvironmentNamedTheFile) {
    for (const std::string verb : {"encode", "check", "explain NE=5", "ne-type 5", "inventory list"}) {
        ExpectComplaint("KX_INVENTORY=missing kxdu " + verb,
                        std::string("missing: no such file (from KX_INVENTORY)") + MAKE_ONE);
    }
    ExpectComplaint("KX_INVENTORY=other kxdu encode --inventory missing",
                    std::string("missing: no such file") + MAKE_ONE);
    ExpectComplaint("KX_INVENTORY=missing kxdu inventory import missing csv",
                    std::string("missing: no such file") + MAKE_ONE);
    for (const std::string verb : {"decode", "encode", "check", "explain NE=5", "filter"}) {
        const Ended ended = Shell("KX_CONFIG_DIR=missing kxdu " + verb, "NE=5\n");
        EXPECT_EQ(ended.code, 2) << verb;
        EXPECT_TRUE(ended.err.starts_with("kxdu: missing/kx_corbaagent_bundle/bundle.cfg:")) << ended.err;
        EXPECT_TRUE(ended.err.ends_with(" (from KX_CONFIG_DIR)\n")) << ended.err;
        EXPECT_EQ(Shell("KX_CONFIG_DIR=missing kxdu " + verb + " --config other", "NE=5\n").err.find("KX_CONFIG_DIR"),
                  std::string::npos);
    }
}

TEST_F(ServicesTest, SayWhatLooksWrongWithTheConfiguration) {
    Configure(
        "Telvandair = 1\nTelvandaire = \"one\"\nNETypeListForSubslot = 1\nEventSwitch = 3\nPfmFrameRdSize = 6001\n"
        "Another = 1\n");
    const std::string doubts =
        "kxdu: the configuration has an unknown item \"NETypeListForSubslot\"; did you mean NETypeListForSubSlot?\n"
        "kxdu: Telvandaire is \"one\", not a whole number from -2147483648 to 2147483647: it counts as 0\n"
        "kxdu: PfmFrameRdSize is \"6001\", which counts as 2000\n"
        "kxdu: EventSwitch is \"3\", not 0, 1 or 2: all notifications pass\n";
    WriteFile("record", R"({"type":"NEIndex","record":{"neId":5}})");
    WriteFile("ne", "NE=5\n");
    for (const char* const verb :
         {"decode ne", "encode record", "check ne", "explain NE=5", "get neId ne", "stats ne", "report ne -o page"}) {
        const Ended ended = Shell(std::string("kxdu ") + verb + " --config config");
        EXPECT_EQ(ended.code, 0) << verb;
        EXPECT_EQ(ended.err, doubts) << verb;
    }
    EXPECT_EQ(Shell("kxdu filter --config config", "5\n").err, doubts + "kxdu: 0 held back, 1 passed on\n");
}

TEST_F(ServicesTest, SayWhichWordsOfAListAreNone) {
    const auto toldOf = [this](const std::string& items) {
        Configure(items);
        return Shell("kxdu decode --config config", "NE=5\n").err;
    };
    for (const char* const wrong : {"1911;1912", "65536", "-1", "x"}) {
        EXPECT_EQ(toldOf("NETypeListForSubSlot = \"1335," + std::string(wrong) + "\"\n"),
                  "kxdu: NETypeListForSubSlot holds \"" + std::string(wrong) +
                      "\", which is not an NE type; separate NE types by commas\n");
    }
    EXPECT_EQ(toldOf("NETypeListForSubSlot = \"1911, 1912,,0\"\n"), "") << "blanks and extra commas are allowed";
    EXPECT_EQ(toldOf("Telvandaire = -2147483648\nPfmFrameRdSize = 0\nBlacklist = \"x\"\n"), "")
        << "the list is not selected";
    EXPECT_EQ(
        toldOf("Telvandaire = 2147483648\n"),
        "kxdu: Telvandaire is \"2147483648\", not a whole number from -2147483648 to 2147483647: it counts as 0\n");
}

}  // namespace
