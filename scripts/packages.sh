#!/usr/bin/env bash
# scripts/packages.sh [GROUP...]: installs what the named groups need from Debian's packages; all groups by default.
# Asks apt nothing when everything is there.
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

declare -A groups=(
    [build]="g++ cmake ninja-build ccache pkg-config qt6-base-dev qt6-base-private-dev libvulkan-dev
             libvulkan-volk-dev glslc libglm-dev libfmt-dev nlohmann-json3-dev libsdl2-dev libwayland-dev
             libwayland-bin wayland-protocols libxkbcommon-dev patchelf"
    [run]="libvulkan1 mesa-vulkan-drivers libqt6svg6 qt6-wayland libsdl2-2.0-0 fonts-noto-core fonts-dejavu-core"
    [headless]="xvfb mesa-vulkan-drivers"
    [test]="libgtest-dev vulkan-validationlayers vulkan-tools weston sway grim imagemagick xdotool
            g++-mingw-w64-x86-64-posix wine64 wine"
    [bench]="libbenchmark-dev libspdlog-dev strace valgrind"
    [quality]="git clang-format clang-tidy-19 shellcheck"
)

if [[ $# -eq 0 ]]; then
    set -- "${!groups[@]}"
fi
wanted=()
for group; do
    [[ -n ${groups[$group]:-} ]] || fail "there is no package group \"$group\"" "use some of: ${!groups[*]}"
    read -r -d '' -a packages <<<"${groups[$group]}" || true
    wanted+=("${packages[@]}")
done

if ! command -v dpkg-query >/dev/null; then
    step "not a Debian system: install the equivalent of these packages yourself: ${wanted[*]}"
    exit 0
fi

installed=$(dpkg-query -W -f '${db:Status-Status} ${Package}\n' "${wanted[@]}" 2>/dev/null || true)
missing=()
for package in "${wanted[@]}"; do
    grep -qxF "installed $package" <<<"$installed" || missing+=("$package")
done
[[ ${#missing[@]} -gt 0 ]] || exit 0

command="apt-get update && apt-get install --no-install-recommends ${missing[*]}"
as_root=(env DEBIAN_FRONTEND=noninteractive)
if [[ $EUID -ne 0 ]]; then
    command -v sudo >/dev/null ||
        fail "packages are missing, and there is no sudo to install them with: ${missing[*]}" "as root: $command"
    # A password is asked for only where somebody can type it.
    sudo=(sudo)
    [[ -t 0 && -z ${CI:-} ]] || sudo+=(-n)
    "${sudo[@]}" -v || fail "sudo does not let $(id -un) install the missing packages: ${missing[*]}" "as root: $command"
    as_root=("${sudo[@]}" "${as_root[@]}")
fi

log=$(mktemp)
trap 'rm -f "$log"' EXIT
quietly() {
    "${as_root[@]}" "$@" </dev/null >>"$log" 2>&1
}
step "installing ${#missing[@]} packages: ${missing[*]}"
# A list that cannot be fetched matters only if a package cannot be had afterwards.
quietly apt-get update -qq || true
quietly apt-get install -qq -y --no-install-recommends "${missing[@]}" || {
    tail -n 20 "$log" >&2
    fail "these packages are missing and could not be installed: ${missing[*]}" \
        "see apt's messages above (no network? no Debian 12 in /etc/apt/sources.list?), then as root: $command"
}
step "packages installed"
