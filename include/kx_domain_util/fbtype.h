/// Function blocks: what their types are called and which class they belong to.
///
/// An FB type is an int; those above 65535 are logical ports. The tables that these functions use are built on first
/// call and live until the process ends. Threads: any, first calls included. Exceptions: std::bad_alloc at most.
#pragma once

#include <string>

#include <kx_domain_util/export.h>

namespace NS_UTIL {

/// The name of an FB type; its decimal text if it has none. Three types share the name "COM".
KX_DOMAIN_UTIL_API std::string GetFBTypeName(int fbType);

/// Whether FBs of this type have a PTN AID.
KX_DOMAIN_UTIL_API bool IsPTNAIDFBType(int fbType);

/// Whether an FB of this type is a port object: a listed type is one whatever its kind; the types 2 and 3 are unless
/// `kind` is 3; no other type is.
KX_DOMAIN_UTIL_API bool IsPortObjByFbType(const int& fbType, const int& kind);

/// Whether `type` is that of a logical port: above 65535.
KX_DOMAIN_UTIL_API bool IsLogicalPortByType(int type);

/// The lower-case word of a domain id, "sdh" to "ptn"; "UNKNOWN" if the id is not assigned.
KX_DOMAIN_UTIL_API std::string GetDomainStrByID(const unsigned int& domainId);

}  // namespace NS_UTIL
