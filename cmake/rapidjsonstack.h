/// Included before the rest of RapidJSON if clang compiles. RapidJSON's stack adds an offset to a null pointer before
/// it has memory, and only compares the result. This excludes that one file from the sanitizer, and no other.
#pragma once

#pragma clang attribute push(__attribute__((no_sanitize("pointer-overflow"))), apply_to = function)
#include <rapidjson/internal/stack.h>
#pragma clang attribute pop
