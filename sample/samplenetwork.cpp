#include "sample/samplenetwork.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include <kx_domain_util/portrules.h>

#include "sample/splitmix64.h"

namespace NS_KX {

namespace {

using NS_DOMAIN::PortIndex;
using NS_UTIL::NAMED_PORT;

// What operators write after a port's name.
constexpr std::array<std::string_view, 12> PLACES{
    "to Nordbahnhof", "to Lyon Part-Dieu", "→ München Süd", "→ Kraków", "spare",       "ring 7 west",
    "to Åre",         "\"old\" link",      "北京",          "to Évora", "customer 17", "to Bergen"};

struct LogicalPortKind {
    std::int32_t fbType;
    std::string_view name;
    bool isOnCard;  // it has a shelf and a slot
};

constexpr std::array<LogicalPortKind, 4> LOGICAL_PORT_KINDS{{
    {65547, "vlanif", false},
    {65540, "loopback ", false},
    {65543, "lag ", true},
    {65562, "tunnel-if ", true},
}};

// Per thousand NEs.
constexpr std::uint32_t ALL_SHARES = 1000;
constexpr std::uint32_t OAM_NUMBER_OMITTED_SHARE = 100;

// Each purpose draws from its own sequence, so that more draws for one leave the others unchanged.
enum class Purpose : std::uint64_t { TYPE = 1, EQUIPMENT = 2, OAM = 3 };

SplitMix64 Sequence(std::uint64_t seed, std::int32_t neId, Purpose purpose) noexcept {
    SplitMix64 mixer(seed ^ (static_cast<std::uint64_t>(purpose) << 56U));
    return SplitMix64(mixer.Next() + static_cast<std::uint64_t>(neId) * 0xD1342543DE82EF95U);
}

bool IsOamNumberOmittedOn(std::uint64_t seed, std::int32_t neId) noexcept {
    return Sequence(seed, neId, Purpose::OAM).Below(ALL_SHARES) < OAM_NUMBER_OMITTED_SHARE;
}

// "1/2/", from the shelf inward.
std::string Place(const PortIndex& port) {
    std::string place;
    for (const std::int32_t number : {port.shelfId, port.slotId, port.subSlotId}) {
        if (number != -1) {
            place.append(std::to_string(number)).append("/");
        }
    }
    return place;
}

void NamePort(const SampleCardKind& kind, SplitMix64& random, PortIndex& port) {
    if (kind.portNames == SampleCardKind::PortNames::NONE) {
        return;
    }
    port.portLabel = kind.portPrefix;
    if (kind.portNames == SampleCardKind::PortNames::BY_PLACE) {
        port.portLabel += Place(port);
    }
    port.portLabel += std::to_string(port.portId);
    if (random.OneIn(8)) {
        port.portLabel.append(" ").append(random.OneOf(PLACES));
    }
    if (port.ppType == 0) {
        port.ppType = NAMED_PORT;
    }
}

void AddPorts(const SampleCardKind& kind, const PortIndex& place, SplitMix64& random, SampleNe& ne) {
    const std::int32_t count = random.Between(kind.leastPorts, kind.mostPorts);
    for (std::int32_t number = 1; number <= count; ++number) {
        PortIndex& port = ne.ports.emplace_back(SamplePort{place, kind.terminations}).index;
        port.portId = number;
        port.ppType = kind.ppType;
        port.fbType = kind.fbType;
        NamePort(kind, random, port);
    }
}

void AddCard(std::int32_t shelfId, std::int32_t slotId, SplitMix64& random, SampleNe& ne) {
    const SampleCardKind& kind = *random.OneOf(ne.type->cardKinds);
    ne.cards.push_back({0, ne.neId, shelfId, slotId});
    PortIndex place;
    place.neId = ne.neId;
    place.shelfId = shelfId;
    place.slotId = slotId;
    if (kind.mostSubSlots == 0) {
        AddPorts(kind, place, random, ne);
        return;
    }
    const std::int32_t subSlots = random.Between(1, kind.mostSubSlots);
    for (place.subSlotId = 1; place.subSlotId <= subSlots; ++place.subSlotId) {
        ne.subSlots.push_back({0, ne.neId, shelfId, slotId, place.subSlotId});
        AddPorts(kind, place, random, ne);
    }
}

void AddCards(std::int32_t shelfId, SplitMix64& random, SampleNe& ne) {
    const std::int32_t slots = random.Between(ne.type->leastSlots, ne.type->mostSlots);
    for (std::int32_t slotId = 1; slotId <= slots; ++slotId) {
        AddCard(shelfId, slotId, random, ne);
    }
}

void AddLogicalPorts(SplitMix64& random, SampleNe& ne) {
    const std::int32_t count = random.Between(0, ne.type->mostLogicalPorts);
    for (std::int32_t number = 1; number <= count; ++number) {
        const LogicalPortKind& kind = random.OneOf(LOGICAL_PORT_KINDS);
        PortIndex& port = ne.ports.emplace_back(SamplePort{{}, SampleCardKind::Terminations::SUB_INTERFACES}).index;
        port.neId = ne.neId;
        port.portId = number;
        port.ppType = NAMED_PORT;
        port.fbType = kind.fbType;
        port.portLabel.assign(kind.name).append(std::to_string(number));
        port.isLogical = true;
        const NS_DOMAIN::CardIndex& card = random.OneOf(ne.cards);
        if (kind.isOnCard && card.shelfId != -1) {
            port.shelfId = card.shelfId;
            port.slotId = card.slotId;
        }
    }
}

void Clear(SampleNe& ne) {
    ne.shelves.clear();
    ne.cards.clear();
    ne.subSlots.clear();
    ne.ports.clear();
}

}  // namespace

const SampleNeType& SampleNetwork::NeType(std::int32_t neId) const noexcept {
    std::uint32_t drawn = Sequence(m_seed, neId, Purpose::TYPE).Below(ALL_SHARES);
    const auto types = SampleNeTypes();
    auto type = types.begin();
    while (drawn >= type->share) {
        drawn -= type->share;
        ++type;
    }
    return *type;
}

void SampleNetwork::DrawNe(std::int32_t neId, SampleNe& ne) const {
    Clear(ne);
    ne.neId = neId;
    ne.type = &NeType(neId);
    SplitMix64 random = Sequence(m_seed, neId, Purpose::EQUIPMENT);
    if (ne.type->mostShelves == 0) {
        AddCards(-1, random, ne);
    }
    const std::int32_t shelves = ne.type->mostShelves == 0 ? 0 : random.Between(1, ne.type->mostShelves);
    for (std::int32_t shelfId = 1; shelfId <= shelves; ++shelfId) {
        ne.shelves.push_back({0, neId, shelfId});
        AddCards(shelfId, random, ne);
    }
    AddLogicalPorts(random, ne);
}

NS_STANDALONE::NeRow SampleNetwork::InventoryRow(std::int32_t neId) const noexcept {
    const SampleNeType& type = NeType(neId);
    return {neId, type.neType, type.multiSubShelf, IsOamNumberOmittedOn(m_seed, neId)};
}

NS_STANDALONE::Inventory SampleNetwork::MakeInventory(std::int32_t neCount) const {
    NS_STANDALONE::Inventory inventory;
    for (const SampleNeType& type : SampleNeTypes()) {
        inventory.neTypes.push_back({type.neType, std::string(type.name), type.ipService, type.klv});
    }
    std::sort(inventory.neTypes.begin(), inventory.neTypes.end(),
              [](const auto& left, const auto& right) { return left.neType < right.neType; });
    inventory.nes.reserve(static_cast<std::size_t>(neCount));
    for (std::int32_t neId = 1; neId <= neCount; ++neId) {
        inventory.nes.push_back(InventoryRow(neId));
    }
    inventory.domainMembers = SampleDomainMembers();
    return inventory;
}

}  // namespace NS_KX
