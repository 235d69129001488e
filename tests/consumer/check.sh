#!/usr/bin/env bash
# check.sh BUILD_DIR COMPILER FLAGS: installs that build to a folder of its own, moves it, and builds and runs the
# consumer against it. Catches a header, a library or a dependency that the package forgets, and a path into the
# build folder.
set -euo pipefail

dir=$(mktemp -d "${TMPDIR:-/tmp}/tarvik-consumer.XXXXXX")
trap 'rm -rf "$dir"' EXIT

cmake --install "$1" --prefix "$dir/staged" >"$dir/log" || { cat "$dir/log" && exit 1; }
mv "$dir/staged" "$dir/prefix"
# The program that the README shows.
awk '/^```cpp/ { inside = 1; next } /^```/ { inside = 0 } inside' "$(dirname "$0")/../../README.md" >"$dir/readme.cpp"
cmake -S "$(dirname "$0")" -B "$dir/build" -DREADME_PROGRAM="$dir/readme.cpp" -G Ninja -DCMAKE_CXX_COMPILER="$2" -DCMAKE_CXX_FLAGS="$3" \
    -DCMAKE_PREFIX_PATH="$dir/prefix"
cmake --build "$dir/build"
"$dir/build/consumer"
