#!/usr/bin/env bash
# Installs what is missing, builds the benchmarks in release mode, runs them, and prints the table of ratios.
#   --quick        few repetitions: checks that everything runs; the ratios are rough
#   --update-docs  also writes the table and the chart into docs/
# The figures are stored in build/benchmark/benchmarks.json.
cd "$(dirname "$0")/.."
. scripts/common.sh

REPETITIONS=9
MIN_TIME=2
DOCS=
for argument in "$@"; do
    case $argument in
        --quick)
            REPETITIONS=3
            MIN_TIME=0.1
            ;;
        --update-docs) DOCS="--docs docs" ;;
        *)
            echo "usage: scripts/benchmark.sh [--quick] [--update-docs]" >&2
            exit 2
            ;;
    esac
done

scripts/install-dependencies.sh python3
build benchmark
CPU=$(sed -n 's/^model name[[:space:]]*: //p' /proc/cpuinfo 2>/dev/null | head -n 1 | tr -d ',=' || true)

say "$REPETITIONS repetitions"
build/benchmark/benchmarks/QorNetworkingBenchmarks \
    --benchmark_repetitions="$REPETITIONS" --benchmark_enable_random_interleaving=true \
    --benchmark_min_time="$MIN_TIME" --benchmark_report_aggregates_only=true \
    --benchmark_context=cpu="${CPU:-unknown processor}" \
    --benchmark_out=build/benchmark/benchmarks.json --benchmark_out_format=json \
    >build/benchmark/benchmarks.log 2>&1 || { tail -n 20 build/benchmark/benchmarks.log >&2; exit 1; }
python3 benchmarks/report.py $DOCS build/benchmark/benchmarks.json
