#!/usr/bin/env bash
# Gives nox-fetch and nox-desk a newer yt-dlp than the one that they came with. It takes effect at their next start.
#
#   scripts/renew-tool.sh             the newest release, which pip fetches as a wheel
#   scripts/renew-tool.sh PACKAGE     the one in a folder, a wheel or an archive of its sources
#   scripts/renew-tool.sh --remove    back to the one that they came with
#
# The archive goes to $XDG_DATA_HOME/noxwebmedia/yt.zip (~/.local/share unless set). The hosts use it only while it and
# its folder are your own and nobody else may write to them.
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
. "$(dirname "$0")/common.sh"

readonly python=/usr/bin/python3
folder=${XDG_DATA_HOME:-$HOME/.local/share}/noxwebmedia
package=${1-}
case $package in
    -h | --help) print_help; exit 0 ;;
    --remove) rm -f "$folder/yt.zip"; exit 0 ;;
    -*) echo "${0##*/}: unknown option '$package'; see --help" >&2; exit 2 ;;
esac

make_scratch
if [[ -z $package ]]; then
    "$python" -m pip download --quiet --no-deps --dest "$scratch" yt-dlp ||
        { echo "${0##*/}: pip cannot fetch it; is python3-pip installed? A wheel or a folder can be named instead" >&2
          exit 1; }
    package=$(find "$scratch" -name 'yt_dlp-*' -print -quit)
fi
(umask 077 && mkdir -p "$folder")
chmod go-w "$folder"
(umask 022 && "$python" -I "$root/scripts/make-tool-archive.py" "$folder/yt.zip" --package "$package")
printf 'yt-dlp %s in %s\n' "$("$python" "$folder/yt.zip" --version)" "$folder/yt.zip"
