#!/usr/bin/env bash
# scripts/run.sh [ARGUMENTS OF tarvik-editor...]: builds the editor and opens it on the sample project. Without a
# display it draws a few frames out of sight and leaves a picture of its window in build/.
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

headless=()
[[ -n ${DISPLAY:-}${WAYLAND_DISPLAY:-} ]] || headless=(headless)
scripts/packages.sh build run "${headless[@]}"
configure release -DTARVIK_BUILD_TESTS=OFF -DTARVIK_BUILD_BENCHMARKS=OFF
build release --target tarvik-editor

editor=(build/release/bin/tarvik-editor --project samples/courtyard)
if [[ ${#headless[@]} -eq 0 ]]; then
    step "opening the editor on samples/courtyard"
    exec "${editor[@]}" "$@"
fi
picture=$PWD/build/screenshot.png
rm -f "$picture"
step "no display (DISPLAY and WAYLAND_DISPLAY are empty): drawing out of sight"
timeout 120 tests/support/with-display.sh "${editor[@]}" --frames 30 --screenshot "$picture" "$@" ||
    fail "the editor ended with status $? before its picture was saved" "see its messages above"
[[ -s $picture ]] || fail "the editor saved no picture" "see its messages above"
step "a picture of the editor's window is in $picture"
