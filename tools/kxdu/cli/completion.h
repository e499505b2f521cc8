/// Scripts by which a shell completes the words of a command line. They suggest verbs, options, files where an option
/// takes a file, and the words of options that take one of a few.
#pragma once

#include <string>

#include "cli/description.h"

namespace NS_KX::NS_KXDU {

std::string BashCompletion(const DescribedVerb& tool);
std::string ZshCompletion(const DescribedVerb& tool);
std::string FishCompletion(const DescribedVerb& tool);

}  // namespace NS_KX::NS_KXDU
