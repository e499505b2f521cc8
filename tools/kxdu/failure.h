#pragma once

#include <cerrno>
#include <stdexcept>
#include <string>
#include <system_error>

#include "exitcode.h"

namespace NS_KXDU {

/// Ends the run with this exit code; the text tells the user why.
class Failure : public std::runtime_error {
public:
    Failure(ExitCode code, const std::string& text) : std::runtime_error(text), m_code(code) {}

    [[nodiscard]] ExitCode Code() const noexcept { return m_code; }

private:
    ExitCode m_code;
};

/// Ends the run because the system could not do something with the file of this name; errno tells why.
[[noreturn]] inline void FailByErrno(ExitCode code, const std::string& name) {
    throw Failure(code, name + ": " + std::generic_category().message(errno));
}

/// Whoever read our output has gone: nothing is left to do, and nothing is wrong.
class ClosedPipe : public std::runtime_error {
public:
    ClosedPipe() : std::runtime_error("the reader of the output has gone") {}
};

}  // namespace NS_KXDU
