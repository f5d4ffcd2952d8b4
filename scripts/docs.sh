#!/usr/bin/env bash
# Builds the API reference from the public headers and the documents, and checks that these link to what exists.
#
#   scripts/docs.sh     the reference is in build/docs/html/index.html
#
# A warning of Doxygen, an undocumented public member or a dead link is an error.
set -euo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
. "$(dirname "$0")/common.sh"
cd "$root"

case ${1-} in
    -h | --help) print_help; exit 0 ;;
    ?*) echo "docs.sh: unknown argument '$1'; see --help" >&2; exit 2 ;;
esac
scripts/setup.sh docs

say "API reference"
NOX_VERSION=$(sed -n 's/^ *VERSION \([0-9.]*\)$/\1/p' CMakeLists.txt)
headers=$(sed -n '/^set(public_headers$/,/^)$/s|^ *\(.*\.h\)$|nox/\1|p' nox/CMakeLists.txt)
[[ -n $NOX_VERSION && -n $headers ]]
NOX_INPUT="$(echo docs/*.md) $(xargs <<<"$headers")"
NOX_OUTPUT=build/docs
export NOX_VERSION NOX_INPUT NOX_OUTPUT
rm -rf "$NOX_OUTPUT"
mkdir -p "$NOX_OUTPUT"
doxygen docs/Doxyfile
printf '%s headers: %s\n' "$(wc -l <<<"$headers")" "$root/$NOX_OUTPUT/html/index.html"

say "links and quotations of the documents"
scripts/check-documents.py
