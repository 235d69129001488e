#!/usr/bin/env bash
# scripts/icon-sheet.sh [PICTURE]: draws all built-in icons at the sizes in use on the theme's background, to look at;
# in build/icons.png unless named. The picture that the tests compare with is tests/theme/icons.png.
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

scripts/packages.sh build run test
configure dev -DTARVIK_BUILD_TESTS=ON
build dev --target icon-sheet

picture=${1:-build/icons.png}
QT_QPA_PLATFORM=offscreen build/dev/bin/icon-sheet "$picture" || fail "the icons could not be drawn" "see the message above"
convert "$picture" +dither -colors 256 "PNG8:$picture" # a third of the size, no difference to see
step "the icons, row by row as listed above, are in $picture"
