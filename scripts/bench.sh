#!/usr/bin/env bash
# scripts/bench.sh [ARGUMENTS OF GOOGLE BENCHMARK...]: builds the benchmarks optimised, runs them on a display of their
# own and prints one table: how many times the cost of a reference ours is, and the ratio that it should not exceed.
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

scripts/packages.sh build run headless bench
configure release -DTARVIK_BUILD_TESTS=OFF -DTARVIK_BUILD_BENCHMARKS=ON
build release

results=build/release/benchmarks
mkdir -p "$results"
programs=(build/release/bin/bench-*)
for program in "${programs[@]}"; do
    step "running ${program##*/}"
    tests/support/with-display.sh "$program" --benchmark_format=json "$@" >"$results/${program##*/}.json" ||
        fail "${program##*/} failed with status $?" "see its messages above"
done

awk 'function value() { return substr($0, index($0, ":") + 2) + 0 }
     function text() { split($0, part, "\""); return part[4] }
     FNR == 1 { inside = 0; ratio = failure = "" }
     BEGIN { row = "%-60s %10s %10s  %s\n"; printf row, "benchmark", "ratio", "goal", "" }
     /^ *"name":/ { name = text(); ratio = goal = comparison = failure = "" }
     /^ *"ratio":/ { ratio = value() }
     /^ *"comparison":/ { comparison = value() }
     /^ *"goal":/ { goal = value() }
     /^ *"error_message":/ { failure = text() }
     /^ *"benchmarks":/ { inside = 1 }
     inside && /^ *}/ {
         if (failure != "") { printf row, name, "", "", "failed: " failure; failures = 1 }
         else if (ratio != "") printf row, name, sprintf("%.3f", ratio), sprintf("%.3f", goal), ratio <= goal ? "met" : "missed"
         else if (comparison != "") printf row, name, sprintf("%.3f", comparison), "", "for comparison"
         name = ratio = comparison = failure = ""
     }
     END { exit failures }' "$results"/bench-*.json
