#!/usr/bin/env bash
# Installs what is missing, builds with Qt 6 and with Qt 5, and runs all tests.
#
#   scripts/test.sh [--qt 6|5] [--asan | --asan-only] [-- CTEST-OPTION...]
#
#   --qt N        only with this version of Qt
#   --asan        with Qt 6 under the address and undefined-behaviour sanitizers too
#   --asan-only   nothing but that
#
# What follows "--" goes to ctest, as in: scripts/test.sh --qt 6 -- -R parse
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
. "$(dirname "$0")/common.sh"

presets=(release qt5)
asan=no
while [[ $# -gt 0 ]]; do
    case $1 in
        --qt)
            case ${2-} in
                6) presets=(release) ;;
                5) presets=(qt5) ;;
                *) echo "test.sh: --qt takes 6 or 5" >&2; exit 2 ;;
            esac
            shift 2
            ;;
        --asan) asan=yes; shift ;;
        --asan-only) presets=(); asan=yes; shift ;;
        --) shift; break ;;
        -h | --help) print_help; exit 0 ;;
        *) echo "test.sh: unknown option '$1'; see --help" >&2; exit 2 ;;
    esac
done
[[ $asan == no ]] || presets+=(asan)

groups=(build run)
[[ " ${presets[*]} " != *" qt5 "* ]] || groups+=(qt5)
[[ $asan == no ]] || groups+=(sanitizers)
"$root/scripts/setup.sh" "${groups[@]}"

for preset in "${presets[@]}"; do
    dir=$root/build/$preset
    say "build: $preset"
    configure "$preset" "$dir"
    compile "$dir"
    say "test: $preset"
    ctest --test-dir "$dir" -j "$jobs" --output-on-failure --no-tests=error --timeout 300 "$@"
done
