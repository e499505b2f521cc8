#include "verbs/inventorycsv.h"

#include <stdexcept>

#include <gtest/gtest.h>

#include "kxdu/program.h"
#include "lines/failure.h"

using namespace NS_KX;
using namespace NS_KX::NS_KXDU;
using NS_STANDALONE::DomainCache;
using NS_STANDALONE::Inventory;

namespace {

constexpr const char* NE_HEADER = "ne_id,ne_type,multi_sub_shelf,oam_number_omitted\n";
constexpr const char* NE_TYPE_HEADER = "ne_type,name,ip_service,klv\n";
constexpr const char* DOMAIN_MEMBER_HEADER = "cache,domain,ne_type\n";

Inventory SomeInventory() {
    Inventory inventory;
    inventory.neTypes = {{0, "", false, false}, {65535, "a \"b\", c\nÅre", true, true}};
    inventory.nes = {{0, 65535, true, false}, {2147483647, 0, false, true}};
    inventory.domainMembers = {{DomainCache::NE_TYPE_LIST, "router and metro", 7},
                               {DomainCache::EQUIPMENT_TYPE, "OTN", 65535}};
    return inventory;
}

class InventoryCsv : public ProgramTest {
protected:
    // The message about a good inventory in which this text replaces one file.
    [[nodiscard]] std::string ComplaintAbout(const std::string& file, const std::string& text) const {
        WriteFile("ne.csv", NE_HEADER);
        WriteFile("ne_type.csv", std::string(NE_TYPE_HEADER) + "7,seven,0,0\n");
        WriteFile("domain_member.csv", DOMAIN_MEMBER_HEADER);
        WriteFile(file, text);
        try {
            ReadInventoryCsv(folder);
        } catch (const std::runtime_error& error) {
            const std::string complaint = error.what();
            const std::string place = (folder / file).string();
            return complaint.starts_with(place) ? complaint.substr(place.size()) : complaint;
        }
        return "no complaint";
    }

    [[nodiscard]] std::string ComplaintAboutNe(const std::string& rows) const {
        return ComplaintAbout("ne.csv", NE_HEADER + rows);
    }

    [[nodiscard]] std::string ComplaintAboutNeType(const std::string& rows) const {
        return ComplaintAbout("ne_type.csv", NE_TYPE_HEADER + rows);
    }

    [[nodiscard]] std::string ComplaintAboutDomainMember(const std::string& rows) const {
        return ComplaintAbout("domain_member.csv", DOMAIN_MEMBER_HEADER + rows);
    }
};

}  // namespace

TEST_F(InventoryCsv, IsReadBackAsItWasWritten) {
    WriteInventoryCsv(folder / "new" / "folder", SomeInventory());
    EXPECT_EQ(ReadInventoryCsv(folder / "new" / "folder"), SomeInventory());
}

TEST_F(InventoryCsv, HasOneFileForEachTable) {
    WriteInventoryCsv(folder, SomeInventory());
    EXPECT_EQ(ReadFile("ne.csv"), std::string(NE_HEADER) + "0,65535,1,0\n2147483647,0,0,1\n");
    EXPECT_EQ(ReadFile("ne_type.csv"), std::string(NE_TYPE_HEADER) + "0,,0,0\n65535,\"a \"\"b\"\", c\nÅre\",1,1\n");
    EXPECT_EQ(ReadFile("domain_member.csv"),
              std::string(DOMAIN_MEMBER_HEADER) + "NE_TYPE_LIST,router and metro,7\nEQUIPMENT_TYPE,OTN,65535\n");
}

TEST_F(InventoryCsv, MayBeEmpty) {
    EXPECT_EQ(ComplaintAbout("ne_type.csv", NE_TYPE_HEADER), "no complaint");
}

TEST_F(InventoryCsv, NeedsAllFiles) {
    EXPECT_THROW(ReadInventoryCsv(folder), std::runtime_error);
    EXPECT_THROW(ReadInventoryCsv(folder / "nowhere"), std::runtime_error);
}

TEST_F(InventoryCsv, AFolderInAFilesPlaceCannotBeRead) {
    std::filesystem::create_directory(folder / "ne_type.csv");
    EXPECT_THROW(ReadInventoryCsv(folder), std::runtime_error);
}

TEST_F(InventoryCsv, NeedsTheHeaderLine) {
    const std::string complaint = ":1: the first line must be \"ne_id,ne_type,multi_sub_shelf,oam_number_omitted\"";
    EXPECT_EQ(ComplaintAbout("ne.csv", ""), complaint);
    EXPECT_EQ(ComplaintAbout("ne.csv", "1,7,0,0\n"), complaint);
    EXPECT_EQ(ComplaintAbout("ne.csv", "ne_type,ne_id,multi_sub_shelf,oam_number_omitted\n"), complaint);
}

