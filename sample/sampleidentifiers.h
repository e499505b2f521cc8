#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "sample/samplenetwork.h"

namespace NS_KX {

/// Receives one identifier after the other; the text is valid only during the call.
using TakeIdentifier = std::function<void(const std::string& fdn)>;

/// Writes identifiers of every kind for a sample network. Each comes from a writer of the library, or is of a kind
/// that the library only reads. Reading and rewriting it gives the same bytes, with the network's inventory and without
/// configuration items. A `SampleInventoryService` of the network must exist meanwhile.
class SampleIdentifiers {
public:
    explicit SampleIdentifiers(const SampleNetwork& network) noexcept : m_network(network) {}

    /// Writes the identifiers of one NE and of everything in it, in a fixed order. The identifier of an administrative
    /// area comes before those of its first NE.
    void Write(std::int32_t neId, const TakeIdentifier& take);

private:
    const SampleNetwork& m_network;
    SampleNe m_ne;  // kept, so that its lists grow only once
};

}  // namespace NS_KX
