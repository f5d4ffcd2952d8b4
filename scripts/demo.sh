#!/usr/bin/env bash
# A demonstration: installs what is missing, builds, makes a clip, serves it on a page of this machine, and downloads its
# video and audio with nox-fetch into one file.
#
#   scripts/demo.sh                        the demonstration page; the file is removed at the end
#   scripts/demo.sh URL [FETCH-OPTION...]  a page of your own; the file goes to the current folder
#   scripts/demo.sh --window [URL]         the same in the window of nox-desk
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
. "$(dirname "$0")/common.sh"

# Slow enough to see the progress: the clip takes about seven seconds.
readonly bytes_per_second=600000

program=nox-fetch
case ${1-} in
    -h | --help) print_help; exit 0 ;;
    --window) program=nox-desk; shift ;;
    -*) echo "demo.sh: the URL comes first; see --help" >&2; exit 2 ;;
esac

"$root/scripts/setup.sh" build run

build_preset release $program
bin=$root/build/release/bin
"$root/scripts/stage-programs.sh" "$bin"

# Downloads a page's clip, shows its streams, and sets the variable file to its path.
show_download() {
    say nox-fetch "${@:2}" "$1"
    file=$("$bin/nox-fetch" "${@:2}" "$1")
    say "the result"
    printf '%s\n' "$file"
    ffprobe -v error -show_entries stream=codec_type,codec_name,width,height,sample_rate:format=duration,size \
        -of default=noprint_wrappers=1 "$file"
}

demonstration=no
if [[ $# -eq 0 ]]; then
    demonstration=yes
    say "a page on this machine"
    make_scratch
    serve_clip $bytes_per_second
    printf '%s\n' "$url"
    set -- "$url"
fi

if [[ $program == nox-desk ]]; then
    "$bin/nox-desk" "$1"
elif [[ $demonstration == no ]]; then
    show_download "$@"
else
    say "nox-fetch --list $url"
    "$bin/nox-fetch" --list "$url"
    cd "$scratch"
    show_download "$url"
    streams=$(ffprobe -v error -show_entries stream=codec_type -of csv=p=0 "$file" | sort | xargs)
    if [[ $streams != "audio video" ]]; then
        echo "demo.sh: expected one video and one audio stream, found: $streams" >&2
        exit 1
    fi
    printf '\nOne video and one audio stream, as expected.\n'
fi
