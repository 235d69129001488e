#!/usr/bin/env bash
# scripts/lint.sh [form]: formatting, shell checks and static analysis over everything that git tracks; "form" leaves
# the analysis out. Sources that passed are looked at again only when they, a header or a rule have changed.
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

scripts/packages.sh build test bench quality
tracked() {
    git ls-files -- "$@"
}

step "checking the formatting"
tracked '*.cpp' '*.hpp' | xargs --no-run-if-empty clang-format --dry-run -Werror ||
    fail "the files above are not formatted" "clang-format -i FILE..."

step "checking the shell scripts"
{
    tracked '*.sh'
    echo .ci/run
} | xargs shellcheck || fail "shellcheck has remarks" "see above"

[[ ${1:-} != form ]] || exit 0

# Sources are analysed many at a time: most of the time goes into the headers that they share. Of what is built, only
# generated headers are needed; asking for them as targets would build the libraries of their users first.
configure lint
step "generating headers"
ninja -C build/lint -t targets all | sed -n 's/^\([^/].*\.\(h\|inc\)\): CUSTOM_COMMAND$/\1/p' |
    xargs ninja -C build/lint -t commands -s | sort -u | sh -e >build/lint/generate.log 2>&1 ||
    fail "the headers could not be generated" "see build/lint/generate.log"

step "clang-tidy"
passed=build/lint/passed
mkdir -p "$passed"
surroundings=$({
    clang-tidy-19 --version
    tracked '*.hpp' '*.clang-tidy' CMakePresets.json '*CMakeLists.txt' 'cmake/*.cmake' | xargs cat
} | sha256sum)
# tidy STAMP FILE
# shellcheck disable=SC2317 # called by xargs
tidy() {
    local began=$SECONDS checks=
    # Fixtures are no interfaces, and a test may fail by a crash.
    [[ $2 != build/lint/tests/* ]] ||
        checks=-cppcoreguidelines-virtual-class-destructor,-bugprone-unchecked-optional-access,-performance-inefficient-vector-operation
    clang-tidy-19 -p build/lint --checks="$checks" --quiet "$2" 2> >(grep -v 'warnings generated' >&2) || return 1
    touch "$1"
    printf '  %s (%d s)\n' "$(sed 's|.*/CMakeFiles/||; s|\.dir/Unity/unity||; s|_cxx.cxx||' <<<"$2")" $((SECONDS - began))
}
export -f tidy
# The largest first. A library of which the tests have a target of their own comes twice.
find build/lint -name 'unity_*_cxx.cxx' -printf '%s %p\n' | sort -rn | cut -d ' ' -f 2 | while read -r file; do
    stamp=$passed/$({
        echo "$surroundings"
        sed -n 's/^#include "\(.*\)"$/\1/p' "$file" | grep -v _autogen/ | xargs tail -n +1
    } | sha256sum | cut -d ' ' -f 1)
    [[ -e $stamp ]] || printf '%s %s\n' "$stamp" "$file"
done | awk '!seen[$1]++' | xargs --no-run-if-empty -P "$(nproc)" -L 1 bash -c 'tidy "$@"' tidy ||
    fail "clang-tidy has remarks" "see above"
step "no remarks"
