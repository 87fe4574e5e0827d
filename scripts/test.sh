#!/usr/bin/env bash
# Builds everything and runs the whole test suite.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-dependencies.sh cmake g++ pkg-config libtinyxml-dev libpystring-dev libgtest-dev python3 valgrind \
  make ninja-build libtolua++5.1-dev liblua5.1-0-dev
cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo -DZYM_BUILD_TESTS=ON -DZYM_BUILD_BENCHMARKS=ON >/dev/null
cmake --build build -j "$(nproc)"
ctest --test-dir build --output-on-failure -j "$(nproc)"
