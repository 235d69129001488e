#!/usr/bin/env bash
# with-weston.sh COMMAND...: runs it against a weston of its own, whose screen is a window on $DISPLAY, so that
# a picture of the X root window shows it.
source "$(dirname "${BASH_SOURCE[0]}")/compositor.sh"
command -v weston >/dev/null || fail "weston is missing; cure: scripts/packages.sh test"

# Without the panel, whose buttons start programs that cover the tests' windows.
printf '[shell]\npanel-position=none\n' >"$compositor_dir/weston.ini"
start_compositor env XDG_RUNTIME_DIR="$compositor_dir" weston --backend=x11-backend.so --use-pixman \
    --config="$compositor_dir/weston.ini" --idle-time=0 --width=1280 --height=800 --socket=wayland-test
run_in_compositor "$@"
