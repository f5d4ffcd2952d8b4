#!/usr/bin/env bash
# Gives nox-fetch and nox-desk a newer yt-dlp than the one that they came with. It takes effect at their next start.
#
#   nox-renew-tool               the newest release and those of its extras that are Python alone; pip fetches them
#   nox-renew-tool PACKAGE...    those in folders, wheels or archives of sources: yt_dlp, and what it uses (yt_dlp_ejs)
#   nox-renew-tool --remove      back to the one that they came with
#
# The archive goes to $XDG_DATA_HOME/noxwebmedia/yt.zip (~/.local/share unless set). The hosts use it only while it and
# its folder are your own and nobody else may write to them. Where the hosts are not installed, this command is
# scripts/renew-tool.sh.
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
. "$(dirname "$(readlink -f "$0")")/common.sh"

readonly python=/usr/bin/python3
folder=${XDG_DATA_HOME:-$HOME/.local/share}/noxwebmedia
case ${1-} in
    -h | --help) print_help; exit 0 ;;
    --remove) rm -f "$folder/yt.zip"; exit 0 ;;
    -*) echo "${0##*/}: unknown option '$1'; see --help" >&2; exit 2 ;;
esac

# download OPTION...: by pip, as wheels, into the scratch folder.
download() {
    "$python" -m pip download --quiet --disable-pip-version-check --dest "$scratch" "$@"
}

# Extras that hold machine code can not be loaded from the archive: of these the form in Python alone is taken, if there
# is one. The tool does without the rest, or uses what is installed.
fetch_packages() {
    download 'yt-dlp[default]' 2>"$scratch/pip.log" || download --no-deps yt-dlp ||
        { echo "${0##*/}: pip cannot fetch it; is python3-pip installed? A wheel or a folder can be named instead" >&2
          exit 1; }
    local wheel name version
    for wheel in "$scratch"/*.whl; do
        [[ $wheel != *-none-any.whl ]] || continue
        IFS=- read -r name version _ <<<"${wheel##*/}"
        rm "$wheel"
        download --no-deps --only-binary :all: --platform any "$name==$version" 2>>"$scratch/pip.log" || true
    done
}

make_scratch
if [[ $# -eq 0 ]]; then
    fetch_packages
    mapfile -t packages < <(find "$scratch" -name '*-none-any.whl' -o -name 'yt_dlp-*.tar.*' | sort)
    set -- "${packages[@]}"
fi
options=()
for package; do
    options+=(--package "$package")
done
(umask 077 && mkdir -p "$folder")
chmod go-w "$folder"
(umask 022 && "$python" -I "$root/scripts/make-tool-archive.py" "$folder/yt.zip" "${options[@]}")
printf 'yt-dlp %s in %s\n' "$("$python" "$folder/yt.zip" --version)" "$folder/yt.zip"
