#pragma once

/// Marks a declaration that the shared library exports. All others are hidden.
#define QORNETWORKING_EXPORT __attribute__((visibility("default")))

/// Marks a class that is nested in an exported class but is not exported itself.
#define QORNETWORKING_HIDDEN __attribute__((visibility("hidden")))
