#!/usr/bin/env bash
# Checks the sources without running them: formatting, spelling, the scripts, the code under clang and clang-tidy.
#
#   scripts/lint.sh [CHECK...]     all of them, or those named: format scripts python spelling cppcheck clang tidy
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
. "$(dirname "$0")/common.sh"
cd "$root"

readonly checks=(format scripts python spelling cppcheck clang tidy)
mapfile -t code_folders < <(ls -d nox hosts examples tests benchmarks fuzz 2>/dev/null)
readonly clang_dir=$root/build/asan

# Prints the sources of ours that match the find expression given, each ended by a null character.
sources() {
    find "${code_folders[@]}" -type f \( "$@" \) -print0 | sort -z
}

check_format() {
    sources -name '*.cpp' -o -name '*.h' | xargs -0 clang-format --dry-run -Werror
}

check_scripts() {
    shellcheck -x scripts/*.sh .ci/run
    local script
    for script in scripts/*.py; do
        /usr/bin/python3 -I -c 'import ast, sys; ast.parse(open(sys.argv[1]).read(), sys.argv[1])' "$script"
    done
}

# The tool's front and its tests.
check_python() {
    flake8 tool tests/tool scripts/make-tool-archive.py scripts/demo-server.py
    MYPYPATH=tool:tests/tool mypy --config-file tool/mypy.ini --cache-dir "$root/build/mypy" tool tests/tool/*.py
}

check_spelling() {
    codespell --quiet-level 2 --ignore-words-list abitrate --skip '*.ts' "${code_folders[@]}" tool cmake docs scripts ./*.md
}

# Not over the tests: their macros return, which cppcheck does not see.
check_cppcheck() {
    cppcheck --quiet --error-exitcode=1 --inline-suppr --std=c++17 --library=qt -j "$jobs" \
        --enable=warning,performance,portability --suppress=passedByValue '-DQ_DISABLE_COPY_MOVE(x)=' -I . \
        -itests "${code_folders[@]}"
}

# The other compiler, with its warnings; clang-tidy reads the command lines and the generated files that this leaves.
# It is the build for the sanitizers, which test.sh takes up where this has left it.
check_clang() {
    configure asan "$clang_dir" -DNOX_BUILD_BENCHMARKS=ON
    compile "$clang_dir"
}

check_tidy() {
    [[ -e $clang_dir/build.ninja ]] || check_clang
    sources -name '*.cpp' -not -path 'fuzz/*' | xargs -0 scripts/run-tidy.py "$clang_dir" "$jobs"
    # The fuzz targets cannot be built along with the rest, whose objects would be marked for the fuzzer.
    configure asan "$root/build/clang-fuzz" -DNOX_BUILD_FUZZERS=ON -DNOX_BUILD_HOSTS=OFF -DNOX_BUILD_TESTS=OFF -DNOX_BUILD_EXAMPLES=OFF
    sources -name '*.cpp' -path 'fuzz/*' | xargs -0 scripts/run-tidy.py "$root/build/clang-fuzz" "$jobs"
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

scripts/setup.sh build run lint sanitizers bench
for check in "$@"; do
    say "lint: $check"
    "check_$check"
done
