#pragma once

/// Marks what a shared library of this project exports; all else stays hidden.
#define QORNETWORKING_EXPORT __attribute__((visibility("default")))
