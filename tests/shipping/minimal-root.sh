#!/usr/bin/env bash
# minimal-root.sh DIR: fills DIR with a Debian that has a shell, a GPU driver and what a display's clients must have,
# and nothing else: no Qt, no fonts, no compiler.
set -euo pipefail

root=$1
queue=(dash coreutils libstdc++6 mesa-vulkan-drivers libvulkan1 libegl1 libglx0 libopengl0 libx11-xcb1 libwayland-client0
    libwayland-cursor0 libwayland-egl1 libgbm1)
declare -A taken=()
while ((${#queue[@]} > 0)); do
    package=${queue[0]}
    queue=("${queue[@]:1}")
    [[ -z ${taken[$package]:-} ]] || continue
    taken[$package]=1
    # The first of alternatives; what is not installed is somebody's alternative or a virtual package.
    mapfile -t -O "${#queue[@]}" queue < <(dpkg-query -W -f '${Pre-Depends},${Depends}' "$package" 2>/dev/null |
        tr ',' '\n' | sed -n 's/^ *\([a-z0-9.+-]\+\).*/\1/p')
done
mkdir -p "$root"/{tmp,proc,dev,home} "$root"/usr/{bin,lib,lib64}
: >"$root/dev/null"
ln -s usr/bin "$root/bin"
ln -s usr/lib "$root/lib"
ln -s usr/lib64 "$root/lib64"
for package in "${!taken[@]}"; do
    dpkg -L "$package" 2>/dev/null || true
done | while read -r path; do
    [[ -d $path || $path == /usr/share/doc/* || ! -e $path ]] || printf '%s\0' "${path#/}"
done | (cd / && xargs -0 cp -a --parents -t "$root")
