#!/usr/bin/env bash
# Builds the benchmarks in build-bench (or $BENCH_BUILD_DIR) and runs them; the tables go to
# stdout. Arguments go to bench/run.py: --quick runs N = 100 once, as a check that all still runs.
set -euo pipefail
cd "$(dirname "$0")/.."

build="${BENCH_BUILD_DIR:-build-bench}"
scripts/install-dependencies.sh cmake g++ pkg-config libtinyxml-dev libpystring-dev python3
cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DZYM_BUILD_BENCHMARKS=ON >/dev/null
cmake --build "$build" --target benchmarks -j "$(nproc)" >/dev/null
exec python3 bench/run.py --build "$build" "$@"
