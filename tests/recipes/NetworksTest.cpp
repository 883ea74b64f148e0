// The recipes of docs/cookbook/networks.md.

#include <gtest/gtest.h>

#include "tests/recipes/RunProgram.h"
