#!/bin/sh
# Fails when a text has no German translation, or when the translation contains texts that no longer exist.
#
#   check-translation.sh LUPDATE ROOT FOLDER TRANSLATION    the last two below the source folder ROOT
set -eu
lupdate=$1 root=$2 folder=$2/$3 translation=$2/$4

copy=$(mktemp --suffix=.ts)
trap 'rm -f "$copy"' EXIT
cp "$translation" "$copy"
"$lupdate" -silent -I "$root" -locations none "$folder" -ts "$copy"

grep -c '<source>' "$copy" # fails if there is none
if grep -B 2 -E 'type="(unfinished|vanished|obsolete)"' "$copy"; then
    echo "$translation is not complete: ninja desk_lupdate or jobs_lupdate, then translate what is unfinished" >&2
    exit 1
fi
