#!/usr/bin/env bash
# Runs tests under valgrind, which sees what the sanitizers do not: values that were never set. These are the tests of the
# records and of the parsers, and those in which a host deletes a worker inside one of its notifications.
#
#   scripts/memcheck.sh [--qt 6|5]     with this version of Qt; 6 unless given
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
. "$(dirname "$0")/common.sh"

preset=strict-qt6
groups=(build sanitizers)
case ${1-} in
    -h | --help) print_help; exit 0 ;;
    --qt)
        case ${2-} in
            6) ;;
            5) preset=strict-qt5; groups+=(qt5) ;;
            *) echo "memcheck.sh: --qt takes 6 or 5" >&2; exit 2 ;;
        esac
        ;;
    ?*) echo "memcheck.sh: unknown argument '$1'; see --help" >&2; exit 2 ;;
esac

"$root/scripts/setup.sh" "${groups[@]}"
build=$root/build/$preset
build_preset "$preset" model_test parse_test reaction_test

# Qt's expressions compile themselves to machine code, which reads in blocks that valgrind takes for too long.
export QT_ENABLE_REGEXP_JIT=0
memcheck() {
    # A child that cannot start its program ends with all that the test had in memory.
    timeout 900 valgrind --quiet --error-exitcode=1 --leak-check=full --errors-for-leak-kinds=definite,possible \
        --child-silent-after-fork=yes --suppressions="$root/scripts/memcheck.supp" "$@" -silent
}
for name in model parse; do
    say "memcheck: $name"
    memcheck "$build/tests/$name/${name}_test/${name}_test"
done

say "memcheck: reactions that delete"
reactions=$build/tests/reactions/reaction_test/reaction_test
mapfile -t rows < <(QT_LOGGING_RULES='*=false' "$reactions" -datatags | sed -n 's/^ReactionTest \([a-z]* .*[dD]elete.*\)$/\1/p' |
    sed 's/ /:/')
[[ ${#rows[@]} -gt 50 ]] || { echo "memcheck.sh: found only ${#rows[@]} of these rows" >&2; exit 1; }
memcheck "$reactions" "${rows[@]}"
