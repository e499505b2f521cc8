#include "sample/sampleservices.h"

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include <kx_domain_util/resIDUtil.h>

namespace NS_KX {

namespace {

using NS_UTIL::ResIDUtil;

constexpr std::array<std::string_view, 8> CUSTOMERS{"city hall",    "harbour",       "Universität", "銀行",
                                                    "north clinic", "railway radio", "école 4",     "water \"works\""};

// "NE=7,VSI=3": for levels that the library reads but does not write.
std::string Numbered(std::int32_t neId, std::string_view tag, std::int32_t number) {
    std::string fdn;
    ResIDUtil::NEID2ResID(0, neId, fdn);
    return fdn.append(",").append(tag).append("=").append(std::to_string(number));
}

// True for NEs that switch packets, and for one in eight of the others.
bool HasServices(const SampleNe& ne) {
    return ne.type->ipService || ne.neId % 8 == 0;
}

std::string LoopBackAddress(std::int32_t neId) {
    return "10." + std::to_string(neId / 65536 % 256) + "." + std::to_string(neId / 256 % 256) + "." +
           std::to_string(neId % 256);
}

void WriteEndPoints(NS_DOMAIN::MEPIndex mep, SplitMix64& random, const TakeIdentifier& take) {
    std::string fdn;
    mep.mepId = random.Between(1, 4000);
    ResIDUtil::MepIndex2ResID(mep, fdn);
    take(fdn);
    for (std::int32_t left = random.Between(1, 3); left > 0; --left) {
        ++mep.mepId;
        ResIDUtil::RmepIndex2ResID(mep, fdn);
        take(fdn);
    }
}

void WriteAssociation(const NS_DOMAIN::MDIndex& md, std::int32_t maId, SplitMix64& random, const TakeIdentifier& take) {
    std::string fdn;
    NS_DOMAIN::MAIndex ma{{0, md.neId}, md.mdId, md.mdName, maId, "ma" + std::to_string(maId)};
    if (random.OneIn(2)) {
        ma.maName.append(" ").append(random.OneOf(CUSTOMERS));
    }
    ResIDUtil::MAIndex2ResID(ma, fdn);
    take(fdn);
    WriteEndPoints({{0, ma.neId}, ma.mdId, ma.mdName, ma.maId, ma.maName, -1}, random, take);
}

void WriteIntermediatePoints(const NS_DOMAIN::MDIndex& md, SplitMix64& random, const TakeIdentifier& take) {
    std::string fdn;
    const std::int32_t count = random.Between(0, 2);
    for (std::int32_t mipId = 1; mipId <= count; ++mipId) {
        ResIDUtil::MIPIndex2ResID({{0, md.neId}, md.mdId, md.mdName, mipId, "mip" + std::to_string(mipId)}, fdn);
        take(fdn);
    }
}

void WriteTunnels(const SampleNe& ne, SplitMix64& random, const TakeIdentifier& take) {
    std::string level;
    const std::int32_t count = random.Between(1, 6);
    for (std::int32_t number = 1; number <= count; ++number) {
        // A list in braces is evaluated from left to right, so the draws have an order.
        const std::vector<std::string> values{std::to_string(random.Between(1, 3)),
                                              std::to_string(number),
                                              LoopBackAddress(ne.neId),
                                              LoopBackAddress(random.Between(1, 2000)),
                                              std::to_string(random.Between(0, 7)),
                                              std::string(random.OneOf(CUSTOMERS)),
                                              std::to_string(random.Between(0, 1))};
        ResIDUtil::ConstructMocLevelObj("TUNNEL", values, level);
        take("NE=" + std::to_string(ne.neId) + "," + level);
        if (random.OneIn(2)) {
            take(Numbered(ne.neId, "LSP", number));
        }
    }
}

void WritePseudoWires(const SampleNe& ne, SplitMix64& random, const TakeIdentifier& take) {
    std::string fdn;
    const std::int32_t count = random.Between(1, 8);
    for (std::int32_t number = 1; number <= count; ++number) {
        ResIDUtil::PWIndex2ResID({ne.neId, "PW=" + std::to_string(number)}, fdn);
        take(fdn);
        if (random.OneIn(4)) {
            take(Numbered(ne.neId, "PWSW", number));
        }
    }
    if (random.OneIn(4)) {
        take(Numbered(ne.neId, "ATMTD", random.Between(1, 255)));
    }
}

void WriteServiceLevels(const SampleNe& ne, SplitMix64& random, const TakeIdentifier& take) {
    const std::string pseudoWireService = "NE=" + std::to_string(ne.neId) + ",PWE3=";
    const std::int32_t pseudoWireServices = random.Between(0, 3);
    for (std::int32_t number = 1; number <= pseudoWireServices; ++number) {
        take(pseudoWireService + std::to_string(random.Between(1, 5)) + "|" + std::to_string(number));
    }
    for (const std::string_view tag : {"NETH", "VSI", "VRF", "L3VPN", "VEGROUP"}) {
        const std::int32_t count = random.Between(0, 2);
        for (std::int32_t number = 1; number <= count; ++number) {
            take(Numbered(ne.neId, tag, number));
        }
    }
}

void WriteTrails(const SampleNe& ne, SplitMix64& random, const TakeIdentifier& take) {
    for (const std::string_view tag : {"TUNNELTRAIL", "TUNNELPGTRAIL", "PWTRAIL", "PWE3TRAIL", "VPLS"}) {
        if (random.OneIn(3)) {
            take(Numbered(ne.neId, tag, random.Between(1, 9999)));
        }
    }
}

void WriteMaintenance(const SampleNe& ne, SplitMix64& random, const TakeIdentifier& take) {
    std::string fdn;
    const std::int32_t domains = random.Between(1, 2);
    for (std::int32_t mdId = 1; mdId <= domains; ++mdId) {
        const NS_DOMAIN::MDIndex md{{0, ne.neId}, mdId, "md" + std::to_string(mdId)};
        ResIDUtil::MDIndex2ResID(md, fdn);
        take(fdn);
        const std::int32_t associations = random.Between(1, 3);
        for (std::int32_t maId = 1; maId <= associations; ++maId) {
            WriteAssociation(md, maId, random, take);
        }
        WriteIntermediatePoints(md, random, take);
    }
}

// They run in this order. Append new ones at the end: the place of each seeds its random numbers.
constexpr std::array GENERATORS{WriteTunnels, WritePseudoWires, WriteServiceLevels, WriteTrails, WriteMaintenance};

}  // namespace

void WriteServices(const SampleNe& ne, SplitMix64& random, const TakeIdentifier& take) {
    if (!HasServices(ne)) {
        return;
    }
    for (const auto& generator : GENERATORS) {
        SplitMix64 own(random.Next());
        generator(ne, own, take);
    }
}

std::vector<std::string_view> TypesOfServices() {
    return {"TunnelIndex", "ServiceIndex", "PWIndex",      "PWSwitchIndex", "TDIndex",
            "GroupID",     "TNPIndex_T",   "PWTrailIndex", "VPNTrailIndex", "TunnelTrailIndex",
            "MDIndex",     "MAIndex",      "MEPIndex",     "MEPIndex:RMEP", "MIPIndex"};
}

}  // namespace NS_KX
