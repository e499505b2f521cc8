#pragma once

#include <stdexcept>
#include <string>

namespace NS_KX {

/// Why a run cannot go on.
enum class Cause {
    INPUT,   ///< arguments, an input, an inventory or a configuration that cannot be used
    OUTPUT,  ///< output that cannot be written: disk full, no such folder
};

/// Ends a run; the text says why.
class Failure : public std::runtime_error {
public:
    Failure(Cause cause, const std::string& text) : std::runtime_error(text), m_cause(cause) {}

    [[nodiscard]] Cause GetCause() const noexcept { return m_cause; }

private:
    Cause m_cause;
};

/// Throws `Failure` for the file `name`, with the reason in errno. `what` says what cannot be done, if that is not
/// plain. If a folder on the path to the file denies access, the message names the folder.
[[noreturn]] void FailByErrno(Cause cause, const std::string& name, const std::string& what = {});

/// Thrown when the reader of the output has gone: the run ends without an error.
class ClosedPipe : public std::runtime_error {
public:
    ClosedPipe() : std::runtime_error("the reader of the output has gone") {}
};

}  // namespace NS_KX
