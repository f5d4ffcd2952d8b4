#!/usr/bin/env bash
# Makes the Debian packages in build/packages: library and development files for Qt 6 and for Qt 5, nox-fetch, nox-desk.
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
cd "$root"
scripts/setup.sh build qt5 package
rm -rf build/packages
for preset in package-qt6 package-qt5; do
    build_preset $preset
    cpack --preset $preset
done
rm -rf build/packages/_CPack_Packages
ls -l build/packages
