#pragma once

#include <stdexcept>
#include <string>

namespace NS_KX {

/// Why a run cannot go on.
enum class Cause {
    USAGE,   ///< wrong arguments, or an input, inventory or configuration that cannot be read
    OUTPUT,  ///< output that cannot be written: disk full, no such folder
};

/// Ends a run; the text tells the user why.
class Failure : public std::runtime_error {
public:
    Failure(Cause cause, const std::string& text) : std::runtime_error(text), m_cause(cause) {}

    [[nodiscard]] Cause GetCause() const noexcept { return m_cause; }

private:
    Cause m_cause;
};

/// Ends a run because the system could not do something with the file `name`; errno says why. A refusal that comes from
/// a folder on the way to the file names the folder.
[[noreturn]] void FailByErrno(Cause cause, const std::string& name);

/// The reader of the output has gone: nothing is left to do, and nothing is wrong.
class ClosedPipe : public std::runtime_error {
public:
    ClosedPipe() : std::runtime_error("the reader of the output has gone") {}
};

}  // namespace NS_KX
