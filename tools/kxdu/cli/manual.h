#pragma once

#include <string>

#include "cli/description.h"

namespace NS_KX::NS_KXDU {

/// The name of the manual page of `verb`: "kxdu-inventory-list".
std::string ManualName(const DescribedVerb& verb);

/// The manual page of `verb`, in the language of man(7). `tool`: the tool, to which the page belongs; `version`: its
/// name and version.
std::string ManualPage(const DescribedVerb& verb, const DescribedVerb& tool, const std::string& version);

}  // namespace NS_KX::NS_KXDU
