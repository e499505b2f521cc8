/// The NE types that a sample network is made of.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include <kx_standalone/inventoryfile.h>

namespace NS_KX {

/// What the cards of one kind carry.
struct SampleCardKind {
    enum class PortNames { NONE, NUMBERED, BY_PLACE };  ///< "", "client 3", "GE1/2/3" (from the shelf inward)

    /// What ends on the ports.
    enum class Terminations { NONE, ACCESS_POINTS, SUB_INTERFACES, PATHS };

    PortNames portNames;
    std::string_view portPrefix;
    std::int32_t ppType;
    std::int32_t fbType;
    std::int32_t leastPorts;
    std::int32_t mostPorts;
    std::int32_t mostSubSlots;  ///< 0: the ports sit on the card itself
    Terminations terminations;
};

/// One NE type, and how its NEs are equipped.
struct SampleNeType {
    std::uint16_t neType;
    std::string_view name;
    bool ipService;
    bool klv;
    bool multiSubShelf;
    std::uint32_t share;       ///< how many of a thousand NEs are of this type
    std::int32_t mostShelves;  ///< 0: the slots sit in the NE itself
    std::int32_t leastSlots;   ///< in each shelf
    std::int32_t mostSlots;
    std::int32_t mostLogicalPorts;
    std::array<const SampleCardKind*, 3> cardKinds;
};

/// All NE types of sample networks; their shares add up to a thousand.
std::span<const SampleNeType> SampleNeTypes();

/// The domain lists that these types are in.
std::vector<NS_STANDALONE::DomainMemberRow> SampleDomainMembers();

}  // namespace NS_KX
