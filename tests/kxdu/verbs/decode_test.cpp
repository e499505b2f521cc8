#include "kxdu/program.h"

namespace NS_KX::NS_KXDU {
namespace {

using DecodeTest = ProgramTest;

constexpr auto NE_5 = "{\"fdn\":\"NE=5\",\"type\":\"NEIndex\",\"record\":{\"reserved\":0,\"neId\":5}}\n";

TEST_F(DecodeTest, ReadsStandardInputAndWritesJsonLines) {
    const Ended ended = Shell("kxdu decode", "NE=5\n");
    EXPECT_EQ(ended.code, 0);
    EXPECT_EQ(ended.out, NE_5);
    EXPECT_EQ(ended.err, "");
}

TEST_F(DecodeTest, ReadsFilesInTheirOrder) {
    WriteFile("a", "NE=1");
    WriteFile("b", "NE=2\n");
    EXPECT_EQ(Shell("kxdu decode --format tsv --as NEIndex a - b", "NE=3\n").out,
              "fdn\ttype\treserved\tneId\nNE=1\tNEIndex\t0\t1\nNE=3\tNEIndex\t0\t3\nNE=2\tNEIndex\t0\t2\n");
}

TEST_F(DecodeTest, RejectedLinesAreNamedAndTheRunGoesOn) {
    const Ended ended = Shell("kxdu decode", "XY=1\nNE=5\n");
    EXPECT_EQ(ended.code, 1);
    EXPECT_EQ(ended.out, NE_5);
    EXPECT_EQ(ended.err, "<stdin>:1: no kind of identifier ends in the level \"XY\"\nkxdu: 1 rejected in 2 lines\n");
}

TEST_F(DecodeTest, RejectedLinesCanGoToAFile) {
    const Ended ended = Shell("kxdu decode --rejects rejects -o out", "XY=1\nNE=5\n");
    EXPECT_EQ(ended.code, 1);
    EXPECT_EQ(ended.err, "kxdu: 1 rejected in 2 lines\n");
    EXPECT_EQ(ReadFile("rejects"), "<stdin>:1: no kind of identifier ends in the level \"XY\"\n");
    EXPECT_EQ(ReadFile("out"), NE_5);
}

TEST_F(DecodeTest, StrictStopsAtTheFirst) {
    const Ended ended = Shell("kxdu decode --strict", "NE=5\nXY=1\nNE=6\nXY=2\n");
    EXPECT_EQ(ended.code, 1);
    EXPECT_EQ(ended.out, NE_5);
    EXPECT_EQ(
        ended.err,
        "<stdin>:2: no kind of identifier ends in the level \"XY\"\nkxdu: 1 rejected in 2 lines, and stopped there\n");
}

TEST_F(DecodeTest, ATypeCanBeForced) {
    EXPECT_EQ(Shell("kxdu decode --as NEIndex", "NE=5,XY=1\n").out,
              "{\"fdn\":\"NE=5,XY=1\",\"type\":\"NEIndex\",\"record\":{\"reserved\":0,\"neId\":5}}\n");
    const Ended ended = Shell("kxdu decode --as Nothing");
    EXPECT_EQ(ended.code, 2);
    EXPECT_NE(ended.err.find("unknown type \"Nothing\"; choose one of\n  OSIndex ONEIndex "), std::string::npos)
        << ended.err;
}

TEST_F(DecodeTest, ALineTooLongForEncodeIsRejected) {
    // A service's JSON line holds the text twice: its record keeps the whole text, too.
    const std::string frame =
        R"({"fdn":"","type":"ServiceIndex","record":{"neId":-1,"resId":"","svcId":0,"svcType":0}})";
    std::string longest = "LSP=";
    longest.append(((std::size_t{1} << 20U) - frame.size()) / 2 - longest.size(), 'x');
    WriteFile("in", longest + "\n" + longest + "y\n");
    const Ended ended = Shell("kxdu decode in | kxdu encode -o out");
    EXPECT_EQ(ended.err, "in:2: the JSON line would be longer than 1 MiB\nkxdu: 1 rejected in 2 lines\n");
    EXPECT_EQ(ReadFile("out"), longest + "\n");
    EXPECT_EQ(Shell("kxdu decode --format csv in -o csv").code, 0) << "encode does not read CSV";
}

constexpr auto SOME = "NE=5\nNE=5,FR=1,S=3,CP=-1,PP=16||7|a\nNE=5,S=3,LP=16||8|b\nNE=5,FR=1,S=3\n";

TEST_F(DecodeTest, TypesAndKindsCanBeChosen) {
    const std::string decode = "kxdu decode --format csv --fields type,neId --only ";
    EXPECT_EQ(Shell(decode + "PortIndex,NEIndex", SOME).out, "type,neId\nNEIndex,5\nPortIndex,5\n");
    EXPECT_EQ(Shell(decode + "port", SOME).out, "type,neId\nPortIndex,5\nPortIndex:NEType,5\n");
    EXPECT_TRUE(Shell("kxdu decode --format csv --only ne").out.starts_with("fdn,type,oneId,neId,reserved\n"));
    EXPECT_EQ(Shell(decode + "Port,SLOTINDEX", SOME).out, Shell(decode + "port,SlotIndex", SOME).out);
    const Ended wrong = Shell("kxdu decode --only Prt", SOME);
    EXPECT_EQ(wrong.code, 2);
    EXPECT_EQ(wrong.err, "kxdu: --only: unknown type or kind \"Prt\"; did you mean port?\n");
    EXPECT_EQ(Shell("kxdu decode --only PortIndex:LoopBack", SOME).code, 2) << "no line is read as such by itself";
    EXPECT_EQ(Shell("kxdu decode --only port --as PortIndex", SOME).code, 2);
}

TEST_F(DecodeTest, FieldsCanBeChosen) {
    const std::string decode = "kxdu decode --only port,slot --fields portId,kind,neId --format ";
    EXPECT_EQ(Shell(decode + "tsv", SOME).out, "portId\tkind\tneId\n7\tport\t5\n8\tport\t5\n\tslot\t5\n");
    EXPECT_EQ(Shell(decode + "jsonl", SOME).out,
              "{\"type\":\"PortIndex\",\"kind\":\"port\",\"record\":{\"neId\":5,\"portId\":7}}\n"
              "{\"type\":\"PortIndex:NEType\",\"kind\":\"port\",\"record\":{\"neId\":5,\"portId\":8}}\n"
              "{\"type\":\"SlotIndex\",\"kind\":\"slot\",\"record\":{\"neId\":5}}\n");
    const std::string table = Shell(decode + "table", SOME).out;
    EXPECT_NE(table.find("  neId=5 portId=7\n"), std::string::npos) << table;
    for (const auto& [fields, complaint] : std::initializer_list<std::pair<std::string, std::string>>{
             {"neid", "no record has a field \"neid\"; did you mean neId?"},
             {"portId --only ne", "no record of the chosen types has a field \"portId\""},
             {"neId,neId", "\"neId\" is named twice"}}) {
        const Ended ended = Shell("kxdu decode --fields " + fields, SOME);
        EXPECT_EQ(ended.code, 2) << fields;
        EXPECT_TRUE(ended.err.starts_with("kxdu: --fields: " + complaint)) << ended.err;
    }
}

TEST_F(DecodeTest, LinesWithOddTagsAreCounted) {
    const std::string odd = "NE=5\n NE=4,FR=1\nne=9,FR=1\nFR=1,NE=3\n";
    const Ended lenient = Shell("kxdu decode -o out", odd);
    EXPECT_EQ(lenient.code, 0);
    EXPECT_EQ(lenient.err,
              "kxdu: 3 lines have unknown tags or levels out of place, first at <stdin>:2:1: blank in the tag \" NE\"; "
              "see kxdu check, or reject them by --strict-tags\n");
    const Ended strict = Shell("kxdu decode --strict-tags", odd);
    EXPECT_EQ(strict.code, 1);
    EXPECT_EQ(strict.out, NE_5);
    EXPECT_EQ(strict.err,
              "<stdin>:2:1: blank in the tag \" NE\"\n<stdin>:3:1: lower-case letter in the tag \"ne\"\n"
              "<stdin>:4:6: level \"NE\" stands after \"FR\", but belongs before it\n"
              "kxdu: 3 rejected in 4 lines\n");
}

TEST_F(DecodeTest, FilesOfAnotherKindAreRefused) {
    for (const auto& [text, complaint] : std::initializer_list<std::pair<std::string, std::string>>{
             {"{\"fdn\":\"NE=5\"}\nNE=5\n", "<stdin>:1: this is JSON, not an identifier; "},
             {"[\n", "<stdin>:1: this is JSON, not an identifier; "},
             {"\"NE=5,FR=1\"\n", "<stdin>:1: this is CSV with quotes, not an identifier; "},
             {"fdn,type,neId\n", "<stdin>:1: this is a table as kxdu decode writes it, not an identifier; "},
             {"<?xml?>\n", "<stdin>:1: this is XML or HTML, not an identifier; "},
             {"PK\x03\x04\n", "<stdin>: is a zip archive or a spreadsheet, not lines of text in UTF-8; "},
             {"\xFF\xFEN\n", "<stdin>: is UTF-16 text, not lines of text in UTF-8; "}}) {
        for (const std::string verb : {"decode", "get NE", "check --levels-only"}) {
            const Ended ended = Shell("kxdu " + verb + " -o out", text);
            EXPECT_EQ(ended.code, 2) << verb << text;
            EXPECT_TRUE(ended.err.starts_with("kxdu: " + complaint)) << ended.err;
            EXPECT_FALSE(Exists("out")) << text;
        }
    }
}

TEST_F(DecodeTest, RepeatedMessagesAreCounted) {
    const std::string input = "{ yes XX=1 | head -n 1000; echo NE=5,; } | ";
    const Ended ended = Shell(input + "kxdu decode");
    EXPECT_TRUE(
        ended.err.ends_with("<stdin>:10: no kind of identifier ends in the level \"XX\"\n"
                            "kxdu: 991 more such messages are not shown; --rejects FILE takes all\n"
                            "kxdu: 1001 rejected in 1001 lines\n"))
        << ended.err;
    EXPECT_EQ(Shell(input + "kxdu decode --rejects all; wc -l <all").out, "1001\n");
}

TEST_F(DecodeTest, LoopBackPortsNeedAConfiguration) {
    const Ended without = Shell("kxdu decode --as PortIndex:LoopBack", "NE=5,PP=16||1|a\n");
    EXPECT_EQ(without.code, 2);
    EXPECT_EQ(without.out, "") << "not even half a line";
    EXPECT_TRUE(without.err.starts_with("kxdu: identifiers of this type cannot be read without a configuration"))
        << without.err;
    EXPECT_NE(without.err.find("--config DIR"), std::string::npos) << without.err;
    Configure("Telvandaire = 1\n");
    const Ended with = Shell("KX_CONFIG_DIR=config kxdu decode --as PortIndex:LoopBack", "NE=5,PP=16||1|a\n");
    EXPECT_EQ(with.code, 0) << with.err;
    EXPECT_NE(with.out.find("\"portLabel\":\"a\""), std::string::npos) << with.out;
}

TEST_F(DecodeTest, TheConfigurationCounts) {
    Configure("Telvandaire = 1\n");
    const std::string port = "NE=5,FR=1,S=0,CP=-1,PP=|||\n";
    EXPECT_NE(Shell("kxdu decode", port).out.find("\"slotId\":0"), std::string::npos);
    EXPECT_NE(Shell("kxdu decode --config config", port).out.find("\"slotId\":-1"), std::string::npos);
}

TEST_F(DecodeTest, AMissingInputIsNamed) {
    const Ended ended = Shell("kxdu decode -o out missing");
    EXPECT_EQ(ended.code, 2);
    EXPECT_EQ(ended.err, "kxdu: missing: No such file or directory\n");
    EXPECT_EQ(Files(), 0);
}

TEST_F(DecodeTest, AMissingOutputFolderIsAnOutputError) {
    EXPECT_EQ(Shell("kxdu decode -o missing/out", "NE=5\n").code, 3);
}

TEST_F(DecodeTest, AnOutputThatIsTheInputIsReplacedWhenItIsComplete) {
    WriteFile("a", "NE=5\n");
    EXPECT_EQ(Shell("kxdu decode a -o a").code, 0);
    EXPECT_EQ(ReadFile("a"), NE_5);
}

TEST_F(DecodeTest, RejectedLinesNeverReplaceWhatIsReadOrWritten) {
    const std::string text = "NE=5\nXY=1\n";
    WriteFile("a", text);
    std::filesystem::create_hard_link(folder / "a", folder / "link");
    for (const char* const arguments : {"a --rejects a", "a --rejects link -o out", "--rejects a <a",
                                        "a -o b --rejects b", "a --rejects b >b", "a -o - --rejects b >b"}) {
        const Ended ended = Shell(std::string("kxdu decode ") + arguments);
        EXPECT_EQ(ended.code, 2) << arguments;
        EXPECT_NE(ended.err.find(": the rejected lines would replace the "), std::string::npos) << ended.err;
        EXPECT_EQ(ReadFile("a"), text) << arguments;
    }
    EXPECT_EQ(Shell("kxdu decode a -o /dev/null --rejects /dev/null").code, 1);
    EXPECT_EQ(Shell("kxdu decode a -o new --rejects ./new").code, 2) << "not even a file that does not exist yet";
    EXPECT_FALSE(Exists("new"));
    for (const char* const arguments : {"--rejects -", "-o - --rejects /dev/stdout", "-o /dev/stdout --rejects -"}) {
        const Ended ended = Shell(std::string("kxdu decode a ") + arguments + " | cat");
        EXPECT_EQ(ended.out, "") << arguments;
        EXPECT_EQ(ended.err, "kxdu: --rejects: the output goes to standard output too; name a file for one of them\n");
    }
    EXPECT_EQ(Shell("kxdu decode a -o out --rejects -").out, "a:2: no kind of identifier ends in the level \"XY\"\n");
}

TEST_F(DecodeTest, WhatStandsInTheFilesOfTheStreamsStays) {
    EXPECT_EQ(Shell("{ echo header; echo NE=5 | kxdu decode -o /dev/stdout; echo footer; } >all").code, 0);
    EXPECT_EQ(ReadFile("all"), std::string("header\n") + NE_5 + "footer\n");
    WriteFile("log", "old\n");
    EXPECT_EQ(Shell("echo XY=1 | kxdu decode --rejects /dev/stderr 2>>log").code, 1);
    EXPECT_EQ(ReadFile("log"),
              "old\n<stdin>:1: no kind of identifier ends in the level \"XY\"\n"
              "kxdu: 1 rejected in 1 line\n");
}

// An empty name usually comes from an unset shell variable.
TEST_F(DecodeTest, EmptyNamesAreRefused) {
    for (const char* const arguments :
         {"decode --output", "decode --rejects", "decode --as", "decode --config", "encode --inventory"}) {
        const Ended ended = Shell(std::string("kxdu ") + arguments + " ''", "NE=5\n");
        EXPECT_EQ(ended.code, 2) << arguments;
        EXPECT_EQ(ended.out, "") << arguments;
        EXPECT_NE(ended.err.find(": is empty\n"), std::string::npos) << ended.err;
    }
    EXPECT_EQ(Shell("KX_INVENTORY= KX_CONFIG_DIR= kxdu decode", "NE=5\n").out, NE_5);
}

TEST_F(DecodeTest, StandardOutputMustNotBeTheInput) {
    WriteFile("a", "NE=5\n");
    const Ended ended = Shell("kxdu decode a >>a");
    EXPECT_EQ(ended.code, 2);
    EXPECT_EQ(ended.err, "kxdu: a: is standard output too; write to it with -o\n");
    EXPECT_EQ(ReadFile("a"), "NE=5\n");
}

TEST_F(DecodeTest, AByteOrderMarkIsSkipped) {
    EXPECT_EQ(Shell("kxdu decode", "\xEF\xBB\xBFNE=5\n").out, NE_5);
    EXPECT_EQ(Shell("{ printf '\\357\\273'; sleep 0.05; printf '\\277NE=5\\n'; } | kxdu decode").out, NE_5);
}

TEST_F(DecodeTest, ALinkStillLeadsToItsFile) {
    WriteFile("real", "old");
    std::filesystem::create_symlink("real", folder / "link");
    EXPECT_EQ(Shell("kxdu decode -o link", "NE=5\n").code, 0);
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "link"));
    EXPECT_EQ(ReadFile("real"), NE_5);
}

