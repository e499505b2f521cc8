/// The text that follows the options in a verb's help, taken apart: the help wraps it to the width of the terminal, and
/// the manual pages set it in type.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace NS_KX::NS_KXDU {

/// A piece of a help text that is wrapped as one.
///  - Lines without indentation that follow each other are one part, a paragraph.
///  - Each indented line begins a part of its own. If it has a lead, the following lines continue it that begin below
///    its text.
///  - Lines indented by two after the line "Example:" or "Examples:" are commands.
struct HelpPart {
    std::size_t indent = 0;
    std::string lead;  ///< "- ", or words and the two or more blanks after them: "csv     "
    std::string text;  ///< one line; empty: an empty line
    bool isCommand = false;
};

std::vector<HelpPart> SplitHelp(std::string_view help);

/// Wraps the parts to `width` columns, commands aside: they are there to be copied. Ends without a line end.
std::string WrapHelp(std::string_view help, std::size_t width);

}  // namespace NS_KX::NS_KXDU
