/// Readers and writers of identifiers in the form that the table of kinds takes: the library's own where they differ in
/// their arguments, and what it leaves out where a text would not come back from its record.
#pragma once

#include <string>

#include <kx_domain_util/domainindex.h>

#include "catalogue/records.h"

namespace NS_KX {

// ---- Equipment, ports, termination points ---------------------------------------------------------------------------

void ReadContainedNE(const std::string& fdn, ContainedNE& ne);
void WriteContainedNE(const ContainedNE& ne, std::string& fdn);

void WritePort(const NS_DOMAIN::PortIndex& port, std::string& fdn);
/// As for an NE of a type without rules of its own.
void WritePortByNEType(const NS_DOMAIN::PortIndex& port, std::string& fdn);
/// As for an NE of a type that spells out absent sub-slots.
void WritePortWithSubSlot(const NS_DOMAIN::PortIndex& port, std::string& fdn);

void WriteAccessPoint(const NS_DOMAIN::CtpKey_T& key, std::string& fdn);
void WriteSubInterface(const NS_DOMAIN::CtpKey_T& key, std::string& fdn);

/// Reads the two path numbers too, which the library's reader leaves to its caller.
void ReadTerminationPoint(const std::string& fdn, NS_DOMAIN::TPIndex& tp);

// ---- Services, trails, tunnels --------------------------------------------------------------------------------------

void ReadGroup(const std::string& fdn, ContainedGroup& group);
/// Throws `BadRecord` when something else is read from the text than the record says.
void WriteGroup(const ContainedGroup& group, std::string& fdn);

/// `resId` becomes what the writer wants there, the text behind a leading NE level, and not the whole text as in the
/// library.
void ReadPseudoWire(const std::string& fdn, NS_DOMAIN::PWIndex& pw);

/// "NE=1,ATMTD=2". Throws `BadRecord` when a number is beyond the 32 bits that are read back.
void WriteTrafficDescriptor(const NS_DOMAIN::TDIndex& descriptor, std::string& fdn);

/// Of records that keep their whole text, of pseudo-wire switches, services and tunnels: the text is `resId`. Throws
/// `BadRecord` when something else is read from it than the other fields say.
template <class Record>
void WriteWholeText(const Record& record, std::string& fdn);

/// Of the four trail records.
template <class Trail>
void ReadTrail(const std::string& fdn, Contained<Trail>& trail);
/// The two texts, one behind the other. Throws `BadRecord` when something else is read from them than the record says.
template <class Trail>
void WriteTrail(const Contained<Trail>& trail, std::string& fdn);

// ---- OAM ------------------------------------------------------------------------------------------------------------

/// Reads the names also where there are numbers, unlike the library's reader. What that cannot read stays as it was.
void ReadEndPoint(const std::string& fdn, NS_DOMAIN::MEPIndex& mep);
/// Reads `mipName` too.
void ReadIntermediatePoint(const std::string& fdn, NS_DOMAIN::MIPIndex& mip);

}  // namespace NS_KX
