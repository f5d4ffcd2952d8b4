#!/usr/bin/env bash
# Makes the Debian packages: library and development files for Qt 6 and for Qt 5, nox-fetch and nox-desk.
#
#   scripts/package.sh [DIR]     into DIR; build/packages unless given, whose old packages are removed first
#
# Nothing is installed; scripts/check-packages.sh tries the packages.
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
. "$(dirname "$0")/common.sh"

case ${1-} in
    -h | --help) print_help; exit 0 ;;
    -*) echo "package.sh: unknown option '$1'; see --help" >&2; exit 2 ;;
esac
packages=$(realpath -m "${1:-$root/build/packages}")

"$root/scripts/setup.sh" build qt5 package
mkdir -p "$packages"
rm -f "$packages"/*.deb

for preset in release qt5; do
    say "packages: $preset"
    build=$root/build/package-$preset
    # The prefix decides where Debian wants the library.
    configure "$preset" "$build" -DCMAKE_INSTALL_PREFIX=/usr -DNOX_BUILD_TESTS=OFF -DNOX_BUILD_EXAMPLES=OFF -DNOX_SYSTEM_PROGRAMS=ON \
        -DNOX_BUILD_HOSTS="$([[ $preset == release ]] && echo ON || echo OFF)"
    compile "$build"
    (cd "$build" && cpack -G DEB -B "$packages" >cpack.log) || { cat "$build/cpack.log" >&2; exit 1; }
    rm -rf "$packages/_CPack_Packages"
done
ls -l "$packages"
