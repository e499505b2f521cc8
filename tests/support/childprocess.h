#pragma once

#include <functional>
#include <optional>
#include <string>

namespace NS_TEST {

/// Returns what `say` returns in a forked process, which starts with the state of this one but cannot change it.
/// Returns nothing if that process fails or takes more than five minutes. No other thread may run in this process.
std::optional<std::string> InChildProcess(const std::function<std::string()>& say);

}  // namespace NS_TEST
