#include <iostream>

#include <kx_domain_util/netype.h>
#include <kx_domain_util/processexception.h>
#include <kx_domain_util/resIDUtil.h>
#include <kx_platform/configitems.h>

int main() {
    NS_BUNDLEMGR1::CorbaConfigItems::Instance()->SetItem("Telvandaire", "1");
    NS_DOMAIN::PortIndex port;
    port.neId = 7;
    std::string fdn;
    NS_UTIL::ResIDUtil::PortIndex2ResID(port, fdn, false);
    std::cout << fdn << '\n';
    try {
        NS_UTIL::IsKLVNE(1);
    } catch (NS_UTIL::ProcessException& missing) {
        std::cout << std::hex << missing.m_code << '\n';
    }
}
