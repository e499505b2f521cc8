#include "kxdu/program.h"

namespace {

class InventoryVerb : public ProgramTest {
protected:
    void WriteCsv() const {
        std::filesystem::create_directory(folder / "csv");
        WriteFile("csv/ne.csv",
                  "ne_id,ne_type,multi_sub_shelf,oam_number_omitted\n5,1912,0,0\n6,1912,1,1\n70,2701,0,0\n");
        WriteFile("csv/ne_type.csv", "ne_type,name,ip_service,klv\n1912,\"PTN, grün\",1,0\n2701,OTN,0,1\n");
        WriteFile("csv/domain_member.csv",
                  "cache,domain,ne_type\nNE_TYPE_LIST,transmission,2701\nEQUIPMENT_TYPE,OTN,2701\n"
                  "EQUIPMENT_TYPE,WDM,2750\n");
    }

    void MakeInventory() const {
        WriteCsv();
        ASSERT_EQ(Shell("kxdu inventory init n.db && kxdu inventory import n.db csv").code, 0);
    }
};

TEST_F(InventoryVerb, AnEmptyNameIsNamed) {
    for (const char* const arguments : {"init ''", "list ''", "import '' csv", "export '' csv"}) {
        const Ended ended = Shell(std::string("kxdu inventory ") + arguments);
        EXPECT_EQ(ended.code, 2) << arguments;
        EXPECT_TRUE(ended.err.starts_with("kxdu: FILE: the name is empty\n")) << ended.err;
    }
}

}  // namespace

TEST_F(InventoryVerb, InitMakesAnEmptyOne) {
    const Ended ended = Shell("kxdu inventory init n.db && kxdu inventory list n.db");
    EXPECT_EQ(ended.code, 0) << ended.err;
    EXPECT_EQ(ended.out,
              "n.db: empty inventory created\n"
              "n.db: 0 NEs, 0 NE types, 0 domain lists of 0 members\n"
              "\n"
              "neType  name  nes  ipService  klv  domains\n"
              "------  ----  ---  ---------  ---  -------\n");
}

TEST_F(InventoryVerb, InitLeavesAFileThatExistsAlone) {
    WriteFile("n.db", "mine");
    const Ended ended = Shell("kxdu inventory init n.db");
    EXPECT_EQ(ended.code, 2);
    EXPECT_EQ(ended.err, "kxdu: n.db: File exists, but is not an inventory; choose another name\n");
    EXPECT_EQ(ReadFile("n.db"), "mine");
    EXPECT_EQ(Shell("kxdu inventory init other.db; kxdu inventory init other.db").err,
              "kxdu: other.db: File exists; kxdu inventory import replaces what it holds\n");
    std::filesystem::create_directory(folder / "folder");
    EXPECT_EQ(Shell("kxdu inventory init folder").err, "kxdu: folder: File exists\n")
        << "no advice: a folder is never an inventory";
}

TEST_F(InventoryVerb, SwappedArgumentsAreReported) {
    MakeInventory();
    const std::string before = ReadFile("n.db");
    for (const auto& [arguments, complaint] : std::initializer_list<std::pair<const char*, const char*>>{
             {"import n.db csv/ne.csv", "csv/ne.csv is a file: FOLDER is the folder that holds ne.csv"},
             {"import csv n.db", "csv is a folder, and n.db is a file: FILE, the inventory, comes first"},
             {"export csv n.db", "csv is a folder, and n.db is a file: FILE, the inventory, comes first"}}) {
        const Ended ended = Shell(std::string("kxdu inventory ") + arguments);
        EXPECT_EQ(ended.code, 2) << arguments;
        EXPECT_EQ(ended.err, std::string("kxdu: ") + complaint + "\n") << arguments;
    }
    EXPECT_EQ(ReadFile("n.db"), before);
}

TEST_F(InventoryVerb, ImportReplacesAllAndExportGivesItBack) {
    MakeInventory();
    const Ended ended = Shell("kxdu inventory import n.db csv && kxdu inventory export n.db out && diff -r csv out");
    EXPECT_EQ(ended.code, 0) << ended.err;
    EXPECT_EQ(ended.out,
              "n.db: now 3 NEs, 2 NE types, 3 domain lists of 3 members\n"
              "out: 3 NEs, 2 NE types, 3 domain lists of 3 members\n");
}

TEST_F(InventoryVerb, ImportWarnsOfUnusedLists) {
    MakeInventory();
    EXPECT_EQ(Shell("kxdu inventory import n.db csv").err, "");
    WriteFile("csv/domain_member.csv",
              "cache,domain,ne_type\nNE_TYPE_LIST,Transmission,2701\nNE_TYPE_LIST,Transmission,2702\n"
              "NE_TYPE_LIST,OTN,2701\nEQUIPMENT_TYPE,OTM,2701\nEQUIPMENT_TYPE,WDM,2750\n");
    const Ended ended = Shell("kxdu inventory import n.db csv");
    EXPECT_EQ(ended.code, 0);
    EXPECT_EQ(ended.out, "n.db: now 3 NEs, 2 NE types, 4 domain lists of 5 members\n");
    EXPECT_EQ(ended.err,
              "kxdu: no answer depends on the NE_TYPE_LIST \"OTN\"\n"
              "kxdu: no answer depends on the NE_TYPE_LIST \"Transmission\"; did you mean \"transmission\"?\n"
              "kxdu: no answer depends on the EQUIPMENT_TYPE \"OTM\"; did you mean \"OTN\"?\n");
}

