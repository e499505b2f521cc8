/// The services of the NEs of a sample network, with what they run over and what watches them.
#pragma once

#include "sample/sampleidentifiers.h"
#include "sample/splitmix64.h"

namespace NS_KX {

/// Writes their identifiers: tunnels, pseudo-wires, services, trails, and the points of maintenance. None on most NEs
/// that do not switch packets.
void WriteServices(const SampleNe& ne, SplitMix64& random, const TakeIdentifier& take);

}  // namespace NS_KX
