#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include <kx_domain_util/fdn.h>
#include <kx_domain_util/fdnscanner.h>
#include <kx_domain_util/levelfinder.h>
#include <kx_domain_util/portrules.h>
#include <kx_domain_util/resIDUtil.h>

#include "frame/systemsurroundings.h"
#include "resid/fdnwriter.h"
#include "resid/owntext.h"

namespace NS_UTIL {

using NS_DOMAIN::CtpKey_T;
using NS_DOMAIN::PortIndex;
using NS_DOMAIN::TPIndex;
using NS_FRAME::SYSTEM;

namespace NS_FDN {

namespace {

// An identifier that contains this stands for no port.
constexpr std::string_view NO_PORT = "FR=1,S=0,CP=-1,SS=-1,SC=-1,PP=16||0|";

// The `ppType` of ports whose access points are sub-interfaces and channel sets.
constexpr int CHANNELLED_PORT = 16;

// ---- Writing --------------------------------------------------------------------------------------------------------

// The fields that a port writer needs, from any record.
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

bool IsShelfWritten(const PortFields& port) {
    return port.shelfId != -1 && (!port.isLogical || (port.slotId != -1 && PortRulesOf(port.fbType).keepsShelf));
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

void AppendPort(FdnWriter& writer, const PortFields& port, bool asLogical, const Surroundings& surroundings) {
    writer.Level("NE=", port.neId);
    if (IsShelfWritten(port)) {
        writer.Level(",FR=", port.shelfId);
    }
    if (port.slotId == -1) {
        const auto hasCarrierProfile = [&] { return surroundings.CarrierProfile() != 0; };
        if (PortRulesOf(port.fbType).hasSlotZero && writer.Ask(hasCarrierProfile)) {
            writer.Text(",S=0,CP=-1");
        }
    } else {
        writer.Level(",S=", port.slotId).Text(",CP=-1");
        if (port.subSlotId != -1) {
            writer.Level(",SS=", port.subSlotId).Text(",SC=-1");
        } else if (writer.Ask([&] { return surroundings.SpellsOutSubSlot(port.neId); })) {
            writer.Text(",SS=-1,SC=-1");
        }
    }
    AppendPortLevel(writer, port, asLogical, static_cast<std::uint32_t>(port.portId));
}

// ---- Reading --------------------------------------------------------------------------------------------------------

// Returns whether there is an NE.
template <class Levels, class Record>
bool ReadContainers(const Levels& levels, Record& record) {
    const bool hasNE = levels.template ReadNumber<"NE">(record.neId);
    levels.template ReadNumber<"FR">(record.shelfId);
    levels.template ReadNumber<"S">(record.slotId);
    levels.template ReadNumber<"SS">(record.subSlotId);
    return hasNE;
}

enum class Escapes { TAKEN, LEFT };

// Returns whether there is a port level with four sub-values. Leaves `room` bytes after the label for what the caller
// appends, so that the label grows once.
template <class Levels, class Record>
bool ReadPortLevel(const Levels& levels, Record& record, Escapes escapes, std::size_t room = 0) {
    record.portId = -1;
    record.isLogical = !levels.template Has<"PP">();
    const SubValues<5> port(record.isLogical ? levels.template Value<"LP">() : levels.template Value<"PP">());
    if (port.Count() < 4) {
        return false;
    }
    record.ppType = Str2Int(port[0]);
    record.fbType = Str2Int(port[1]);
    record.portId = Str2Int(port[2]);
    const std::string_view name = port[3];
    // A backslash with nothing after the "|" that it would escape stays in the name.
    const bool mayEscape = escapes == Escapes::TAKEN && port.Count() > 4;
    const auto backslash = mayEscape ? FindNameEscape(record.fbType, name) : std::string_view::npos;
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
    return true;
}

template <class Levels, class Record>
bool ReadPort(const Levels& levels, Record& record, const Surroundings& surroundings, std::size_t room = 0) {
    const bool hasNE = ReadContainers(levels, record);
    const bool hasCarrierProfile = surroundings.CarrierProfile() != 0;
    const auto dropSlot = [&record] {
        record.slotId = -1;
        record.subSlotId = -1;
    };
    if (hasCarrierProfile && record.slotId < 1) {
        dropSlot();  // under this profile a slot 0 means that there is no slot, whatever sub-slot was read
    }
    const bool hasPort = ReadPortLevel(levels, record, Escapes::TAKEN, room);
    if (hasCarrierProfile && record.ppType == NAMED_PORT && PortRulesOf(record.fbType).hasNoNamedSlot) {
        dropSlot();
    }
    return hasNE && hasPort;
}

using PortLevels = LevelFinder<"NE", "FR", "S", "SS", "PP", "LP">;

// Plain text: it counts wherever it stands. Only a text with a level "S=0" can hold it; others are not searched.
template <class Levels>
bool StandsForNoPort(const Levels& levels, std::string_view fdn) {
    return (levels.MayRepeat() || levels.template Value<"S">() == "0") && fdn.find(NO_PORT) != std::string_view::npos;
}

// Reads the port in `fdn`, which does not lie in the record. Flattened (an attribute of GNU compilers), since ports are
// the commonest of all identifiers.
[[gnu::flatten]] bool ReadPortIndex(std::string_view fdn, PortIndex& port, const Surroundings& surroundings) {
    const PortLevels levels(fdn);
    return !StandsForNoPort(levels, fdn) && ReadPort(levels, port, surroundings);
}

// ---- Reading of keys ------------------------------------------------------------------------------------------------

// Sub-interfaces and channel sets are searched as plain text: they count wherever they stand.

bool LiesIn(const CtpKey_T& key, std::string_view fdn) {
    return NS_FDN::LiesIn(key.port.portLabel, fdn) || NS_FDN::LiesIn(key.apText, fdn) ||
           NS_FDN::LiesIn(key.fdnText, fdn);
}

struct PortAndSubInterface {
    bool hasPort;
    bool hasSubInterface;
};

PortAndSubInterface ReadSubInterface(std::string_view fdn, CtpKey_T& key, const Surroundings& surroundings) {
    const bool hasPort = ReadPortIndex(fdn, key.port, surroundings);
    constexpr std::string_view SUBIF = "SUBIF=";
    const auto subIf = fdn.find(SUBIF);
    const bool hasSubInterface = subIf != std::string_view::npos;
    if (hasSubInterface) {
        key.subIfId = Str2Int(fdn.substr(subIf + SUBIF.size()));
    }
    return {hasPort, hasSubInterface};
}

// Returns the text whose levels say what is on a channelled port. It begins at a sub-interface's tag, or is made of a
// channel set, in `key.fdnText`.
std::string_view TextOnChannelledPort(std::string_view fdn, CtpKey_T& key) {
    if (const auto subIf = fdn.find("SUBIF"); subIf != std::string_view::npos) {
        return fdn.substr(subIf);
    }
    const auto channelSet = fdn.find("CHANNELSET");
    if (channelSet == std::string_view::npos) {
        return fdn;
    }
    const auto equals = fdn.substr(channelSet).rfind('=');
    if (equals == std::string_view::npos) {
        return {};
    }
    // The position of "=" is counted from the channel set, yet the identifier is cut at that position from its own
    // start, on purpose. The access point replaces everything between that cut and the channel set's number.
    constexpr std::string_view ACCESS_POINT = "AP=||1000";
    key.fdnText.reserve(fdn.size() + ACCESS_POINT.size());  // so that it grows once
    key.fdnText = fdn;
    key.fdnText.replace(equals, channelSet + 1, ACCESS_POINT);
    return key.fdnText;
}

// Reads what is on the port of `key`. Returns whether there is anything.
template <class Levels>
bool ReadOnPort(const Levels& levels, CtpKey_T& key) {
    key.neId = key.port.neId;
    const bool hasRouter = levels.template ReadNumber<"VR">(key.vrId);
    key.fbType = key.port.fbType;
    const SubValues<3> accessPoint(levels.template Value<"AP">());
    if (accessPoint.Count() == 3) {
        key.apValue1 = Str2Int(accessPoint[0]);
        key.apValue2 = Str2Int(accessPoint[1]);
        key.apText = accessPoint[1];
        key.subIfId = Str2Int(accessPoint[2]);
        return true;
    }
    return levels.template ReadNumber<"SUBIF">(key.subIfId) || hasRouter;
}

// The same for all of `fdn`, with its `levels`. A channelled port is read from the levels of `TextOnChannelledPort`.
template <class Levels>
bool ReadOnPort(const Levels& levels, std::string_view fdn, CtpKey_T& key) {
    const std::string_view text = key.port.ppType == CHANNELLED_PORT ? TextOnChannelledPort(fdn, key) : fdn;
    const bool isWhole = text.data() == fdn.data();
    const bool isThere = isWhole ? ReadOnPort(levels, key) : ReadOnPort(LevelFinder<"VR", "AP", "SUBIF">(text), key);
    if (text.empty()) {
        key.fdnText = fdn;
    } else if (text.data() != key.fdnText.data()) {
        key.fdnText = text;
    }
    return isThere;
}

// Reads the port, unless `key` has one already, and what is on it.
bool ReadAccessPoint(std::string_view fdn, CtpKey_T& key, const Surroundings& surroundings) {
    const LevelFinder<"NE", "FR", "S", "SS", "PP", "LP", "VR", "AP", "SUBIF"> levels(fdn);
    if (key.port.neId != -1) {
        return ReadOnPort(levels, fdn, key);
    }
    try {
        const bool hasPort = !StandsForNoPort(levels, fdn) && ReadPort(levels, key.port, surroundings);
        return ReadOnPort(levels, fdn, key) && hasPort;
    } catch (...) {
        key.port.neId = -1;  // the port may be half read: the next call reads it again
        throw;
    }
}

// ---- Reading of termination points ----------------------------------------------------------------------------------

bool ReadTerminationPoint(std::string_view fdn, TPIndex& tp, const Surroundings& surroundings) {
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
    std::array<char, std::string_view(".-2147483648").size()> subIf{'.'};
    std::size_t size = 0;
    if (levels.ReadNumber<"SUBIF">(number) && number != -1) {
        size =
            static_cast<std::size_t>(std::to_chars(&subIf[1], subIf.data() + subIf.size(), number).ptr - subIf.data());
    }
    const bool hasPort = !StandsForNoPort(levels, fdn) && ReadPort(levels, tp, surroundings, size);
    tp.portLabel.append(subIf.data(), size);
    return hasPort;
}

// ---- Writing of keys ------------------------------------------------------------------------------------------------

void WriteKey(const CtpKey_T& key, bool withSubIf, std::string& fdn, const Surroundings& surroundings) {
    FdnWriter writer(fdn);
    AppendPort(writer, FieldsOf(key.port, key.port.portLabel), withSubIf, surroundings);
    if (withSubIf && key.subIfId > 0) {
        writer.Level(",SUBIF=", key.subIfId);
    }
    writer.Flush();
}

}  // namespace

// ---- Ports ----------------------------------------------------------------------------------------------------------

bool Conversion<PortIndex>::Read(std::string_view fdn, PortIndex& port, const Surroundings& surroundings) {
    return ReadApart(fdn, LiesIn(port.portLabel, fdn),
                     [&](std::string_view text) { return ReadPortIndex(text, port, surroundings); });
}

void Conversion<PortIndex>::Write(const PortIndex& port, std::string& fdn, const Surroundings& surroundings) {
    WriteAs(port.isLogical, port, fdn, surroundings);
}

void Conversion<PortIndex>::WriteAs(bool asLogical, const PortIndex& port, std::string& fdn,
                                    const Surroundings& surroundings) {
    FdnWriter writer(fdn);
    AppendPort(writer, FieldsOf(port, port.portLabel), asLogical, surroundings);
    writer.Flush();
}

void Conversion<PortByNEType>::Write(const PortIndex& port, std::string& fdn, const Surroundings& surroundings) {
    WriteAs(port.isLogical, port, fdn, surroundings);
}

void Conversion<PortByNEType>::WriteAs(bool asLogical, const PortIndex& port, std::string& fdn,
                                       const Surroundings& surroundings) {
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
    } else if (!asLogical) {
        const auto neType = writer.Ask([&] { return surroundings.NEType(port.neId); });
        if (neType == 1911 || neType == 1912) {  // not 1913, unlike for cards
            writer.Text(",SS=-1,SC=-1");
        }
    }
    AppendPortLevel(writer, FieldsOf(port, port.portLabel), asLogical, port.portId);
    writer.Flush();
}

bool Conversion<LoopBackPort>::Read(std::string_view fdn, PortIndex& port, const Surroundings& surroundings) {
    const PortLevels levels(fdn);
    const bool hasNE = ReadContainers(levels, port);
    // The answer is not used, but callers see the question: it throws if there is no data-access service.
    surroundings.AgentCarrierProfile();
    const bool hasPort = ReadPortLevel(levels, port, Escapes::LEFT);
    return hasNE && hasPort;
}

// ---- Sub-interfaces, access points, termination points --------------------------------------------------------------

bool Conversion<PortOfKey>::Read(std::string_view fdn, CtpKey_T& key, const Surroundings& surroundings) {
    return ReadApart(fdn, LiesIn(key, fdn),
                     [&](std::string_view text) { return ReadSubInterface(text, key, surroundings).hasPort; });
}

void Conversion<PortOfKey>::Write(const CtpKey_T& key, std::string& fdn, const Surroundings& surroundings) {
    WriteKey(key, false, fdn, surroundings);
}

bool Conversion<SubInterface>::Read(std::string_view fdn, CtpKey_T& key, const Surroundings& surroundings) {
    return ReadApart(fdn, LiesIn(key, fdn), [&](std::string_view text) {
        const auto [hasPort, hasSubInterface] = ReadSubInterface(text, key, surroundings);
        return hasPort && hasSubInterface;
    });
}

void Conversion<SubInterface>::Write(const CtpKey_T& key, std::string& fdn, const Surroundings& surroundings) {
    WriteKey(key, true, fdn, surroundings);
}

bool Conversion<CtpKey_T>::Read(std::string_view fdn, CtpKey_T& key, const Surroundings& surroundings) {
    return ReadApart(fdn, LiesIn(key, fdn),
                     [&](std::string_view text) { return ReadAccessPoint(text, key, surroundings); });
}

void Conversion<CtpKey_T>::Write(const CtpKey_T& key, std::string& fdn, const Surroundings& surroundings) {
    WriteAs(key.port.isLogical, key, fdn, surroundings);
}

void Conversion<CtpKey_T>::WriteAs(bool asLogical, const CtpKey_T& key, std::string& fdn,
                                   const Surroundings& surroundings) {
    FdnWriter writer(fdn);
    AppendPort(writer, FieldsOf(key.port, key.port.portLabel), asLogical, surroundings);
    writer.Level(",AP=", key.apValue1).Text("|").Decimal(key.apValue2).Text("|");
    if (key.subIfId != 0) {
        writer.Decimal(key.subIfId);
    }
    writer.Flush();
}

bool Conversion<TPIndex>::Read(std::string_view fdn, TPIndex& tp, const Surroundings& surroundings) {
    return ReadApart(fdn, LiesIn(tp.portLabel, fdn),
                     [&](std::string_view text) { return ReadTerminationPoint(text, tp, surroundings); });
}

void Conversion<TPIndex>::Write(const TPIndex& tp, std::string& fdn, const Surroundings& surroundings) {
    const bool isNamed = tp.ppType == NAMED_PORT;
    std::string_view label = tp.portLabel;
    std::string_view subIf;
    if (const auto dot = label.find('.'); isNamed && dot != std::string_view::npos) {
        subIf = label.substr(dot + 1);
        label = label.substr(0, dot);
    }
    FdnWriter writer(fdn, tp.portLabel.size());
    AppendPort(writer, FieldsOf(tp, label), tp.isLogical, surroundings);
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

}  // namespace NS_FDN

using NS_FDN::Conversion;

void ResIDUtil::PortIndex2ResID(const PortIndex& port, std::string& fdn, bool asLogical) {
    Conversion<PortIndex>::WriteAs(asLogical, port, fdn, SYSTEM);
}

void ResIDUtil::PortIndex2ResIDByNEType(const PortIndex& port, std::string& fdn, bool asLogical, unsigned long neType) {
    Conversion<NS_FDN::PortByNEType>::WriteAs(asLogical, port, fdn, KnownNEType(neType));
}

void ResIDUtil::PortIndex2ResID(const CtpKey_T& key, std::string& fdn, bool withSubIf) {
    NS_FDN::WriteKey(key, withSubIf, fdn, SYSTEM);
}

void ResIDUtil::APIndex2ResID(const CtpKey_T& key, std::string& fdn, bool asLogical) {
    Conversion<CtpKey_T>::WriteAs(asLogical, key, fdn, SYSTEM);
}

void ResIDUtil::TPIndex2ResID(const TPIndex& tp, std::string& fdn) {
    Conversion<TPIndex>::Write(tp, fdn, SYSTEM);
}

void ResIDUtil::ResID2PortIndex(const std::string& fdn, PortIndex& port) {
    Conversion<PortIndex>::Read(fdn, port, SYSTEM);
}

void ResIDUtil::ResID2PortIndex(const std::string& fdn, CtpKey_T& key) {
    Conversion<NS_FDN::PortOfKey>::Read(fdn, key, SYSTEM);
}

void ResIDUtil::ResID2APIndex(const std::string& fdn, CtpKey_T& key) {
    Conversion<CtpKey_T>::Read(fdn, key, SYSTEM);
}

void ResIDUtil::ResID2TPIndex(const std::string& fdn, TPIndex& tp) {
    Conversion<TPIndex>::Read(fdn, tp, SYSTEM);
}

void ResIDUtil::ResID2LoopBackPortIndex(const std::string& fdn, PortIndex& port) {
    Conversion<NS_FDN::LoopBackPort>::Read(fdn, port, SYSTEM);
}

}  // namespace NS_UTIL
