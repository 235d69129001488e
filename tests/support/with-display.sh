#!/usr/bin/env bash
# with-display.sh COMMAND...: runs it on an X display of its own, drawn to by the software Vulkan driver, with
# empty home and settings folders, so that neither the machine's state nor the user's reaches it.
set -euo pipefail

fail() {
    printf 'with-display: %s\n' "$1" >&2
    exit 1
}
command -v Xvfb >/dev/null || fail "Xvfb is missing; cure: scripts/packages.sh headless"
drivers=(/usr/share/vulkan/icd.d/lvp_icd.*.json)
[[ -e ${drivers[0]} ]] || fail "the lavapipe Vulkan driver is missing; cure: scripts/packages.sh headless"

dir=$(mktemp -d "${TMPDIR:-/tmp}/tarvik.XXXXXX")
server=
# shellcheck disable=SC2317 # called by the trap
tidy() {
    [[ -z $server ]] || { kill "$server" && wait "$server"; } 2>/dev/null || true
    rm -rf "$dir"
}
trap tidy EXIT
trap 'exit 143' TERM INT

mkdir -m 0700 "$dir"/{home,config,data,cache,state,runtime}
mkfifo "$dir/number"
Xvfb -displayfd 3 -screen 0 1600x1000x24 -nolisten tcp -noreset 3>"$dir/number" >"$dir/log" 2>&1 &
server=$!
read -r -t 20 number <"$dir/number" || fail "Xvfb did not start: $(tail -n 3 "$dir/log")"

unset WAYLAND_DISPLAY WAYLAND_SOCKET XAUTHORITY VK_INSTANCE_LAYERS VK_LAYER_PATH QT_SCALE_FACTOR \
    QT_SCREEN_SCALE_FACTORS QT_STYLE_OVERRIDE QT_QPA_PLATFORMTHEME LC_CTYPE LANGUAGE
export DISPLAY=":$number" QT_QPA_PLATFORM=xcb TARVIK_TEST_DISPLAY="$dir" \
    VK_DRIVER_FILES="${drivers[0]}" VK_ICD_FILENAMES="${drivers[0]}" \
    HOME="$dir/home" XDG_CONFIG_HOME="$dir/config" XDG_DATA_HOME="$dir/data" XDG_CACHE_HOME="$dir/cache" \
    XDG_STATE_HOME="$dir/state" XDG_RUNTIME_DIR="$dir/runtime" \
    LC_ALL=C.UTF-8 DBUS_SESSION_BUS_ADDRESS=disabled:
"$@"