TEST_F(InventoryVerb, AnImportThatFailsNamesThePlaceAndChangesNothing) {
    MakeInventory();
    const std::string before = Shell("kxdu inventory list n.db --nes").out;
    WriteFile("csv/ne.csv", "ne_id,ne_type,multi_sub_shelf,oam_number_omitted\n1,1912,0,0\n2,7,0,0\n");
    const Ended ended = Shell("kxdu inventory import n.db csv");
    EXPECT_EQ(ended.code, 2);
    EXPECT_EQ(ended.out, "");
    EXPECT_EQ(ended.err, "kxdu: csv/ne.csv:3: NE type 7 is not in ne_type.csv\n");
    EXPECT_EQ(Shell("kxdu inventory list n.db --nes").out, before);
}

TEST_F(InventoryVerb, ImportNeedsAnInventoryThatExists) {
    WriteCsv();
    EXPECT_EQ(Shell("kxdu inventory import n.db csv").code, 2);
    EXPECT_FALSE(Exists("n.db"));
    WriteFile("n.db", "no SQLite file, but as long as the head of one would have to be, and then some more text");
    EXPECT_EQ(Shell("kxdu inventory import n.db csv").code, 2);
}

TEST_F(InventoryVerb, ListShowsCountsTypesAndDomains) {
    MakeInventory();
    const std::string types =
        "n.db: 3 NEs, 2 NE types, 3 domain lists of 3 members\n"
        "\n"
        "neType  name                    nes  ipService  klv  domains\n"
        "------  ----------------------  ---  ---------  ---  -----------------\n"
        "  1912  PTN, grün                 2  yes        no\n"
        "  2701  OTN                       1  no         yes  transmission, OTN\n"
        "  2750  (in domain lists only)    0  -          -    WDM\n";
    EXPECT_EQ(Shell("kxdu inventory list n.db").out, types);
    EXPECT_EQ(Shell("kxdu inventory list n.db -o list.txt").out, "");
    EXPECT_EQ(ReadFile("list.txt"), types);
}

TEST_F(InventoryVerb, ListShowsNesOnRequest) {
    MakeInventory();
    EXPECT_EQ(Shell("KX_INVENTORY=n.db kxdu inventory list --nes").out,
              "n.db: 3 NEs, 2 NE types, 3 domain lists of 3 members\n"
              "\n"
              "neId  neType  name       multiSubShelf  oamNumberOmitted\n"
              "----  ------  ---------  -------------  ----------------\n"
              "   5    1912  PTN, grün  no             no\n"
              "   6    1912  PTN, grün  yes            yes\n"
              "  70    2701  OTN        no             no\n");
}

TEST_F(InventoryVerb, ListIsAlsoForPrograms) {
    MakeInventory();
    EXPECT_EQ(Shell("kxdu inventory list n.db --format csv").out,
              "neType,name,nes,ipService,klv,domains\n"
              "1912,\"PTN, grün\",2,true,false,\n"
              "2701,OTN,1,false,true,\"transmission, OTN\"\n"
              "2750,,0,,,WDM\n");
}

TEST_F(InventoryVerb, AnArgumentCountsMoreThanTheEnvironment) {
    MakeInventory();
    for (const char* const operation : {"init new.db", "import n.db csv", "export n.db out", "list n.db"}) {
        const Ended ended = Shell(std::string("KX_INVENTORY=other.db kxdu inventory ") + operation);
        EXPECT_EQ(ended.code, 0) << ended.err;
        EXPECT_EQ(ended.out.find("other.db"), std::string::npos) << ended.out;
    }
    EXPECT_TRUE(Exists("new.db"));
    EXPECT_FALSE(Exists("other.db"));
}

TEST_F(InventoryVerb, AByteOrderMarkIsSkipped) {
    WriteCsv();
    WriteFile("csv/ne.csv", "\xEF\xBB\xBF" + ReadFile("csv/ne.csv"));
    EXPECT_EQ(Shell("kxdu inventory init n.db && kxdu inventory import n.db csv").code, 0);
}

TEST_F(InventoryVerb, OutputThatCannotBeWrittenIsAnOutputError) {
    MakeInventory();
    EXPECT_EQ(Shell("kxdu inventory list n.db >/dev/full").code, 3);
    EXPECT_EQ(Shell("kxdu inventory export n.db csv/ne.csv").code, 3);
}

TEST_F(InventoryVerb, WrongArgumentsAreUsageErrors) {
    for (const char* const arguments : {"", "init", "import n.db", "export n.db", "list", "remove n.db"}) {
        EXPECT_EQ(Shell(std::string("kxdu inventory ") + arguments).code, 2) << arguments;
    }
}

TEST_F(InventoryVerb, HelpHasExamples) {
    for (const char* const verb : {"", "init ", "import ", "export ", "list "}) {
        const Ended ended = Shell(std::string("kxdu inventory ") + verb + "--help");
        EXPECT_EQ(ended.code, 0) << verb;
        EXPECT_NE(ended.out.find("Example"), std::string::npos) << verb;
    }
}
