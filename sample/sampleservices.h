/// The services of the NEs of a sample network, with the tunnels that carry them and the points that monitor them.
#pragma once

#include "sample/sampleidentifiers.h"
#include "sample/splitmix64.h"

namespace NS_KX {

/// Writes the identifiers of tunnels, pseudo-wires, services, trails, and maintenance points. Most NEs that do not
/// switch packets have none.
void WriteServices(const SampleNe& ne, SplitMix64& random, const TakeIdentifier& take);

}  // namespace NS_KX
