/// The exceptions of the module `kx_domain_util`, one for each status of the C interface.
#pragma once

#include <string>

namespace NS_KX::NS_PYTHON {

inline constexpr const char* UNKNOWN_TYPE = "UnknownType";
inline constexpr const char* UNKNOWN_FIELD = "UnknownField";
inline constexpr const char* NOT_THERE = "NotThere";
inline constexpr const char* WRONG_TYPE = "WrongType";
inline constexpr const char* OUT_OF_RANGE = "OutOfRange";
inline constexpr const char* BAD_RECORD = "BadRecord";
inline constexpr const char* NO_FACTS = "NoFacts";
inline constexpr const char* NO_MEMORY = "NoMemory";
inline constexpr const char* BAD_ARGUMENT = "BadArgument";
inline constexpr const char* FAILED = "Failed";

/// Throws the exception of this name. The caller holds the interpreter's lock.
[[noreturn]] void Raise(const char* name, const std::string& message);

/// From now on, exceptions of the layers below reach Python as exceptions of the module.
void TranslateExceptions();

}  // namespace NS_KX::NS_PYTHON
