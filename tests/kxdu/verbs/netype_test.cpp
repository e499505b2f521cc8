#include "kxdu/program.h"

namespace {

class NeTypeVerb : public ProgramTest {
protected:
    void MakeInventory() const {
        std::filesystem::create_directory(folder / "csv");
        WriteFile("csv/ne.csv", "ne_id,ne_type,multi_sub_shelf,oam_number_omitted\n5,1912,0,0\n70,2701,1,0\n");
        WriteFile("csv/ne_type.csv", "ne_type,name,ip_service,klv\n1912,\"PTN, grün\",1,0\n2701,OTN,0,1\n");
        std::string members = "cache,domain,ne_type\n";
        for (const char* const domain : {"transmission", "router and metro", "access"}) {
            members += "NE_TYPE_LIST," + std::string(domain) + ",300\n";
        }
        for (const char* const domain : {"PTN", "PTNDMT", "MSTP", "IPKLV", "KLV6XX", "OTN", "WDM", "OTN_NA", "WDM_NA",
                                         "OTN4750NE", "BIGSLOTNE", "ACCBITSNE", "MultiShelfTypeNE"}) {
            members += "EQUIPMENT_TYPE," + std::string(domain) + ",300\n";
        }
        WriteFile("csv/domain_member.csv", members + "NE_TYPE_LIST,transmission,2701\nEQUIPMENT_TYPE,OTN,2701\n");
        const Ended ended = Shell("kxdu inventory init n.db && kxdu inventory import n.db csv");
        ASSERT_EQ(ended.code, 0) << ended.err;
    }
};

TEST_F(NeTypeVerb, ATableHasALineForEachQuestion) {
    MakeInventory();
    const Ended ended = Shell("kxdu ne-type 1912 2701 300 --ne 70 --inventory n.db | sed 's/  */ /g'");
    EXPECT_EQ(ended.code, 0) << ended.err;
    EXPECT_EQ(
        ended.out,
        "neType 1912 2701 300 yes if\n"
        "---------------------- --------- ---- --- ------------------------------------------------------------------\n"
        "name PTN, grün OTN -\n"
        "IsPTN41 yes no no it is 1911, 1912 or 1913\n"
        "IsPTN31 no no no it is 1335\n"
        "IsPTN470 no no no it is 1888\n"
        "IsKLVByNEType no no no it is 1887, 1895, 1908, 1947, 1948, 1971, 1972, 1978, 1982 or 1987\n"
        "IsRouteNE no no yes in list router and metro\n"
        "IsTransNE no yes yes in list transmission\n"
        "IsAccessNE no no yes in list access\n"
        "IsPTNClasssNE no no yes in list PTN\n"
        "IsPTNDMTNE no no yes in list PTNDMT\n"
        "IsPTNNE no no yes in list PTN or PTNDMT\n"
        "IsMSTPNE no no yes in list MSTP\n"
        "IsIPMSTPNE no no yes in list MSTP\n"
        "IsIPKLVNE no no yes in list IPKLV\n"
        "IsKLV600NE no no yes in list KLV6XX\n"
        "IsOTNNE no yes yes in list OTN\n"
        "IsWDMNE no no yes in list WDM\n"
        "IsOTN_NA no no yes in list OTN_NA\n"
        "IsWDM_NA no no yes in list WDM_NA\n"
        "IsNAWDMByNEType no no yes in list OTN_NA or WDM_NA\n"
        "IsOTN4750NE no no yes in list OTN4750NE\n"
        "IsBIGSLOTNE no no yes in list BIGSLOTNE\n"
        "IsAccBitsNE no no yes in list ACCBITSNE\n"
        "IsMultiShelfTypeNE no no yes in list MultiShelfTypeNE\n"
        "IsIPServiceNE yes yes yes in list PTN31 or OTN, or ip_service is 1\n"
        "IsKLVNE no yes no klv is 1\n"
        "IsTransMultiSubShelfNE yes yes yes multi_sub_shelf of the NE is 1\n");
}

TEST_F(NeTypeVerb, EachDomainListAnswersItsOwnQuestions) {
    MakeInventory();
    const auto answersWith = [&](const std::string& member) {
        WriteFile("csv/domain_member.csv", "cache,domain,ne_type\n" + member + ",300\n");
        return Shell(
                   "kxdu inventory import n.db csv >import.txt && kxdu ne-type 300 --inventory n.db |"
                   " awk '$2 == \"yes\" { printf \"%s \", $1 }'")
            .out;
    };
    EXPECT_EQ(answersWith("NE_TYPE_LIST,router and metro"), "IsRouteNE ");
    EXPECT_EQ(answersWith("NE_TYPE_LIST,transmission"), "IsTransNE ");
    EXPECT_EQ(answersWith("NE_TYPE_LIST,access"), "IsAccessNE ");
    EXPECT_EQ(answersWith("EQUIPMENT_TYPE,PTN"), "IsPTNClasssNE IsPTNNE ");
    EXPECT_EQ(answersWith("EQUIPMENT_TYPE,PTNDMT"), "IsPTNDMTNE IsPTNNE ");
    EXPECT_EQ(answersWith("EQUIPMENT_TYPE,MSTP"), "IsMSTPNE IsIPMSTPNE ");
    EXPECT_EQ(answersWith("EQUIPMENT_TYPE,IPKLV"), "IsIPKLVNE ");
    EXPECT_EQ(answersWith("EQUIPMENT_TYPE,KLV6XX"), "IsKLV600NE ");
    EXPECT_EQ(answersWith("EQUIPMENT_TYPE,OTN"), "IsOTNNE IsIPServiceNE ");
    EXPECT_EQ(answersWith("EQUIPMENT_TYPE,WDM"), "IsWDMNE ");
    EXPECT_EQ(answersWith("EQUIPMENT_TYPE,OTN_NA"), "IsOTN_NA IsNAWDMByNEType ");
    EXPECT_EQ(answersWith("EQUIPMENT_TYPE,WDM_NA"), "IsWDM_NA IsNAWDMByNEType ");
    EXPECT_EQ(answersWith("EQUIPMENT_TYPE,OTN4750NE"), "IsOTN4750NE ");
    EXPECT_EQ(answersWith("EQUIPMENT_TYPE,BIGSLOTNE"), "IsBIGSLOTNE ");
    EXPECT_EQ(answersWith("EQUIPMENT_TYPE,ACCBITSNE"), "IsAccBitsNE ");
    EXPECT_EQ(answersWith("EQUIPMENT_TYPE,MultiShelfTypeNE"), "IsMultiShelfTypeNE ");
    EXPECT_EQ(answersWith("EQUIPMENT_TYPE,PTN31"), "IsIPServiceNE ");
}

TEST_F(NeTypeVerb, ProgramsGetARowForEachType) {
    MakeInventory();
    const Ended ended = Shell("KX_INVENTORY=n.db kxdu ne-type 2701 --format jsonl");
    EXPECT_EQ(ended.code, 0) << ended.err;
    EXPECT_TRUE(ended.out.starts_with(R"({"neType":2701,"name":"OTN","IsPTN41":false,)")) << ended.out;
    EXPECT_TRUE(
        ended.out.ends_with("\"IsKLVNE\":true,\"IsTransMultiSubShelfNE\":null,"
                            "\"because\":\"IsTransNE: list transmission; IsOTNNE: list OTN; IsIPServiceNE: "
                            "list OTN; IsKLVNE: klv\"}\n"))
        << ended.out;
}

TEST_F(NeTypeVerb, SaysWhichNumberListOrColumnMakesAnAnswerYes) {
    MakeInventory();
    EXPECT_EQ(Shell("kxdu ne-type 1912 --ne 70 --inventory n.db --format csv | tail -n 1 | sed 's/.*,//'").out,
              "IsPTN41: number 1912; IsIPServiceNE: ip_service; IsTransMultiSubShelfNE: multi_sub_shelf\n");
    EXPECT_NE(Shell("kxdu ne-type 300 --inventory n.db --format csv").out.find("; IsPTNNE: list PTN and PTNDMT;"),
              std::string::npos);
}

TEST_F(NeTypeVerb, TheQuestionAboutOneNeNeedsIt) {
    MakeInventory();
    const auto last = [&](const std::string& ne) {
        return Shell("kxdu ne-type 2701 --inventory n.db " + ne + " | tail -n 1 | sed 's/  */ /g; s/ multi_.*//'").out;
    };
    EXPECT_EQ(last(""), "IsTransMultiSubShelfNE needs --ne\n");
    EXPECT_EQ(last("--ne 5"), "IsTransMultiSubShelfNE no\n");
    EXPECT_EQ(last("--ne 70"), "IsTransMultiSubShelfNE yes\n");
    EXPECT_EQ(last("--ne 71"), "IsTransMultiSubShelfNE no\n");
}

TEST_F(NeTypeVerb, AnNeThatTheInventoryLacksIsReported) {
    MakeInventory();
    for (const char* const format : {"table", "csv"}) {
        const Ended ended = Shell("kxdu ne-type 2701 1912 --ne 71 --inventory n.db --format " + std::string(format));
        EXPECT_EQ(ended.code, 0);
        EXPECT_EQ(ended.err, "kxdu: NE 71 is not in the inventory: IsTransMultiSubShelfNE answers no\n");
    }
    EXPECT_EQ(Shell("kxdu ne-type 2701 --ne 5 --inventory n.db").err, "");
    EXPECT_EQ(Shell("kxdu ne-type 2701 --inventory n.db").err, "");
    EXPECT_EQ(Shell("kxdu ne-type 1912 --ne 71").err, "") << "without an inventory no NE is missing from it";
}

TEST_F(NeTypeVerb, WithoutAnInventoryOnlyFixedNumbersAnswer) {
    const Ended ended = Shell("kxdu ne-type 1912 1335 1888 1887 --ne 5 | sed 's/  */ /g'");
    EXPECT_TRUE(ended.out.starts_with(
        "neType 1912 1335 1888 1887 yes if\n"
        "---------------------- ---- ---- ---- ---- "
        "------------------------------------------------------------------\n"
        "name - - - -\n"
        "IsPTN41 yes no no no it is 1911, 1912 or 1913\n"
        "IsPTN31 no yes no no it is 1335\n"
        "IsPTN470 no no yes no it is 1888\n"
        "IsKLVByNEType no no no yes it is 1887, 1895, 1908, 1947, 1948, 1971, 1972, 1978, 1982 or 1987\n"
        "IsRouteNE - - - - in list router and metro\n"))
        << ended.out;
    EXPECT_EQ(Shell("kxdu ne-type 1912 | tail -n 2").out,
              "\n-: needs an inventory; give one with --inventory FILE or in KX_INVENTORY\n");
    EXPECT_EQ(Shell("kxdu ne-type 1912 --format csv | wc -l").out, "2\n") << "programs get rows and no footer";
    EXPECT_EQ(Shell("kxdu ne-type 1912").code, 0);
}

TEST_F(NeTypeVerb, ATypeOfWhichNothingIsKnownExitsWithOne) {
    MakeInventory();
    EXPECT_EQ(Shell("kxdu ne-type 1912 301 --inventory n.db").code, 1);
    EXPECT_EQ(Shell("kxdu ne-type 2701").code, 1) << "only the inventory knows this type";
}

TEST_F(NeTypeVerb, ExitsWithTwoOnWrongArguments) {
    for (const char* const arguments : {"", "x", "65536", "1 --ne x", "1 --inventory missing.db"}) {
        const Ended ended = Shell(std::string("kxdu ne-type ") + arguments);
        EXPECT_EQ(ended.code, 2) << arguments;
        EXPECT_EQ(ended.out, "") << arguments;
    }
}

TEST_F(NeTypeVerb, TheTypeMayBeThatOfAnNe) {
    MakeInventory();
    const std::string arguments = "--ne 70 --inventory n.db --format csv";
    EXPECT_EQ(Shell("kxdu ne-type " + arguments).out, Shell("kxdu ne-type 2701 " + arguments).out);
    EXPECT_EQ(
        Shell("kxdu ne-type --ne 70").err,
        "kxdu: the type of NE 70 stands in an inventory: give one with --inventory FILE or in KX_INVENTORY, or give "
        "the type itself\n");
    EXPECT_EQ(Shell("kxdu ne-type --ne 71 --inventory n.db").err, "kxdu: n.db: NE 71 is not in the inventory\n");
    EXPECT_EQ(Shell("kxdu ne-type").err,
              "kxdu: no NE type is given: name NE types, such as 1912, or an NE with --ne\n");
}

TEST_F(NeTypeVerb, ANarrowTerminalGetsNarrowTables) {
    const auto onTerminal = [this](int columns, const std::string& arguments) {
        return Shell("script -qec \"stty cols " + std::to_string(columns) + "; '" KXDU_PROGRAM "' " + arguments +
                     "\" /dev/null | tr -d '\\r'")
            .out;
    };
    const std::string wrapped = onTerminal(60, "ne-type 1912");
    EXPECT_NE(wrapped.find("\nIsKLVByNEType           no    it is 1887, 1895, 1908, 1947,\n"
                           "                              1948, 1971, 1972, 1978, 1982\n"
                           "                              or 1987\n"),
              std::string::npos)
        << wrapped;
    const std::string blocks = onTerminal(60, "fb 810");
    EXPECT_TRUE(blocks.starts_with("asked            810\nfbType           810\nname             -\n")) << blocks;
    EXPECT_EQ(onTerminal(200, "fb 810"), Shell("kxdu fb 810").out);
}

}  // namespace
