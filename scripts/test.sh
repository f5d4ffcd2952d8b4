#!/usr/bin/env bash
# Installs what is missing, builds, and runs all tests.
#
#   scripts/test.sh [PRESET...] [-- CTEST-OPTION...]
#
# PRESET is one of CMakePresets.json (cmake --list-presets); release (Qt 6) and qt5 (Qt 5.15), one after the other,
# unless given. What follows "--" goes to ctest, as in: scripts/test.sh asan -- -R parse
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

groups=(build quick run)
[[ " ${presets[*]} " != *qt5\ * ]] || groups+=(qt5)
[[ ! " ${presets[*]} " =~ \ (asan|clang-qt5)\  ]] || groups+=(sanitizers)
[[ " ${presets[*]} " != *\ tidy\ * ]] || groups+=(sanitizers lint bench)
"$root/scripts/setup.sh" "${groups[@]}"

cd "$root"
for preset in "${presets[@]}"; do
    build_preset "$preset"
    say "test: $preset"
    ctest --preset "$preset" -j "$jobs" "$@" || { # what failed once more, below the many lines of all tests
        status=$?
        grep -aA 4 '^FAIL' "build/$preset/Testing/Temporary/LastTest.log" | tail -n 40 >&2 || true
        exit "$status"
    }
done
