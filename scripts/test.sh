#!/usr/bin/env bash
# scripts/test.sh [PRESET [CTEST ARGUMENTS...]]: builds the tree as the preset says ("dev" unless named) and runs all
# its tests on a display of their own. With CI=true a skipped test is a failure.
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
preset=${1:-dev}
shift $(($# > 0))

scripts/packages.sh build run headless test
configure "$preset" -DTARVIK_BUILD_TESTS=ON
build "$preset"

in_display=tests/support/with-display.sh
VK_INSTANCE_LAYERS=VK_LAYER_KHRONOS_validation VK_LOADER_DEBUG=layer vulkaninfo --summary 2>&1 |
    grep 'Insert instance layer "VK_LAYER_KHRONOS_validation"' >/dev/null ||
    fail "the Vulkan loader does not load the validation layer" "reinstall the package vulkan-validationlayers"

step "testing build/$preset"
results=$PWD/build/$preset/tests.xml
rm -f "$results"
status=0
"$in_display" ctest --preset "$preset" --parallel "$(nproc)" --output-junit "$results" "$@" || status=$?
[[ -e $results ]] || fail "ctest ran no test" "see the messages above"

attribute() {
    sed -n "0,/^\t$1=\"\([0-9]*\)\"/s//\1/p" "$results"
}
failed=$(attribute failures)
skipped=$(attribute skipped)
passed=$(($(attribute tests) - failed - skipped - $(attribute disabled)))
if ((skipped > 0)); then
    printf 'skipped:\n'
    awk '/<testcase / { split($0, part, "\""); name = part[2] }
         /^\[  SKIPPED \] .*ms\)$/ { print "  " name ": " reason; name = "" }
         { reason = $0 }' "$results" | sed 's/&lt;/</g; s/&gt;/>/g; s/&quot;/"/g; s/&amp;/\&/g'
    if [[ ${CI:-} == true && $status -eq 0 ]]; then
        printf 'a skipped test fails in CI\n'
        status=1
    fi
fi
printf '%s: %d passed, %d failed, %d skipped, %d s in all\n' "$preset" "$passed" "$failed" "$skipped" "$SECONDS"
exit "$status"