TEST_F(InventoryCsv, NamesAnotherSeparator) {
    EXPECT_EQ(ComplaintAbout("ne.csv", "ne_id;ne_type;multi_sub_shelf;oam_number_omitted\r\n1;7;0;0\r\n"),
              ":1: the columns are separated by \";\"; separate them by \",\"");
    EXPECT_EQ(ComplaintAbout("ne.csv", "ne_id\tne_type\tmulti_sub_shelf\toam_number_omitted\n"),
              ":1: the columns are separated by tabs; separate them by \",\"");
}

TEST_F(InventoryCsv, ComplaintsNameTheLine) {
    EXPECT_EQ(ComplaintAboutNe("1,7,0,0\n2,7,0\n"), ":3: has 3 columns, not 4");
    EXPECT_EQ(ComplaintAboutNe("1,7,0,0\n\n"), ":3: has 1 columns, not 4");
    EXPECT_EQ(ComplaintAboutNe("1,7,0,0\n\"2,7,0,0\n"), ":3: a quoted field that does not end");
}

TEST_F(InventoryCsv, NumbersMustBeWhollyThatAndInRange) {
    EXPECT_EQ(ComplaintAboutNe("x,7,0,0\n"), ":2: ne_id is \"x\", not a number from 0 to 2147483647");
    EXPECT_EQ(ComplaintAboutNe(",7,0,0\n"), ":2: ne_id is \"\", not a number from 0 to 2147483647");
    EXPECT_EQ(ComplaintAboutNe("1x,7,0,0\n"), ":2: ne_id is \"1x\", not a number from 0 to 2147483647");
    EXPECT_EQ(ComplaintAboutNe(" 1,7,0,0\n"), ":2: ne_id is \" 1\", not a number from 0 to 2147483647");
    EXPECT_EQ(ComplaintAboutNe("-1,7,0,0\n"), ":2: ne_id is \"-1\", not a number from 0 to 2147483647");
    EXPECT_EQ(ComplaintAboutNe("2147483648,7,0,0\n"), ":2: ne_id is \"2147483648\", not a number from 0 to 2147483647");
    EXPECT_EQ(ComplaintAboutNe("1,65536,0,0\n"), ":2: ne_type is \"65536\", not a number from 0 to 65535");
    EXPECT_EQ(ComplaintAboutNeType("-1,a,0,0\n"), ":2: ne_type is \"-1\", not a number from 0 to 65535");
    EXPECT_EQ(ComplaintAboutDomainMember("EQUIPMENT_TYPE,OTN,a\n"),
              ":2: ne_type is \"a\", not a number from 0 to 65535");
}

TEST_F(InventoryCsv, FlagsAreZeroOrOne) {
    EXPECT_EQ(ComplaintAboutNe("1,7,yes,0\n"), ":2: multi_sub_shelf is \"yes\", not 0 or 1");
    EXPECT_EQ(ComplaintAboutNe("1,7,0,2\n"), ":2: oam_number_omitted is \"2\", not 0 or 1");
    EXPECT_EQ(ComplaintAboutNeType("7,a,,0\n"), ":2: ip_service is \"\", not 0 or 1");
    EXPECT_EQ(ComplaintAboutNeType("7,a,0,00\n"), ":2: klv is \"00\", not 0 or 1");
}

TEST_F(InventoryCsv, NothingIsRepeated) {
    EXPECT_EQ(ComplaintAboutNe("1,7,0,0\n1,7,1,1\n"), ":3: NE 1 is repeated");
    EXPECT_EQ(ComplaintAboutNeType("7,a,0,0\n7,b,0,0\n"), ":3: NE type 7 is repeated");
    EXPECT_EQ(ComplaintAboutDomainMember("EQUIPMENT_TYPE,OTN,7\nNE_TYPE_LIST,OTN,7\nEQUIPMENT_TYPE,OTN,7\n"),
              ":4: NE type 7 of \"OTN\" is repeated");
}

TEST_F(InventoryCsv, AnNeIsOfAKnownType) {
    EXPECT_EQ(ComplaintAboutNe("1,8,0,0\n"), ":2: NE type 8 is not in ne_type.csv");
}

TEST_F(InventoryCsv, ADomainMemberMayBeOfAnyType) {
    EXPECT_EQ(ComplaintAboutDomainMember("NE_TYPE_LIST,access,8\n"), "no complaint");
}

TEST_F(InventoryCsv, TextsAreChecked) {
    EXPECT_EQ(ComplaintAboutDomainMember("OTN,OTN,7\n"), ":2: cache is \"OTN\", not NE_TYPE_LIST or EQUIPMENT_TYPE");
    EXPECT_EQ(ComplaintAboutDomainMember("EQUIPMENT_TYPE,,7\n"), ":2: domain is \"\", not the name of a domain");
    EXPECT_EQ(ComplaintAboutNeType("7,\xFC,0,0\n"), ":2: name is \"\\xfc\", not UTF-8");
}

TEST_F(InventoryCsv, AFolderThatCannotBeMadeIsAnOutputFailure) {
    WriteFile("file", "");
    try {
        WriteInventoryCsv(folder / "file" / "folder", SomeInventory());
        FAIL() << "no failure";
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.GetCause(), Cause::OUTPUT);
    }
}
