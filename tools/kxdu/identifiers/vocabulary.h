/// What the constant tables say, and whether they say anything: where the library's look-ups answer a miss with a
/// number of their own, these answer none.
#pragma once

#include "formats/listing.h"

namespace NS_KXDU {

/// The name of the client rate of an interface level.
Listing::Cell RateOfLevel(int level);
/// The interface level of a client rate, in upper or lower case.
Listing::Cell LevelOfRate(const std::string& rate);
/// The canonical FB type of an interface level.
Listing::Cell FbTypeOfLevel(int level);

/// The name of an FB type.
Listing::Cell NameOfFbType(int fbType);
/// The interface level on which FBs of this type sit.
Listing::Cell LevelOfFbType(int fbType);
/// The bidirectional FB type that an FB type belongs to; a bidirectional type belongs to itself.
Listing::Cell BidirOfFbType(int fbType);

/// The id of the reserved CTP of this TMF name, case counts.
Listing::Cell IdOfCtp(const std::string& name);
/// The TMF name of a reserved CTP.
Listing::Cell NameOfCtp(int ctpId);

}  // namespace NS_KXDU
