#pragma once

/// Marks what libkx_platform.so exports; everything else in it is hidden.
#define KX_PLATFORM_API __attribute__((visibility("default")))
