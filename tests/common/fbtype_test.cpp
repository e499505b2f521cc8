#include <limits>

#include <gtest/gtest.h>

#include <kx_domain_util/fbtype.h>

namespace {

using NS_UTIL::GetDomainStrByID;
using NS_UTIL::GetFBTypeName;
using NS_UTIL::IsLogicalPortByType;
using NS_UTIL::IsPortObjByFbType;
using NS_UTIL::IsPTNAIDFBType;

constexpr int LOWEST = std::numeric_limits<int>::min();
constexpr int HIGHEST = std::numeric_limits<int>::max();

TEST(FbType, ThreeTypesShareAName) {
    EXPECT_EQ(GetFBTypeName(131), "COM");
    EXPECT_EQ(GetFBTypeName(132), "COM");
    EXPECT_EQ(GetFBTypeName(133), "COM");
}

TEST(FbType, ATypeWithoutANameIsItsNumber) {
    EXPECT_EQ(GetFBTypeName(0), "0");
    EXPECT_EQ(GetFBTypeName(4147), "4147");
    EXPECT_EQ(GetFBTypeName(-1), "-1");
    EXPECT_EQ(GetFBTypeName(LOWEST), "-2147483648");
    EXPECT_EQ(GetFBTypeName(HIGHEST), "2147483647");
}

TEST(FbType, PtnAid) {
    EXPECT_TRUE(IsPTNAIDFBType(4168));
    EXPECT_FALSE(IsPTNAIDFBType(4136));
    EXPECT_FALSE(IsPTNAIDFBType(4151));
    EXPECT_FALSE(IsPTNAIDFBType(LOWEST));
    EXPECT_FALSE(IsPTNAIDFBType(HIGHEST));
}

TEST(FbType, PortObjects) {
    EXPECT_TRUE(IsPortObjByFbType(2, 1));
    EXPECT_TRUE(IsPortObjByFbType(3, 0));
    EXPECT_FALSE(IsPortObjByFbType(2, 3));
    EXPECT_FALSE(IsPortObjByFbType(3, 3));
    EXPECT_TRUE(IsPortObjByFbType(128, 3)) << "the list takes precedence over the kind";
    EXPECT_FALSE(IsPortObjByFbType(4, 1));
    EXPECT_FALSE(IsPortObjByFbType(1, 1));
    EXPECT_FALSE(IsPortObjByFbType(LOWEST, 1)) << "2 below the lowest number is no small one";
    EXPECT_FALSE(IsPortObjByFbType(LOWEST + 1, 1));
    EXPECT_FALSE(IsPortObjByFbType(HIGHEST, 1));
}

TEST(FbType, LogicalPorts) {
    EXPECT_FALSE(IsLogicalPortByType(65535));
    EXPECT_TRUE(IsLogicalPortByType(65536));
    EXPECT_TRUE(IsLogicalPortByType(HIGHEST));
    EXPECT_FALSE(IsLogicalPortByType(0));
    EXPECT_FALSE(IsLogicalPortByType(-1));
    EXPECT_FALSE(IsLogicalPortByType(LOWEST));
}

TEST(FbType, DomainsThatAreNotAssigned) {
    for (const unsigned int domainId : {0U, 8U, 9U, 10U, 12U, 13U, 14U, 17U, 4294967295U}) {
        EXPECT_EQ(GetDomainStrByID(domainId), "UNKNOWN") << domainId;
    }
    EXPECT_EQ(GetDomainStrByID(11), "klv");
}

}  // namespace
