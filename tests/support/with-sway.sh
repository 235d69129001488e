#!/usr/bin/env bash
# with-sway.sh COMMAND...: runs it against a headless sway of its own.
source "$(dirname "${BASH_SOURCE[0]}")/compositor.sh"
command -v sway >/dev/null || fail "sway is missing; cure: scripts/packages.sh test"

# The devices that tests make are the second seat's; the first one has none.
cat >"$compositor_dir/config" <<CONFIG
xwayland disable
output HEADLESS-1 resolution 1280x800
seat second attach no-device
seat * pointer_constraint enable
CONFIG
start=(env -u DISPLAY -u WAYLAND_DISPLAY WLR_BACKENDS=headless WLR_RENDERER=pixman WLR_LIBINPUT_NO_DEVICES=1
    XDG_RUNTIME_DIR="$compositor_dir" HOME="$compositor_dir" sway --config "$compositor_dir/config")
if [[ $EUID -eq 0 ]]; then
    # sway refuses root; its clients may be root.
    chown -R 65534:65534 "$compositor_dir"
    start=(setpriv --reuid=65534 --regid=65534 --clear-groups "${start[@]}")
fi
start_compositor "${start[@]}"
run_in_compositor "$@"
