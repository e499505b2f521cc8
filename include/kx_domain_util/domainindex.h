/// The index records: what an identifier (FDN) says, as numbers and texts.
///
/// A default-constructed record means "nothing known": -1 in container fields (NE, shelf, slot, sub-slot, port, MD, MA,
/// MEP, MIP, ONE and OS numbers), 0 or empty elsewhere. The conversions of `fdn.h` and `resIDUtil.h` fill and write the
/// records. A field's comment names the tag from which it is read. Fields called `reserved` belong to the wider system;
/// conversions leave them alone unless they say otherwise.
///
/// The records are plain values and compare with ==.
#pragma once

#include <cstdint>
#include <string>

namespace NS_DOMAIN {

// ---- Equipment ------------------------------------------------------------------------------------------------------

/// A management system.
struct OSIndex {
    std::int32_t osId = -1;  ///< "OS"

    bool operator==(const OSIndex&) const = default;
};

/// A container of NEs.
struct ONEIndex {
    std::int32_t reserved = 0;
    std::int32_t oneId = -1;  ///< "ONE"

    bool operator==(const ONEIndex&) const = default;
};

/// A network element.
struct NEIndex {
    std::int32_t reserved = 0;
    std::int32_t neId = -1;  ///< "NE"

    bool operator==(const NEIndex&) const = default;
};

/// A shelf of an NE.
struct ShelfIndex {
    std::int32_t reserved = 0;
    std::int32_t neId = -1;     ///< "NE"
    std::int32_t shelfId = -1;  ///< "FR"

    bool operator==(const ShelfIndex&) const = default;
};

/// A slot or a sub-slot.
struct SlotIndex {
    std::int32_t reserved = 0;
    std::int32_t neId = -1;       ///< "NE"
    std::int32_t shelfId = -1;    ///< "FR"
    std::int32_t slotId = -1;     ///< "S"
    std::int32_t subSlotId = -1;  ///< "SS"; the slot conversions ignore it

    bool operator==(const SlotIndex&) const = default;
};

/// The card in a slot.
struct CardIndex {
    std::int32_t reserved = 0;
    std::int32_t neId = -1;     ///< "NE"
    std::int32_t shelfId = -1;  ///< "FR"
    std::int32_t slotId = -1;   ///< "S"

    bool operator==(const CardIndex&) const = default;
};

// ---- Ports, access points, termination points -----------------------------------------------------------------------

/// A port, physical or logical, identified by its number or its name.
struct PortIndex {
    std::int32_t reserved = 0;
    std::int32_t reserved2 = 0;
    std::int32_t neId = -1;       ///< "NE"
    std::int32_t shelfId = -1;    ///< "FR"; -1: no shelf
    std::int32_t slotId = -1;     ///< "S"; -1: no slot
    std::int32_t subSlotId = -1;  ///< "SS"; -1: no sub-slot
    std::int32_t portId = -1;     ///< third sub-value of "PP" or "LP"; -1: no port
    std::int32_t ppType = 0;      ///< first sub-value; 0: none; 251: the port is identified by its name
    std::int32_t fbType = 0;      ///< second sub-value, the FB type; 0: none; 65536 and above: a logical port
    std::string portLabel;        ///< fourth sub-value, the port's name; may be empty
    bool isLogical = false;       ///< there is no "PP" level: the port, if any, is an "LP" level
    bool reservedFlag = false;
    std::int32_t reservedValue = 0;

    bool operator==(const PortIndex&) const = default;
};

/// A connection termination: a port, and on it an access point, a VR number or a sub-interface.
struct CtpKey_T {
    std::int32_t neId = -1;     ///< the port's NE
    std::int32_t vrId = 0;      ///< "VR"
    std::int32_t apValue1 = 0;  ///< first sub-value of "AP"
    std::int32_t apValue2 = 0;  ///< second sub-value of "AP" as a number
    std::string apText;         ///< second sub-value of "AP" as text
    PortIndex port;
    std::int32_t fbType = 0;   ///< the port's FB type
    std::int32_t subIfId = 0;  ///< third sub-value of "AP", or "SUBIF"; 0: none
    std::string fdnText;       ///< the text that the access-point reader parsed

    bool operator==(const CtpKey_T&) const = default;
};

/// A termination point: a port, and in it paths of the SDH hierarchy.
struct TPIndex {
    std::int32_t reserved = 0;
    std::int32_t neId = -1;       ///< "NE"
    std::int32_t shelfId = -1;    ///< "FR"
    std::int32_t slotId = -1;     ///< "S"
    std::int32_t subSlotId = -1;  ///< "SS"
    std::int32_t portId = -1;     ///< as in `PortIndex`
    std::int32_t ppType = 0;      ///< as in `PortIndex`
    std::int32_t fbType = 0;      ///< as in `PortIndex`
    std::string portLabel;        ///< the port's name; with a sub-interface: the name, ".", its number
    std::int32_t reserved2 = 0;
    // The four location words; 0: free. Each may hold a TP number beside the FB type of its layer
    // (`UtilCommon::SetTpNo`).
    std::int32_t vc4Id = 0;   ///< "VC4", written but not read by the conversions
    std::int32_t vc12Id = 0;  ///< "VC12", written but not read by the conversions
    std::int32_t vc3Id = 0;   ///< location word only; no level
    std::int32_t vc11Id = 0;  ///< location word only; no level
    bool isLogical = false;   ///< as in `PortIndex`

