#!/usr/bin/env bash
# Puts the programs that the library runs into the folder of a host program, from Debian's packages:
#
#   DIR/python3.10/bin/python3.10   a link to the system's Python 3
#   DIR/ffmpeg                      a link to the system's ffmpeg
#   DIR/yt.zip                      the tool's front and the yt-dlp package as one archive that the interpreter can run
#
#   scripts/stage-programs.sh DIR [--package FOLDER|WHEEL|SOURCE-ARCHIVE]...
#
# --package P   another yt-dlp than the installed one: a folder with the package, a wheel, or an archive of its sources.
#               Given again, a pure Python package that yt-dlp uses, such as yt_dlp_ejs for script challenges
#
# A second run does nothing unless one of the packages has been upgraded.
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
. "$(dirname "$0")/common.sh"

case ${1-} in
    -h | --help) print_help; exit 0 ;;
esac
usage() {
    echo "usage: ${0##*/} DIR [--package FOLDER|WHEEL|SOURCE-ARCHIVE]..." >&2
    exit 2
}

[[ $# -ge 1 && $1 != -* ]] || usage
dir=$1
shift
packages=()
while [[ $# -gt 0 ]]; do
    [[ $1 == --package && $# -ge 2 ]] || usage
    packages+=(--package "$2")
    shift 2
done

# With its path, because the tool uses modules of Debian's interpreter, which need not be the first in PATH.
python=/usr/bin/python3
ffmpeg=$(command -v ffmpeg) || true
for program in "$python" "${ffmpeg:-/usr/bin/ffmpeg}"; do
    if [[ ! -x $program ]]; then
        echo "${0##*/}: $program is missing; scripts/setup.sh run installs it" >&2
        exit 1
    fi
done

# Replaces a link in one step, because a test may start the program at the same time.
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
exec "$python" -I "$root/scripts/make-tool-archive.py" "$dir/yt.zip" "${packages[@]}"
