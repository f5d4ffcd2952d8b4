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

say "links of the documents"
dead=0
links=0
# Prints file, line and target of every link that leads into the tree.
tree_links() {
    grep -noE '\]\([^)# ]+' ./*.md docs/*.md | grep -vE '\((https?|mailto):' | sed -E 's/\]\(//'
}
while IFS=: read -r file line target; do
    links=$((links + 1))
    if [[ ! -e $(dirname "$file")/$target ]]; then
        printf '%s:%s: links to %s, which does not exist\n' "$file" "$line" "$target" >&2
        dead=$((dead + 1))
    fi
done < <(tree_links)
((dead == 0))
printf '%s links, none dead\n' "$links"
