#!/usr/bin/env bash
# Installs what is missing, builds the fuzz targets with clang and runs each for the given number of seconds (default 30). New
# inputs are stored below build/; a finding ends the run and stores its input there.
cd "$(dirname "$0")/.."
. scripts/common.sh

scripts/install-dependencies.sh clang libclang-rt-dev
build fuzz
cd build/fuzz

fuzz() {
    local target=$1 seeds=../../fuzz/corpus/$2
    shift 2
    mkdir -p "corpus/$target"
    say "$target"
    "fuzz/$target" "corpus/$target" "$seeds" "-max_total_time=$SECONDS_EACH" -max_len=4096 -print_final_stats=1 "$@" 2>&1 |
        sed -n '/stat::/p; /does not hold/,$p; /ERROR/,$p; /runtime error/,$p'
}

SECONDS_EACH=${1:-30}
fuzz UrlFuzzer url -dict=../../fuzz/url.dict
fuzz LastModifiedFuzzer last-modified
fuzz ResponseHeadFuzzer response-head
