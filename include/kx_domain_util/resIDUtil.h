/// Identifiers (FDNs) to index records and back.
///
/// An FDN names one managed thing. It consists of levels joined by ",", from the NE inward. A level is a tag (the MOC),
/// "=", and a value; a value may hold several sub-values joined by "|". A port, with the field of
/// `NS_DOMAIN::PortIndex` that each piece fills:
///
///     NE=12,FR=1,S=3,CP=-1,SS=2,SC=-1,PP=16|1025|7|GE0/7
///        |     |   |    |     |    |  |  |  |    | |
///        |     |   |    |     |    |  |  |  |    | +---- portLabel  = "GE0/7"
///        |     |   |    |     |    |  |  |  |    +------ portId     = 7
///        |     |   |    |     |    |  |  |  +----------- fbType     = 1025 (0 is written empty)
///        |     |   |    |     |    |  |  +-------------- ppType     = 16   (0 and 251 are written empty)
///        |     |   |    |     |    |  +----------------- isLogical  = false ("LP" gives true)
///        |     |   |    |     |    +-------------------- always -1, written after "SS", not read
///        |     |   |    |     +------------------------- subSlotId  = 2    (-1: no sub-slot)
///        |     |   |    +------------------------------- always -1, written after "S", not read
///        |     |   +------------------------------------ slotId     = 3    (-1: no slot)
///        |     +---------------------------------------- shelfId    = 1    (-1: no shelf)
///        +---------------------------------------------- neId       = 12
#pragma once

#include <map>
#include <string>
#include <vector>

#include <kx_domain_util/domainindex.h>
#include <kx_domain_util/export.h>

namespace NS_UTIL {

/// A parsed FDN: maps each tag to the sub-values of its level, in their order.
using MocLvlValueMap = std::map<std::string, std::vector<std::string>>;

/// The conversions of the management system. All are static and keep no state. They ask its configuration and its
/// services where documented (`Surroundings::OfSystem`); `fdn.h` offers the same conversions with other surroundings,
/// and readers that say whether the text had what they need.
///
/// Readers (`ResID2...`) follow these rules and never fail, unless stated otherwise:
///
/// - A field whose level is missing or has an empty value ("NE=") keeps the caller's value.
/// - The first of several levels with the same tag counts. The order of levels does not matter.
/// - `NS_UTIL::Str2Int` reads numbers: up to the first character that is no digit; 0 without digits; the low 32 bits of
///   a larger number.
/// - The text may be any, also one inside the record that is filled.
///
/// Writers (`...2ResID`) replace the whole output text, which must not be a text of the record. They write numbers in
/// decimal, with a "-" if negative.
///
/// Threads: any, at the same time; records and texts belong to the caller. Exceptions: std::bad_alloc if memory is
/// exhausted; `InterfaceNotExistException` where documented; std::system_error if the first call that needs a service
/// cannot take a lock. Exceptions thrown by a service propagate. After an exception, the output holds what had been
/// written so far.
class KX_DOMAIN_UTIL_API ResIDUtil {
public:
    ResIDUtil() = delete;

    // ---- The grammar ------------------------------------------------------------------------------------------------

    /// Replaces the content of `map` by the levels of `fdn`. The first of a repeated tag wins; a piece without "=" is a
    /// tag without sub-values; blanks are not trimmed. An empty `fdn` gives an empty map.
    static void Fdn2MocLvlValueMap(const std::string& fdn, MocLvlValueMap& map);

    /// Splits one level: its tag replaces `tag`, its sub-values are appended to `values` (an empty value has none).
    static void ResolveMocLevelObj(const std::string& level, std::string& tag, std::vector<std::string>& values);

    /// Copies the sub-value at `index` (from 0) of the level `tag` into `value`. Returns false and leaves `value` alone
    /// if there is no such level or sub-value, or if `index` is negative.
    static bool GetValueByMocLvlName(const std::string& tag, const MocLvlValueMap& map, std::string& value, int index);
    /// The same, read as a number. Also returns true for a sub-value that is no number.
    static bool GetValueByMocLvlName(const std::string& tag, const MocLvlValueMap& map, int& value, int index);
    /// The same for the first sub-value.
    static bool GetValueByMocLvlName(const std::string& tag, const MocLvlValueMap& map, int& value);