    bool operator==(const TPIndex&) const = default;
};

// ---- Services, trails, tunnels --------------------------------------------------------------------------------------

/// A pseudo-wire.
struct PWIndex {
    std::int32_t neId = -1;  ///< "NE"
    std::string resId;       ///< read: the whole FDN; written: what follows the NE level

    bool operator==(const PWIndex&) const = default;
};

/// A pseudo-wire switch.
struct PWSwitchIndex {
    std::int32_t neId = -1;  ///< "NE"
    std::string resId;       ///< the whole FDN

    bool operator==(const PWSwitchIndex&) const = default;
};

/// A pseudo-wire (PWE3) or VPLS trail.
struct VPNTrailIndex {
    std::string trailResId;      ///< the FDN from "PWE3TRAIL=" or "VPLS=" on
    std::int32_t trailType = 0;  ///< 1: pseudo-wire (PWE3) trail; 2: VPLS trail

    bool operator==(const VPNTrailIndex&) const = default;
};

/// A tunnel trail.
struct TunnelTrailIndex {
    std::string trailResId;  ///< the FDN from "TUNNELTRAIL=" on

    bool operator==(const TunnelTrailIndex&) const = default;
};

/// A pseudo-wire trail.
struct PWTrailIndex {
    std::string trailResId;  ///< the FDN from "PWTRAIL=" on

    bool operator==(const PWTrailIndex&) const = default;
};

/// A tunnel protection group.
struct TNPIndex_T {
    std::string trailResId;  ///< the FDN from "TUNNELPGTRAIL=" on

    bool operator==(const TNPIndex_T&) const = default;
};

/// A service on one NE.
struct ServiceIndex {
    std::int32_t neId = -1;    ///< "NE"
    std::string resId;         ///< the whole FDN
    std::int32_t svcId = 0;    ///< number of the "PWE3", "NETH", "VSI" or "VRF" level
    std::int32_t svcType = 0;  ///< 2: Ethernet service; 4: VSI; a "PWE3" level gives its own; a "VRF" level gives none

    bool operator==(const ServiceIndex&) const = default;
};

/// A tunnel; the digit in a field's name is the place of its sub-value in "TUNNEL".
struct TunnelIndex {
    std::int32_t neId = -1;  ///< "NE"
    std::int32_t tunnelInt4 = 0;
    std::string tunnelText2;
    std::string tunnelText3;
    std::int32_t tunnelInt6 = 0;
    std::int32_t tunnelInt0 = 0;
    std::int32_t tunnelInt1 = 0;
    std::string tunnelText5;
    std::string tunnelText5Copy;  ///< the same sub-value once more
    std::string resId;            ///< the whole FDN

    bool operator==(const TunnelIndex&) const = default;
};

/// An ATM traffic descriptor.
struct TDIndex {
    std::int32_t reserved = 0;
    std::int64_t neId = -1;  ///< "NE"; 0 if read from an FDN without one
    std::int64_t tdId = 0;   ///< "ATMTD"

    bool operator==(const TDIndex&) const = default;
};

/// A resource identifier in unified form. The library only copies its fields.
struct UniResID {
    std::string uniText1;
    std::string uniText2;
    std::int32_t uniNum = 0;
    std::string uniText3;

    bool operator==(const UniResID&) const = default;
};

// ---- OAM ------------------------------------------------------------------------------------------------------------

/// A maintenance domain.
struct MDIndex : NEIndex {
    std::int32_t mdId = -1;  ///< first sub-value of "MD"; -1: none
    std::string mdName;      ///< second sub-value of "MD"

    bool operator==(const MDIndex&) const = default;
};

/// A maintenance association.
struct MAIndex : NEIndex {
    std::int32_t mdId = -1;  ///< as in `MDIndex`
    std::string mdName;      ///< as in `MDIndex`
    std::int32_t maId = -1;  ///< first sub-value of "MA"; -1: none
    std::string maName;      ///< second sub-value of "MA"

    bool operator==(const MAIndex&) const = default;
};

/// A maintenance end point, local or remote.
struct MEPIndex : NEIndex {
    std::int32_t mdId = -1;   ///< written as in `MDIndex`; read: the number of the second level; 0: it has a name
    std::string mdName;       ///< written as in `MDIndex`; read: the name in the second level
    std::int32_t maId = -1;   ///< written as in `MAIndex`; read: the number of the third level; 0: it has a name
    std::string maName;       ///< written as in `MAIndex`; read: the name in the third level
    std::int32_t mepId = -1;  ///< written as "MEP" or "RMEP"; read: the number of the last level

    bool operator==(const MEPIndex&) const = default;
};

/// A maintenance intermediate point.
struct MIPIndex : NEIndex {
    std::int32_t mdId = -1;   ///< as in `MDIndex`
    std::string mdName;       ///< as in `MDIndex`
    std::int32_t mipId = -1;  ///< first sub-value of "MIP"; 0 and -1: none
    std::string mipName;      ///< written, never read

    bool operator==(const MIPIndex&) const = default;
};

}  // namespace NS_DOMAIN

namespace NS_DOMAIN_SOUTHAPISET {

/// The fields of `NS_DOMAIN::UniResID`, as the southbound interface has them.
struct TEUniResID {
    std::string uniText1;
    std::string uniText2;
    std::int32_t uniNum = 0;
    std::string uniText3;

    bool operator==(const TEUniResID&) const = default;
};

}  // namespace NS_DOMAIN_SOUTHAPISET
