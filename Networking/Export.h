#pragma once

/// Marks what a shared library of this project exports; all else stays hidden.
#define QORNETWORKING_EXPORT __attribute__((visibility("default")))

/// Marks a class nested in an exported one that is not exported with it.
#define QORNETWORKING_HIDDEN __attribute__((visibility("hidden")))
