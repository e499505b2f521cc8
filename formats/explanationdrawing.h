#pragma once

#include <string>

#include "catalogue/explanation.h"

namespace NS_KX {

/// What the place can show where a drawing is looked at.
struct DrawingStyle {
    bool isColoured = false;  ///< with the control sequences of a terminal
    bool isAscii = false;     ///< lines of ASCII characters; texts of the identifier stay as they are
};

/// The explanation as a drawing with a line from each part to its meaning, ended by LF. Only the first 200 parts are
/// drawn; a note says how many more there are.
std::string Draw(const Explanation& explanation, const DrawingStyle& style = {});

}  // namespace NS_KX
