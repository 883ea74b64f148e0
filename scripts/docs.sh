#!/usr/bin/env bash
# Installs what is missing and writes the reference of the public headers to build/docs/html. Warnings are errors.
cd "$(dirname "$0")/.."
. scripts/common.sh

scripts/install-dependencies.sh doxygen
HEADERS=$(sed -n '/FILE_SET HEADERS BASE_DIRS/,/)/p' CMakeLists.txt | grep -oE '[A-Za-z/]+\.h') ||
    fail "no public headers found in CMakeLists.txt"
mkdir -p build/docs
{ cat docs/Doxyfile && echo "INPUT = $(echo $HEADERS)"; } | doxygen -
say "build/docs/html/annotated.html"
