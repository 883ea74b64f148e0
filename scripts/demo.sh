#!/usr/bin/env bash
# Installs what is missing, builds the library and runs the demo. Without an argument, it demonstrates the library with a server
# on 127.0.0.1; with a URL, it fetches that URL.
cd "$(dirname "$0")/.."
. scripts/common.sh

scripts/install-dependencies.sh
build release --target demo
exec build/release/examples/demo "$@"