    /// Replaces `level` by one level, "tag=value|value"; leaves it as it was if `values` is empty.
    static void ConstructMocLevelObj(const std::string& tag, const std::vector<std::string>& values,
                                     std::string& level);

    /// Appends the sub-values of one level to `values`. `tag` includes its "=" ("PP="), is not null, and is searched as
    /// plain text: "S=" is also found inside ",SS=". A value that ends with a backslash before a "," counts as empty.
    /// Returns whether `values` then holds at least `minCount` entries, earlier ones included. If the tag is not found,
    /// returns false and leaves `values` alone.
    static bool ResolveFDNByMoc(const std::string& fdn, const char* tag, int minCount,
                                std::vector<std::string>& values);

    /// Returns the MOC of `fdn`: its last level up to the last "=", or the whole last level if it has no "=". Empty for
    /// an empty `fdn`.
    static std::string GetMOCFromFDN(const std::string& fdn);

    /// Whether `moc` (what `GetMOCFromFDN` returns, not a whole FDN) names a service, tunnel or pseudo-wire object.
    static bool IsServiceFDN(const std::string& moc);

    // ---- Equipment --------------------------------------------------------------------------------------------------

    /// Reads `osId` from "OS".
    static void ResID2OSIndex(const std::string& fdn, NS_DOMAIN::OSIndex& os);
    /// Reads `oneId` from "ONE".
    static void ResID2ONEIndex(const std::string& fdn, NS_DOMAIN::ONEIndex& one);
    /// Reads `neId` from "NE".
    static void ResID2NEIndex(const std::string& fdn, NS_DOMAIN::NEIndex& ne);
    /// Reads `neId` and `shelfId` from "NE" and "FR".
    static void ResID2ShelfIndex(const std::string& fdn, NS_DOMAIN::ShelfIndex& shelf);
    /// Reads `neId`, `shelfId` and `slotId` from "NE", "FR" and "S"; leaves `subSlotId` alone.
    static void ResID2SlotIndex(const std::string& fdn, NS_DOMAIN::SlotIndex& slot);
    /// Reads `neId`, `shelfId`, `slotId` and `subSlotId` from "NE", "FR", "S" and "SS".
    static void ResID2SubSlotIndex(const std::string& fdn, NS_DOMAIN::SlotIndex& subSlot);
    /// Reads `neId`, `shelfId` and `slotId` from "NE", "FR" and "S".
    static void ResID2CardIndex(const std::string& fdn, NS_DOMAIN::CardIndex& card);

    /// "OS=1".
    static void OSID2ResID(int osId, std::string& fdn);
    /// "ONE=1".
    static void ONEID2ResID(int oneId, std::string& fdn);
    /// "ONE=1,NE=2"; without the ONE level if `oneId` is 0.
    static void NEID2ResID(int oneId, int neId, std::string& fdn);
    /// "OS=1".
    static void OSIndex2ResID(const NS_DOMAIN::OSIndex& os, std::string& fdn);
    /// "ONE=1".
    static void ONEIndex2ResID(const NS_DOMAIN::ONEIndex& one, std::string& fdn);
    /// "NE=1".
    static void NEIndex2ResID(const NS_DOMAIN::NEIndex& ne, std::string& fdn);
    /// "NE=1,FR=2"; both levels always, -1 included.
    static void ShelfIndex2ResID(const NS_DOMAIN::ShelfIndex& shelf, std::string& fdn);
    /// "NE=1,FR=2,S=3"; shelf and slot only if not -1.
    static void SlotIndex2ResID(const NS_DOMAIN::SlotIndex& slot, std::string& fdn);
    /// "NE=1,FR=2,S=3,SS=4"; shelf, slot and sub-slot only if not -1.
    static void SubSlotIndex2ResID(const NS_DOMAIN::SlotIndex& subSlot, std::string& fdn);
    /// "NE=1,FR=2,S=3,CP=-1"; the shelf only if it is not -1, and nothing after the shelf if the slot is -1. If there
    /// is a slot, asks the inventory for the NE type: after types that `IsPTN41` knows, ",SS=-1,SC=-1" follows. Throws
    /// `InterfaceNotExistException` if there is a slot but no inventory.
    static void CardIndex2ResID(const NS_DOMAIN::CardIndex& card, std::string& fdn);

