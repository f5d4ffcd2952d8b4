#!/usr/bin/env bash
# Makes the Debian packages in build/packages: both libraries, development files and debug symbols for Qt 6 and for
# Qt 5, nox-fetch, nox-desk, nox-renew-tool. What is built and how stands in debian/; the output of the build is in build/package/build.log.
#
#   scripts/package.sh
#
# Nothing is installed; scripts/check-packages.sh tries the packages.
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
. "$(dirname "$0")/common.sh"

case ${1-} in
    -h | --help) print_help; exit 0 ;;
    ?*) echo "package.sh: unknown argument '$1'; see --help" >&2; exit 2 ;;
esac
"$root/scripts/setup.sh" build qt5 run package

# In a copy, since the packages and what is needed for them are put into the folder and beside it.
work=$root/build/package
rm -rf "$work" "$root/build/packages"
copy_checkout "$work/noxwebmedia"
mkdir "$root/build/packages"
cd "$work/noxwebmedia"
export CMAKE_CXX_COMPILER_LAUNCHER
CMAKE_CXX_COMPILER_LAUNCHER=$(command -v ccache || true)
dpkg-buildpackage --build=binary --no-sign --jobs="$jobs" >"$work/build.log" 2>&1 ||
    { tail -n 40 "$work/build.log" >&2; echo "package.sh: dpkg-buildpackage failed" >&2; exit 1; }
mv "$work"/*.deb "$root/build/packages"
ls -l "$root/build/packages"
