#!/usr/bin/env bash
# Installs what is missing and makes the reference of the public headers in build/docs/html. Warnings are errors.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-dependencies.sh doxygen
mapfile -t HEADERS < <(sed -n '/FILE_SET HEADERS BASE_DIRS/,/)/p' CMakeLists.txt | grep -oE '[A-Za-z/]+\.h')
[ "${#HEADERS[@]}" -gt 0 ] || { echo "docs: no public headers found in CMakeLists.txt" >&2; exit 1; }
mkdir -p build/docs
{ cat docs/Doxyfile && echo "INPUT = ${HEADERS[*]}"; } | doxygen -
echo "docs: build/docs/html/annotated.html"
