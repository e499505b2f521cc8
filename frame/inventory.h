#pragma once

namespace NS_UTIL::NS_FRAME {

/// The NE type of the NE `neId` as the inventory has it; 0 when it does not know the NE. Throws
/// `InterfaceNotExistException` when there is no inventory.
unsigned short QueryNEType(int neId);

}  // namespace NS_UTIL::NS_FRAME
