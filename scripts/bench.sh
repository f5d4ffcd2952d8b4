#!/usr/bin/env bash
# Measures what the library costs, and prints each ratio beside its bar.
#
#   scripts/bench.sh [--qt 6|5] [--runs | --no-runs] [-- BENCHMARK-OPTION...]
#
#   --qt N       with this version of Qt; 6 unless given
#   --runs       only the whole runs of the external programs
#   --no-runs    only what needs no external program
#
# The two sides of a ratio are measured in turn, in one program, in changing order; the median of the ratios of all pairs
# counts. Next to it stands the interval that holds the true median with 95 % probability. A bar counts as exceeded, and
# the script fails, when the whole interval lies above it: a median above the bar whose interval still reaches below is
# noise, and marked as such. All but the whole runs are measured in processor time, which other programs do not raise,
# though they take away memory bandwidth: measure on a quiet machine.
#
# The figures also go to build/bench-qtN/*.json. What follows "--" goes to the programs, as in:
# scripts/bench.sh --no-runs -- --benchmark_filter=list
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
. "$(dirname "$0")/common.sh"

qt=6
programs=(nox_bench nox_bench_runs)
while [[ $# -gt 0 ]]; do
    case $1 in
        --qt) qt=${2-}; shift 2 ;;
        --runs) programs=(nox_bench_runs); shift ;;
        --no-runs) programs=(nox_bench); shift ;;
        --) shift; break ;;
        -h | --help) print_help; exit 0 ;;
        *) echo "bench.sh: unknown option '$1'; see --help" >&2; exit 2 ;;
    esac
done
groups=(build run bench)
case $qt in
    6) preset=release ;;
    5) preset=qt5; groups+=(qt5) ;;
    *) echo "bench.sh: --qt takes 6 or 5" >&2; exit 2 ;;
esac

"$root/scripts/setup.sh" "${groups[@]}"
build=$root/build/bench-qt$qt
say "build"
configure "$preset" "$build" -DNOX_BUILD_BENCHMARKS=ON -DBUILD_TESTING=OFF
compile "$build" "${programs[@]}" nox-fetch

if [[ " ${programs[*]} " == *" nox_bench_runs "* ]]; then
    "$root/scripts/stage-programs.sh" "$build/bin"
    make_scratch
    serve_clip 0
    export NOX_BENCH_URL=$url
fi

failed=0
for program in "${programs[@]}"; do
    say "$program, Qt $qt"
    "$build/bin/$program" --benchmark_out="$build/$program.json" --benchmark_out_format=json "$@" || failed=1
done
exit $failed
