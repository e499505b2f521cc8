/// Shows that a call writes to no memory that other threads use too: the variables of the libraries.
#pragma once

namespace NS_TEST {

/// While it lives, a write to a variable of a library of this project ends the process, with a message. Variables of
/// the threads' own may be written. One object at a time.
class ProtectedVariables {
public:
    ProtectedVariables();
    ~ProtectedVariables();
    ProtectedVariables(const ProtectedVariables&) = delete;
    ProtectedVariables& operator=(const ProtectedVariables&) = delete;
};

}  // namespace NS_TEST
