#!/usr/bin/env bash
# Sets the machine up, builds everything and runs every test: unit, widget, fuzz, end to end.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/setup.sh

cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=Release >/dev/null
cmake --build build -j2

# The fuzz targets need clang's libFuzzer and sanitizers, so they have a build of their own.
if [ -f fuzz/CMakeLists.txt ]; then
  CC=clang-14 CXX=clang++-14 cmake -S . -B build-fuzz -G Ninja -DSKIN_FUZZ=ON -DSKIN_WITH_QT=OFF \
    -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
  cmake --build build-fuzz -j2
  ctest --test-dir build-fuzz --output-on-failure
fi

ctest --test-dir build --output-on-failure -j2
