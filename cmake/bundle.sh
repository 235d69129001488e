#!/usr/bin/env bash
# bundle.sh PREFIX LIBRARY_DIR QT_PLUGINS: makes the editor that is installed below PREFIX run where neither Qt nor
# anything else of its libraries is installed. What cmake/system-libraries.txt names stays outside; a library that is
# neither there nor bundled is an error. Writes THIRD_PARTY.md about all that came in.
set -euo pipefail

prefix=$1
libraries=$prefix/$2
qt_plugins=$3
here=$(dirname "${BASH_SOURCE[0]}")

fail() {
    printf 'bundle: %s\n' "$1" >&2
    exit 1
}
PATH=$PATH:/sbin:/usr/sbin # where ldconfig is
for tool in ldconfig ldd objdump patchelf dpkg-query; do
    command -v "$tool" >/dev/null || fail "$tool is missing; cure: scripts/packages.sh build"
done

# What the editor loads by name: windows on X11 and Wayland and without a display, typing with dead keys, SVG icons,
# pictures.
plugins=(
    iconengines/libqsvgicon.so
    imageformats/libq{gif,ico,jpeg,svg}.so
    platforminputcontexts/lib{compose,ibus}platforminputcontextplugin.so
    platforms/libq{offscreen,wayland-egl,wayland-generic,xcb}.so
    wayland-decoration-client/libbradient.so
    wayland-graphics-integration-client/libqt-plugin-wayland-egl.so
    wayland-shell-integration/libxdg-shell.so
    xcbglintegrations/libqxcb-{egl,glx}-integration.so
)
for plugin in "${plugins[@]}"; do
    [[ -e $qt_plugins/$plugin ]] || fail "Qt's plug-in $plugin is missing in $qt_plugins; cure: scripts/packages.sh run"
    install -D -m 0644 "$qt_plugins/$plugin" "$prefix/plugins/$plugin"
done
loaded=(libSDL2-2.0.so.0) # controllers
printf '[Paths]\nPrefix=..\nPlugins=plugins\n' >"$prefix/bin/qt.conf"

mapfile -t patterns < <(grep -v -e '^#' -e '^$' "$here/system-libraries.txt")
belongs_to_system() {
    local pattern
    for pattern in "${patterns[@]}"; do
        # shellcheck disable=SC2053 # it is a pattern
        [[ $1 == $pattern ]] && return 0
    done
    return 1
}

needed_by() {
    objdump -p "$1" | awk '$1 == "NEEDED" { print $2 }'
}

# From the editor and the plug-ins to all that they need, but not to what only the machine's own libraries need. Each
# is looked at elsewhere: next to it may lie what an earlier installation bundled.
elsewhere=$(mktemp -d "${TMPDIR:-/tmp}/tarvik-bundle.XXXXXX")
trap 'rm -rf "$elsewhere"' EXIT
declare -A origin=()
queue=("$prefix/bin/tarvik-editor" "${plugins[@]/#/$prefix/plugins/}")
mapfile -t -O "${#queue[@]}" queue < <(find "$libraries" -maxdepth 1 -name 'libtarvik_*.so.*' -type f)
known=$(ldconfig -p)
for name in "${loaded[@]}"; do
    path=$(awk -v name="$name" '$1 == name { print $NF; exit }' <<<"$known") # a pipe's writer would die of the exit
    [[ -n $path ]] || fail "$name is not installed; cure: scripts/packages.sh run"
    origin[$name]=$path
    queue+=("$path")
done
while ((${#queue[@]} > 0)); do
    file=${queue[0]}
    queue=("${queue[@]:1}")
    install -m 0755 "$file" "$elsewhere/file"
    found=$(ldd "$elsewhere/file")
    for name in $(needed_by "$file"); do
        if belongs_to_system "$name" || [[ -n ${origin[$name]:-} || $name == libtarvik_* ]]; then
            continue
        fi
        path=$(awk -v name="$name" '$1 == name && $2 == "=>" && $3 ~ /^\// { print $3; exit }' <<<"$found")
        [[ -n $path ]] || fail "$name, which $(basename "$file") needs, is not installed"
        origin[$name]=$path
        queue+=("$path")
    done
done

for name in "${!origin[@]}"; do
    install -m 0644 "${origin[$name]}" "$libraries/$name"
    patchelf --set-rpath "\$ORIGIN" "$libraries/$name"
done
for plugin in "${plugins[@]}"; do
    patchelf --set-rpath "\$ORIGIN/../../$2" "$prefix/plugins/$plugin"
done

# Package and version of a file; its path may be known with or without /usr.
package_of() {
    local path
    for path in "$(realpath "$1")" "$1" "${1#/usr}" "/usr$1"; do
        dpkg-query -S "$path" 2>/dev/null | sed -n '1s/[:,].*//p' | grep . && return
    done
    fail "no Debian package owns $1: its licence is not known"
}

# No file tells of these: their code is within the editor's own files.
compiled_in=(libglm-dev libvulkan-dev libvulkan-volk-dev nlohmann-json3-dev)
[[ ! -e /usr/share/doc/wayland-protocols ]] || compiled_in+=(wayland-protocols) # else the build goes without

declare -A files_of=()
for name in "${!origin[@]}"; do
    package=$(package_of "${origin[$name]}")
    files_of[$package]+=" $name"
done
for plugin in "${plugins[@]}"; do
    package=$(package_of "$qt_plugins/$plugin")
    files_of[$package]+=" $(basename "$plugin")"
done
for package in "${compiled_in[@]}"; do
    files_of[$package]+=" compiled-in"
done
mapfile -t packages < <(printf '%s\n' "${!files_of[@]}" | sort)

# The licence of the package as a whole, where its copyright file is one that programs can read.
licence_of() {
    awk '/^Files: *\*/ { whole = 1 } whole && /^License:/ { sub(/^License: */, ""); print; exit }' "$1"
}
{
    printf '# Third-party components\n\nLibraries of other projects in this folder, as Debian distributes them.\n\n'
    printf '| Component | Version | Licence | Files |\n|---|---|---|---|\n'
    for package in "${packages[@]}"; do
        copyright=/usr/share/doc/$package/copyright
        [[ -e $copyright ]] || fail "$copyright is missing: the licence of $package is not known"
        licence=$(licence_of "$copyright")
        # shellcheck disable=SC2086 # one word for each file
        printf '| %s | %s | %s | %s |\n' "$package" "$(dpkg-query -W -f '${source:Version}\n' "$package" | head -n 1)" \
            "${licence:-see below}" "$(printf '%s\n' ${files_of[$package]} | sort | paste -sd ' ')"
    done
    printf '\nTheir copyright notices and licences:\n'
    for package in "${packages[@]}"; do
        printf '\n## %s\n\n~~~~~~~~\n' "$package"
        cat "/usr/share/doc/$package/copyright"
        printf '\n~~~~~~~~\n'
    done
    # What they only refer to is on a Debian's disk, not on every player's.
    mapfile -t licences < <(printf '/usr/share/doc/%s/copyright\0' "${packages[@]}" |
        xargs -0 grep -oh '/usr/share/common-licenses/[A-Za-z0-9.+-]*[A-Za-z0-9+]' | xargs readlink -e | sort -u)
    for licence in "${licences[@]}"; do
        printf '\n## %s\n\n~~~~~~~~\n' "$licence"
        cat "$licence"
        printf '\n~~~~~~~~\n'
    done
} >"$prefix/THIRD_PARTY.md"
printf -- '-- Bundled %d libraries and %d plug-ins of %d packages\n' "${#origin[@]}" "${#plugins[@]}" "${#packages[@]}"
