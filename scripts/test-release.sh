#!/usr/bin/env bash
# Runs the demonstration and the tests on a Debian release, in a bare root of that release.
#
#   scripts/test-release.sh [RELEASE] [-- COMMAND...]    RELEASE is the codename; trixie (Debian 13) unless given
#   scripts/test-release.sh --clean [RELEASE]            removes what is cached for the release
#
# The commands are scripts/demo.sh and scripts/test.sh, or COMMAND, as in:
# scripts/test-release.sh trixie -- scripts/test.sh tidy
#
# Every run begins with debootstrap's minimal system and a copy of the checkout, so a package that is missing in
# scripts/setup.sh is noticed. The minimal system, downloaded packages, compiled objects and clang-tidy's cache are cached
# in ${XDG_CACHE_HOME:-~/.cache}/noxwebmedia/releases. The mirror is that of this machine's apt. Needs root. The mounts are
# in a mount namespace of their own and end with the run, as its processes do.
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
. "$(dirname "$0")/common.sh"

fail() {
    printf 'test-release.sh: %s\n' "$*" >&2
    exit 1
}

clean=no
release=
while [[ $# -gt 0 ]]; do
    case $1 in
        -h | --help) print_help; exit 0 ;;
        --clean) clean=yes ;;
        --) shift; break ;;
        -* | */*) echo "test-release.sh: unknown argument '$1'; see --help" >&2; exit 2 ;;
        *)
            [[ -z $release ]] || { echo "test-release.sh: one release at a time; see --help" >&2; exit 2; }
            release=$1
            ;;
    esac
    shift
done
release=${release:-trixie}
[[ $# -gt 0 ]] || set -- bash -euc 'scripts/demo.sh; scripts/test.sh'

[[ $EUID -eq 0 ]] || fail "needs root, to make a root of $release and to mount its file systems"
cache=${XDG_CACHE_HOME:-$HOME/.cache}/noxwebmedia/releases/$release
if [[ $clean == yes ]]; then
    rm -rf --one-file-system "$cache"
    exit 0
fi

# Prints the address of the first Debian mirror that apt is configured with.
mirror() {
    apt-get indextargets --format "\$(ORIGIN)|\$(LABEL)|\$(REPO_URI)" 'Created-By: Packages' |
        sed -n 's/^Debian|Debian|//p' | sed -n 1p
}

# The functions from here to enter_root run in the mount namespace.
# make_bare_root: makes $cache/bare, which exists only if it is complete.
make_bare_root() {
    local address
    address=$(mirror)
    [[ -n $address ]] || fail "apt knows no Debian mirror; run apt-get update"
    rm -rf --one-file-system "$cache/bare.new"
    mkdir -p "$cache"
    debootstrap --variant=minbase "$release" "$cache/bare.new" "$address" >"$cache/debootstrap.log" ||
        { tail -n 20 "$cache/debootstrap.log" >&2; fail "debootstrap failed"; }
    # This machine's access to its mirror.
    apt-config dump | grep -E '^Acquire::(http|https|Check)' >"$cache/bare.new/etc/apt/apt.conf.d/90mirror" || true
    # Release files of unstable are valid for a week, and a mirror may be older.
    [[ $release != sid ]] || echo 'Acquire::Check-Valid-Until "false";' >"$cache/bare.new/etc/apt/apt.conf.d/92sid"
    # Otherwise every run would download the packages of the first one again.
    echo 'APT::Keep-Downloaded-Packages "true";' >"$cache/bare.new/etc/apt/apt.conf.d/91keep"
    mv "$cache/bare.new" "$cache/bare"
}

# mount_cache NAME PATH: mounts a folder of the cache in the root.
mount_cache() {
    mkdir -p "$cache/$1" "$target$2"
    mount --bind "$cache/$1" "$target$2"
}

mount_file_systems() {
    local device
    mount -t proc proc "$target/proc"
    mount -t tmpfs -o mode=755,nosuid dev "$target/dev"
    while read -r device major minor; do
        mknod -m 666 "$target/dev/$device" c "$major" "$minor"
    done <<<$'null 1 3\nzero 1 5\nfull 1 7\nrandom 1 8\nurandom 1 9\ntty 5 0'
    ln -s /proc/self/fd "$target/dev/fd"
    ln -s fd/0 "$target/dev/stdin"
    ln -s fd/1 "$target/dev/stdout"
    ln -s fd/2 "$target/dev/stderr"
    mkdir "$target/dev/pts" "$target/dev/shm"
    mount -t devpts -o newinstance,ptmxmode=666,gid=5,mode=620 devpts "$target/dev/pts"
    ln -s pts/ptmx "$target/dev/ptmx"
    mount -t tmpfs -o mode=1777 shm "$target/dev/shm"
    mount_cache archives /var/cache/apt/archives
    mount_cache ccache /var/cache/ccache
    mount_cache tidy /root/.cache/noxwebmedia/tidy
}

# enter_root COMMAND...: runs the command in the root, with an environment of its own.
enter_root() {
    local environment=(HOME=/root PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin LANG=C.UTF-8
        CCACHE_DIR=/var/cache/ccache NOX_JOBS="$jobs")
    local name
    for name in TERM http_proxy https_proxy no_proxy; do
        [[ -z ${!name-} ]] || environment+=("$name=${!name}")
    done
    env -i "${environment[@]}" chroot "$target" /bin/bash -euc 'cd /checkout && exec "$@"' bash "$@"
}

run_in_namespace() {
    say "a bare root of $release"
    [[ -e $cache/bare ]] || make_bare_root
    cp -a "$cache/bare/." "$target"
    cp -L /etc/resolv.conf /etc/hosts "$target/etc/"
    copy_checkout "$target/checkout"
    mount_file_systems
    say "$release: $*"
    enter_root "$@"
}

if [[ -n ${NOX_RELEASE_ROOT-} ]]; then
    target=$NOX_RELEASE_ROOT
    run_in_namespace "$@"
    exit
fi

"$root/scripts/setup.sh" release
mkdir -p "$cache"
scratch=$(mktemp -d "$cache/run.XXXXXX")
# Outside of the namespace, where nothing is mounted below it.
trap clean_up EXIT
NOX_RELEASE_ROOT=$scratch unshare --mount --pid --fork --kill-child --mount-proc "$0" "$release" -- "$@"
