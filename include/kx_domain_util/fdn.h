/// Identifiers (FDNs) to index records and back, as typed calls:
///
///     using namespace NS_UTIL;
///     if (auto port = NS_FDN::Read<NS_DOMAIN::PortIndex>("NE=12,FR=1,S=3,CP=-1,PP=16||7|")) {
///         port->portId = 8;
///         std::string fdn = NS_FDN::Write<NS_DOMAIN::PortIndex>(*port);
///     }
///
/// The kind between the angle brackets is a record's type, or one of the variants declared below. The conversions are
/// those of `ResIDUtil`, whose comments say how each field is read and written:
///
/// | Kind                        | Record          | Reader of `ResIDUtil`     | Levels that it needs
/// |-----------------------------|-----------------|---------------------------|---------------------------------------
/// | `OSIndex`                   | `OSIndex`       | `ResID2OSIndex`           | OS
/// | `ONEIndex`                  | `ONEIndex`      | `ResID2ONEIndex`          | ONE
/// | `NEIndex`                   | `NEIndex`       | `ResID2NEIndex`           | NE
/// | `ContainedNE`               | `ContainedNE`   | none                      | NE
/// | `ShelfIndex`                | `ShelfIndex`    | `ResID2ShelfIndex`        | NE, FR
/// | `SlotIndex`                 | `SlotIndex`     | `ResID2SlotIndex`         | NE, S
/// | `SubSlot`                   | `SlotIndex`     | `ResID2SubSlotIndex`      | NE, SS
/// | `CardIndex`                 | `CardIndex`     | `ResID2CardIndex`         | NE, S
/// | `PortIndex`                 | `PortIndex`     | `ResID2PortIndex`         | NE, PP or LP (1)
/// | `PortByNEType`              | `PortIndex`     | `ResID2PortIndex`         | NE, PP or LP (1)
/// | `LoopBackPort`              | `PortIndex`     | `ResID2LoopBackPortIndex` | NE, PP or LP (1)
/// | `PortOfKey`                 | `CtpKey_T`      | `ResID2PortIndex`         | NE, PP or LP (1)
/// | `SubInterface`              | `CtpKey_T`      | `ResID2PortIndex`         | NE, PP or LP (1), SUBIF
/// | `CtpKey_T`, an access point | `CtpKey_T`      | `ResID2APIndex`           | NE, PP or LP (1) (2); AP, VR or SUBIF
/// | `TPIndex`                   | `TPIndex`       | `ResID2TPIndex`           | NE, PP or LP (1)
/// | `PWIndex`                   | `PWIndex`       | `ResID2PWIndex`           | NE
/// | `PWSwitchIndex`             | `PWSwitchIndex` | `ResID2PWSwitchIndex`     | NE (3)
/// | `GroupId`                   | `std::int32_t`  | `ResID2GroupID`           | VEGROUP
/// | `VPNTrailIndex`             | `VPNTrailIndex` | `ResID2VPNTrailIndex`     | PWE3TRAIL or VPLS (4)
/// | `TunnelTrailIndex`          | `TunnelTrailIndex` | `ResID2TunnelTrailIndex`  | TUNNELTRAIL (4)
/// | `PWTrailIndex`              | `PWTrailIndex`  | `ResID2PWTrailIndex`      | PWTRAIL (4)
/// | `TNPIndex_T`                | `TNPIndex_T`    | `ResID2TNPIndex`          | TUNNELPGTRAIL (4)
/// | `ServiceIndex`              | `ServiceIndex`  | `ResID2SVCIndex`          | NE; PWE3 with two sub-values, or else
/// |                             |                 |                           | NETH, VSI or VRF
/// | `TunnelIndex`               | `TunnelIndex`   | `ResID2TunnelIndex`       | NE, TUNNEL with seven sub-values
/// | `TDIndex`                   | `TDIndex`       | `ResID2TDIndex`           | NE, ATMTD
/// | `MDIndex`                   | `MDIndex`       | `ResID2MDIndex`           | NE, MD
/// | `MAIndex`                   | `MAIndex`       | `ResID2MAIndex`           | NE, MD, MA
/// | `MIPIndex`                  | `MIPIndex`      | `ResID2MIPIndex`          | NE, MIP
/// | `MEPIndex`, `RemoteMEP`     | `MEPIndex`      | `ResID2MepIndex`          | four levels with "=" (5)
///
/// (1) The port level has four sub-values, and the text is not the one that stands for no port.
/// (2) Unless the key already names an NE: then its port is kept. AP has three sub-values.
/// (3) With "=", even if its value is empty.
/// (4) Searched as plain text.
/// (5) Whatever their tags.
///
/// All other levels of the table have a value. A kind that is only read has no `Write`.
///
/// Threads: any, at the same time; records and texts belong to the caller. Exceptions: those of the surroundings, and
/// std::bad_alloc.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include <kx_domain_util/domainindex.h>
#include <kx_domain_util/export.h>
#include <kx_domain_util/surroundings.h>

