#!/usr/bin/env bash
# Puts the programs that the library drives into a host program's folder, made from what Debian has installed:
#
#   DIR/python3.10/bin/python3.10   a link to the system's Python 3
#   DIR/ffmpeg                      a link to the system's ffmpeg
#   DIR/yt.zip                      the yt-dlp package as one archive that the interpreter can run
#
#   scripts/stage-programs.sh DIR
#
# A second run changes nothing and takes no time, unless one of the packages has been upgraded.
set -euo pipefail

if [[ $# -ne 1 || $1 == -* ]]; then
    echo "usage: ${0##*/} DIR" >&2
    exit 2
fi
dir=$1

# The interpreter is named by its path: the first python3 on a PATH need not be Debian's, whose modules the tool uses.
python=/usr/bin/python3
ffmpeg=$(command -v ffmpeg) || true
for program in "$python" "${ffmpeg:-/usr/bin/ffmpeg}"; do
    if [[ ! -x $program ]]; then
        echo "${0##*/}: $program is missing; scripts/setup.sh run installs it" >&2
        exit 1
    fi
done

# Links are replaced in one step, so that a test which runs a program meanwhile never finds it missing.
link() {
    local target=$1 link=$2
    if [[ $(readlink "$link") != "$target" ]]; then
        ln -s "$target" "$link.$$"
        mv -fT "$link.$$" "$link"
    fi
}

mkdir -p "$dir/python3.10/bin"
link "$python" "$dir/python3.10/bin/python3.10"
link "$ffmpeg" "$dir/ffmpeg"
exec "$python" -I "$(dirname "$0")/make-tool-archive.py" "$dir/yt.zip"
