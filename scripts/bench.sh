#!/usr/bin/env bash
# Runs the benchmarks, and prints each ratio with its bar.
#
#   scripts/bench.sh [--qt 6|5] [--runs | --no-runs | --pages] [--package P]... [-- BENCHMARK-OPTION...]
#
#   --qt N       with this version of Qt; 6 unless given
#   --runs       only the whole runs of the external programs
#   --no-runs    only what needs no external program
#   --pages      only the pages on which nox-fetch must not be slower than the plain tool
#   --package P  also with another version of the tool on these pages: a folder with the yt_dlp package, a wheel, or an
#                archive of its sources; can be given several times
#
# docs/performance.md explains how the ratios are measured. A bar is exceeded, and the script fails, when the whole 95 %
# interval of the median is above it. Measure on a quiet machine. The whole runs vary more than their bars allow, so the
# time that the library adds to them is also measured with fakes that do nothing ("added"), as a share of what the bar
# allows.
#
# The figures also go to build/bench-qtN/*.json. The options after "--" go to the programs, as in:
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

# measure NAME FOLDER PROGRAM [OPTION...]
failed=0
measure() {
    local name=$1 folder=$2 program=$3
    shift 3
    say "$name, Qt $qt"
    "$folder/$program" --benchmark_out="$build/$name.json" --benchmark_out_format=json "$@" || failed=1
}

# A folder with the same programs and with fakes that do nothing.
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
    PYTHONPATH=$root/tests/tool /usr/bin/python3 "$root/benchmarks/run_bench.py" --fetch "$build/bin/nox-fetch" \
        "${packages[@]}" || failed=1
fi
exit $failed
