#include "kxdu/program.h"

namespace NS_KX::NS_KXDU {
namespace {

class EncodeTest : public ProgramTest {
protected:
    // An inventory of NE 5, whose type is ordinary, and NE 41, whose cards spell out their sub-slots.
    void MakeInventory() {
        std::filesystem::create_directory(folder / "csv");
        WriteFile("csv/ne_type.csv", "ne_type,name,ip_service,klv\n100,Plain,0,0\n1911,Spelling,0,0\n");
        WriteFile("csv/ne.csv", "ne_id,ne_type,multi_sub_shelf,oam_number_omitted\n5,100,0,0\n41,1911,0,0\n");
        WriteFile("csv/domain_member.csv", "cache,domain,ne_type\n");
        const Ended ended = Shell("kxdu inventory init inventory.db && kxdu inventory import inventory.db csv");
        ASSERT_EQ(ended.code, 0) << ended.err;
    }
};

TEST_F(EncodeTest, WritesIdentifiersFromRecordsAlone) {
    const Ended ended = Shell("kxdu encode", R"({"type":"NEIndex","record":{"reserved":0,"neId":7}})"
                                             "\n");
    EXPECT_EQ(ended.code, 0) << ended.err;
    EXPECT_EQ(ended.out, "NE=7\n");
}

TEST_F(EncodeTest, CanonicalIdentifiersComeBackByteForByte) {
    MakeInventory();
    const std::string identifiers =
        "OS=1\nONE=2,NE=5\nNE=5,FR=1,S=3,CP=-1\nNE=41,FR=1,S=3,CP=-1,SS=-1,SC=-1\n"
        "NE=5,FR=1,S=3,CP=-1,PP=16|1025|7|K\xc3\xb6ln \"1\"\nNE=5,FR=1,S=3,CP=-1,PP=||7|a,SUBIF=9\n"
        "NE=5,FR=1,S=3,CP=-1,SS=1,SC=-1,PP=16||7|,AP=1|2|9\n";
    const Ended ended = Shell("kxdu decode | kxdu encode --inventory inventory.db", identifiers);
    EXPECT_EQ(ended.code, 0) << ended.err;
    EXPECT_EQ(ended.out, identifiers);
}

TEST_F(EncodeTest, IdentifiersThatChangeAreReported) {
    const Ended ended = Shell("kxdu decode | kxdu encode", "NE=05\nNE=6\n");
    EXPECT_EQ(ended.code, 1);
    EXPECT_EQ(ended.out, "NE=5\nNE=6\n");
    EXPECT_EQ(ended.err,
              "<stdin>:1: written as \"NE=5\", which differs from its \"fdn\" \"NE=05\"\n"
              "kxdu: 1 rejected or changed in 2 lines\n");
    EXPECT_EQ(Shell("kxdu decode | kxdu encode --ignore-fdn", "NE=05\n").code, 0);
}

TEST_F(EncodeTest, WithoutAnInventorySaysHowToGiveOne) {
    const Ended ended = Shell("kxdu decode | kxdu encode", "NE=5,FR=1,S=3,CP=-1\n");
    EXPECT_EQ(ended.code, 2);
    EXPECT_TRUE(ended.err.starts_with("kxdu: <stdin>:1: this identifier cannot be written without an inventory"))
        << ended.err;
    EXPECT_NE(ended.err.find("--inventory FILE or in KX_INVENTORY"), std::string::npos) << ended.err;
    EXPECT_EQ(Shell("kxdu decode | kxdu encode", "NE=5,FR=1\n").code, 0) << "a shelf needs no inventory";
}

TEST_F(EncodeTest, TheInventoryMayComeFromTheEnvironment) {
    MakeInventory();
    const Ended ended = Shell("kxdu decode | KX_INVENTORY=inventory.db kxdu encode", "NE=5,FR=1,S=3,CP=-1\n");
    EXPECT_EQ(ended.code, 0) << ended.err;
    EXPECT_EQ(ended.out, "NE=5,FR=1,S=3,CP=-1\n");
}

TEST_F(EncodeTest, NesThatTheInventoryLacksAreReportedOnce) {
    MakeInventory();
    const std::string cards = "NE=5,FR=1,S=3,CP=-1\nNE=7,FR=1,S=3,CP=-1\nNE=7,FR=1,S=4,CP=-1\nNE=9,MD=1|m\nNE=11\n";
    const Ended ended = Shell("kxdu decode | kxdu encode --inventory inventory.db", cards);
    EXPECT_EQ(ended.code, 0);
    EXPECT_EQ(ended.out, cards);
    EXPECT_EQ(ended.err, "kxdu: 2 NEs, such as NE 7, are not in the inventory: treated as NE type 0\n");
}

TEST_F(EncodeTest, ANameWithASeparatorIsRejected) {
    for (const std::string name : {"a,b", "a|b"}) {
        const Ended ended =
            Shell("kxdu encode --ignore-fdn",
                  R"({"type":"MDIndex","record":{"reserved":0,"neId":5,"mdId":1,"mdName":")" + name + "\"}}\n");
        EXPECT_EQ(ended.code, 1);
        EXPECT_EQ(ended.out, "");
        EXPECT_EQ(ended.err,
                  "<stdin>:1: field \"mdName\" holds \",\" or \"|\", where it would end\n"
                  "kxdu: 1 rejected or changed in 1 line\n");
    }
}

TEST_F(EncodeTest, BadLinesAreRejected) {
    const Ended ended = Shell("kxdu encode", R"({"type":"NoIndex","record":{}})"
                                             "\nnonsense\n"
                                             R"({"type":"OSIndex","record":{"osId":"1"}})"
                                             "\n");
    EXPECT_EQ(ended.code, 1);
    EXPECT_EQ(ended.out, "");
    EXPECT_EQ(ended.err,
              "<stdin>:1: unknown type \"NoIndex\"\n"
              "<stdin>:2: not an object\n"
              "<stdin>:3: field \"osId\" is not a whole number of 32 bits\n"
              "kxdu: 3 rejected or changed in 3 lines\n");
}

TEST_F(EncodeTest, AFileOfIdentifiersEndsTheRunAtItsFirstLine) {
    WriteFile("records", "{\"type\":\"NEIndex\",\"record\":{\"reserved\":0,\"neId\":7}}\n");
    WriteFile("identifiers", "NE=1\nNE=2\n");
    const Ended ended = Shell("kxdu encode records identifiers");
    EXPECT_EQ(ended.code, 2);
    EXPECT_EQ(ended.out, "NE=7\n");
    EXPECT_EQ(ended.err, "kxdu: identifiers:1: this is an identifier, not a record; did you mean kxdu decode?\n");
    EXPECT_EQ(Shell("kxdu encode --strict identifiers").code, 2);
    EXPECT_EQ(Shell("kxdu encode", " \t{}\n").code, 1) << "a wrong line does not stop the run if it begins like JSON";
}

TEST_F(EncodeTest, CsvAndTsvComeBackByteForByte) {
    MakeInventory();
    const std::string identifiers =
        "OS=1\nONE=2,NE=5\nNE=41,FR=1,S=3,CP=-1,SS=-1,SC=-1\nNE=5,FR=1,S=3,CP=-1,PP=16|1025|7|K\xc3\xb6ln \"1\"\\x\n"
        "NE=5,FR=1,S=3,CP=-1,SS=1,SC=-1,PP=16||7|,AP=1|2|9\nNE=5,PWE3=3|17\nNE=5,MD=3|md1,MA=4|m\ta,MEP=7\n";
    for (const std::string format : {"csv", "tsv"}) {
        const Ended ended =
            Shell("kxdu decode --format " + format + " | kxdu encode --inventory inventory.db", identifiers);
        EXPECT_EQ(ended.code, 0) << ended.err;
        EXPECT_EQ(ended.out, identifiers);
    }
}

TEST_F(EncodeTest, EachFileHasColumnsOfItsOwn) {
    WriteFile("shelves.csv", "\xEF\xBB\xBFneId,shelfId,type\r\n7,1,ShelfIndex\r\n");
    WriteFile("nes.tsv", "type\tneId\nNEIndex\t8\n");
    WriteFile("lines", "{\"type\":\"NEIndex\",\"record\":{\"neId\":9}}\n");
    const Ended ended = Shell("kxdu encode -j 1 shelves.csv nes.tsv lines shelves.csv");
    EXPECT_EQ(ended.out, "NE=7,FR=1\nNE=8\nNE=9\nNE=7,FR=1\n");
    EXPECT_EQ(ended.err, "");
}

TEST_F(EncodeTest, ManyBlocksKnowTheColumnsOfTheirFile) {
    const Ended ended = Shell("{ echo neId,type; seq 200000 | sed s/$/,NEIndex/; } | kxdu encode | tail -n 1");
    EXPECT_EQ(ended.out, "NE=200000\n") << ended.err;
}

TEST_F(EncodeTest, TheTypeMayBeAnOption) {
    EXPECT_EQ(Shell("kxdu encode --as ShelfIndex", "neId,shelfId\n7,1\n").out, "NE=7,FR=1\n");
    EXPECT_EQ(Shell("kxdu encode --as ShelfIndex", "{\"record\":{\"neId\":7}}\n").out, "NE=7,FR=-1\n");
    EXPECT_EQ(Shell("kxdu encode --as Shelf", "").code, 2);
}

TEST_F(EncodeTest, BadRowsAreRejected) {
    const Ended ended = Shell("kxdu encode", "type,neId\nNEIndex,x\nNEIndex,7\nNEIndex\n");
    EXPECT_EQ(ended.code, 1);
    EXPECT_EQ(ended.out, "NE=7\n");
    EXPECT_EQ(ended.err,
              "<stdin>:2: field \"neId\" is not a whole number of 32 bits: \"x\"\n"
              "<stdin>:4: the row has 1 column, the line of column names 2\n"
              "kxdu: 2 rejected or changed in 4 lines\n");
}

TEST_F(EncodeTest, OtherFormatsEndTheRunAtTheirFirstLine) {
    const auto complaint = [&](const std::string& input) {
        const Ended ended = Shell("kxdu encode", input);
        EXPECT_EQ(ended.code, 2) << input;
        EXPECT_EQ(ended.out, "") << input;
        return ended.err;
    };
    for (const char* const other : {"TYPE  FDN  RECORD\nNEIndex  NE=1\n", "[\n"}) {
        EXPECT_EQ(
            complaint(other),
            "kxdu: <stdin>:1: this is neither a JSON line nor a line of column names; kxdu encode reads what kxdu "
            "decode writes with --format jsonl, csv or tsv\n");
    }
    EXPECT_EQ(complaint("type;neId\n"),
              "kxdu: <stdin>:1: the columns are separated by \";\"; kxdu encode reads CSV with \",\", and TSV: save it "
              "as one of them\n");
    EXPECT_EQ(complaint("type,neId,colour\n"),
              "kxdu: <stdin>:1: no type has a field \"colour\"; kxdu types lists all fields\n");
}

TEST_F(EncodeTest, ServicesAndOamComeBackByteForByte) {
    MakeInventory();
    const std::string identifiers =
        "NE=5,VEGROUP=3\nNE=5,PW=4\nNE=5,PWSW=4|x\nNE=5,PWE3=3|17\nNE=5,L3VPN=a\nNE=5,TUNNEL=1|2|a|b|3|c|4|d\n"
        "NE=5,ATMTD=9\nNE=5,PWE3TRAIL=7\nNE=5,FR=1,TUNNELTRAIL=7\nPWTRAIL=7\nNE=5,TUNNELPGTRAIL=7\n"
        "NE=5,MD=3|md1\nNE=5,MD=3|md1,MA=4|ma1\nNE=5,MD=3|md1,MA=4|ma1,MEP=7\nNE=5,MD=3|md1,MA=4|ma1,RMEP=7\n"
        "NE=5,MD=3|md1,MIP=4|mip\n";
    const Ended ended = Shell("kxdu decode | kxdu encode --inventory inventory.db", identifiers);
    EXPECT_EQ(ended.code, 0) << ended.err;
    EXPECT_EQ(ended.out, identifiers);
}

TEST_F(EncodeTest, ARecordThatContradictsTheTextItKeepsIsRejected) {
    const Ended ended =
        Shell("kxdu encode", R"({"type":"ServiceIndex","record":{"neId":5,"resId":"NE=5,VSI=8","svcId":9,"svcType":4}})"
                             "\n");
    EXPECT_EQ(ended.code, 1);
    EXPECT_EQ(ended.out, "");
    EXPECT_EQ(ended.err,
              "<stdin>:1: the fields say something else than the text that the record keeps, \"NE=5,VSI=8\"\n"
              "kxdu: 1 rejected or changed in 1 line\n");
}

TEST_F(EncodeTest, AnAccessPointThatContradictsItselfIsRejected) {
    const Ended ended = Shell("kxdu encode --as CtpKey_T",
                              "neId,port.neId,port.portId,fbType,port.fbType,apText,apValue2\n"
                              "5,5,2,8,8,07,7\n,5,2,,8,,7\n5,6,2,,,,\n5,5,2,8,9,,\n5,5,2,,,x,7\n,,2,,,,\n");
    EXPECT_EQ(ended.code, 1);
    EXPECT_EQ(ended.out, "NE=5,PP=|8|2|,AP=0|7|\nNE=5,PP=|8|2|,AP=0|7|\n");
    const std::string advice = ": change both, or leave ";
    EXPECT_EQ(ended.err, "<stdin>:4: \"neId\" is 5, but \"port.neId\", which is written, is 6" + advice +
                             "\"neId\" out\n"
                             "<stdin>:5: \"fbType\" is 8, but \"port.fbType\", which is written, is 9" +
                             advice +
                             "\"fbType\" out\n"
                             "<stdin>:6: \"apText\" is \"x\", but \"apValue2\", which is written, is 7" +
                             advice +
                             "\"apText\" out\n"
                             "<stdin>:7: field \"port.neId\" is missing\n"
                             "kxdu: 4 rejected or changed in 7 lines\n");
    EXPECT_EQ(Shell("kxdu encode", R"({"type":"CtpKey_T:SUBIF","record":{"neId":7,"port":{"neId":5}}})"
                                   "\n")
                  .code,
              1);
}

}  // namespace
}  // namespace NS_KX::NS_KXDU
