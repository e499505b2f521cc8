#pragma once

/// Marks what libkx_standalone.so exports; everything else in it is hidden.
#define KX_STANDALONE_API __attribute__((visibility("default")))
