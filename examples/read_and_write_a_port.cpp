// prints: NE 12, slot 3, port 7 is GE0/7
// prints: NE=12,FR=1,S=3,CP=-1,SS=2,SC=-1,PP=16|1025|8|GE0/7
#include <iostream>

#include <kx_domain_util/resIDUtil.h>

int main() {
    NS_DOMAIN::PortIndex port;
    NS_UTIL::ResIDUtil::ResID2PortIndex("NE=12,FR=1,S=3,CP=-1,SS=2,SC=-1,PP=16|1025|7|GE0/7", port);
    std::cout << "NE " << port.neId << ", slot " << port.slotId << ", port " << port.portId << " is " << port.portLabel
              << '\n';
    port.portId = 8;
    std::string fdn;
    NS_UTIL::ResIDUtil::PortIndex2ResID(port, fdn, port.isLogical);
    std::cout << fdn << '\n';
}
