/// Ahead of all of RapidJSON where clang compiles: its stack reckons how far a push would reach before it has any
/// memory, an offset from a null pointer that is only compared. clang's sanitizer leaves this one file alone, so that
/// it gets to see everything else.
#pragma once

#pragma clang attribute push(__attribute__((no_sanitize("pointer-overflow"))), apply_to = function)
#include <rapidjson/internal/stack.h>
#pragma clang attribute pop
