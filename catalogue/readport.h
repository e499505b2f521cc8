/// Ports as tables show them. Any thread.
#pragma once

#include <string_view>

#include <kx_domain_util/domainindex.h>

namespace NS_KX {

/// Reads `fdn` into `port`, a fresh one, and asks no service. Returns whether that is a port: `fdn` has a port level
/// with all its sub-values, with or without an NE, and does not stand for "no port".
bool ReadPort(std::string_view fdn, NS_DOMAIN::PortIndex& port);

/// A PP type or FB type as a table shows it: -1 if there is none, for which records have 0.
constexpr int KnownTypeOrNone(int type) noexcept {
    return type != 0 ? type : -1;
}

}  // namespace NS_KX
