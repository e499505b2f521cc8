#include <kx_platform/dawsvcinterface.h>
#include <kx_platform/inventorybufif.h>
#include <kx_platform/logsvcinterface.h>

namespace NS_SERVICE {

InventoryBufif::~InventoryBufif() = default;
ConfigObject::~ConfigObject() = default;
DAWSvcInterface::~DAWSvcInterface() = default;
ModuleLogger::~ModuleLogger() = default;
LogSvcInterface::~LogSvcInterface() = default;

}  // namespace NS_SERVICE
