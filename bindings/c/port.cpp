#include <algorithm>
#include <string_view>

#include <kx_domain_util/domainindex.h>
#include <kx_domain_util/fdnscanner.h>
#include <kx_domain_util/levelfinder.h>

#include "bindings/c/guard.h"
#include "catalogue/readport.h"

using namespace NS_KX;
using namespace NS_KX::NS_C;
using NS_DOMAIN::PortIndex;

namespace {

// The fourth sub-value of the port's level; without data if there is none.
std::string_view NameIn(std::string_view fdn, const PortIndex& port) {
    const NS_UTIL::NS_FDN::LevelFinder<"PP", "LP"> levels(fdn);
    const NS_UTIL::NS_FDN::SubValues<4> subValues(port.isLogical ? levels.Value<"LP">() : levels.Value<"PP">());
    return subValues[3];
}

}  // namespace

kx_status kx_read_port(const char* fdn, size_t size, kx_port* port, char* room, size_t room_size) {
    return Guarded([&]() -> kx_status {
        if (!IsText(fdn, size) || port == nullptr || !IsText(room, room_size)) {
            return KX_BAD_ARGUMENT;
        }
        const std::string_view text = ViewOf(fdn, size);
        static const PortIndex fresh;
        thread_local PortIndex read;  // kept, so that its name has room
        read = fresh;
        ReadPort(text, read);
        std::string_view name = NameIn(text, read);
        if (read.portLabel.empty()) {
            name = name.substr(0, 0);  // that of a text which stands for no port is not read
        } else if (name != read.portLabel) {
            if (read.portLabel.size() > room_size) {
                return KX_BAD_ARGUMENT;
            }
            std::copy(read.portLabel.begin(), read.portLabel.end(), room);
            name = {room, read.portLabel.size()};
        }
        *port = {read.neId,
                 read.shelfId,
                 read.slotId,
                 read.subSlotId,
                 KnownTypeOrNone(read.ppType),
                 KnownTypeOrNone(read.fbType),
                 read.portId,
                 read.isLogical,
                 TextOf(name)};
        return KX_OK;
    });
}
