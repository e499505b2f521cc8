#pragma once

#include <string>

#include "catalogue/explanation.h"

namespace NS_KX {

/// The explanation as a drawing with a line from each part to its meaning, ended by LF; coloured for a terminal on
/// request. Only the first 200 parts are drawn; a note says how many more there are.
std::string Draw(const Explanation& explanation, bool isColoured);

}  // namespace NS_KX
