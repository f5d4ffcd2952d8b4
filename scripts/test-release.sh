#!/usr/bin/env bash
# Runs the demonstration and the tests on a Debian release, in a bare root of that release.
#
#   scripts/test-release.sh [RELEASE] [-- COMMAND...]    RELEASE is the codename; trixie (Debian 13) unless given
#   scripts/test-release.sh --clean [RELEASE]            removes what is cached for the release
#
# The commands are scripts/demo.sh and scripts/test.sh, or COMMAND, as in:
# scripts/test-release.sh trixie -- scripts/test.sh tidy
#
# mmdebstrap makes the root, which has the essential packages only: a package that is missing in scripts/setup.sh is
# noticed. Downloaded packages, compiled objects and clang-tidy's cache are kept in
# ${XDG_CACHE_HOME:-~/.cache}/noxwebmedia/releases. The mirror is that of this machine's apt. Needs root.
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
. "$(dirname "$0")/common.sh"

fail() {
    printf 'test-release.sh: %s\n' "$*" >&2
    exit "${2:-1}"
}

# mmdebstrap calls this script again, in namespaces of its own: runs the command in the root.
if [[ ${1-} == --in-root ]]; then
    target=$2 cache=$3
    shift 3
    for folder in ccache:var/cache/ccache tidy:root/.cache/noxwebmedia/tidy; do
        mkdir -p "$cache/${folder%%:*}" "$target/${folder#*:}"
        mount --bind "$cache/${folder%%:*}" "$target/${folder#*:}"
    done
    variables=(HOME=/root PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin LANG=C.UTF-8
        CCACHE_DIR=/var/cache/ccache NOX_JOBS="$jobs")
    for name in TERM http_proxy https_proxy no_proxy; do
        [[ -z ${!name-} ]] || variables+=("$name=${!name}")
    done
    env -i "${variables[@]}" chroot "$target" /bin/bash -euc 'cd /checkout && exec "$@"' bash "$@"
    exit
fi

clean=no
release=
while [[ $# -gt 0 ]]; do
    case $1 in
        -h | --help) print_help; exit 0 ;;
        --clean) clean=yes ;;
        --) shift; break ;;
        -* | */*) fail "unknown argument '$1'; see --help" 2 ;;
        *) [[ -z $release ]] || fail "one release at a time; see --help" 2; release=$1 ;;
    esac
    shift
done
release=${release:-trixie}
[[ $# -gt 0 ]] || set -- bash -euc 'scripts/demo.sh; scripts/test.sh'

[[ $EUID -eq 0 ]] || fail "needs root, to make a root of $release"
cache=${XDG_CACHE_HOME:-$HOME/.cache}/noxwebmedia/releases/$release
[[ $clean == no ]] || { rm -rf --one-file-system "$cache"; exit 0; }

"$root/scripts/setup.sh" release
# The first Debian mirror that apt is configured with.
mirror=$(apt-get indextargets --format "\$(ORIGIN)|\$(LABEL)|\$(REPO_URI)" 'Created-By: Packages' |
    sed -n 's/^Debian|Debian|//p' | sed -n 1p)
[[ -n $mirror ]] || fail "apt knows no Debian mirror; run apt-get update"
make_scratch
copy_checkout "$scratch/checkout"
mkdir -p "$cache/archives"
# This machine's access to its mirror. Otherwise every run would download all packages again.
apt-config dump | grep -E '^Acquire::(http|https|Check)' >"$scratch/apt.conf" || true
echo 'APT::Keep-Downloaded-Packages "true";' >>"$scratch/apt.conf"
# In some containers /dev/null is a file, which apt's own user may not be able to write.
echo 'APT::Sandbox::User "root";' >>"$scratch/apt.conf"
# Release files of unstable are valid for a week, and a mirror may be older.
[[ $release != sid ]] || echo 'Acquire::Check-Valid-Until "false";' >>"$scratch/apt.conf"

say "$release: $*"
# The command's processes and mounts end with it.
namespaces="unshare --mount --pid --fork --kill-child --mount-proc=\"\$1/proc\""
printf -v arguments '%q ' "$cache" "$@"
mmdebstrap --quiet --mode=root --variant=minbase --format=null --aptopt="$scratch/apt.conf" \
    --dpkgopt=force-unsafe-io --skip=download/empty --skip=essential/unlink \
    --setup-hook="mkdir -p \"\$1/var/cache/apt/archives\"" \
    --setup-hook="sync-in $cache/archives /var/cache/apt/archives" \
    --customize-hook="copy-in $scratch/checkout /" \
    --customize-hook="$namespaces '$root/scripts/test-release.sh' --in-root \"\$1\" $arguments" \
    --customize-hook="sync-out /var/cache/apt/archives $cache/archives" \
    "$release" - "$mirror"