    // ---- Ports, access points, termination points -------------------------------------------------------------------

    /// Writes a port: "NE=1,FR=2,S=3,CP=-1,PP=16||0|"; if `asLogical`, with "LP" for "PP".
    ///
    /// - A shelf of -1 is left out. So is the shelf of a logical port (by `isLogical`), unless the port has a slot and
    ///   its FB type keeps the shelf (`PortRules::keepsShelf`).
    /// - Without a slot, neither slot nor sub-slot is written. Exception: ",S=0,CP=-1" if the configuration item
    ///   "Telvandaire" is not 0 and the FB type says so (`PortRules::hasSlotZero`).
    /// - With a slot but no sub-slot, asks the inventory for the NE type and writes ",SS=-1,SC=-1" if the configuration
    ///   item "NETypeListForSubSlot" lists it. Throws `InterfaceNotExistException` if there is no inventory, even if
    ///   the list is empty.
    /// - A `portId` of -1 is written as 4294967295. The label is written as it is, without escapes.
    ///
    /// The items are read anew whenever they matter.
    static void PortIndex2ResID(const NS_DOMAIN::PortIndex& port, std::string& fdn, bool asLogical);
    /// Writes a port of an NE of type `neType` without asking the inventory or the configuration: no ",CP=-1"; shelf,
    /// slot and sub-slot whenever not -1; ",SS=-1,SC=-1" for an absent sub-slot if `neType` is 1911 or 1912 and not
    /// `asLogical`; and `portId` with its sign.
    static void PortIndex2ResIDByNEType(const NS_DOMAIN::PortIndex& port, std::string& fdn, bool asLogical,
                                        unsigned long neType);
    /// Writes the key's port as the writer of a port does, exceptions included. If `withSubIf`, the port is written
    /// as a logical one, and a `subIfId` above 0 is appended as ",SUBIF=9".
    static void PortIndex2ResID(const NS_DOMAIN::CtpKey_T& key, std::string& fdn, bool withSubIf);
    /// Writes the key's port as the writer of a port does, exceptions included, and ",AP=1|2|9": the two AP values and
    /// `subIfId`, which is left out if 0.
    static void APIndex2ResID(const NS_DOMAIN::CtpKey_T& key, std::string& fdn, bool asLogical);
    /// Writes the TP's port as the writer of a port does, exceptions included; as a logical one if `isLogical`. For a
    /// port identified by its name (`ppType` 251):
    ///
    /// - The label is cut at its first ".", and what follows becomes ",SUBIF=9".
    /// - `vc4Id` and `vc12Id` that are not 0 are appended as ",VC4=1" and ",VC12=2".
    static void TPIndex2ResID(const NS_DOMAIN::TPIndex& tp, std::string& fdn);

