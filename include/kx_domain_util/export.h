#pragma once

/// Marks what libkx_domain_util.so exports; everything else in it is hidden.
#define KX_DOMAIN_UTIL_API __attribute__((visibility("default")))
