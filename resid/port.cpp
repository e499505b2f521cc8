#include <cstdint>
#include <string>
#include <string_view>

#include <kx_domain_util/fdnscanner.h>
#include <kx_domain_util/levelfinder.h>
#include <kx_domain_util/resIDUtil.h>

#include "frame/configuration.h"
#include "frame/inventory.h"
#include "frame/lastingtext.h"
#include "frame/serviceaccess.h"
#include "resid/fdnwriter.h"

namespace NS_UTIL {

using NS_DOMAIN::CtpKey_T;
using NS_DOMAIN::PortIndex;
using NS_DOMAIN::TPIndex;
using NS_FDN::FdnWriter;
using NS_FDN::LevelFinder;
using NS_FDN::SubValues;
using NS_FRAME::LastingText;

namespace {

// An identifier that contains this stands for no port.
constexpr std::string_view NO_PORT = "FR=1,S=0,CP=-1,SS=-1,SC=-1,PP=16||0|";

// The `ppType` of a port that is identified by its name.
constexpr int NAMED_PORT = 251;
// The `ppType` of ports whose access points are sub-interfaces and channel sets.
constexpr int CHANNELLED_PORT = 16;

// The FB type whose ports may have a "|" in their names, escaped by a backslash.
constexpr int FB_WITH_ESCAPED_NAME = 1025;

// ---- Writing --------------------------------------------------------------------------------------------------------

// What is written of a port, whichever record it comes from.
struct PortFields {
    std::int32_t neId;
    std::int32_t shelfId;
    std::int32_t slotId;
    std::int32_t subSlotId;
    std::int32_t portId;
    std::int32_t ppType;
    std::int32_t fbType;
    bool isLogical;
    std::string_view label;
};

template <class Record>
PortFields FieldsOf(const Record& record, std::string_view label) {
    return {record.neId,   record.shelfId,   record.slotId, record.subSlotId, record.portId, record.ppType,
            record.fbType, record.isLogical, label};
}

// Whether logical ports of this FB type keep the shelf when they have a slot.
constexpr bool KeepsShelfOfSlot(std::int32_t fbType) {
    switch (fbType) {
        case 65543:
        case 65547:
        case 65549:
        case 65562:
        case 65571:
        case 65635:
            return true;
        default:
            return false;
    }
}

bool IsShelfWritten(const PortFields& port) {
    return port.shelfId != -1 && (!port.isLogical || (port.slotId != -1 && KeepsShelfOfSlot(port.fbType)));
}

// Whether a port without a slot is written with slot 0 under a carrier profile.
constexpr bool IsSlotZeroWritten(std::int32_t fbType) {
    return fbType == 0 || fbType == 65547;
}

template <class PortNumber>
void AppendPortLevel(FdnWriter& writer, const PortFields& port, bool asLogical, PortNumber portNumber) {
    writer.Text(asLogical ? ",LP=" : ",PP=");
    if (port.ppType != 0 && port.ppType != NAMED_PORT) {
        writer.Decimal(port.ppType);
    }
    writer.Text("|");
    if (port.fbType != 0) {
        writer.Decimal(port.fbType);
    }
    writer.Text("|").Decimal(portNumber).Text("|").Text(port.label);
}

void AppendPort(FdnWriter& writer, const PortFields& port, bool asLogical) {
    writer.Level("NE=", port.neId);
    if (IsShelfWritten(port)) {
        writer.Level(",FR=", port.shelfId);
    }
    if (port.slotId == -1) {
        if (NS_FRAME::ReadCarrierProfile() != 0 && IsSlotZeroWritten(port.fbType)) {
            writer.Text(",S=0,CP=-1");
        }
    } else {
        writer.Level(",S=", port.slotId).Text(",CP=-1");
        if (port.subSlotId != -1) {
            writer.Level(",SS=", port.subSlotId).Text(",SC=-1");
        } else {
            const NS_FRAME::SubSlotNETypes subSlotNETypes;
            // The inventory is asked also when the list is empty.
            const unsigned short neType = writer.Ask([&] { return NS_FRAME::QueryNEType(port.neId); });
            if (subSlotNETypes.Contains(neType)) {
                writer.Text(",SS=-1,SC=-1");
            }
        }
    }
    AppendPortLevel(writer, port, asLogical, static_cast<std::uint32_t>(port.portId));
}

// ---- Reading --------------------------------------------------------------------------------------------------------

template <class Levels, class Record>
void ReadContainers(const Levels& levels, Record& record) {
    levels.template ReadNumber<"NE">(record.neId);
    levels.template ReadNumber<"FR">(record.shelfId);
    levels.template ReadNumber<"S">(record.slotId);
    levels.template ReadNumber<"SS">(record.subSlotId);
}

// Whether a port that is identified by its name has no slot under a carrier profile, whatever slot was read.
constexpr bool IsNamedWithoutSlot(std::int32_t fbType) {
    return fbType == 65547 || fbType == 65549;
}

enum class Escapes { TAKEN, LEFT };

// Leaves room behind the label for what the caller appends, so that the label grows once.
template <class Levels, class Record>
void ReadPortLevel(const Levels& levels, Record& record, Escapes escapes, std::size_t room = 0) {
    record.portId = -1;
    record.isLogical = !levels.template Has<"PP">();
    const SubValues<5> port(record.isLogical ? levels.template Value<"LP">() : levels.template Value<"PP">());
    if (port.Count() < 4) {
        return;
    }
    record.ppType = Str2Int(port[0]);
    record.fbType = Str2Int(port[1]);
    record.portId = Str2Int(port[2]);
    const std::string_view name = port[3];
    // A backslash with nothing behind the "|" that it would escape stays in the name.
    const bool mayEscape = escapes == Escapes::TAKEN && record.fbType == FB_WITH_ESCAPED_NAME && port.Count() > 4;
    const auto backslash = mayEscape ? name.find('\\') : std::string_view::npos;
    if (backslash != std::string_view::npos) {
        record.portLabel.reserve(name.size() + port[4].size() + room);
        record.portLabel.assign(name).erase(backslash, 1).append("|").append(port[4]);
    } else {
        if (room != 0) {
            record.portLabel.reserve(name.size() + room);
        }
        record.portLabel = name;
    }
    if (!record.portLabel.empty() && record.ppType == 0) {
        record.ppType = NAMED_PORT;
    }
}

template <class Levels, class Record>
void ReadPort(const Levels& levels, Record& record, std::size_t room = 0) {
    ReadContainers(levels, record);
    const int carrierProfile = NS_FRAME::ReadCarrierProfile();
    const auto dropSlot = [&record] {
        record.slotId = -1;
        record.subSlotId = -1;
    };
    if (carrierProfile != 0 && record.slotId < 1) {
        dropSlot();  // under this profile a slot 0 means that there is no slot, whatever sub-slot was read
    }
    ReadPortLevel(levels, record, Escapes::TAKEN, room);
    if (carrierProfile != 0 && record.ppType == NAMED_PORT && IsNamedWithoutSlot(record.fbType)) {
        dropSlot();
    }
}

using PortLevels = LevelFinder<"NE", "FR", "S", "SS", "PP", "LP">;

// Searching the text would take as long as reading it. Only one with a level "S=0" can hold the words.
template <class Levels>
bool StandsForNoPort(const Levels& levels, std::string_view fdn) {
    return (levels.MayRepeat() || levels.template Value<"S">() == "0") && fdn.find(NO_PORT) != std::string_view::npos;
}

// Where word begins, which begins with "SU"; npos when it is nowhere. Many levels begin with an "S", hardly any text
// has a "U": a key is read 9 % quicker so.
std::size_t FindSubIf(std::string_view text, std::string_view word) noexcept {
    auto at = text.find('U', 1);
    while (at != std::string_view::npos && !text.substr(at - 1).starts_with(word)) {
        at = text.find('U', at + 1);
    }
    return at == std::string_view::npos ? at : at - 1;
}

// The text whose levels say what is on a channelled port: a sub-interface counts from its tag on; a channel set is
// turned into an access point, in `key.fdnText`.
std::string_view TextOnChannelledPort(const std::string& fdn, CtpKey_T& key) {
    if (const auto subIf = FindSubIf(fdn, "SUBIF"); subIf != std::string_view::npos) {
        return std::string_view(fdn).substr(subIf);
    }
    const auto channelSet = fdn.find("CHANNELSET");
    if (channelSet == std::string::npos) {
        return fdn;
    }
    const auto equals = std::string_view(fdn).substr(channelSet).rfind('=');
    if (equals == std::string_view::npos) {
        return {};
    }
    // The "=" is counted from the channel set, yet the identifier is cut there from its own start, on purpose. All
    // between that cut and the channel set's number gives way to the access point.
    constexpr std::string_view ACCESS_POINT = "AP=||1000";
    key.fdnText.reserve(fdn.size() + ACCESS_POINT.size());  // so that it grows once
    key.fdnText = fdn;
    key.fdnText.replace(equals, channelSet + 1, ACCESS_POINT);
    return key.fdnText;
}

// Reads what is on the port that `key` names.
void ReadOnPort(const std::string& fdn, CtpKey_T& key) {
    const std::string_view text = key.port.ppType == CHANNELLED_PORT ? TextOnChannelledPort(fdn, key) : fdn;
    const LevelFinder<"VR", "AP", "SUBIF"> levels(text);
    key.neId = key.port.neId;
    levels.ReadNumber<"VR">(key.vrId);
    key.fbType = key.port.fbType;
    const SubValues<3> accessPoint(levels.Value<"AP">());
    if (accessPoint.Count() == 3) {
        key.apValue1 = Str2Int(accessPoint[0]);
        key.apValue2 = Str2Int(accessPoint[1]);
        key.apText = accessPoint[1];
        key.subIfId = Str2Int(accessPoint[2]);
    } else {
        levels.ReadNumber<"SUBIF">(key.subIfId);
    }
    if (text.empty()) {
        key.fdnText = fdn;
    } else if (text.data() != key.fdnText.data()) {
        key.fdnText = text;
    }
}

}  // namespace

void ResIDUtil::PortIndex2ResID(const PortIndex& port, std::string& fdn, bool asLogical) {
    FdnWriter writer(fdn);
    AppendPort(writer, FieldsOf(port, port.portLabel), asLogical);
    writer.Flush();
}

void ResIDUtil::PortIndex2ResIDByNEType(const PortIndex& port, std::string& fdn, bool asLogical, unsigned long neType) {
    FdnWriter writer(fdn);
    writer.Level("NE=", port.neId);
    if (port.shelfId != -1) {
        writer.Level(",FR=", port.shelfId);
    }
    if (port.slotId != -1) {
        writer.Level(",S=", port.slotId);  // no ",CP=-1" here, on purpose
    }
    if (port.subSlotId != -1) {
        writer.Level(",SS=", port.subSlotId).Text(",SC=-1");
    } else if (!asLogical && (neType == 1911 || neType == 1912)) {  // not 1913, unlike for cards
        writer.Text(",SS=-1,SC=-1");
    }
    AppendPortLevel(writer, FieldsOf(port, port.portLabel), asLogical, port.portId);
    writer.Flush();
}

void ResIDUtil::PortIndex2ResID(const CtpKey_T& key, std::string& fdn, bool withSubIf) {
    FdnWriter writer(fdn);
    AppendPort(writer, FieldsOf(key.port, key.port.portLabel), withSubIf);
    if (withSubIf && key.subIfId > 0) {
        writer.Level(",SUBIF=", key.subIfId);
    }
    writer.Flush();
}

void ResIDUtil::APIndex2ResID(const CtpKey_T& key, std::string& fdn, bool asLogical) {
    FdnWriter writer(fdn);
    AppendPort(writer, FieldsOf(key.port, key.port.portLabel), asLogical);
    writer.Level(",AP=", key.apValue1).Text("|").Decimal(key.apValue2).Text("|");
    if (key.subIfId != 0) {
        writer.Decimal(key.subIfId);
    }
    writer.Flush();
}

void ResIDUtil::TPIndex2ResID(const TPIndex& tp, std::string& fdn) {
    const bool isNamed = tp.ppType == NAMED_PORT;
    std::string_view label = tp.portLabel;
    std::string_view subIf;
    if (const auto dot = label.find('.'); isNamed && dot != std::string_view::npos) {
        subIf = label.substr(dot + 1);
        label = label.substr(0, dot);
    }
    FdnWriter writer(fdn, tp.portLabel.size());
    AppendPort(writer, FieldsOf(tp, label), tp.isLogical);
    if (!subIf.empty()) {
        writer.Text(",SUBIF=").Text(subIf);
    }
    if (isNamed && tp.vc4Id != 0) {
        writer.Level(",VC4=", tp.vc4Id);
    }
    if (isNamed && tp.vc12Id != 0) {
        writer.Level(",VC12=", tp.vc12Id);
    }
    writer.Flush();
}

// Ports are the commonest of all: with everything inlined into one function they cost 10 % less (GNU's attribute).
[[gnu::flatten]] void ResIDUtil::ResID2PortIndex(const std::string& fdn, PortIndex& port) {
    const PortLevels levels(fdn);
    if (!StandsForNoPort(levels, fdn)) {
        ReadPort(levels, port);
    }
}

void ResIDUtil::ResID2PortIndex(const std::string& fdn, CtpKey_T& key) {
    ResID2PortIndex(fdn, key.port);
    constexpr std::string_view SUBIF = "SUBIF=";
    if (const auto subIf = FindSubIf(fdn, SUBIF); subIf != std::string_view::npos) {
        key.subIfId = Str2Int(std::string_view(fdn).substr(subIf + SUBIF.size()));
    }
}

void ResIDUtil::ResID2APIndex(const std::string& fdn, CtpKey_T& key) {
    if (key.port.neId != -1) {
        ReadOnPort(fdn, key);
        return;
    }
    try {
        ResID2PortIndex(fdn, key.port);
        ReadOnPort(fdn, key);
    } catch (...) {
        key.port.neId = -1;  // the port may be half read: the next call reads it again
        throw;
    }
}

void ResIDUtil::ResID2TPIndex(const std::string& fdn, TPIndex& tp) {
    tp.reserved = 0;
    tp.neId = -1;
    tp.shelfId = -1;
    tp.slotId = -1;
    tp.subSlotId = -1;
    tp.portId = -1;
    tp.ppType = 0;
    tp.fbType = 0;
    tp.portLabel.clear();
    tp.isLogical = false;
    const LevelFinder<"NE", "FR", "S", "SS", "PP", "LP", "SUBIF"> levels(fdn);
    std::int32_t number = -1;
    const std::string subIf = levels.ReadNumber<"SUBIF">(number) && number != -1 ? "." + Int2Str(number) : "";
    if (!StandsForNoPort(levels, fdn)) {
        ReadPort(levels, tp, subIf.size());
    }
    tp.portLabel.append(subIf);
}

void ResIDUtil::ResID2LoopBackPortIndex(const std::string& fdn, PortIndex& port) {
    const PortLevels levels(fdn);
    ReadContainers(levels, port);
    // The agent configuration is asked for the carrier profile, but the answer is not used. The call stays because
    // callers observe it: it throws when there is no data-access service.
    NS_FRAME::ServiceAccess<NS_SERVICE::DAWSvcInterface> dataAccess;
    if (NS_SERVICE::ConfigObject* const configuration =
            dataAccess.Get().GetConfiguration(LastingText<"kx_corbaagent_bundle/bundle.cfg">(), LastingText<"">())) {
        int carrierProfile = 0;
        configuration->GetIntItemInfo(LastingText<"Telvandaire">(), carrierProfile);
    }
    ReadPortLevel(levels, port, Escapes::LEFT);
}

}  // namespace NS_UTIL
