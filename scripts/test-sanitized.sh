#!/usr/bin/env bash
# Builds everything with clang, AddressSanitizer and UndefinedBehaviorSanitizer, and runs the
# whole test suite under them, the fuzzer included (ZYM_FUZZ_SECONDS, default 60).
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-dependencies.sh cmake clang libclang-rt-14-dev pkg-config libtinyxml-dev libpystring-dev libgtest-dev \
  python3 make ninja-build libtolua++5.1-dev liblua5.1-0-dev
cmake -S . -B build-sanitize -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DZYM_SANITIZE=address,undefined -DZYM_BUILD_FUZZERS=ON -DZYM_BUILD_BENCHMARKS=OFF \
  -DZYM_FUZZ_SECONDS="${ZYM_FUZZ_SECONDS:-60}" >/dev/null
cmake --build build-sanitize -j "$(nproc)"
export ASAN_OPTIONS=detect_leaks=1:abort_on_error=0:strict_string_checks=1
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
ctest --test-dir build-sanitize --output-on-failure -j "$(nproc)"
