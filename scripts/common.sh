# What the scripts beside this one share. To be sourced, not run.
# shellcheck shell=bash

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
jobs=${NOX_JOBS:-$(nproc)}

# Qt, the tool and ffmpeg take file names in the locale's encoding.
[[ $(locale charmap) == UTF-8 ]] || export LC_ALL=C.UTF-8

say() {
    printf '\n== %s\n' "$*"
}

# Prints the comment at the head of the running script, which is its help text.
print_help() {
    sed -n '2,/^[^#]/{/^#/s/^# \{0,1\}//p}' "$0"
}

export CMAKE_BUILD_PARALLEL_LEVEL=$jobs CTEST_PARALLEL_LEVEL=$jobs

# build_preset PRESET [TARGET...]: everything, unless targets are named; into build/PRESET, with ccache where it is installed.
# What one checkout has compiled serves others, in whatever folder they lie.
build_preset() (
    export CCACHE_BASEDIR=$root CCACHE_NOHASHDIR=1
    local preset=$1
    shift
    [[ $# -eq 0 ]] || set -- --target "$@"
    say "build: $preset"
    cd "$root" || exit
    CMAKE_CXX_COMPILER_LAUNCHER=$(command -v ccache || true) cmake --preset "$preset" --log-level=WARNING >/dev/null
    cmake --build --preset "$preset" "$@"
)

# copy_checkout DIR: the files of the checkout, as they are now; what git ignores is not among them.
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

# Makes the folder in $scratch. It goes away, and the server with it, when the script ends.
make_scratch() {
    scratch=$(mktemp -d)
    trap clean_up EXIT
}

# serve_clip BYTES_PER_SECOND: makes the clip and serves its page at $url. Needs $scratch.
serve_clip() {
    local media=$root/build/demo-media tries
    "$root/scripts/make-clip.sh" "$media"
    "$root/scripts/demo-server.py" --media "$media" --rate "$1" --port-file "$scratch/port" >/dev/null &
    server=$!
    for ((tries = 0; tries < 100; tries++)); do
        [[ ! -s $scratch/port ]] || break
        sleep 0.1
    done
    # shellcheck disable=SC2034 # the caller reads it
    url=http://127.0.0.1:$(<"$scratch/port")/
}
