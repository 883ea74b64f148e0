#!/usr/bin/env bash
# Installs what is missing, builds the library and runs the demo: without an argument a walk through the library against a
# server on 127.0.0.1, with a URL as argument a GET of that URL.
cd "$(dirname "$0")/.."
. scripts/common.sh

scripts/install-dependencies.sh
build release --target demo
exec build/release/examples/demo "$@"