TEST_F(DecodeTest, LinesAreAnsweredAsTheyArrive) {
    const Ended ended = Shell(
        "mkfifo in; kxdu decode in >out & exec 3>in; echo NE=5 >&3;"
        " for try in $(seq 500); do [ -s out ] && break; sleep 0.01; done; cat out; exec 3>&-; wait");
    EXPECT_EQ(ended.out, NE_5) << ended.err;
}

TEST_F(DecodeTest, ExitsWithTwoOnWrongArguments) {
    for (const auto& [arguments, complaint] : std::initializer_list<std::pair<const char*, const char*>>{
             {"nonsense", "kxdu: unknown verb \"nonsense\""},
             {"-v", "kxdu: unknown option \"-v\""},
             {"decod", "kxdu: unknown verb \"decod\"; did you mean decode?"},
             {"list", "kxdu: unknown verb \"list\"; did you mean inventory list?"},
             {"--inventory x decode", "kxdu: --inventory stands before the verb; options go after it"},
             {"--inventory=x decode", "kxdu: --inventory=x stands before the verb; options go after it"},
             {"inventory imprt", "kxdu: unknown verb \"imprt\"; did you mean import?"},
             {"inventory nonsense", "kxdu: unknown verb \"nonsense\"; choose one of init, import, export, list"},
             {"decode --nonsense", "kxdu: unknown option \"--nonsense\""},
             {"decode --nonsense=x", "kxdu: unknown option \"--nonsense\""},
             {"decode -X", "kxdu: unknown option \"-X\""},
             {"decode --formt csv", "kxdu: unknown option \"--formt\"; did you mean --format?"},
             {"decode --out=x", "kxdu: unknown option \"--out\"; did you mean --output?"},
             {"decode -format csv", "kxdu: unknown option \"-format\"; did you mean --format?"},
             {"inventory list --fromat csv x.db", "kxdu: unknown option \"--fromat\"; did you mean --format?"},
             {"--versoin", "kxdu: unknown option \"--versoin\"; did you mean --version?"},
             {"decode --format xml", "kxdu: --format: \"xml\" is not one of jsonl, csv, tsv, table"},
             {"decode --format 1", "kxdu: --format: \"1\" is not one of jsonl, csv, tsv, table"},
             {"decode --jobs 0", "kxdu: --jobs: \"0\" is not a number from 1 to 256"},
             {"decode --jobs 4294967297", "kxdu: --jobs: \"4294967297\" is not a number from 1 to 256"}}) {
        const Ended ended = Shell(std::string("kxdu ") + arguments);
        EXPECT_EQ(ended.code, 2) << arguments;
        EXPECT_EQ(ended.err.substr(0, ended.err.find('\n')), complaint);
    }
    EXPECT_EQ(Shell("kxdu decode --config missing").code, 2);
}

