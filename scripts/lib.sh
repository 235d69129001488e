# Sourced first by the scripts beside it: strict mode, the root of the tree as working folder, progress, failure.
# shellcheck shell=bash
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# Says what begins now, after how many seconds.
step() {
    printf '[%4d s] %s\n' "$SECONDS" "$*"
}

# fail WHAT CURE
fail() {
    printf '%s: %s\n  cure: %s\n' "${0##*/}" "$1" "$2" >&2
    exit 1
}

# configure PRESET [CACHE ARGUMENTS...], silent unless it fails
configure() {
    local log
    step "configuring build/$1"
    log=$(cmake --preset "$@" 2>&1) || {
        printf '%s\n' "$log" >&2
        fail "build/$1 could not be configured" "see the messages above; if they name a package, run scripts/packages.sh; if the folder was made by another version, remove build/$1"
    }
}

# build PRESET [ARGUMENTS OF cmake --build...]
build() {
    step "building build/$1"
    cmake --build --preset "$@" || fail "build/$1 did not build" "see the first error above"
}
