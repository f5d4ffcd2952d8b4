#!/usr/bin/env bash
# Installs what is missing, builds, and runs the tests.
#
#   scripts/test.sh [PRESET...] [-- CTEST-OPTION...]
#
# PRESET is one of CMakePresets.json (cmake --list-presets); release (Qt 6) and qt5 (Qt 5.15) unless given. The options go
# to ctest, as in: scripts/test.sh asan -- -R parse
#
#   coverage  is also a report of the lines and branches of the first library that its tests reach, with all sources in
#             build/coverage/report/index.html. It fails below 95 % of the lines.
#   memcheck  is no preset: it runs the tests of records and parsers (Qt 6), and those in which a host deletes a worker in
#             a notification, under valgrind, which finds uninitialised values.
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
. "$(dirname "$0")/common.sh"

presets=()
while [[ $# -gt 0 ]]; do
    case $1 in
        --) shift; break ;;
        -h | --help) print_help; exit 0 ;;
        -*) echo "test.sh: unknown option '$1'; see --help" >&2; exit 2 ;;
        *) presets+=("$1"); shift ;;
    esac
done
[[ ${#presets[@]} -gt 0 ]] || presets=(release qt5)

groups=(build quick run desk)
[[ " ${presets[*]} " != *qt5\ * ]] || groups+=(qt5)
[[ ! " ${presets[*]} " =~ \ (asan|clang-qt5|tidy|memcheck)\  ]] || groups+=(sanitizers)
[[ " ${presets[*]} " != *\ tidy\ * ]] || groups+=(lint bench)
[[ " ${presets[*]} " != *\ coverage\ * ]] || groups+=(coverage)
"$root/scripts/setup.sh" "${groups[@]}"

report_coverage() {
    local build=$root/build/coverage
    say "coverage"
    mkdir -p "$build/report"
    # Without branches that only an exception of the standard library takes. The tests of the hosts, which reach much of
    # the second library, are not built here.
    gcovr --root "$root" --filter "$root/nox/" --exclude "$root/nox/jobs/" --exclude-throw-branches \
        --exclude-unreachable-branches --json "$build/report/coverage.json" \
        --html-details "$build/report/index.html" "$build/nox"
    local summary=(gcovr --root "$root" --add-tracefile "$build/report/coverage.json")
    "${summary[@]}" --sort-uncovered | grep -v '100%' || true
    "${summary[@]}" --branches --sort-uncovered | grep -v '100%' || true
    # gcovr removes its output file before it writes: /dev/null would become a file.
    "${summary[@]}" --print-summary --fail-under-line 95 --output "$build/report/coverage.txt"
}

# memcheck_program NAME [ROW...]: one test program under valgrind.
memcheck_program() {
    say "memcheck: $1"
    # A child that cannot start its program ends with all that the test had in memory. The code that Qt's regular
    # expressions compile reads beyond their texts.
    QT_ENABLE_REGEXP_JIT=0 timeout 900 valgrind --quiet --error-exitcode=1 --leak-check=full \
        --errors-for-leak-kinds=definite,possible --child-silent-after-fork=yes \
        --suppressions="$root/scripts/memcheck.supp" "$root/build/strict-qt6/tests/$1/${1##*/}" -silent "${@:2}"
}

memcheck() {
    local program rows
    local programs=(model/model_test model/list_test parse/parse_test parse/status_test)
    build_preset strict-qt6 "${programs[@]##*/}" reaction_test
    for program in "${programs[@]}"; do
        memcheck_program "$program"
    done
    mapfile -t rows < <(QT_LOGGING_RULES='*=false' "$root/build/strict-qt6/tests/reactions/reaction_test/reaction_test" \
        -datatags | sed -n 's/^ReactionTest \([a-z]*\) \(.*[dD]elete.*\)$/\1:\2/p')
    [[ ${#rows[@]} -gt 50 ]] || { echo "test.sh: found only ${#rows[@]} tests that delete" >&2; exit 1; }
    memcheck_program reactions/reaction_test "${rows[@]}"
}

cd "$root"
for preset in "${presets[@]}"; do
    if [[ $preset == memcheck ]]; then
        memcheck
        continue
    fi
    build_preset "$preset"
    [[ $preset != coverage ]] || find build/coverage -name '*.gcda' -delete
    say "test: $preset"
    ctest --preset "$preset" -j "$jobs" "$@" || { # print the failures again, which are hard to find in the output
        status=$?
        grep -aA 4 '^FAIL' "build/$preset/Testing/Temporary/LastTest.log" | tail -n 40 >&2 || true
        exit "$status"
    }
    [[ $preset != coverage ]] || report_coverage
done
