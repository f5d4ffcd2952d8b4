# Common functions of the scripts in this folder. To be sourced, not run.
# shellcheck shell=bash

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
jobs=${NOX_JOBS:-$(nproc)}

# Qt, the tool and ffmpeg use the encoding of the locale for file names.
[[ $(locale charmap) == UTF-8 ]] || export LC_ALL=C.UTF-8

say() {
    printf '\n== %s\n' "$*"
}

# Prints the comment at the head of the running script, which is its help text.
print_help() {
    sed -n '2,/^[^#]/{/^#/s/^# \{0,1\}//p}' "$0"
}

export CMAKE_BUILD_PARALLEL_LEVEL=$jobs CTEST_PARALLEL_LEVEL=$jobs
# What was compiled in one checkout is reused in others, in any folder, also by what the tests build.
export CCACHE_BASEDIR=$root CCACHE_NOHASHDIR=1

# build_preset PRESET [TARGET...]: builds the targets, or everything, in build/PRESET; with ccache if it is installed.
build_preset() (
    local preset=$1
    shift
    [[ $# -eq 0 ]] || set -- --target "$@"
    say "build: $preset"
    cd "$root" || exit
    CMAKE_CXX_COMPILER_LAUNCHER=$(command -v ccache || true) cmake --preset "$preset" --log-level=WARNING >/dev/null
    cmake --build --preset "$preset" "$@"
)

# copy_checkout DIR: copies the files of the checkout without those that git ignores.
copy_checkout() {
    mkdir -p "$1"
    git -C "$root" ls-files --cached --others --exclude-standard -z |
        tar -C "$root" --create --null --files-from=- --ignore-failed-read --warning=no-failed-read --file=- |
        tar -C "$1" --extract --no-same-owner --file=-
}

scratch=
server=

clean_up() {
    [[ -z $server ]] || { kill "$server" && wait "$server"; } 2>/dev/null || true
    [[ -z $scratch ]] || rm -rf "$scratch"
}

# Makes the folder $scratch. At the end of the script it is removed, and the server is stopped.
make_scratch() {
    scratch=$(mktemp -d)
    trap clean_up EXIT
}

# serve_clip BYTES_PER_SECOND: makes the clip and serves its page at $url. Needs $scratch.
serve_clip() {
    local tries
    "$root/scripts/demo-server.py" --media "$root/build/demo-media" --rate "$1" --port-file "$scratch/port" >/dev/null &
    server=$!
    for ((tries = 0; tries < 600; tries++)); do
        [[ ! -s $scratch/port ]] || break
        sleep 0.1
    done
    # shellcheck disable=SC2034 # the caller reads it
    url=http://127.0.0.1:$(<"$scratch/port")/
}
