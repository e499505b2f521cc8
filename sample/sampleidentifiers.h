#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "sample/samplenetwork.h"

namespace NS_KX {

/// Is given one identifier after the other; the text is only lent.
using TakeIdentifier = std::function<void(const std::string& fdn)>;

/// Writes the identifiers of a sample network, of every kind. Each is what the library's own writers give, or of a kind
/// that the library keeps as text; so it comes back byte for byte under the network's inventory and without
/// configuration items. A `SampleInventoryService` of the network must live.
class SampleIdentifiers {
public:
    explicit SampleIdentifiers(const SampleNetwork& network) noexcept : m_network(network) {}

    /// Writes those of one NE and of all that is in it, in a fixed order; before the first NE of an administrative area
    /// that of the area.
    void Write(std::int32_t neId, const TakeIdentifier& take);

private:
    const SampleNetwork& m_network;
    SampleNe m_ne;  // kept, so that its lists grow only once
};

}  // namespace NS_KX
