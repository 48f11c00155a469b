#!/bin/sh
# Draws the README's maps again and compares their lines with those of the committed ones; texts depend on the fonts
# of the machine.
#
#   pictures.sh <root of the project> <folder of the built command>
set -eu
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

"$1/scripts/draw-pictures.sh" "$2/tqproj" "$work" >/dev/null
count=0
for picture in "$1"/docs/pictures/*.svg; do
    grep 'fill:none' "$picture" >"$work/committed"
    grep 'fill:none' "$work/$(basename "$picture")" >"$work/drawn"
    diff "$work/committed" "$work/drawn" >"$work/difference" || {
        echo "$(basename "$picture") is not what scripts/draw-pictures.sh draws"
        exit 1
    }
    count=$((count + 1))
done
[ "$count" -eq 4 ]