namespace NS_UTIL::NS_FDN {

// ---- Kinds that are no record of their own --------------------------------------------------------------------------

/// An NE in its container, "ONE=1,NE=2".
struct ContainedNE {
    std::int32_t oneId = 0;  ///< "ONE"; 0: none
    std::int32_t neId = -1;  ///< "NE"

    bool operator==(const ContainedNE&) const = default;
};

/// A sub-slot, in a `SlotIndex`.
struct SubSlot;
/// A port written by the rules of its NE's type alone, `PortIndex2ResIDByNEType`.
struct PortByNEType;
/// A loop-back port, in a `PortIndex`; only read.
struct LoopBackPort;
/// The port of a key, written as a physical one; nothing else of the key is written.
struct PortOfKey;
/// A sub-interface on a logical port, in a `CtpKey_T`.
struct SubInterface;
/// The number of a group, an `std::int32_t`; only read.
struct GroupId;
/// A remote maintenance end point, in a `MEPIndex`.
struct RemoteMEP;

/// `Kind`, one of `PortIndex`, `PortByNEType` and `CtpKey_T`, written as a logical port ("LP") or as a physical one
/// ("PP"), whatever its `isLogical` says.
template <class Kind>
struct AsLogical;
template <class Kind>
struct AsPhysical;

// ---- Conversions ----------------------------------------------------------------------------------------------------

/// The conversion of a kind. `Record` is the type of its record. `Read` does what `ReadInto` does. `Write` does what
/// `WriteInto` does, and is missing if the kind is only read. `WriteAs` writes a port as a logical or a physical one.
template <class Kind>
struct Conversion;

template <class Kind>
using RecordOf = typename Conversion<Kind>::Record;

/// Whether the kind can be written.
template <class Kind>
concept Writable = requires {
    &Conversion<Kind>::Write;
};

/// Reads `fdn` into `record`. A field whose level is missing keeps its value, unless the reader of `ResIDUtil` says
/// otherwise. Returns false if `fdn` lacks a level without which the record means nothing; the other levels have been
/// read then. `fdn` may lie in a text of `record`.
template <class Kind>
bool ReadInto(std::string_view fdn, RecordOf<Kind>& record,
              const Surroundings& surroundings = Surroundings::OfSystem()) {
    return Conversion<Kind>::Read(fdn, record, surroundings);
}

/// Reads `fdn` into a fresh record. Nothing if `fdn` lacks a level without which the record means nothing.
template <class Kind>
std::optional<RecordOf<Kind>> Read(std::string_view fdn, const Surroundings& surroundings = Surroundings::OfSystem()) {
    std::optional<RecordOf<Kind>> record(std::in_place);
    if (!ReadInto<Kind>(fdn, *record, surroundings)) {
        record.reset();
    }
    return record;
}

/// Writes `record` into `fdn`, in place of what it held. `fdn` must not be a text of `record`.
template <Writable Kind>
void WriteInto(const RecordOf<Kind>& record, std::string& fdn,
               const Surroundings& surroundings = Surroundings::OfSystem()) {
    Conversion<Kind>::Write(record, fdn, surroundings);
}

/// The identifier of `record`.
template <Writable Kind>
std::string Write(const RecordOf<Kind>& record, const Surroundings& surroundings = Surroundings::OfSystem()) {
    std::string fdn;
    WriteInto<Kind>(record, fdn, surroundings);
    return fdn;
}

// ---- The conversion of each kind ------------------------------------------------------------------------------------

// The definitions call the record after what it is: port, shelf, mep.
// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name)

// Equipment.

template <>
struct KX_DOMAIN_UTIL_API Conversion<NS_DOMAIN::OSIndex> {
    using Record = NS_DOMAIN::OSIndex;
    static bool Read(std::string_view fdn, Record& record, const Surroundings& surroundings);
    static void Write(const Record& record, std::string& fdn, const Surroundings& surroundings);
};

template <>
struct KX_DOMAIN_UTIL_API Conversion<NS_DOMAIN::ONEIndex> {
    using Record = NS_DOMAIN::ONEIndex;
    static bool Read(std::string_view fdn, Record& record, const Surroundings& surroundings);
    static void Write(const Record& record, std::string& fdn, const Surroundings& surroundings);
};

template <>
struct KX_DOMAIN_UTIL_API Conversion<NS_DOMAIN::NEIndex> {
    using Record = NS_DOMAIN::NEIndex;
    static bool Read(std::string_view fdn, Record& record, const Surroundings& surroundings);
    static void Write(const Record& record, std::string& fdn, const Surroundings& surroundings);
};

template <>
struct KX_DOMAIN_UTIL_API Conversion<ContainedNE> {
    using Record = ContainedNE;
    static bool Read(std::string_view fdn, Record& record, const Surroundings& surroundings);
    static void Write(const Record& record, std::string& fdn, const Surroundings& surroundings);
};

template <>
struct KX_DOMAIN_UTIL_API Conversion<NS_DOMAIN::ShelfIndex> {
    using Record = NS_DOMAIN::ShelfIndex;
    static bool Read(std::string_view fdn, Record& record, const Surroundings& surroundings);
    static void Write(const Record& record, std::string& fdn, const Surroundings& surroundings);
};

template <>
struct KX_DOMAIN_UTIL_API Conversion<NS_DOMAIN::SlotIndex> {
    using Record = NS_DOMAIN::SlotIndex;
    static bool Read(std::string_view fdn, Record& record, const Surroundings& surroundings);
    static void Write(const Record& record, std::string& fdn, const Surroundings& surroundings);
};

template <>
struct KX_DOMAIN_UTIL_API Conversion<SubSlot> {
    using Record = NS_DOMAIN::SlotIndex;
    static bool Read(std::string_view fdn, Record& record, const Surroundings& surroundings);
    static void Write(const Record& record, std::string& fdn, const Surroundings& surroundings);
};

template <>
struct KX_DOMAIN_UTIL_API Conversion<NS_DOMAIN::CardIndex> {
    using Record = NS_DOMAIN::CardIndex;
    static bool Read(std::string_view fdn, Record& record, const Surroundings& surroundings);
    static void Write(const Record& record, std::string& fdn, const Surroundings& surroundings);
};

// Ports, access points, termination points.

template <>
struct KX_DOMAIN_UTIL_API Conversion<NS_DOMAIN::PortIndex> {
    using Record = NS_DOMAIN::PortIndex;
    static bool Read(std::string_view fdn, Record& record, const Surroundings& surroundings);
    static void Write(const Record& record, std::string& fdn, const Surroundings& surroundings);
    static void WriteAs(bool asLogical, const Record& record, std::string& fdn, const Surroundings& surroundings);
};

template <>
struct KX_DOMAIN_UTIL_API Conversion<PortByNEType> : Conversion<NS_DOMAIN::PortIndex> {
    static void Write(const Record& record, std::string& fdn, const Surroundings& surroundings);
    static void WriteAs(bool asLogical, const Record& record, std::string& fdn, const Surroundings& surroundings);
};

template <>
struct KX_DOMAIN_UTIL_API Conversion<LoopBackPort> {
    using Record = NS_DOMAIN::PortIndex;
    static bool Read(std::string_view fdn, Record& record, const Surroundings& surroundings);
};

template <>
struct KX_DOMAIN_UTIL_API Conversion<PortOfKey> {
    using Record = NS_DOMAIN::CtpKey_T;
    static bool Read(std::string_view fdn, Record& record, const Surroundings& surroundings);
    static void Write(const Record& record, std::string& fdn, const Surroundings& surroundings);
};

template <>
struct KX_DOMAIN_UTIL_API Conversion<SubInterface> {
    using Record = NS_DOMAIN::CtpKey_T;
    static bool Read(std::string_view fdn, Record& record, const Surroundings& surroundings);
    static void Write(const Record& record, std::string& fdn, const Surroundings& surroundings);
};

template <>
struct KX_DOMAIN_UTIL_API Conversion<NS_DOMAIN::CtpKey_T> {
    using Record = NS_DOMAIN::CtpKey_T;
    static bool Read(std::string_view fdn, Record& record, const Surroundings& surroundings);
    static void Write(const Record& record, std::string& fdn, const Surroundings& surroundings);
    static void WriteAs(bool asLogical, const Record& record, std::string& fdn, const Surroundings& surroundings);
};

template <class Kind>
struct Conversion<AsLogical<Kind>> : Conversion<Kind> {
    static void Write(const RecordOf<Kind>& record, std::string& fdn, const Surroundings& surroundings) {
        Conversion<Kind>::WriteAs(true, record, fdn, surroundings);
    }
};

template <class Kind>
struct Conversion<AsPhysical<Kind>> : Conversion<Kind> {
    static void Write(const RecordOf<Kind>& record, std::string& fdn, const Surroundings& surroundings) {
        Conversion<Kind>::WriteAs(false, record, fdn, surroundings);
    }
};

template <>
struct KX_DOMAIN_UTIL_API Conversion<NS_DOMAIN::TPIndex> {
    using Record = NS_DOMAIN::TPIndex;
    static bool Read(std::string_view fdn, Record& record, const Surroundings& surroundings);
    static void Write(const Record& record, std::string& fdn, const Surroundings& surroundings);
};

// Services, trails, tunnels.

template <>
struct KX_DOMAIN_UTIL_API Conversion<NS_DOMAIN::PWIndex> {
    using Record = NS_DOMAIN::PWIndex;
    static bool Read(std::string_view fdn, Record& record, const Surroundings& surroundings);
    static void Write(const Record& record, std::string& fdn, const Surroundings& surroundings);
};

template <>
struct KX_DOMAIN_UTIL_API Conversion<NS_DOMAIN::PWSwitchIndex> {
    using Record = NS_DOMAIN::PWSwitchIndex;
    static bool Read(std::string_view fdn, Record& record, const Surroundings& surroundings);
};

template <>
struct KX_DOMAIN_UTIL_API Conversion<GroupId> {
    using Record = std::int32_t;
    static bool Read(std::string_view fdn, Record& record, const Surroundings& surroundings);
};

template <>
struct KX_DOMAIN_UTIL_API Conversion<NS_DOMAIN::VPNTrailIndex> {
    using Record = NS_DOMAIN::VPNTrailIndex;
    static bool Read(std::string_view fdn, Record& record, const Surroundings& surroundings);
};

template <>
struct KX_DOMAIN_UTIL_API Conversion<NS_DOMAIN::TunnelTrailIndex> {
    using Record = NS_DOMAIN::TunnelTrailIndex;
    static bool Read(std::string_view fdn, Record& record, const Surroundings& surroundings);
};

template <>
struct KX_DOMAIN_UTIL_API Conversion<NS_DOMAIN::PWTrailIndex> {
    using Record = NS_DOMAIN::PWTrailIndex;
    static bool Read(std::string_view fdn, Record& record, const Surroundings& surroundings);
};

template <>
struct KX_DOMAIN_UTIL_API Conversion<NS_DOMAIN::TNPIndex_T> {
    using Record = NS_DOMAIN::TNPIndex_T;
    static bool Read(std::string_view fdn, Record& record, const Surroundings& surroundings);
};

template <>
struct KX_DOMAIN_UTIL_API Conversion<NS_DOMAIN::ServiceIndex> {
    using Record = NS_DOMAIN::ServiceIndex;
    static bool Read(std::string_view fdn, Record& record, const Surroundings& surroundings);
};

template <>
struct KX_DOMAIN_UTIL_API Conversion<NS_DOMAIN::TunnelIndex> {
    using Record = NS_DOMAIN::TunnelIndex;
    static bool Read(std::string_view fdn, Record& record, const Surroundings& surroundings);
};

template <>
struct KX_DOMAIN_UTIL_API Conversion<NS_DOMAIN::TDIndex> {
    using Record = NS_DOMAIN::TDIndex;
    static bool Read(std::string_view fdn, Record& record, const Surroundings& surroundings);
};

// OAM.

template <>
struct KX_DOMAIN_UTIL_API Conversion<NS_DOMAIN::MDIndex> {
    using Record = NS_DOMAIN::MDIndex;
    static bool Read(std::string_view fdn, Record& record, const Surroundings& surroundings);
    static void Write(const Record& record, std::string& fdn, const Surroundings& surroundings);
};

template <>
struct KX_DOMAIN_UTIL_API Conversion<NS_DOMAIN::MAIndex> {
    using Record = NS_DOMAIN::MAIndex;
    static bool Read(std::string_view fdn, Record& record, const Surroundings& surroundings);
    static void Write(const Record& record, std::string& fdn, const Surroundings& surroundings);
};

template <>
struct KX_DOMAIN_UTIL_API Conversion<NS_DOMAIN::MIPIndex> {
    using Record = NS_DOMAIN::MIPIndex;
    static bool Read(std::string_view fdn, Record& record, const Surroundings& surroundings);
    static void Write(const Record& record, std::string& fdn, const Surroundings& surroundings);
};

template <>
struct KX_DOMAIN_UTIL_API Conversion<NS_DOMAIN::MEPIndex> {
    using Record = NS_DOMAIN::MEPIndex;
    static bool Read(std::string_view fdn, Record& record, const Surroundings& surroundings);
    static void Write(const Record& record, std::string& fdn, const Surroundings& surroundings);
};

template <>
struct KX_DOMAIN_UTIL_API Conversion<RemoteMEP> : Conversion<NS_DOMAIN::MEPIndex> {
    static void Write(const Record& record, std::string& fdn, const Surroundings& surroundings);
};

// NOLINTEND(readability-inconsistent-declaration-parameter-name)

}  // namespace NS_UTIL::NS_FDN
