#!/usr/bin/env bash
# Builds the tool and runs it on the shipped type map; the outputs go to build/generated/zymLua/.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-dependencies.sh cmake g++ pkg-config libtinyxml-dev libpystring-dev
cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo -DZYM_BUILD_TESTS=OFF -DZYM_BUILD_BENCHMARKS=OFF >/dev/null
cmake --build build --target lua_containers_generator -j "$(nproc)"

# The tool searches the directory in which it runs: here, where data/ and tools/Generator/ lie.
mkdir -p build/generated/zymLua
build/tools/Generator/LuaContainerGenerator \
  build/generated/zymLua/generated_containers.pkg \
  build/generated/zymLua/generated_container_typedefs.h
