#!/usr/bin/env bash
# Compares what a built library exports with the list kept in docs/abi, one for each version of Qt: programs that were
# built against an earlier library find no name lost, and no name joins the interface unseen.
#
#   scripts/check-symbols.sh [--update] BUILD-DIR
#
#   --update     write the list anew, for a name that was added on purpose
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
. "$(dirname "$0")/common.sh"

update=no
case ${1-} in
    -h | --help) print_help; exit 0 ;;
    --update) update=yes; shift ;;
esac
if [[ $# -ne 1 || ! -d $1 ]]; then
    echo "usage: check-symbols.sh [--update] BUILD-DIR" >&2
    exit 2
fi
qt=$(sed -n 's/^NOX_QT_MAJOR:STRING=//p' "$1/CMakeCache.txt")
library=$1/nox/libNoxWebMedia$([[ $qt == 6 ]] || echo "Qt$qt").so
list=$root/docs/abi/symbols-qt$qt.txt
[[ -e $library ]] || { echo "check-symbols.sh: no library in $1; build it first" >&2; exit 2; }

# Without addresses and kinds, which vary from build to build.
exported() {
    LC_ALL=C nm -DC --defined-only "$library" | sed -E 's/^[0-9a-f]+ . //; / A /d' | LC_ALL=C sort -u
}

if [[ $update == yes ]]; then
    exported >"$list"
    printf '%s: %s names\n' "$list" "$(wc -l <"$list")"
    exit 0
fi
added=$(LC_ALL=C comm -13 "$list" <(exported))
lost=$(LC_ALL=C comm -23 "$list" <(exported))
if [[ -n $lost ]]; then
    printf 'LOST from the library for Qt %s: programs that use these names no longer start.\n%s\n' "$qt" "$lost" >&2
fi
if [[ -n $added ]]; then
    printf 'ADDED to the library for Qt %s: on purpose? Then run scripts/check-symbols.sh --update.\n%s\n' \
        "$qt" "$added" >&2
fi
[[ -z $added$lost ]] || exit 1
printf 'Qt %s: %s names, all of them and no others\n' "$qt" "$(wc -l <"$list")"
