#!/usr/bin/env bash
# Installs what is missing, builds the library and runs every test.
# Arguments are passed on to ctest, as in: scripts/test.sh -R UrlTest
cd "$(dirname "$0")/.."
. scripts/common.sh

scripts/install-dependencies.sh
build release
ctest --preset release -j "$PROCESSORS" "$@"
# ctest itself does not report the reason.
grep -h 'SKIPPED:' build/release/Testing/Temporary/LastTest.log || true
