#!/usr/bin/env bash
# Measures which lines and branches of the first library its tests reach, and shows those that they do not.
#
#   scripts/coverage.sh [-- CTEST-OPTION...]
#
# Fails below 95 % of the lines. The page with all sources is build/coverage/report/index.html.
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
. "$(dirname "$0")/common.sh"

readonly least_lines=95 # per cent

case ${1-} in
    -h | --help) print_help; exit 0 ;;
    --) shift ;;
    ?*) echo "coverage.sh: unknown argument '$1'; see --help" >&2; exit 2 ;;
esac
"$root/scripts/setup.sh" build run coverage

build=$root/build/coverage
build_preset coverage
find "$build" -name '*.gcda' -delete

say "tests"
cd "$root"
ctest --preset coverage -j "$jobs" "$@"

say "coverage"
mkdir -p "$build/report"
# Branches that only an exception of the standard library takes are left out: there are more of them than of ours.
# Of the second library much is reached by the tests of the hosts, which are not built here.
report=(gcovr --root "$root" --filter "$root/nox/" --exclude "$root/nox/jobs/" --exclude-throw-branches --exclude-unreachable-branches "$build/nox")
"${report[@]}" --json "$build/report/coverage.json" --html-details "$build/report/index.html"
summary=(gcovr --root "$root" --add-tracefile "$build/report/coverage.json")
"${summary[@]}" --sort-uncovered | grep -v '100%' || true
say "branches"
"${summary[@]}" --branches --sort-uncovered | grep -v '100%' || true
"${summary[@]}" --print-summary --fail-under-line $least_lines --output /dev/null
