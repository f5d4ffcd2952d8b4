#!/bin/sh
# Fails when a text of nox-desk has no German translation, or the translation holds texts that are no longer there.
#
#   check-translation.sh LUPDATE HOSTS_FOLDER
set -eu
lupdate=$1 hosts=$2
translation=$hosts/desk/i18n/nox-desk_de.ts

copy=$(mktemp --suffix=.ts)
trap 'rm -f "$copy"' EXIT
cp "$translation" "$copy"
"$lupdate" -silent -I "$hosts/.." -locations none "$hosts/desk" -ts "$copy"

texts=$(grep -c '<source>' "$copy")
echo "$texts texts"
[ "$texts" -gt 0 ]
if grep -B 2 -E 'type="(unfinished|vanished|obsolete)"' "$copy"; then
    echo "the translation is not complete: ninja desk_lupdate, then translate what is unfinished" >&2
    exit 1
fi
