#!/usr/bin/env bash
# Installs what is missing, runs the tests on a build that counts lines, and prints the line coverage of Networking/. Fails
# below 99 %.
cd "$(dirname "$0")/.."
. scripts/common.sh

scripts/install-dependencies.sh gcovr
build coverage
find build/coverage -name '*.gcda' -delete
ctest --preset coverage -j "$PROCESSORS"
gcovr --root . --filter Networking/ --html-details build/coverage/report.html --txt - --fail-under-line 99 \
    build/coverage/CMakeFiles/QorNetworkingObjects.dir build/coverage/fuzz build/coverage/tests
say "details in build/coverage/report.html"
