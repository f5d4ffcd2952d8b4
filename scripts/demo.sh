#!/usr/bin/env bash
# Shows the whole at work: installs what is missing, builds, makes a clip, serves it on a page of this machine, and lets
# nox-fetch download its picture and its sound and join them.
#
#   scripts/demo.sh                        the page made for the purpose; nothing is left behind
#   scripts/demo.sh URL [FETCH-OPTION...]  a page of your own; its file goes to the current folder
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
. "$(dirname "$0")/common.sh"

# Slow enough that the progress can be watched: the clip takes some seven seconds.
readonly bytes_per_second=600000

case ${1-} in
    -h | --help) print_help; exit 0 ;;
    -*) echo "demo.sh: the URL comes first; see --help" >&2; exit 2 ;;
esac

"$root/scripts/setup.sh" build run

say "build"
configure release "$root/build/release"
compile "$root/build/release" nox-fetch
bin=$root/build/release/bin
"$root/scripts/stage-programs.sh" "$bin"

scratch=
server=
clean_up() {
    [[ -z $server ]] || { kill "$server" && wait "$server"; } 2>/dev/null || true
    [[ -z $scratch ]] || rm -rf "$scratch"
}
trap clean_up EXIT

# Makes the clip and serves it; the page's address is then in url.
serve_clip() {
    local media=$root/build/demo-media
    scratch=$(mktemp -d)
    "$root/scripts/make-clip.sh" "$media"
    "$root/scripts/demo-server.py" --media "$media" --rate $bytes_per_second --port-file "$scratch/port" >/dev/null &
    server=$!
    for ((tries = 0; tries < 100; tries++)); do
        [[ ! -s $scratch/port ]] || break
        sleep 0.1
    done
    url=http://127.0.0.1:$(<"$scratch/port")/
}

if [[ $# -eq 0 ]]; then
    say "a page on this machine"
    serve_clip
    cd "$scratch"
    echo "$url"
    say "nox-fetch --list $url"
    "$bin/nox-fetch" --list "$url"
else
    url=$1
    shift
fi

say "nox-fetch ${*:+$* }$url"
file=$("$bin/nox-fetch" "$@" "$url")

say "the result"
printf '%s\n' "$file"
ffprobe -v error -show_entries stream=codec_type,codec_name,width,height,sample_rate:format=duration,size \
    -of default=noprint_wrappers=1 "$file"
