#include "catalogue/readport.h"

#include <kx_domain_util/fdn.h>
#include <kx_domain_util/fdnscanner.h>
#include <kx_domain_util/levelfinder.h>

#include "catalogue/conversion.h"
#include "catalogue/kinds.h"

namespace NS_KX {

namespace {

// Whether the first level that may be a port's has the sub-values of one.
bool HasPortLevel(std::string_view fdn) {
    constexpr std::size_t SUB_VALUES = 4;
    const NS_UTIL::NS_FDN::LevelFinder<"PP", "LP"> levels(fdn);
    const std::string_view value = levels.Has<"PP">() ? levels.Value<"PP">() : levels.Value<"LP">();
    return NS_UTIL::NS_FDN::SubValues<SUB_VALUES>(value).Count() == SUB_VALUES;
}

}  // namespace

bool ReadPort(std::string_view fdn, NS_DOMAIN::PortIndex& port) {
    if (NS_UTIL::NS_FDN::Conversion<NS_DOMAIN::PortIndex>::Read(fdn, port, NO_SURROUNDINGS)) {
        return true;
    }
    // A text that stands for no port fills no field.
    return HasPortLevel(fdn) && port != NS_DOMAIN::PortIndex();
}

}  // namespace NS_KX
