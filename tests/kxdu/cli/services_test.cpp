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

}  // namespace
