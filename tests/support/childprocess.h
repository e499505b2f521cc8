#pragma once

#include <functional>
#include <optional>
#include <string>

namespace NS_TEST {

/// What `say` says in a process that is forked for it, so that it meets this process's state and leaves it alone.
/// Nothing when that process does not end well, or not within five minutes. No other thread may run in this process.
std::optional<std::string> InChildProcess(const std::function<std::string()>& say);

}  // namespace NS_TEST
