#!/usr/bin/env bash
# scripts/lint.sh [form]: formatting, shell checks and static analysis over everything that git tracks; "form" leaves
# the analysis out. A source file that passed is looked at again only when it, a header or a rule has changed.
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

# Headers generated while building are part of what is analysed.
configure dev -DTARVIK_BUILD_TESTS=ON -DTARVIK_BUILD_BENCHMARKS=ON
build dev

step "clang-tidy"
passed=build/dev/lint
mkdir -p "$passed"
# A source that is part of two targets is analysed as part of the first.
awk 'BEGIN { RS = "\n}(,|\n)" }
     match($0, /"file": "[^"]*"/) {
         file = substr($0, RSTART, RLENGTH)
         if (!seen[file]++) { sub(/^\[?\n/, ""); printf "%s%s\n}", separator, $0; separator = ",\n" }
     }
     BEGIN { print "[" } END { print "\n]" }' build/dev/compile_commands.json >"$passed/compile_commands.json"
surroundings=$({
    clang-tidy-19 --version
    tracked '*.hpp' '*.clang-tidy' CMakePresets.json '*CMakeLists.txt' 'cmake/*.cmake' | xargs cat
} | sha256sum)
export surroundings passed

# shellcheck disable=SC2317 # called by xargs
tidy() {
    local stamp began=$SECONDS
    stamp=$passed/$(cat - "$1" <<<"$1 $surroundings" | sha256sum | cut -d ' ' -f 1)
    [[ ! -e $stamp ]] || return 0
    clang-tidy-19 -p "$passed" --quiet "$1" 2> >(grep -v 'warnings generated' >&2) ||
        return 1
    touch "$stamp"
    printf '  %s (%d s)\n' "$1" $((SECONDS - began))
}
export -f tidy
# Only what this build compiles: the sources of other platforms have no compile command here.
tracked '*.cpp' | while read -r file; do
    if grep -qF "\"file\": \"$PWD/$file\"" "$passed/compile_commands.json"; then
        printf '%s\n' "$file"
    fi
done | xargs --no-run-if-empty -P "$(nproc)" -I FILE bash -c 'tidy FILE' ||
    fail "clang-tidy has remarks" "see above"
step "no remarks"
