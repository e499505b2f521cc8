#include "sample/sampleidentifiers.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <vector>

#include <kx_domain_util/resIDUtil.h>

#include "catalogue/kinds.h"
#include "catalogue/pieces.h"
#include "sample/sampleservices.h"
#include "sample/splitmix64.h"

namespace NS_KX {

namespace {

using Terminations = SampleCardKind::Terminations;
using NS_UTIL::ResIDUtil;

// How many NEs an administrative area (ONE object) has.
constexpr std::int32_t AREA_SIZE = 64;

void WriteAreas(const SampleNe& ne, SplitMix64& /*random*/, const TakeIdentifier& take) {
    std::string fdn;
    if (ne.neId == 1) {
        ResIDUtil::OSID2ResID(1, fdn);
        take(fdn);
    }
    if (ne.neId % AREA_SIZE == 1) {
        ResIDUtil::ONEID2ResID(1 + ne.neId / AREA_SIZE, fdn);
        take(fdn);
    }
}

void WriteNe(const SampleNe& ne, SplitMix64& /*random*/, const TakeIdentifier& take) {
    std::string fdn;
    ResIDUtil::NEID2ResID(0, ne.neId, fdn);
    take(fdn);
    for (const NS_DOMAIN::ShelfIndex& shelf : ne.shelves) {
        ResIDUtil::ShelfIndex2ResID(shelf, fdn);
        take(fdn);
    }
}

void WriteSlots(const SampleNe& ne, SplitMix64& /*random*/, const TakeIdentifier& take) {
    std::string fdn;
    for (const NS_DOMAIN::CardIndex& card : ne.cards) {
        ResIDUtil::SlotIndex2ResID({0, card.neId, card.shelfId, card.slotId, -1}, fdn);
        take(fdn);
        ResIDUtil::CardIndex2ResID(card, fdn);
        take(fdn);
    }
    for (const NS_DOMAIN::SlotIndex& subSlot : ne.subSlots) {
        ResIDUtil::SubSlotIndex2ResID(subSlot, fdn);
        take(fdn);
    }
}

void WritePorts(const SampleNe& ne, SplitMix64& /*random*/, const TakeIdentifier& take) {
    std::string fdn;
    for (const SamplePort& port : ne.ports) {
        ResIDUtil::PortIndex2ResID(port.index, fdn, port.index.isLogical);
        take(fdn);
    }
}

void WriteAccessPoints(const SampleNe& ne, SplitMix64& random, const TakeIdentifier& take) {
    std::string fdn;
    NS_DOMAIN::CtpKey_T key;
    for (const SamplePort& port : ne.ports) {
        if (port.terminations != Terminations::ACCESS_POINTS || !random.OneIn(3)) {
            continue;
        }
        key.port = port.index;
        key.apValue1 = random.Between(1, 16);
        key.apValue2 = random.Between(1, 63);
        key.subIfId = random.OneIn(2) ? 0 : random.Between(1, 4000);
        ResIDUtil::APIndex2ResID(key, fdn, port.index.isLogical);
        take(fdn);
    }
}

NS_DOMAIN::TPIndex TerminationPointOf(const NS_DOMAIN::PortIndex& port) {
    NS_DOMAIN::TPIndex tp;
    tp.neId = port.neId;
    tp.shelfId = port.shelfId;
    tp.slotId = port.slotId;
    tp.subSlotId = port.subSlotId;
    tp.portId = port.portId;
    tp.ppType = port.ppType;
    tp.fbType = port.fbType;
    tp.portLabel = port.portLabel;
    tp.isLogical = port.isLogical;
    return tp;
}

void WriteSubInterfaces(const SampleNe& ne, SplitMix64& random, const TakeIdentifier& take) {
    std::string fdn;
    for (const SamplePort& port : ne.ports) {
        if (port.terminations != Terminations::SUB_INTERFACES || !random.OneIn(4)) {
            continue;
        }
        NS_DOMAIN::TPIndex tp = TerminationPointOf(port.index);
        std::int32_t number = 0;
        for (std::int32_t left = random.Between(1, 4); left > 0; --left) {
            number += random.Between(1, 1000);
            tp.portLabel = port.index.portLabel + "." + std::to_string(number);
            ResIDUtil::TPIndex2ResID(tp, fdn);
            take(fdn);
        }
    }
}

void WritePaths(const SampleNe& ne, SplitMix64& random, const TakeIdentifier& take) {
    std::string fdn;
    for (const SamplePort& port : ne.ports) {
        if (port.terminations != Terminations::PATHS) {
            continue;
        }
        NS_DOMAIN::TPIndex tp = TerminationPointOf(port.index);
        for (tp.vc4Id = 1; tp.vc4Id <= 4; ++tp.vc4Id) {
            // A whole higher-order path, or a lower-order path in it.
            tp.vc12Id = random.OneIn(2) ? 0 : random.Between(1, 63);
            ResIDUtil::TPIndex2ResID(tp, fdn);
            take(fdn);
        }
    }
}

// Ports, written by the rules of their NE's type.
void WritePortsByNEType(const SampleNe& ne, SplitMix64& random, const TakeIdentifier& take) {
    std::string fdn;
    for (const SamplePort& port : ne.ports) {
        if (port.index.slotId != -1 && random.OneIn(32)) {
            ResIDUtil::PortIndex2ResIDByNEType(port.index, fdn, port.index.isLogical, ne.type->neType);
            take(fdn);
        }
    }
}

// Sub-interfaces of logical ports that are identified by their number.
void WriteNumberedSubInterfaces(const SampleNe& ne, SplitMix64& random, const TakeIdentifier& take) {
    constexpr std::int32_t PP_TYPE = 16;
    std::string fdn;
    NS_DOMAIN::CtpKey_T key;
    for (const SamplePort& port : ne.ports) {
        if (!port.index.isLogical || !random.OneIn(4)) {
            continue;
        }
        key.port = port.index;
        key.port.ppType = PP_TYPE;
        key.port.portLabel.clear();
        key.subIfId = random.Between(1, 4000);
        ResIDUtil::PortIndex2ResID(key, fdn, true);
        take(fdn);
    }
}

void WriteNeInArea(const SampleNe& ne, SplitMix64& /*random*/, const TakeIdentifier& take) {
    std::string fdn;
    ResIDUtil::NEID2ResID(1 + ne.neId / AREA_SIZE, ne.neId, fdn);
    take(fdn);
}

struct Generator {
    void (*write)(const SampleNe& ne, SplitMix64& random, const TakeIdentifier& take);
    std::vector<std::string_view> types;  // that it writes
};

// They run in this order for each NE. Append new ones at the end: the place of each seeds its random numbers, so the
// identifiers of those before it stay the same.
const std::vector<Generator>& Generators() {
    static const std::vector<Generator> generators{
        {WriteAreas, {"OSIndex", "ONEIndex"}},
        {WriteNe, {"NEIndex", "ShelfIndex"}},
        {WriteSlots, {"SlotIndex", "SubSlotIndex", "CardIndex"}},
        {WritePorts, {"PortIndex"}},
        {WriteAccessPoints, {"CtpKey_T"}},
        {WriteSubInterfaces, {"TPIndex"}},
        {WritePaths, {"TPIndex"}},
        {WriteNeInArea, {"NEID"}},
        {WritePortsByNEType, {"PortIndex:NEType", "PortIndex:NEType1911"}},
        {WriteNumberedSubInterfaces, {"CtpKey_T:SUBIF"}},
        {WriteServices, TypesOfServices()},
    };
    return generators;
}

// The kinds that no generator writes. Their examples are written, so that every sample has each new kind at once.
std::vector<const Kind*> KindsByExample() {
    std::vector<const Kind*> kinds;
    for (const Kind* const kind : AllKinds()) {
        const bool isGenerated = std::ranges::any_of(Generators(), [kind](const Generator& generator) {
            return std::ranges::find(generator.types, kind->type) != generator.types.end();
        });
        if (!kind->lastTags.front().empty() && !isGenerated) {
            kinds.push_back(kind);
        }
    }
    return kinds;
}

void WriteExamples(const SampleNe& ne, const TakeIdentifier& take) {
    static const std::vector<const Kind*> kinds = KindsByExample();
    static const PieceName NE{"NE", std::nullopt};
    for (const Kind* const kind : kinds) {
        take(ReplacePiece(kind->example, NE, std::to_string(ne.neId)));
    }
}

}  // namespace

void SampleIdentifiers::Write(std::int32_t neId, const TakeIdentifier& take) {
    m_network.DrawNe(neId, m_ne);
    SplitMix64 seeds(m_network.Seed() + static_cast<std::uint64_t>(neId));
    for (const Generator& generator : Generators()) {
        SplitMix64 random(seeds.Next());
        generator.write(m_ne, random, take);
    }
    WriteExamples(m_ne, take);
}

}  // namespace NS_KX
