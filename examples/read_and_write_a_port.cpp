// prints: NE 12, slot 3, port 7 is GE0/7
// prints: NE=12,FR=1,S=3,CP=-1,SS=2,SC=-1,PP=16|1025|8|GE0/7
#include <iostream>

#include <kx_domain_util/fdn.h>

int main() {
    using NS_DOMAIN::PortIndex;
    auto port = NS_UTIL::NS_FDN::Read<PortIndex>("NE=12,FR=1,S=3,CP=-1,SS=2,SC=-1,PP=16|1025|7|GE0/7");
    if (!port) {
        return 1;  // the text names no port
    }
    std::cout << "NE " << port->neId << ", slot " << port->slotId << ", port " << port->portId << " is "
              << port->portLabel << '\n';
    port->portId = 8;
    std::cout << NS_UTIL::NS_FDN::Write<PortIndex>(*port) << '\n';
}
