# Sourced by with-sway.sh and with-weston.sh: runs a command against a Wayland compositor of its own.
# shellcheck shell=bash
set -euo pipefail

# The compositors need the closed surroundings too.
if [[ -z ${TARVIK_TEST_DISPLAY:-} ]]; then
    exec "$(dirname "$0")/with-display.sh" "$0" "$@"
fi

fail() {
    printf '%s: %s\n' "${0##*/}" "$1" >&2
    exit 1
}

compositor_dir=$(mktemp -d "${TMPDIR:-/tmp}/tarvik-wayland.XXXXXX")
compositor=
# shellcheck disable=SC2317 # called by the trap
tidy() {
    [[ -z $compositor ]] || { kill "$compositor" && wait "$compositor"; } 2>/dev/null || true
    rm -rf "$compositor_dir"
}
trap tidy EXIT
trap 'exit 143' TERM INT

# start_compositor COMMAND...
start_compositor() {
    "$@" >"$compositor_dir/log" 2>&1 &
    compositor=$!
}

# run_in_compositor COMMAND..., as soon as the compositor listens
run_in_compositor() {
    local socket deadline=$((SECONDS + 20))
    until socket=$(find "$compositor_dir" -maxdepth 1 -type s -name 'wayland-*' | head -n 1) && [[ -n $socket ]]; do
        kill -0 "$compositor" 2>/dev/null || fail "the compositor ended: $(tail -n 5 "$compositor_dir/log")"
        ((SECONDS < deadline)) || fail "no Wayland socket within 20 s: $(tail -n 5 "$compositor_dir/log")"
        read -r -t 0.05 <> <(:) || true
    done
    WAYLAND_DISPLAY=$socket QT_QPA_PLATFORM=wayland "$@"
}