TEST_F(DecodeTest, JsonIsAnotherNameForJsonLines) {
    EXPECT_EQ(Shell("kxdu decode --format json", "NE=5\n").out, NE_5);
}

TEST_F(DecodeTest, NeedsNoInventory) {
    EXPECT_EQ(Shell("KX_INVENTORY=missing kxdu decode", "NE=5\n").out, NE_5);
    EXPECT_EQ(Shell("kxdu decode --inventory missing", "NE=5\n").out, NE_5) << "all verbs take the option";
}

TEST_F(DecodeTest, HelpAndVersionAreAnswers) {
    EXPECT_EQ(Shell("kxdu --version").code, 0);
    EXPECT_TRUE(Shell("kxdu --version").out.starts_with("kxdu "));
    for (const std::string verb : {"decode", "encode", "check", "get"}) {
        const Ended ended = Shell("kxdu " + verb + " --help");
        EXPECT_EQ(ended.code, 0);
        EXPECT_NE(ended.out.find("Examples:\n"), std::string::npos) << verb;
        EXPECT_NE(ended.out.find("Exit code:"), std::string::npos) << verb;
    }
}

TEST_F(DecodeTest, ThereIsNoProgressBarWithoutATerminal) {
    std::string text;
    for (int ne = 0; ne < 200'000; ++ne) {
        text += "NE=" + std::to_string(ne) + "\n";
    }
    EXPECT_EQ(Shell("kxdu decode -o out", text).err, "");
}

}  // namespace
}  // namespace NS_KX::NS_KXDU
