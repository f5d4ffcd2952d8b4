#!/usr/bin/env bash
# Makes the Debian packages in build/packages from debian/: both libraries, development files and debug symbols for Qt 6 and
# for Qt 5, nox-fetch, nox-desk, nox-renew-tool. The output of the build is in build/package/build.log.
#
#   scripts/package.sh            makes the packages
#   scripts/package.sh --check    also checks them with lintian and hardening-check, and uses them: installs all of them
#                                 into an empty root, builds examples for Qt 6 and Qt 5, and runs these and nox-fetch
#
# Nothing is installed on this machine.
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
. "$(dirname "$0")/common.sh"

case ${1-} in
    -h | --help) print_help; exit 0 ;;
    '' | --check) ;;
    *) echo "package.sh: unknown argument '$1'; see --help" >&2; exit 2 ;;
esac
"$root/scripts/setup.sh" build qt5 run package
packages=$root/build/packages

# In a copy of the checkout, because the build writes into the folder and beside it.
make_packages() (
    local work=$root/build/package
    rm -rf "$work" "$packages"
    copy_checkout "$work/noxwebmedia"
    mkdir "$packages"
    cd "$work/noxwebmedia" || exit
    CMAKE_CXX_COMPILER_LAUNCHER=$(command -v ccache || true)
    export CMAKE_CXX_COMPILER_LAUNCHER
    dpkg-buildpackage --build=binary --no-sign --jobs="$jobs" >"$work/build.log" 2>&1 ||
        { tail -n 40 "$work/build.log" >&2; echo "package.sh: dpkg-buildpackage failed" >&2; exit 1; }
    mv "$work"/*.deb "$packages"
    ls -l "$packages"
)

make_packages
[[ ${1-} == --check ]] || exit 0
make_scratch

fail() {
    printf 'package.sh: %s\n' "$*" >&2
    exit 1
}

# logged NAME COMMAND...: shows the output only if the command fails.
logged() {
    "${@:2}" >"$scratch/$1.log" 2>&1 || { cat "$scratch/$1.log" >&2; fail "$1 failed"; }
}

# expect PACKAGE DEPENDENCY...: the package depends on each of them. A dependency is a regular expression, because names of
# libraries differ between releases.
expect() {
    local package=$1 depends dependency
    depends=$(dpkg-deb -f "$packages/$package"_*.deb Depends)
    printf '%-28s%s\n' "$package" "$depends"
    for dependency in "${@:2}"; do
        [[ ", $depends," =~ ", "${dependency}[\ ,] ]] || fail "$package does not depend on $dependency"
    done
}

mapfile -t files < <(find "$packages" -name '*.deb' ! -name '*-dbgsym_*' | sort)

say "versions, lintian, dependencies"
number=$(sed -n '/^project(/,/)/s/^ *VERSION //p' "$root/CMakeLists.txt")
for file in "${files[@]}"; do
    [[ $(dpkg-deb -f "$file" Version) == "$number" ]] || fail "$file is not version $number; see debian/changelog"
done
# Errors that stay while there is no licence and no mail address, and nothing was uploaded.
allowed='bogus-mail-host|mail-address-loops-or-bounces|initial-upload-closes-no-bugs|unreleased-changes'
lintian --allow-root --tag-display-limit 0 "$packages"/*.deb | tee "$scratch/lintian.log" || true
! grep -E '^[EW]:' "$scratch/lintian.log" | grep -vE " ($allowed)" || fail "lintian has found errors"
expect libnoxwebmedia1 'libjsoncpp[0-9]+' 'libsimdjson[0-9]+' libqt6gui6
expect libnoxwebmedia-qt5-1 'libjsoncpp[0-9]+' 'libsimdjson[0-9]+' 'libqt5gui5(t64)?'
expect libnoxwebmedia-dev libnoxwebmedia1 qt6-base-dev libjsoncpp-dev
expect libnoxwebmedia-qt5-dev libnoxwebmedia-qt5-1 qtbase5-dev libjsoncpp-dev
expect libnoxwebmediajobs-dev libnoxwebmediajobs1 libnoxwebmedia-dev
expect libnoxwebmediajobs-qt5-dev libnoxwebmediajobs-qt5-1 libnoxwebmedia-qt5-dev
expect nox-renew-tool python3
expect nox-fetch libnoxwebmediajobs1 nox-renew-tool python3 yt-dlp
expect nox-desk libnoxwebmediajobs1 nox-renew-tool libqt6widgets6 python3 yt-dlp
logged apt apt-get -qq --simulate --no-install-recommends -o Debug::NoLocking=1 install "${files[@]}"

say "all in one root"
# dpkg reports two packages that contain the same file. The packages that they depend on are outside. ldconfig must not be
# called for this root.
target=$scratch/root
mkdir -p "$target/var/lib/dpkg/"{info,updates} "$scratch/instead"
: >"$target/var/lib/dpkg/status"
ln -s /bin/true "$scratch/instead/ldconfig"
logged dpkg env PATH="$scratch/instead:$PATH:/usr/sbin:/sbin" fakeroot dpkg --root="$target" \
    --force-depends,script-chrootless --log="$scratch/dpkg.log" --install "${files[@]}"
installed=$(dpkg-query --root="$target" -W -f '${db:Status-Status} ${Package} ${Version}\n' | grep '^installed')
printf '%s\n' "$installed"
[[ $(wc -l <<<"$installed") -eq 11 ]] || fail "not all packages are installed"
prefix=$target/usr
libdir=$(dirname "$(find "$prefix/lib" -name libNoxWebMedia.so.1)")
# The links of the hosts are relative, so they lead to programs of this root.
ln -s /usr/bin/python3 /usr/bin/ffmpeg "$prefix/bin"
# Debian 12 links start-up code without control-flow protection. The calls in the hosts and in the second library that
# could be fortified have sizes that the compiler does not know.
hardening-check --nocfprotection "$libdir"/libNoxWebMedia{,Qt5}.so.1
hardening-check --nofortify --nocfprotection "$libdir"/libNoxWebMediaJobs{,Qt5}.so.1 "$prefix"/libexec/nox-*/nox-*

say "find_package"
# finds NAME FOLDER [CMAKE-OPTION...]: find_package() takes the build of this folder.
finds() {
    logged "$1" cmake -S "$root/examples/save" -B "$scratch/$1" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" \
        -DCMAKE_BUILD_TYPE=Release "${@:3}"
    grep -q "^NoxWebMedia_DIR:PATH=.*/cmake/$2\$" "$scratch/$1/CMakeCache.txt" || fail "$1: not the one in $2"
    printf '%-28s%s\n' "$1" "$2"
}
# Projects that use one Qt, the other, or both.
for qts in 5 6 65; do
    grep -o . <<<$qts | sed 's/.*/find_package(Qt& REQUIRED COMPONENTS Core)/' >"$scratch/qt$qts.cmake"
done
finds qt6 NoxWebMedia
finds qt6-found NoxWebMedia -DCMAKE_PROJECT_INCLUDE="$scratch/qt6.cmake"
finds both-found NoxWebMedia -DCMAKE_PROJECT_INCLUDE="$scratch/qt65.cmake"
finds qt5 NoxWebMediaQt5 -DCMAKE_PROJECT_INCLUDE="$scratch/qt5.cmake"
finds qt5-named NoxWebMediaQt5 -DNOX_QT_MAJOR=5
finds qt5-of-both-named NoxWebMediaQt5 -DNOX_QT_MAJOR=5 -DCMAKE_PROJECT_INCLUDE="$scratch/qt65.cmake"
! (finds qt4-named NoxWebMedia -DNOX_QT_MAJOR=4 >/dev/null 2>&1) || fail "a build for Qt 4 was found"
grep -q 'for Qt [56]; Qt 4 is wanted' "$scratch/qt4-named.log" || fail "the message does not tell what is wanted"
for package in noxwebmediajobs noxwebmediajobs-qt5; do
    read -r -a flags < <(PKG_CONFIG_PATH=$libdir/pkgconfig pkg-config --cflags --libs $package)
    logged $package c++ -std=c++17 -o "$scratch/$package" "$root/examples/save/save.cpp" "${flags[@]}"
done

# is_clip FILE: the file has the video and the audio stream of the clip.
is_clip() {
    local streams
    streams=$(ffprobe -v error -show_entries stream=codec_type -of csv=p=0 "$1" | sort | xargs)
    printf '%s (%s)\n' "$(basename "$1")" "$streams"
    [[ $streams == "audio video" ]] || fail "not the clip"
}

say "README's first example, for Qt 6 and Qt 5"
serve_clip 0
export LD_LIBRARY_PATH=$libdir XDG_CACHE_HOME=$scratch/cache XDG_DATA_HOME=$scratch/data
for dir in "$scratch/qt6" "$scratch/qt5"; do
    logged build cmake --build "$dir"
    readelf -d "$dir/save" | grep -oE '\[libNoxWebMediaJobs(Qt5)?\.so\.1\]'
    "$root/scripts/stage-programs.sh" "$dir"
    is_clip "$(cd "$dir" && ./save "$url")"
done

say "the hosts"
cd "$scratch"
is_clip "$("$prefix/bin/nox-fetch" -q "$url")"
QT_QPA_PLATFORM=offscreen "$prefix/bin/nox-desk" --version
"$prefix/bin/nox-renew-tool" /usr/lib/python3/dist-packages/yt_dlp
"$prefix/bin/nox-fetch" --tool-version
"$prefix/bin/nox-renew-tool" --remove
[[ ! -e $XDG_DATA_HOME/noxwebmedia/yt.zip ]] || fail "the other tool was not removed"
