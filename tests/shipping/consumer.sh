#!/usr/bin/env bash
# consumer.sh INSTALLATION COMPILER FLAGS: builds and runs the consumer against the installation, moved to another
# place. Catches a header, a library or a dependency that the package forgets, and a path into the build folder.
set -euo pipefail

here=$(dirname "${BASH_SOURCE[0]}")
dir=$(mktemp -d "${TMPDIR:-/tmp}/tarvik-consumer.XXXXXX")
trap 'rm -rf "$dir"' EXIT

cp -a "$1" "$dir/prefix"
# The program that the README shows.
awk '/^```cpp/ { inside = 1; next } /^```/ { inside = 0 } inside' "$here/../../README.md" >"$dir/readme.cpp"
cmake -S "$here/consumer" -B "$dir/build" -G Ninja -DREADME_PROGRAM="$dir/readme.cpp" -DCMAKE_CXX_COMPILER="$2" \
    -DCMAKE_CXX_FLAGS="$3" -DCMAKE_PREFIX_PATH="$dir/prefix"
cmake --build "$dir/build"
"$dir/build/consumer"
