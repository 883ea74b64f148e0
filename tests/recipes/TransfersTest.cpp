// The recipes of docs/cookbook/transfers.md.

#include <gtest/gtest.h>

#include "tests/recipes/RunProgram.h"
