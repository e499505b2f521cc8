#pragma once

#include <cerrno>
#include <stdexcept>
#include <string>
#include <system_error>

namespace NS_KX {

/// What a run that cannot go on fails for.
enum class Cause {
    USAGE,   ///< wrong arguments, or an input, inventory or configuration that cannot be read
    OUTPUT,  ///< output that cannot be written: disk full, no such folder
};

/// Ends a run; the text says why, for the user.
class Failure : public std::runtime_error {
public:
    Failure(Cause cause, const std::string& text) : std::runtime_error(text), m_cause(cause) {}

    [[nodiscard]] Cause GetCause() const noexcept { return m_cause; }

private:
    Cause m_cause;
};

/// Ends a run because the system could not do something with the file of this name; errno says why.
[[noreturn]] inline void FailByErrno(Cause cause, const std::string& name) {
    throw Failure(cause, name + ": " + std::generic_category().message(errno));
}

/// Whoever read the output has gone: nothing is left to do, and nothing is wrong.
class ClosedPipe : public std::runtime_error {
public:
    ClosedPipe() : std::runtime_error("the reader of the output has gone") {}
};

}  // namespace NS_KX
