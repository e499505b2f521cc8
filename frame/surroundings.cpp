#include <kx_domain_util/surroundings.h>

#include "frame/serviceaccess.h"
#include "frame/systemsurroundings.h"

namespace NS_UTIL {

const Surroundings& Surroundings::OfSystem() noexcept {
    return NS_FRAME::SYSTEM;
}

int Surroundings::CarrierProfile() const {
    return 0;
}

int Surroundings::AgentCarrierProfile() const {
    return 0;
}

unsigned short Surroundings::NEType(int /*neId*/) const {
    NS_FRAME::ThrowInterfaceNotExist();
}

bool Surroundings::SpellsOutSubSlot(int /*neId*/) const {
    NS_FRAME::ThrowInterfaceNotExist();
}

bool Surroundings::IsMdNumberOmitted(int /*neId*/) const {
    NS_FRAME::ThrowInterfaceNotExist();
}

bool Surroundings::IsMaNumberOmitted(int /*neId*/) const {
    NS_FRAME::ThrowInterfaceNotExist();
}

}  // namespace NS_UTIL
