#!/usr/bin/env bash
# Makes the Debian packages, checks them with lintian and hardening-check, and tries them: installs all of them into an
# empty root, builds an example against it for Qt 6 and for Qt 5, with CMake and with pkg-config, runs each on a page of
# this machine, and downloads with the nox-fetch of the package.
#
#   scripts/check-packages.sh [DIR]     tries the packages in DIR instead of making them
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
. "$(dirname "$0")/common.sh"

case ${1-} in
    -h | --help) print_help; exit 0 ;;
esac
"$root/scripts/setup.sh" build qt5 run package
if [[ $# -gt 0 ]]; then
    packages=$(realpath "$1")
else
    packages=$root/build/packages
    "$root/scripts/package.sh"
fi
make_scratch
readonly title_begin='Open the café/bar? '

fail() {
    printf 'check-packages.sh: %s\n' "$*" >&2
    exit 1
}

# expect PACKAGE DEPENDENCY...: each is among what the package depends on. A dependency is a regular expression, since
# names of libraries differ between releases.
expect() {
    local package=$1 depends dependency
    depends=$(dpkg-deb -f "$packages/$package"_*.deb Depends)
    printf '%-28s%s\n' "$package" "$depends"
    for dependency in "${@:2}"; do
        [[ ", $depends," =~ ", "${dependency}[\ ,] ]] || fail "$package does not depend on $dependency"
    done
}

mapfile -t files < <(find "$packages" -name '*.deb' ! -name '*-dbgsym_*' | sort)

say "versions"
number=$(sed -n '/^project(/,/)/s/^ *VERSION //p' "$root/CMakeLists.txt")
for file in "${files[@]}"; do
    [[ $(dpkg-deb -f "$file" Version) == "$number" ]] || fail "$file is not version $number; see debian/changelog"
done

say "lintian"
# Errors that stay while there is no licence and no mail address, and nothing was uploaded.
allowed='bogus-mail-host|mail-address-loops-or-bounces|initial-upload-closes-no-bugs|unreleased-changes'
lintian --allow-root --tag-display-limit 0 "$packages"/*.deb | tee "$scratch/lintian.log" || true
! grep -E '^[EW]:' "$scratch/lintian.log" | grep -vE " ($allowed)" || fail "lintian has found errors"

say "dependencies"
expect libnoxwebmedia1 libc6 'libstdc\+\+6' 'libjsoncpp[0-9]+' 'libsimdjson[0-9]+' 'libqt6core6(t64)?' libqt6gui6
expect libnoxwebmedia-qt5-1 libc6 'libstdc\+\+6' 'libjsoncpp[0-9]+' 'libsimdjson[0-9]+' 'libqt5core5(a|t64)' 'libqt5gui5(t64)?'
expect libnoxwebmedia-dev libnoxwebmedia1 qt6-base-dev libjsoncpp-dev
expect libnoxwebmedia-qt5-dev libnoxwebmedia-qt5-1 qtbase5-dev libjsoncpp-dev
expect libnoxwebmediajobs1 libnoxwebmedia1 'libqt6core6(t64)?'
expect libnoxwebmediajobs-qt5-1 libnoxwebmedia-qt5-1 'libqt5core5(a|t64)'
expect libnoxwebmediajobs-dev libnoxwebmediajobs1 libnoxwebmedia-dev
expect libnoxwebmediajobs-qt5-dev libnoxwebmediajobs-qt5-1 libnoxwebmedia-qt5-dev
expect nox-renew-tool python3
expect nox-fetch libnoxwebmediajobs1 nox-renew-tool 'libqt6core6(t64)?' python3 yt-dlp
expect nox-desk libnoxwebmediajobs1 nox-renew-tool libqt6widgets6 libqt6network6 python3 yt-dlp
apt-get -qq --simulate --no-install-recommends -o Debug::NoLocking=1 install "${files[@]}" >"$scratch/apt.log" ||
    fail "apt cannot install them"
grep -c '^Inst' "$scratch/apt.log" | xargs printf 'apt would install %s packages, ours among them\n'

say "all in one root"
# By dpkg, which finds out when two packages hold the same file. What they depend on is outside; so is ldconfig, which
# must not be called for it.
target=$scratch/root
mkdir -p "$target/var/lib/dpkg/"{info,updates} "$scratch/instead"
: >"$target/var/lib/dpkg/status"
ln -s /bin/true "$scratch/instead/ldconfig"
PATH=$scratch/instead:$PATH:/usr/sbin:/sbin fakeroot dpkg --root="$target" --force-depends,script-chrootless \
    --log="$scratch/dpkg.log" --install "${files[@]}" >"$scratch/install.log" 2>&1 ||
    { cat "$scratch/install.log" >&2; fail "dpkg failed"; }
installed=$(dpkg-query --root="$target" -W -f '${db:Status-Status} ${Package} ${Version}\n' | grep '^installed')
printf '%s\n' "$installed"
[[ $(wc -l <<<"$installed") -eq 11 ]] || fail "not all packages are installed"
prefix=$target/usr
libdir=$(dirname "$(find "$prefix/lib" -name libNoxWebMedia.so.1)")
# The links of the hosts are relative, and so lead to programs of this root.
for program in python3 ffmpeg; do
    ln -s "/usr/bin/$program" "$prefix/bin/$program"
done

say "hardening"
# Debian 12 links start-up code without control-flow protection. The calls in the hosts and in the second library that
# could be fortified have sizes that the compiler does not know.
hardening-check --nocfprotection "$libdir"/libNoxWebMedia{,Qt5}.so.1
hardening-check --nofortify --nocfprotection "$libdir"/libNoxWebMediaJobs{,Qt5}.so.1 "$prefix"/libexec/nox-*/nox-*

say "an example"
serve_clip 0
readonly example=$root/examples/titles

# try_out PROGRAM LIBRARY: the program uses this library and finds the page's title.
try_out() {
    local program=$1 library=$2 title
    readelf -d "$program" | grep -qF "[$library]" || fail "$program does not use $library"
    "$root/scripts/stage-programs.sh" "$(dirname "$program")"
    # The library logs to standard output too; the program's own line is the last.
    title=$(XDG_CACHE_HOME=$scratch/cache LD_LIBRARY_PATH=$libdir "$program" "$url" 2>/dev/null | tail -n 1)
    printf '%s: %s\n' "$library" "$title"
    [[ $title == "$title_begin"* ]] || fail "wrong title"
}

# configure_example NAME [CMAKE-OPTION...]
configure_example() {
    cmake -S "$example" -B "$scratch/$1" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_BUILD_TYPE=Release \
        "${@:2}" >"$scratch/$1.log" 2>&1
}

# finds NAME FOLDER [CMAKE-OPTION...]: find_package() takes the build of this folder.
finds() {
    configure_example "$1" "${@:3}" || { cat "$scratch/$1.log" >&2; fail "$1: not found"; }
    grep -q "^NoxWebMedia_DIR:PATH=.*/cmake/$2\$" "$scratch/$1/CMakeCache.txt" || fail "$1: not the one in $2"
    printf '%-28s%s\n' "$1" "$2"
}

# What a project does that uses one Qt, the other, or both.
for qts in 5 6 65; do
    for ((i = 0; i < ${#qts}; i++)); do
        printf 'find_package(Qt%s REQUIRED COMPONENTS Core)\n' "${qts:i:1}"
    done >"$scratch/qt$qts.cmake"
done
finds by-itself NoxWebMedia
finds qt6-found NoxWebMedia -DCMAKE_PROJECT_INCLUDE="$scratch/qt6.cmake"
finds qt5-found NoxWebMediaQt5 -DCMAKE_PROJECT_INCLUDE="$scratch/qt5.cmake"
finds both-found NoxWebMedia -DCMAKE_PROJECT_INCLUDE="$scratch/qt65.cmake"
finds qt5-named NoxWebMediaQt5 -DNOX_QT_MAJOR=5
finds qt5-of-both-named NoxWebMediaQt5 -DNOX_QT_MAJOR=5 -DCMAKE_PROJECT_INCLUDE="$scratch/qt65.cmake"
! configure_example qt4-named -DNOX_QT_MAJOR=4 || fail "a build for Qt 4 was found"
grep -q 'for Qt [56]; Qt 4 is wanted' "$scratch/qt4-named.log" || fail "the message does not tell what is wanted"

for name in by-itself qt5-found; do
    cmake --build "$scratch/$name" >"$scratch/$name.log" || { cat "$scratch/$name.log" >&2; fail "$name: not built"; }
done
try_out "$scratch/by-itself/titles" libNoxWebMedia.so.1
try_out "$scratch/qt5-found/titles" libNoxWebMediaQt5.so.1

for package in noxwebmedia noxwebmedia-qt5; do
    read -r -a flags < <(PKG_CONFIG_PATH=$libdir/pkgconfig pkg-config --cflags --libs $package)
    mkdir "$scratch/$package"
    c++ -std=c++17 -o "$scratch/$package/titles" "$example/titles.cpp" "${flags[@]}"
done
try_out "$scratch/noxwebmedia/titles" libNoxWebMedia.so.1
try_out "$scratch/noxwebmedia-qt5/titles" libNoxWebMediaQt5.so.1

# is_clip FILE: the file holds the clip's picture and sound.
is_clip() {
    local streams
    streams=$(ffprobe -v error -show_entries stream=codec_type -of csv=p=0 "$1" | sort | xargs)
    printf '%s (%s)\n' "$(basename "$1")" "$streams"
    [[ $streams == "audio video" ]] || fail "not the clip"
}

say "the first example of README"
for qt in 6 5; do
    dir=$scratch/save-qt$qt
    {
        cmake -S "$root/examples/save" -B "$dir" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_BUILD_TYPE=Release \
            -DNOX_QT_MAJOR=$qt && cmake --build "$dir"
    } >"$dir.log" 2>&1 || { cat "$dir.log" >&2; fail "save is not built for Qt $qt"; }
    readelf -d "$dir/save" | grep -oE '\[libNoxWebMediaJobs(Qt5)?\.so\.1\]'
    "$root/scripts/stage-programs.sh" "$dir"
    is_clip "$(cd "$dir" && XDG_CACHE_HOME=$scratch/cache LD_LIBRARY_PATH=$libdir ./save "$url")"
done

say "the hosts"
cd "$scratch"
export LD_LIBRARY_PATH=$libdir
file=$(XDG_CACHE_HOME=$scratch/cache "$prefix/bin/nox-fetch" "$url" 2>"$scratch/fetch.log") ||
    { cat "$scratch/fetch.log" >&2; fail "nox-fetch failed"; }
is_clip "$file"
QT_QPA_PLATFORM=offscreen "$prefix/bin/nox-desk" --version

say "another tool for the hosts"
export XDG_DATA_HOME=$scratch/data
"$prefix/bin/nox-renew-tool" /usr/lib/python3/dist-packages/yt_dlp
"$prefix/bin/nox-fetch" --tool-version
"$prefix/bin/nox-renew-tool" --remove
[[ ! -e $XDG_DATA_HOME/noxwebmedia/yt.zip ]] || fail "the other tool was not removed"
