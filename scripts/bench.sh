#!/usr/bin/env bash
# Measures what the library costs, and prints each ratio beside its bar.
#
#   scripts/bench.sh [--qt 6|5] [--runs | --no-runs | --pages] [--package P]... [-- BENCHMARK-OPTION...]
#
#   --qt N       with this version of Qt; 6 unless given
#   --runs       only the whole runs of the external programs
#   --no-runs    only what needs no external program
#   --pages      only the pages of which nox-fetch must be as fast as the plain tool, or faster
#   --package P  these pages with that version of the tool as well: a folder that holds the yt_dlp package, a wheel, or an
#                archive of its sources; can be given several times
#
# The two sides of a ratio are measured in turn, in one program, in changing order; the median of the ratios of all pairs
# counts. Next to it stands the interval that holds the true median with 95 % probability. A bar counts as exceeded, and
# the script fails, when the whole interval lies above it: a median above the bar whose interval still reaches below is
# noise, and marked as such. All but the whole runs are measured in processor time, which other programs do not raise,
# though they take away memory bandwidth: measure on a quiet machine. The whole runs waver by more than their bars leave
# room for, so what the library adds to them is also measured with stand-ins that do nothing ("added"), as a share of what
# the bar allows.
#
# The figures also go to build/bench-qtN/*.json. What follows "--" goes to the programs, as in:
# scripts/bench.sh --no-runs -- --benchmark_filter=list
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
. "$(dirname "$0")/common.sh"

qt=6
programs=(nox_bench nox_bench_runs)
pages=yes
packages=(--tool installed)
while [[ $# -gt 0 ]]; do
    case $1 in
        --qt) qt=${2-}; shift 2 ;;
        --runs) programs=(nox_bench_runs); shift ;;
        --no-runs) programs=(nox_bench); pages=; shift ;;
        --pages) programs=(); shift ;;
        --package) packages+=(--tool "${2-}"); shift 2 ;;
        --) shift; break ;;
        -h | --help) print_help; exit 0 ;;
        *) echo "bench.sh: unknown option '$1'; see --help" >&2; exit 2 ;;
    esac
done
groups=(build run bench)
case $qt in
    6) ;;
    5) groups+=(qt5) ;;
    *) echo "bench.sh: --qt takes 6 or 5" >&2; exit 2 ;;
esac

"$root/scripts/setup.sh" "${groups[@]}"
build_preset "bench-qt$qt" "${programs[@]}" nox-fetch
build=$root/build/bench-qt$qt

if [[ " ${programs[*]} " == *" nox_bench_runs "* ]]; then
    "$root/scripts/stage-programs.sh" "$build/bin"
    "$root/scripts/make-tool-archive.py" "$build/bin/plain-yt.zip" --plain
    make_scratch
    serve_clip 0
    export NOX_BENCH_URL=$url
fi

# Runs a program of the build, or of the folder given; its figures go to the build.
failed=0
measure() {
    local name=$1 folder=$2 program=$3
    shift 3
    say "$name, Qt $qt"
    "$folder/$program" --benchmark_out="$build/$name.json" --benchmark_out_format=json "$@" || failed=1
}

# The same programs beside stand-ins that do nothing.
stage_empty() {
    mkdir -p "$1/python3.10/bin"
    cp -f "$build/bin/nox_bench_runs" "$build/bin/nox-fetch" "$root/benchmarks/empty/ffmpeg" "$1"
    cp -f "$root/benchmarks/empty/python3.10" "$1/python3.10/bin"
    : >"$1/yt.zip"
}

for program in "${programs[@]}"; do
    measure "$program" "$build/bin" "$program" "$@"
    [[ $program == nox_bench_runs ]] || continue
    stage_empty "$build/empty"
    NOX_BENCH_EMPTY=1 measure nox_bench_runs-added "$build/empty" nox_bench_runs "$@"
done
if [[ -n $pages ]]; then
    say "pages beside one run of the plain tool"
    /usr/bin/python3 "$root/tests/tool/run_bench.py" --fetch "$build/bin/nox-fetch" "${packages[@]}" || failed=1
fi
exit $failed
