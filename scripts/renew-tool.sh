#!/usr/bin/env bash
# Installs a newer yt-dlp for nox-fetch and nox-desk, which use it from their next start on.
#
#   nox-renew-tool               the newest release and its pure Python extras, downloaded by pip
#   nox-renew-tool PACKAGE...    packages in folders, wheels or archives of sources: yt_dlp, and what it uses (yt_dlp_ejs)
#   nox-renew-tool --remove      removes it, so that the installed one is used again
#
# The archive is $XDG_DATA_HOME/noxwebmedia/yt.zip (by default in ~/.local/share). The hosts use it only if it and its
# folder belong to you and nobody else can write to them. In a checkout this command is scripts/renew-tool.sh.
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

# Extras with machine code cannot be loaded from the archive. Of these the pure Python version is used, if there is one.
# The tool works without the others, or uses the installed ones.
download_packages() {
    download 'yt-dlp[default]' 2>"$scratch/pip.log" || download --no-deps yt-dlp ||
        { echo "${0##*/}: pip cannot download it; is python3-pip installed? A wheel or a folder can be named instead" >&2
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
    download_packages
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
