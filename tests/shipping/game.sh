#!/usr/bin/env bash
# game.sh INSTALLATION: makes a project with a behaviour, exports it with the installed editor, takes the export to a
# root folder that holds a minimal Debian, starts it there with an empty environment, and compares what it shows with
# what the editor plays. Needs a display.
set -euo pipefail

here=$(realpath "$(dirname "${BASH_SOURCE[0]}")")
dir=$(mktemp -d "${TMPDIR:-/tmp}/tarvik-shipping.XXXXXX")
root=$dir/root
trap 'rm -rf "$dir"' EXIT

editor=$1/bin/tarvik-editor
project=$dir/project
"$editor" --new Shipped --project "$project" --frames 1 --quiet
mkdir -p "$project/Scripts"
cat >"$project/Content/Main.lscene" <<'SCENE'
{"name": "Main", "entities": [
    {"name": "Camera", "position": [0, 0, 4], "camera": {}},
    {"name": "Ball", "behaviour": "Aside", "mesh": "sphere", "colour": "#ff4020"}
]}
SCENE
sed -i 's|"defaultScene": *"[^"]*"|"defaultScene": "Content/Main.lscene"|' "$project/project.json"
cat >"$project/Scripts/Aside.cpp" <<'SOURCE'
#include <tarvik/Script.hpp>

class Aside : public tarvik::script::Behaviour {
    void start() override { setPosition({1.0f, 0.5f, 0.0f}); }
};
TARVIK_BEHAVIOUR(Aside);
SOURCE

picture=(--frames 2 --size 640x480 --time-limit 60)
"$editor" --project "$project" --play "${picture[@]}" --screenshot "$dir/editor.png"
"$editor" --project "$project" --export "$dir/export" --name Shipped
[[ ! -e $dir/export/Game/Scripts/Aside.cpp ]]
for library in "$dir"/export/lib/*.so.*; do
    name=$(basename "$library")
    [[ $name == libtarvik_* ]] || grep -qF " $name " "$dir/export/THIRD_PARTY.md" ||
        { printf 'the notices do not name %s\n' "$name" && exit 1; }
done

"$here/minimal-root.sh" "$root"
cp -a "$dir/export" "$root/home/game"
ln -s game/run.sh "$root/home/start it"
find "$root/home/game" -type f -exec md5sum {} + >"$dir/before"
alone=(unshare --mount --pid --fork)
((EUID == 0)) || alone+=(--map-root-user)
# With a /proc of its own, or the loader could not tell where the program lies.
# shellcheck disable=SC2016 # for the inner shell
"${alone[@]}" sh -c 'mount -t proc proc "$1/proc" && exec chroot "$@"' sh "$root" /usr/bin/env -i DISPLAY="$DISPLAY" \
    HOME=/home PATH=/usr/bin VK_DRIVER_FILES="/usr/share/vulkan/icd.d/$(basename "$VK_DRIVER_FILES")" \
    sh "/home/start it" "${picture[@]}" --screenshot "/tmp/the game.png"
find "$root/home/game" -type f -exec md5sum {} + >"$dir/after"
diff "$dir/before" "$dir/after" || { printf 'the game wrote into its own folder\n' && exit 1; }

# The ball is there, and where its behaviour puts it.
lit=$(convert "$root/tmp/the game.png" -crop 320x240+320+0 -fuzz 40% -fill white -opaque '#ff4020' -fill black \
    +opaque white -format '%[fx:int(100*mean)]' info:)
((lit >= 5)) || { printf 'the game shows no ball in the upper right quarter (%s%% of it)\n' "$lit" && exit 1; }
different=$(compare -metric AE -fuzz 2% "$dir/editor.png" "$root/tmp/the game.png" null: 2>&1) || true
((different < 50)) || { printf 'the game differs from the editor in %s pixels\n' "$different" && exit 1; }
