#!/usr/bin/env bash
# Installs the Debian packages for building, testing and checking this project that are missing.
#
#   scripts/setup.sh [GROUP...]     install these groups (by default all)
#   scripts/setup.sh --list         print the groups and their packages
#
# Does not call apt if nothing is missing, so the other scripts call this one every time.
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
. "$(dirname "$0")/common.sh"

# All packages that the project needs, in groups.
declare -A packages=(
    [build]="build-essential ccache cmake ninja-build pkg-config git
             qt6-base-dev qt6-base-dev-tools qt6-tools-dev qt6-tools-dev-tools qt6-l10n-tools
             libjsoncpp-dev libsimdjson-dev"
    [qt5]="qtbase5-dev qtbase5-dev-tools qttools5-dev qttools5-dev-tools"
    [quick]="qt6-declarative-dev qml6-module-qtqml qml6-module-qtqml-workerscript qml6-module-qtquick
             qml6-module-qtquick-controls qml6-module-qtquick-layouts qml6-module-qtquick-templates
             qml6-module-qtquick-window
             qtdeclarative5-dev qtquickcontrols2-5-dev qml-module-qtquick2 qml-module-qtquick-controls2
             qml-module-qtquick-layouts qml-module-qtquick-window2"
    [run]="ffmpeg yt-dlp python3 ca-certificates procps"
    [lint]="clang clang-tidy clang-format shellcheck cppcheck codespell flake8 mypy"
    [sanitizers]="clang libclang-rt-dev llvm libc6-dbg valgrind"
    [fuzz]="clang clang-tidy libclang-rt-dev llvm"
    [bench]="libbenchmark-dev"
    [coverage]="gcovr"
    [docs]="doxygen"
    [package]="binutils debhelper devscripts dpkg-dev fakeroot lintian"
    [release]="mmdebstrap"
    [desk]="appstream dbus-daemon fonts-dejavu-core"
)
readonly groups=(build qt5 quick run lint sanitizers fuzz bench coverage docs package release desk)

list_groups() {
    for group in "${groups[@]}"; do
        printf '%-11s%s\n' "$group" "$(xargs <<<"${packages[$group]}")"
    done
}

# Prints those of the given packages that are not installed.
missing_packages() {
    local installed package
    installed=$(dpkg-query -W -f='${db:Status-Status} ${Package}\n' "$@" 2>/dev/null | sed -n 's/^installed //p' || true)
    for package in "$@"; do
        grep -qxF "$package" <<<"$installed" || printf '%s\n' "$package"
    done
}

as_root() {
    if [[ $EUID -eq 0 ]]; then
        "$@"
    elif command -v sudo >/dev/null; then
        sudo --preserve-env=DEBIAN_FRONTEND "$@"
    else
        echo "setup.sh: not root and no sudo; as root, run: $*" >&2
        return 1
    fi
}

apt() {
    as_root apt-get -qq -y -o Acquire::Retries=3 -o DPkg::Lock::Timeout=300 -o Dpkg::Use-Pty=0 "$@"
}

case "${1-}" in
    -h | --help) print_help; exit 0 ;;
    --list) list_groups; exit 0 ;;
esac

[[ $# -gt 0 ]] || set -- "${groups[@]}"
wanted=()
for group in "$@"; do
    if [[ -z "${packages[$group]-}" ]]; then
        echo "setup.sh: no group named '$group'; the groups are: ${groups[*]}" >&2
        exit 2
    fi
    read -r -d '' -a names <<<"${packages[$group]}" || true
    wanted+=("${names[@]}")
done

if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
    echo "setup.sh: this machine has no apt; install the equivalents of these by hand: ${wanted[*]}" >&2
    exit 1
fi

mapfile -t missing < <(missing_packages "${wanted[@]}" | sort -u)
if [[ ${#missing[@]} -eq 0 ]]; then
    exit 0
fi

echo "installing: ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
log=$(mktemp)
trap 'rm -f "$log"' EXIT
if ! { apt update && apt install --no-install-recommends "${missing[@]}"; } >"$log" 2>&1; then
    cat "$log" >&2
    exit 1
fi