    /// Reads a port. An `fdn` that contains "FR=1,S=0,CP=-1,SS=-1,SC=-1,PP=16||0|" stands for no port and leaves the
    /// record alone.
    ///
    /// - `isLogical` is always set: it is false if there is a "PP" level.
    /// - `portId` is always set: it is -1 unless the port level has four sub-values.
    /// - A name without a `ppType` sets `ppType` to 251.
    /// - In a name of some FB types (`PortRules::hasEscapedName`), the first backslash is dropped, and the next "|" and
    /// the sub-value after it become
    ///   part of the name. Without such a sub-value the backslash stays.
    /// - If the configuration item "Telvandaire" is not 0, a slot below 1 is read as no slot and no sub-slot. So is any
    ///   slot of a port identified by its name, for some FB types (`PortRules::hasNoNamedSlot`).
    ///
    /// The item is read at every call.
    static void ResID2PortIndex(const std::string& fdn, NS_DOMAIN::PortIndex& port);
    /// Reads the key's port by the rules above. If `fdn` contains "SUBIF=", reads the number after it into `subIfId`.
    static void ResID2PortIndex(const std::string& fdn, NS_DOMAIN::CtpKey_T& key);
    /// Reads an access point. The key's port is read only if its `neId` is -1; otherwise the caller's port is kept.
    /// `fdnText` becomes the text that was parsed for the rest. On a port of `ppType` 16 that is:
    ///
    /// - the text from "SUBIF" on, if `fdn` contains it;
    /// - otherwise, if there is a channel set, a text with an AP level in place of slot and port:
    ///   "NE=5,FR=1,S=3,CP=-1,PP=16||2|,CHANNELSET=4" is parsed as "NE=5,FR=1,AP=||10004", and `subIfId` becomes 10004.
    ///   A channel set without "=" leaves nothing to parse, and `fdnText` becomes `fdn`.
    static void ResID2APIndex(const std::string& fdn, NS_DOMAIN::CtpKey_T& key);
    /// Reads a termination point: the port, into fields that are cleared first, and a sub-interface, which is appended
    /// to the label after a ".". Sets `reserved` to 0. Never reads "VC4" or "VC12".
    static void ResID2TPIndex(const std::string& fdn, NS_DOMAIN::TPIndex& tp);
    /// Reads a loop-back port as a port, with three differences: no text stands for no port, nothing is unescaped, and
    /// "Telvandaire" does not matter. Asks the data-access service for the agent configuration all the same, and throws
    /// `InterfaceNotExistException` if there is no such service.
    static void ResID2LoopBackPortIndex(const std::string& fdn, NS_DOMAIN::PortIndex& port);

    // ---- Services, trails, tunnels ----------------------------------------------------------------------------------

    /// Writes "NE=1," and `resId` as it stands, which names the rest. Not the reverse of `ResID2PWIndex`, whose
    /// `resId` holds the NE level too.
    static void PWIndex2ResID(const NS_DOMAIN::PWIndex& pw, std::string& fdn);
    /// Reads `neId`; `resId` becomes the whole `fdn`.
    static void ResID2PWIndex(const std::string& fdn, NS_DOMAIN::PWIndex& pw);
    /// Reads `neId`; `resId` becomes the whole `fdn`. Unlike the other readers it skips levels without "=", and reads
    /// an NE level with an empty value as 0.
    static void ResID2PWSwitchIndex(const std::string& fdn, NS_DOMAIN::PWSwitchIndex& pwSwitch);
    /// Reads the number of the level "VEGROUP" into `group`.
    static void ResID2GroupID(const std::string& fdn, int& group);

    // The trail readers search for their tag as plain text, also inside a longer tag, and keep the text from there to
    // the end. An `fdn` without it leaves the record alone.

    /// Keeps the text from "PWE3TRAIL=" on as type 1; without that, from "VPLS=" on as type 2.
    static void ResID2VPNTrailIndex(const std::string& fdn, NS_DOMAIN::VPNTrailIndex& trail);
    /// Keeps the text from "TUNNELTRAIL=" on.
    static void ResID2TunnelTrailIndex(const std::string& fdn, NS_DOMAIN::TunnelTrailIndex& trail);
    /// Keeps the text from "PWTRAIL=" on.
    static void ResID2PWTrailIndex(const std::string& fdn, NS_DOMAIN::PWTrailIndex& trail);
    /// Keeps the text from "TUNNELPGTRAIL=" on.
    static void ResID2TNPIndex(const std::string& fdn, NS_DOMAIN::TNPIndex_T& group);

    /// Reads a service from the first of these levels that is there: "PWE3" (type and number), "NETH" (type 2), "VSI"
    /// (type 4), "VRF" (leaves the type alone). A "PWE3" level needs two sub-values. `resId` becomes the whole `fdn`.
    static void ResID2SVCIndex(const std::string& fdn, NS_DOMAIN::ServiceIndex& service);
    /// Reads the seven sub-values of level "TUNNEL", all or none. `resId` becomes the whole `fdn`.
    static void ResID2TunnelIndex(const std::string& fdn, NS_DOMAIN::TunnelIndex& tunnel);
    /// Reads an ATM traffic descriptor; `neId` becomes 0 if there is no NE level or it is empty.
    static void ResID2TDIndex(const std::string& fdn, NS_DOMAIN::TDIndex& descriptor);

