#!/usr/bin/env bash
# Installs what is missing, builds the library and runs the demo: without an argument a walk through the library against a
# server on 127.0.0.1, with a URL as argument a GET of that URL.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-dependencies.sh
cmake --preset release >/dev/null
cmake --build --preset release --target demo >/dev/null
exec build/release/examples/demo "$@"
