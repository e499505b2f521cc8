/// The services of the NEs of a sample network, with the tunnels that carry them and the points that monitor them.
#pragma once

#include <string_view>
#include <vector>

#include "sample/sampleidentifiers.h"
#include "sample/splitmix64.h"

namespace NS_KX {

/// Writes the identifiers of tunnels, pseudo-wires, services, trails, and maintenance points. Most NEs that do not
/// switch packets have none.
void WriteServices(const SampleNe& ne, SplitMix64& random, const TakeIdentifier& take);

/// The types that it writes.
std::vector<std::string_view> TypesOfServices();

}  // namespace NS_KX
