#include "frame/serviceaccess.h"

#include <kx_domain_util/processexception.h>

namespace NS_UTIL::NS_FRAME {

void ThrowInterfaceNotExist() {
    ProcessException cause;
    cause.m_code = InterfaceNotExistException::INTERFACE_NOT_EXIST;
    throw InterfaceNotExistException(cause);
}

}  // namespace NS_UTIL::NS_FRAME