    /// Copies the four fields.
    static void Domain2TE(const NS_DOMAIN::UniResID& from, NS_DOMAIN_SOUTHAPISET::TEUniResID& to);
    /// Copies the four fields.
    static void TE2Domain(const NS_DOMAIN_SOUTHAPISET::TEUniResID& from, NS_DOMAIN::UniResID& to);

    // ---- OAM --------------------------------------------------------------------------------------------------------

    /// What `ResID2MepIndex` returns for text that it cannot read.
    static constexpr int MEP_NOT_READABLE = 0x411800BA;

    // The writers ask the inventory whether this NE's identifiers omit the numbers: once for the MD level and once for
    // the MA level, even if the record has no number. They throw `InterfaceNotExistException` if there is no inventory.
    // A number of -1 is omitted in any case. The name is always written.

    /// "NE=1,MD=2|md".
    static void MDIndex2ResID(const NS_DOMAIN::MDIndex& md, std::string& fdn);
    /// "NE=1,MD=2|md,MA=3|ma".
    static void MAIndex2ResID(const NS_DOMAIN::MAIndex& ma, std::string& fdn);
    /// "NE=1,MD=2|md,MA=3|ma,MEP=4"; the end point's number always.
    static void MepIndex2ResID(const NS_DOMAIN::MEPIndex& mep, std::string& fdn);
    /// "NE=1,MD=2|md,MA=3|ma,RMEP=4"; the end point's number always.
    static void RmepIndex2ResID(const NS_DOMAIN::MEPIndex& mep, std::string& fdn);
    /// "NE=1,MD=2|md,MIP=3|mip". If `mdId` is -1, leaves the MD level out and does not ask the inventory. Leaves a MIP
    /// number of 0 out, unlike the others.
    static void MIPIndex2ResID(const NS_DOMAIN::MIPIndex& mip, std::string& fdn);

    // The fillers read a record from a parsed FDN, the readers from text. A missing MD, MA or MIP number becomes -1. A
    // missing MD or MA name is logged at level 1.

    /// A missing NE number or MD name leaves the field as it was.
    static void FillMDIndex(const MocLvlValueMap& map, NS_DOMAIN::MDIndex& md);
    /// A missing NE number becomes -1, a missing MD name empty; a missing MA name leaves `maName` as it was.
    static void FillMAIndex(const MocLvlValueMap& map, NS_DOMAIN::MAIndex& ma);
    /// A missing NE number becomes -1, a missing MD name empty. Never reads `mipName`.
    static void FillMIPIndex(const MocLvlValueMap& map, NS_DOMAIN::MIPIndex& mip);
    /// As `FillMDIndex`.
    static void ResID2MDIndex(const std::string& fdn, NS_DOMAIN::MDIndex& md);
    /// As `FillMAIndex`.
    static void ResID2MAIndex(const std::string& fdn, NS_DOMAIN::MAIndex& ma);
    /// As `FillMIPIndex`.
    static void ResID2MIPIndex(const std::string& fdn, NS_DOMAIN::MIPIndex& mip);

    /// Reads an end point, local or remote, by position: NE, MD, MA and end point in this order, whatever their tags.
    /// The last level is the end point, so a text with fewer levels leaves the fields between alone. If an MD or MA
    /// number is 0, the value without its first character is the name; otherwise the name keeps its value.
    ///
    /// Returns 0, or `MEP_NOT_READABLE` if there are more than four levels, if a level has no "=", or if `fdn` is
    /// empty; fields read until then keep what was read. The first two are logged at level 1, except for the last
    /// level.
    static int ResID2MepIndex(const std::string& fdn, NS_DOMAIN::MEPIndex& mep);
};

}  // namespace NS_UTIL
