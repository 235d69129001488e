#!/usr/bin/env bash
# scripts/pictures.sh: makes the pictures in docs/images from the running program, on a display of its own: the hub, the
# editor, the project settings and a game.
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

if [[ ${1:-} != --inside ]]; then
    scripts/packages.sh build run headless test
    configure release
    build release
    step "taking pictures"
    exec tests/support/with-display.sh "$0" --inside
fi

editor=build/release/bin/tarvik-editor
images=docs/images
dir=$(mktemp -d)
pid=
# shellcheck disable=SC2317 # called by the trap
tidy() {
    [[ -z $pid ]] || kill "$pid" 2>/dev/null || true
    rm -rf "$dir"
}
trap tidy EXIT

# open ARGUMENTS...: the program in the background, and its window once it shows
open() {
    "$editor" --quiet "$@" &
    pid=$!
    window=$(timeout 30 xdotool search --sync --onlyvisible --pid "$pid" | head -n 1)
    xdotool windowfocus --sync "$window"
    sleep 3 # until pictures are loaded and the first frames are drawn
}
# shut FILE: the screen without the black around the windows
shut() {
    import -window root "$dir/screen.png"
    convert "$dir/screen.png" -trim +repage "$1"
    kill "$pid"
    wait "$pid" || true
    pid=
}
# A user's projects, each left with a view of its own.
project() {
    mkdir -p "$dir/$1"
    cp -r samples/courtyard/{Content,Scripts,project.json} "$dir/$1"
    sed -i "s/\"name\": *\"Courtyard\"/\"name\": \"$1\"/" "$dir/$1/project.json"
    open --project "$dir/$1" --still --grid off --camera "$2" --look-at "$3"
    xdotool key ctrl+q
    wait "$pid"
    pid=
}
project "Evening Garden" 5,1.6,7 3.9,2.2,3.9
project Fountain -3,7,-3 0,1,0
project Courtyard 11.5,6.6,14.5 1,1,0

"$editor" --project "$dir/Courtyard" --still --frames 40 --size 1440x900 --quiet --screenshot "$images/editor.png"
"$editor" --project "$dir/Courtyard" --play --frames 60 --size 1280x720 --quiet --screenshot "$images/game.png"

open --size 1280x800
shut "$images/hub.png"
open --project "$dir/Courtyard" --still --size 1280x800
xdotool key alt+f
sleep 1
xdotool key t
sleep 2
shut "$images/settings.png"
step "the pictures are in $images"
