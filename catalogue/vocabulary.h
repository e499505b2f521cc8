/// Look-ups in the constant tables. They return no value for a miss, while the library's own return a number.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace NS_KX {

/// The name of the client rate of an interface level.
std::optional<std::string> RateOfLevel(int level);
/// The interface level of a client rate, in upper or lower case.
std::optional<int> LevelOfRate(const std::string& rate);
/// The canonical FB type of an interface level.
std::optional<int> FbTypeOfLevel(int level);

/// All FB types that sit on an interface level, in ascending order.
std::vector<int> FbTypesOfLevel(int level);

/// The name of an FB type.
std::optional<std::string> NameOfFbType(int fbType);
/// The FB types of this name, in upper or lower case. Three share one name.
std::vector<int> FbTypesOfName(const std::string& name);
/// The interface level on which FBs of this type sit.
std::optional<int> LevelOfFbType(int fbType);
/// The bidirectional FB type that an FB type belongs to; a bidirectional type belongs to itself.
std::optional<int> BidirOfFbType(int fbType);

/// The id of the reserved CTP with this TMF name, in upper or lower case.
std::optional<int> IdOfCtp(const std::string& name);
/// The TMF name of a reserved CTP.
std::optional<std::string> NameOfCtp(int ctpId);

}  // namespace NS_KX
