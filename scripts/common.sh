# What the scripts beside this one share. To be sourced, not run.
# shellcheck shell=bash

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
jobs=${NOX_JOBS:-$(nproc)}

say() {
    printf '\n== %s\n' "$*"
}

# Prints the comment at the head of the running script, which is its help text.
print_help() {
    sed -n '2,/^[^#]/{/^#/s/^# \{0,1\}//p}' "$0"
}

# configure PRESET DIR [CMAKE-OPTION...]: with ccache where it is installed.
configure() {
    local preset=$1 dir=$2
    shift 2
    cmake -S "$root" --preset "$preset" -B "$dir" --log-level=WARNING \
        -DCMAKE_CXX_COMPILER_LAUNCHER="$(command -v ccache || true)" "$@" >/dev/null
}

# compile DIR [TARGET...]: everything, unless targets are named.
compile() {
    local dir=$1
    shift
    [[ $# -eq 0 ]] || set -- --target "$@"
    cmake --build "$dir" -j "$jobs" "$@"
}
