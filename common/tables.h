/// The rows of the constant tables, in the order in which the system shares them, and nothing else.
#pragma once

#include <array>

#include <kx_domain_util/constanttables.h>

namespace NS_UTIL::NS_TABLE {

// 131, 132 and 133 share a name on purpose: the table cannot be read backwards.
// clang-format off
inline constexpr auto FB_TYPE_NAMES = std::to_array<FbTypeNameRow>({
    {122, "CSK"},
    {121, "PWROUTPUT"},
    {24, "DDN"},
    {4149, "TPS_GRP"},
    {4151, "LAG"},
    {503, "SYNCCLOCK"},
    {4153, "SYS_CLK"},
    {4154, "LPS_GRP"},
    {4156, "PORT_PRI"},
    {4136, "TUNNEL"},
    {4141, "ATM_CONN"},
    {4143, "CES_UNI"},
    {4144, "L2VPN_UNI"},
    {4145, "MEP"},
    {4146, "CLASSIFIER"},
    {4150, "MSTP_GRP"},
    {4148, "APS_GRP"},
    {4142, "L2VPN_SER"},
    {125, "PA"},
    {21, "ESCON"},
    {53, "PANEL"},
    {4208, "IFE"},
    {4209, "ODU"},
    {4213, "RFU"},
    {131, "COM"},
    {132, "COM"},
    {133, "COM"},
    {128, "IF"},
    {4258, "GSP_ISIS"},
    {4256, "GSP_OSPF"},
    {4350, "POWER"},
});
// clang-format on
static_assert(FB_TYPE_NAMES.size() == 31);

// 4168 stands twice; that changes no answer, and the list is kept as it is shared.
// clang-format off
inline constexpr auto PTN_AID_FB_TYPES = std::to_array<int>({
    4149, 503, 4154, 4156, 4141, 4145, 4146, 4150, 4148, 4168,
    4273, 4168, 4271, 4260, 4256, 4257, 4258,
});
// clang-format on
static_assert(PTN_AID_FB_TYPES.size() == 17);

// clang-format off
inline constexpr auto PORT_OBJECT_FB_TYPES = std::to_array<int>({
    919, 931, 128, 130, 129, 913, 916, 9, 125, 11,
    10, 14, 934,
});
// clang-format on
static_assert(PORT_OBJECT_FB_TYPES.size() == 13);

// The numbers 8, 9, 10 and 12 to 14 are not assigned.
// clang-format off
inline constexpr auto DOMAIN_NAMES = std::to_array<DomainNameRow>({
    {1, "sdh"},
    {2, "sonet"},
    {3, "wdm"},
    {4, "eth"},
    {5, "atm"},
    {6, "escon"},
    {7, "ddn"},
    {11, "klv"},
    {15, "com"},
    {16, "ptn"},
});
// clang-format on
static_assert(DOMAIN_NAMES.size() == 10);

// A line for each level. The FB types 12288 and 12291 look like levels, and 12291 is one as well; both belong here.
// clang-format off
inline constexpr auto FB_TYPE_LEVELS = std::to_array<FbTypeLevelRow>({
    {25, 12342}, {75, 12342}, {74, 12342}, {200, 12342}, {202, 12342}, {201, 12342}, {12288, 12342}, {12291, 12342},
    {810, 12313}, {812, 12313}, {811, 12313}, {860, 12313}, {861, 12313}, {862, 12313},
    {804, 12311}, {806, 12311}, {805, 12311}, {854, 12311}, {855, 12311}, {856, 12311},
    {801, 12310}, {803, 12310}, {802, 12310}, {851, 12310}, {852, 12310}, {853, 12310},
    {807, 12312}, {809, 12312}, {808, 12312}, {857, 12312}, {859, 12312}, {858, 12312},
    {829, 12329}, {831, 12329}, {830, 12329}, {880, 12329}, {881, 12329}, {882, 12329}, {209, 12329}, {211, 12329}, {212, 12329},
    {823, 12327}, {825, 12327}, {824, 12327}, {874, 12327}, {875, 12327}, {876, 12327}, {210, 12327}, {213, 12327}, {214, 12327},
    {820, 12326}, {822, 12326}, {821, 12326}, {871, 12326}, {872, 12326}, {873, 12326},
    {826, 12328}, {828, 12328}, {827, 12328}, {877, 12328}, {878, 12328}, {879, 12328},
    {12, 12292}, {58, 12292}, {57, 12292}, {203, 12292}, {205, 12292}, {204, 12292}, {61, 12292},
    {206, 12294}, {207, 12294}, {208, 12294},
    {832, 12332}, {833, 12332}, {834, 12332}, {883, 12332}, {884, 12332}, {885, 12332},
    {10, 12290}, {56, 12290}, {55, 12290},
    {11, 12291}, {60, 12291}, {59, 12291},
    {838, 12325}, {839, 12325}, {840, 12325}, {886, 12325}, {887, 12325}, {888, 12325},
    {813, 12309}, {815, 12309}, {814, 12309}, {863, 12309}, {864, 12309}, {865, 12309},
    {1234, 12322}, {1235, 12322}, {1236, 12322},
    {1231, 12306}, {1233, 12306}, {1232, 12306},
    {841, 12336}, {842, 12336}, {843, 12336},
    {1228, 12338}, {1229, 12338}, {1230, 12338},
    {816, 12308}, {818, 12308}, {817, 12308}, {866, 12308}, {867, 12308}, {868, 12308},
    {844, 12324}, {846, 12324}, {845, 12324}, {895, 12324}, {896, 12324}, {897, 12324},
});
// clang-format on
static_assert(FB_TYPE_LEVELS.size() == 120);

// For each level its canonical FB type, written out on its own and not derived from the FB types' levels.
// clang-format off
inline constexpr auto LEVEL_FB_TYPES = std::to_array<LevelFbTypeRow>({
    {12342, 25}, {12313, 810}, {12311, 804}, {12310, 801}, {12309, 813}, {12312, 807},
    {12308, 816}, {12329, 829}, {12327, 823}, {12326, 820}, {12325, 838}, {12324, 844},
    {12328, 826}, {12336, 841}, {12338, 1228}, {12292, 12}, {12294, 206}, {12332, 832},
    {12291, 11}, {12290, 10}, {12322, 1234}, {12306, 1231},
});
// clang-format on
static_assert(LEVEL_FB_TYPES.size() == 22);

// A line for each bidirectional type; mostly the two types that follow it. 919 and 931 stand for themselves.
// clang-format off
inline constexpr auto BIDIR_FB_TYPES = std::to_array<BidirFbTypeRow>({
    {33, 1}, {34, 1},
    {35, 31}, {36, 31},
    {37, 32}, {38, 32},
    {39, 2}, {40, 2},
    {41, 3}, {42, 3},
    {43, 4}, {44, 4},
    {45, 5}, {46, 5},
    {960, 959}, {961, 959},
    {93, 91}, {94, 91},
    {95, 92}, {96, 92},
    {926, 925}, {927, 925},
    {929, 928}, {930, 928},
    {981, 980}, {982, 980},
    {129, 128}, {130, 128},
    {919, 919}, {920, 919}, {921, 919},
    {47, 18}, {48, 18},
    {49, 19}, {50, 19},
    {51, 20}, {52, 20},
    {69, 22}, {70, 22},
    {102, 101}, {103, 101},
    {110, 109}, {111, 109},
    {115, 19}, {116, 19}, {117, 19}, {118, 19},
    {55, 10}, {56, 10},
    {57, 12}, {58, 12},
    {59, 11}, {60, 11},
    {62, 61}, {63, 61},
    {4299, 12},
    {64, 14}, {65, 14},
    {74, 25}, {75, 25},
    {10001, 10000}, {10002, 10000},
    {113, 112}, {114, 112},
    {201, 200}, {202, 200},
    {204, 203}, {205, 203},
    {207, 206}, {208, 206},
    {833, 832}, {834, 832},
    {830, 829}, {831, 829},
    {824, 823}, {825, 823},
    {821, 820}, {822, 820},
    {827, 826}, {828, 826},
    {839, 838}, {840, 838},
    {1235, 1234}, {1236, 1234},
    {842, 841}, {843, 841},
    {1229, 1228}, {1230, 1228},
    {845, 844}, {846, 844},
    {811, 810}, {812, 810},
    {805, 804}, {806, 804},
    {802, 801}, {803, 801},
    {808, 807}, {809, 807},
    {814, 813}, {815, 813},
    {1232, 1231}, {1233, 1231},
    {817, 816}, {818, 816},
    {884, 883}, {885, 883},
    {881, 880}, {882, 880},
    {875, 874}, {876, 874},
    {872, 871}, {873, 871},
    {878, 877}, {879, 877},
    {887, 886}, {888, 886},
    {896, 895}, {897, 895},
    {861, 860}, {862, 860},
    {855, 854}, {856, 854},
    {852, 851}, {853, 851},
    {858, 857}, {859, 857},
    {864, 863}, {865, 863},
    {867, 866}, {868, 866},
    {901, 900}, {902, 900},
    {907, 906}, {908, 906},
    {910, 909}, {911, 909},
    {904, 903}, {905, 903},
    {931, 931},
    {67, 21}, {68, 21},
    {72, 24}, {73, 24},
    {83, 77}, {84, 77},
    {914, 913}, {915, 913},
    {917, 916}, {918, 916},
});
// clang-format on
static_assert(BIDIR_FB_TYPES.size() == 149);

// The reserved ids count down from the top of the 16-bit range.
// clang-format off
inline constexpr auto CTP_NAMES = std::to_array<CtpNameRow>({
    {"E0", 65535},
    {"E1", 65534},
    {"E2", 65533},
    {"E3", 65532},
    {"E4", 65531},
    {"E5", 65530},
    {"E6", 65529},
    {"E7", 65528},
    {"E8", 65527},
    {"E9", 65526},
    {"E10", 65525},
    {"E11", 65524},
});
// clang-format on
static_assert(CTP_NAMES.size() == 12);

// clang-format off
inline constexpr auto CLIENT_RATES = std::to_array<ClientRateRow>({
    {"OCH", 12292},
    {"ODU5G", 12328},
    {"ODU4", 12325},
    {"ODU3", 12326},
    {"ODU2", 12327},
    {"ODU1", 12329},
    {"ODU0", 12332},
    {"ODUCN", 12324},
    {"ODU25", 12322},
    {"OTU5G", 12312},
    {"OTU4", 12309},
    {"OTU3", 12310},
    {"OTU2", 12311},
    {"OTU1", 12313},
    {"OTUCN", 12308},
    {"OTU25", 12306},
    {"ODUFLEX", 12336},
});
// clang-format on
static_assert(CLIENT_RATES.size() == 17);

// clang-format off
inline constexpr auto OPTICAL_BOARDS = std::to_array<unsigned long>({
    1388, 2299, 2301, 2300, 2879, 948, 949, 3605, 2878, 2298,
    3052, 3051, 3053, 3055, 3054, 3341, 3424, 2970,
});
// clang-format on
static_assert(OPTICAL_BOARDS.size() == 18);

}  // namespace NS_UTIL::NS_TABLE
