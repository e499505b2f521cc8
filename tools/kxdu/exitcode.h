#pragma once

namespace NS_KXDU {

/// How a run ends, as the shell sees it.
enum class ExitCode : int {
    OK = 0,
    FOUND = 1,   ///< the run went through, but a line could not be converted or a finding was reported
    USAGE = 2,   ///< wrong arguments, or an input, inventory or configuration that cannot be read
    OUTPUT = 3,  ///< output could not be written: disk full, no such folder
};

}  // namespace NS_KXDU
