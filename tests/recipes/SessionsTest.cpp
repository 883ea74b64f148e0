// The recipes of docs/cookbook/sessions.md.

#include <gtest/gtest.h>

#include "tests/recipes/RunProgram.h"
