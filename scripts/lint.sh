#!/usr/bin/env bash
# Checks formatting, spelling, scripts, Python, and the C++ sources with cppcheck. clang-tidy runs while the presets tidy
# and fuzz are built: scripts/test.sh tidy, scripts/fuzz.sh.
#
#   scripts/lint.sh [CHECK...]     all of them, or those named: format scripts python spelling cppcheck
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
. "$(dirname "$0")/common.sh"
cd "$root"

readonly checks=(format scripts python spelling cppcheck)
mapfile -t code_folders < <(ls -d nox hosts examples tests benchmarks fuzz docs 2>/dev/null)

check_format() {
    find "${code_folders[@]}" -name '*.cpp' -print0 -o -name '*.h' -print0 | xargs -0 clang-format --dry-run -Werror
}

check_scripts() {
    shellcheck -x scripts/*.sh .ci/run
    local script
    for script in scripts/*.py; do
        /usr/bin/python3 -I -c 'import ast, sys; ast.parse(open(sys.argv[1]).read(), sys.argv[1])' "$script"
    done
}

# The front of the tool, its tests and benchmark, and scripts.
check_python() {
    flake8 tool tests/tool benchmarks scripts/*.py
    MYPYPATH=tool:tests/tool mypy --config-file tool/mypy.ini --cache-dir "$root/build/mypy" tool tests/tool/*.py \
        benchmarks/*.py
    mypy --strict --cache-dir "$root/build/mypy" scripts/check-documents.py scripts/check-includes.py scripts/clang-tidy-cache.py
}

check_spelling() {
    codespell --quiet-level 2 --ignore-words-list abitrate --skip '*.ts,*.metainfo.xml' "${code_folders[@]}" tool cmake scripts ./*.md
}

# Without the tests: cppcheck does not know that their macros return.
check_cppcheck() {
    cppcheck --quiet --error-exitcode=1 --inline-suppr --std=c++17 --library=qt -j "$jobs" \
        --enable=warning,performance,portability --suppress=passedByValue --suppress=returnByReference \
        --suppress=normalCheckLevelMaxBranches '-DQ_DISABLE_COPY_MOVE(x)=' -I . -itests "${code_folders[@]}"
}

case ${1-} in
    -h | --help) print_help; exit 0 ;;
esac
[[ $# -gt 0 ]] || set -- "${checks[@]}"
for check in "$@"; do
    if ! declare -F "check_$check" >/dev/null; then
        echo "lint.sh: no check named '$check'; the checks are: ${checks[*]}" >&2
        exit 2
    fi
done

scripts/setup.sh lint
for check in "$@"; do
    say "lint: $check"
    "check_$check"
done
