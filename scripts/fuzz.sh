#!/usr/bin/env bash
# Runs the fuzz targets, which test everything that reads input from outside, under the sanitizers.
#
#   scripts/fuzz.sh [SECONDS] [TARGET...]     each target for 20 seconds, or as given; all targets by default
#
# The seeds are in fuzz/corpus/TARGET. New inputs and findings go to build/fuzz. Fails if something is found: a crash,
# undefined behaviour, a leak, a failed check, or an input that takes longer than 10 seconds.
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
. "$(dirname "$0")/common.sh"

case ${1-} in
    -h | --help) print_help; exit 0 ;;
esac
seconds=${1:-20}
if [[ ! $seconds =~ ^[1-9][0-9]*$ ]]; then
    echo "fuzz.sh: '$seconds' is not a number of seconds; see --help" >&2
    exit 2
fi
shift $(($# > 0 ? 1 : 0))
[[ $# -gt 0 ]] || set -- PageFuzzer StatusFuzzer TextFuzzer ScriptFuzzer

"$root/scripts/setup.sh" build fuzz
build=$root/build/fuzz
build_preset fuzz "$@"

failed=0
for target in "$@"; do
    say "$target, $seconds s"
    grown=$build/corpus/$target
    findings=$build/findings/$target
    mkdir -p "$grown" "$findings"
    options=(-max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -artifact_prefix="$findings/"
        -print_final_stats=1)
    [[ ! -e $root/fuzz/$target.dict ]] || options+=(-dict="$root/fuzz/$target.dict")
    if "$build/bin/$target" "${options[@]}" "$grown" "$root/fuzz/corpus/$target" >"$findings/log" 2>&1; then
        sed -n 's/^stat::number_of_executed_units: */executions: /p; s/^stat::new_units_added: */new inputs: /p' \
            "$findings/log"
    else
        tail -n 60 "$findings/log" >&2
        echo "fuzz.sh: $target has found something; see $findings" >&2
        failed=1
    fi
done
exit $failed
