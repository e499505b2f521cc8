#include "catalogue/kinds.h"
#include "kxdu/program.h"

namespace {

using TypesVerb = ProgramTest;

TEST_F(TypesVerb, ListsTheFieldsOfAType) {
    const Ended ended = Shell("kxdu types CardIndex");
    EXPECT_EQ(ended.code, 0) << ended.err;
    EXPECT_EQ(ended.out,
              "type       field     range                      default  meaning\n"
              "---------  --------  -------------------------  -------  --------------------------------\n"
              "CardIndex  reserved  -2147483648 to 2147483647  0        not used by readers and writers\n"
              "CardIndex  neId      -2147483648 to 2147483647  -1       NE number, level NE\n"
              "CardIndex  shelfId   -2147483648 to 2147483647  -1       shelf number, level FR; -1: none\n"
              "CardIndex  slotId    -2147483648 to 2147483647  -1       slot number, level S; -1: none\n");
}

TEST_F(TypesVerb, ShowsTextsAndFlags) {
    EXPECT_EQ(Shell("kxdu types PortIndex --format csv | grep -e Label -e Logical").out,
              "PortIndex,portLabel,\"text without \"\",\"\" and \"\"|\"\"\",\"\"\"\"\"\",\"port name, PP:3 or LP:3\"\n"
              "PortIndex,isLogical,true or false,false,\"whether the level of the port is LP, not PP\"\n");
}

TEST_F(TypesVerb, ListsEveryFieldOfEveryTypeWithAMeaning) {
    std::size_t fields = 0;
    for (const NS_KX::Kind* const kind : NS_KX::AllKinds()) {
        fields += kind->layout.fields.size();
        for (const NS_KX::Field& field : kind->layout.fields) {
            EXPECT_NE(field.meaning, "") << kind->type << ' ' << field.name;
        }
    }
    EXPECT_EQ(Shell("kxdu types --format jsonl | wc -l").out, std::to_string(fields) + "\n");
}

TEST_F(TypesVerb, TakesATypeInAnyCaseAndSuggestsTheNearest) {
    EXPECT_EQ(Shell("kxdu types cardindex").out, Shell("kxdu types CardIndex").out);
    EXPECT_EQ(Shell("kxdu types PORTINDEX:netype").out, Shell("kxdu types PortIndex:NEType").out);
    EXPECT_EQ(Shell("kxdu decode --as shelfindex --fields type --format csv", "NE=5\n").out, "type\nShelfIndex\n");
    EXPECT_EQ(Shell("kxdu types PortIndx").err, "kxdu: unknown type \"PortIndx\"; did you mean PortIndex?\n");
    EXPECT_EQ(Shell("kxdu types port").err, "kxdu: unknown type \"port\"; did you mean PortIndex?\n");
    EXPECT_EQ(Shell("kxdu encode --as Shelf", "").err,
              "kxdu: --as: unknown type \"Shelf\"; did you mean ShelfIndex?\n");
}

TEST_F(TypesVerb, AnUnknownTypeIsAUsageError) {
    for (const char* const type : {"Nonsense", "''"}) {
        const Ended ended = Shell(std::string("kxdu types ") + type);
        EXPECT_EQ(ended.code, 2) << type;
        EXPECT_EQ(ended.out, "") << type;
        EXPECT_NE(ended.err.find("; choose one of\n  OSIndex ONEIndex "), std::string::npos) << ended.err;
    }
}

}  // namespace
