#include "kxdu/program.h"

namespace NS_KX::NS_KXDU {
namespace {

class CheckTest : public ProgramTest {
protected:
    // An inventory of NEs 1, 2, which leaves out the numbers of MD and MA, and 3, which spells out absent sub-slots.
    void MakeInventory() {
        std::filesystem::create_directory(folder / "csv");
        WriteFile("csv/ne_type.csv", "ne_type,name,ip_service,klv\n100,Plain,0,0\n1911,Spelling,0,0\n");
        WriteFile("csv/ne.csv", "ne_id,ne_type,multi_sub_shelf,oam_number_omitted\n1,100,0,0\n2,100,0,1\n3,1911,0,0\n");
        WriteFile("csv/domain_member.csv", "cache,domain,ne_type\n");
        const Ended ended = Shell("kxdu inventory init n.db && kxdu inventory import n.db csv");
        ASSERT_EQ(ended.code, 0) << ended.err;
    }
};

TEST_F(CheckTest, NothingFoundIsSilent) {
    const Ended ended = Shell("kxdu check", "NE=5\nNE=5,FR=1\n");
    EXPECT_EQ(ended.code, 0);
    EXPECT_EQ(ended.out, "");
    EXPECT_EQ(ended.err, "");
}

TEST_F(CheckTest, FindingsNameFileLineAndColumn) {
    WriteFile("a.fdn", "NE=5\nNE=1,fr=2,S=\nNE=1,XY=2\n");
    const Ended ended = Shell("kxdu check a.fdn");
    EXPECT_EQ(ended.code, 1);
    EXPECT_EQ(ended.out,
              "a.fdn:2:6: lower-case letter in the tag \"fr\"\n"
              "a.fdn:2:13: S has no value\n"
              "a.fdn:3:6: unknown tag \"XY\"\n");
    EXPECT_EQ(ended.err, "kxdu: 3 problems in 2 of 3 lines\n");
}

TEST_F(CheckTest, ShowsTheTextThatWouldBeWrittenInstead) {
    const Ended ended = Shell("kxdu check", "NE=05\nFR=1,NE=2\nNE=1,LP=16||1|,VR=2\n");
    EXPECT_EQ(ended.code, 1);
    EXPECT_EQ(ended.out,
              "<stdin>:1:4: would be written as \"NE=5\"\n"
              "<stdin>:2:6: level \"NE\" stands after \"FR\", but belongs before it\n"
              "<stdin>:3:16: would be written as \"NE=1,LP=16||1|,AP=0|0|\"\n");
}

TEST_F(CheckTest, ReportsThatNothingIsReadFromTheTextForNoPort) {
    const std::string noPort = "NE=12,FR=1,S=0,CP=-1,SS=-1,SC=-1,PP=16||0|";
    const Ended ended = Shell("kxdu check", noPort + "\nNE=12\n");
    EXPECT_EQ(ended.code, 1);
    EXPECT_EQ(ended.out, "<stdin>:1: nothing is read: the identifier fills no field of its record\n");
    EXPECT_NE(Shell("kxdu explain '" + noPort + "'").out.find(ended.out.substr(11)), std::string::npos)
        << "explain uses the same words";
}

TEST_F(CheckTest, ServicesAndOamAreCheckedLikeTheRest) {
    const Ended ended = Shell("kxdu check",
                              "NE=1,PWE3=3|x\nNE=1,TUNNEL=1|2|a|b|3|c\nNE=1,ATMTD=7|8\nNE=1,VEGROUP=02\nPW=4\n"
                              "NE=1,MIP=0|m\nNE=1,VRF=6\nNE=1,TUNNELTRAIL=a|b\n");
    EXPECT_EQ(ended.out,
              "<stdin>:1:13: PWE3:1 is not a decimal number: \"x\"\n"
              "<stdin>:2:24: TUNNEL has 6 sub-values, not 7\n"
              "<stdin>:3:14: ATMTD has more than 1 sub-value\n"
              "<stdin>:4:14: would be written as \"NE=1,VEGROUP=2\"\n"
              "<stdin>:5:1: would be written as \"NE=-1,PW=4\"\n"
              "<stdin>:6:10: would be written as \"NE=1,MIP=|m\"\n");
}

TEST_F(CheckTest, TheInventoryDecidesWhetherMaintenanceNumbersBelongThere) {
    MakeInventory();
    EXPECT_EQ(Shell("kxdu check --inventory n.db", "NE=1,MD=3|md1\nNE=2,MD=|md1\n").out, "");
    EXPECT_EQ(Shell("kxdu check --inventory n.db", "NE=2,MD=3|md1\nNE=1,MD=|md1\n").out,
              "<stdin>:1:9: would be written as \"NE=2,MD=|md1\", since NE 2 leaves out the numbers of MD and MA\n"
              "<stdin>:2:9: would be written as \"NE=1,MD=0|md1\", since NE 1 has the numbers of MD and MA\n");
}

TEST_F(CheckTest, NamesTheNeTypeOrTheConfigurationItemThatIsTheReason) {
    MakeInventory();
    Configure("NETypeListForSubSlot = \"1911\"\nTelvandaire = 1\n");
    const std::string card = "NE=1,FR=1,S=3,CP=-1,SS=-1,SC=-1\nNE=3,FR=1,S=3,CP=-1\nNE=03,FR=1,S=3,CP=-1\n";
    EXPECT_EQ(Shell("kxdu check --inventory n.db", card).out,
              "<stdin>:1:20: would be written as \"NE=1,FR=1,S=3,CP=-1\", since NE 1 is of NE type 100\n"
              "<stdin>:2:20: would be written as \"NE=3,FR=1,S=3,CP=-1,SS=-1,SC=-1\", since NE 3 is of NE type 1911\n"
              "<stdin>:3:4: would be written as \"NE=3,FR=1,S=3,CP=-1,SS=-1,SC=-1\"\n");
    const std::string port =
        "NE=3,FR=1,S=3,CP=-1,PP=16||1|\nNE=1,FR=1,S=3,CP=-1,SS=-1,SC=-1,PP=16||1|\nNE=1,PP=16||1|\n";
    EXPECT_EQ(Shell("kxdu check --inventory n.db --config config", port).out,
              "<stdin>:1:21: would be written as \"NE=3,FR=1,S=3,CP=-1,SS=-1,SC=-1,PP=16||1|\", since configuration "
              "item NETypeListForSubSlot lists NE type 1911, that of NE 3\n"
              "<stdin>:2:21: would be written as \"NE=1,FR=1,S=3,CP=-1,PP=16||1|\", since configuration item "
              "NETypeListForSubSlot does not list NE type 100, that of NE 1\n"
              "<stdin>:3:6: would be written as \"NE=1,S=0,CP=-1,PP=16||1|\", since configuration item Telvandaire is "
              "1\n");
    EXPECT_EQ(Shell("kxdu check --inventory n.db", "NE=1,S=0,CP=-1,PP=16||1|\n").out, "");
}

TEST_F(CheckTest, LinesThatAreNotTextAreReported) {
    const Ended ended = Shell("kxdu check", std::string("\nNE=\xff\nN\0E=1\n", 12));
    EXPECT_EQ(ended.out, "<stdin>:1: the line is empty\n<stdin>:2:4: not UTF-8\n<stdin>:3:2: NUL byte\n");
}

TEST_F(CheckTest, WithoutAnInventoryChecksWhatItCanAndSaysWhatItLeftOut) {
    const std::string lines =
        "NE=5,FR=1,S=3,CP=-1\nNE=5,FR=1,S=3,CP=-1,SS=-1,SC=-1\nNE=05,FR=1,S=3,CP=-1\nNE=05\nNE=5\nNE=1,MD=3|m\n";
    const Ended ended = Shell("kxdu check", lines);
    EXPECT_EQ(ended.code, 1);
    EXPECT_EQ(ended.out,
              "<stdin>:3:4: would be written as \"NE=5,FR=1,S=3,CP=-1\", or on some NEs as \"NE=5,FR=1,S=3,CP=-1,SS=-1,"
              "SC=-1\"\n"
              "<stdin>:4:4: would be written as \"NE=5\"\n");
    EXPECT_EQ(ended.err,
              "kxdu: 2 problems in 2 of 6 lines\n"
              "kxdu: 3 of 6 lines are right on some NEs only, and there is no inventory to tell which; give one with "
              "--inventory FILE\n");
    EXPECT_EQ(Shell("kxdu check", "NE=5,FR=1,S=3,CP=-1\n").code, 0);
}

TEST_F(CheckTest, LevelsOnlyNeedsNoService) {
    EXPECT_EQ(Shell("KX_INVENTORY=none KX_CONFIG_DIR=none kxdu check --levels-only", "NE=5,FR=1,S=3,CP=-1\n").err, "");
}

TEST_F(CheckTest, OtherFilesEndTheRunAtTheirFirstLine) {
    std::filesystem::create_directory(folder / "out");
    for (const std::string verb : {"check", "stats", "report -o out/page", "decode", "get NE"}) {
        for (const auto& [line, complaint] : std::initializer_list<std::pair<std::string, std::string>>{
                 {"{\"type\":\"NEIndex\"}", "this is JSON, not an identifier; kxdu encode reads records"},
                 {"\"NE=1\"", "this is CSV with quotes, not an identifier"},
                 {"neId,shelfId", "this is a line of column names, not an identifier; kxdu encode reads records"},
                 {"type;neId", "this is a line of column names, not an identifier; kxdu encode reads records"},
                 {"fdn,type,neId", "this is a table as kxdu decode writes it"}}) {
            const Ended ended = Shell("kxdu " + verb, line + "\nNE=1\n");
            EXPECT_EQ(ended.code, 2) << verb << ' ' << line;
            EXPECT_TRUE(ended.err.starts_with("kxdu: <stdin>:1: " + complaint)) << verb << ": " << ended.err;
        }
        const Ended utf16 = Shell("iconv -t UTF-16 | kxdu " + verb, "NE=1\n");
        EXPECT_EQ(utf16.code, 2) << verb;
        EXPECT_TRUE(utf16.err.starts_with("kxdu: <stdin>: is UTF-16 text, not lines of text in UTF-8")) << utf16.err;
    }
    EXPECT_EQ(Shell("kxdu get NE", "fdn\nNE=1\n").out, "\n1\n") << "a head of one column is a wrong line";
}

TEST_F(CheckTest, StrictStopsAfterTheFirstFinding) {
    EXPECT_EQ(Shell("kxdu check --strict", "NE=1,fr=2,S=\nNE=x\n").out,
              "<stdin>:1:6: lower-case letter in the tag \"fr\"\n");
    const Ended ended = Shell("kxdu check --strict -o out", "NE=1\nNE=x\nNE=y\n");
    EXPECT_EQ(ended.err, "kxdu: 1 problem in 1 of 2 lines, and stopped there\n");
    EXPECT_EQ(ReadFile("out"), "<stdin>:2:4: NE is not a decimal number: \"x\"\n");
}

TEST_F(CheckTest, NesThatTheInventoryLacksAreReportedOnce) {
    ASSERT_EQ(Shell("kxdu inventory init n.db").code, 0);
    const Ended ended = Shell("kxdu check --inventory n.db", "NE=5,FR=1,S=3,CP=-1\nNE=5,FR=1,S=4,CP=-1\n");
    EXPECT_EQ(ended.code, 0);
    EXPECT_EQ(ended.err, "kxdu: NE 5 is not in the inventory: treated as NE type 0\n");
}

TEST_F(CheckTest, QuietSaysItByTheExitCodeAlone) {
    for (const char* const option : {"-q", "--quiet"}) {
        const Ended found = Shell(std::string("kxdu check --levels-only ") + option, "NE=5\nXY=1\nXY=2\n");
        EXPECT_EQ(found.code, 1);
        EXPECT_EQ(found.out + found.err, "");
        const Ended good = Shell(std::string("kxdu check --levels-only ") + option, "NE=5\n");
        EXPECT_EQ(good.code, 0);
        EXPECT_EQ(good.out + good.err, "");
    }
    const Ended missing = Shell("kxdu check -q missing.fdn");
    EXPECT_EQ(missing.code, 2);
    EXPECT_NE(missing.err, "") << "a failure is no finding";
}

TEST_F(CheckTest, QuietEndsAtTheFirstFinding) {
    EXPECT_EQ(Shell("{ echo XY=1; yes NE=1; } | kxdu check --levels-only -q").code, 1);
}

TEST_F(CheckTest, SummaryIsOneLine) {
    const Ended found = Shell("kxdu check --levels-only --summary", "NE=5\nXY=1\nXY=2\n");
    EXPECT_EQ(found.code, 1);
    EXPECT_EQ(found.out, "2 problems in 2 of 3 lines\n");
    EXPECT_EQ(found.err, "");
    const Ended good = Shell("kxdu check --summary", "NE=5\n");
    EXPECT_EQ(good.code, 0);
    EXPECT_EQ(good.out, "0 problems in 0 of 1 line\n");
    EXPECT_EQ(Shell("kxdu check --summary --strict -o s && cat s", "NE=5\n").out, "0 problems in 0 of 1 line\n");
    EXPECT_EQ(Shell("kxdu check --summary --strict", "NE=5\nXY=1\nXY=2\n").out,
              "1 problem in 1 of 2 lines, and stopped there\n");
}

TEST_F(CheckTest, ColoursTheirPlaces) {
    EXPECT_EQ(Shell("kxdu check --color always", "XY=1\n").out, "\x1b[36m<stdin>:1:1:\x1b[0m unknown tag \"XY\"\n");
    EXPECT_EQ(Shell("kxdu check", "XY=1\n").out, "<stdin>:1:1: unknown tag \"XY\"\n");
    const std::string onTerminal = "echo XY=1 >a; script -qec \"'" KXDU_PROGRAM "' check a\" /dev/null";
    EXPECT_NE(Shell(onTerminal).out.find("\x1b[36ma:1:1:"), std::string::npos);
    EXPECT_EQ(Shell("export NO_COLOR=1; " + onTerminal).out.find("\x1b["), std::string::npos);
    EXPECT_EQ(Shell("FORCE_COLOR=1 kxdu check --color never", "XY=1\n").out.find("\x1b["), std::string::npos);
}

TEST_F(CheckTest, HasNoRejects) {
    EXPECT_EQ(Shell("kxdu check --rejects r", "NE=1\n").code, 2);
    EXPECT_EQ(Shell("kxdu check --help").out.find("--rejects"), std::string::npos);
}

}  // namespace
}  // namespace NS_KX::NS_KXDU
