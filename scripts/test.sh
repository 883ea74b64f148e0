#!/usr/bin/env bash
# Installs what is missing, builds the library and runs every test.
# Arguments are passed on to ctest, as in: scripts/test.sh -R UrlTest
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-dependencies.sh
cmake --preset release
cmake --build --preset release
ctest --preset release -j "$(nproc)" "$@"
# ctest itself does not say why.
grep -h 'SKIPPED:' build/release/Testing/Temporary/LastTest.log || true
