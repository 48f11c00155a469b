#!/bin/sh
# Draws the maps that the README shows.
#
#   scripts/draw-pictures.sh [path of the command] [folder to draw into]
set -eu
root=$(cd "$(dirname "$0")/.." && pwd)
tqproj=${1:-$root/build/release/bin/tqproj}
folder=${2:-$root/docs/pictures}

mkdir -p "$folder"
"$tqproj" draw -p "UTM zone 32N (WGS 84)" --extent 3,42,15,58 --metric 200000 -o "$folder/utm.svg"
"$tqproj" draw -p "Lambert-93" -o "$folder/lambert-93.svg"
"$tqproj" draw -p "Sea ice polar stereographic North (WGS 84)" --extent=-180,50,180,90 \
    -o "$folder/polar-stereographic.svg"
"$tqproj" draw -p "+proj=omerc +lat_0=30 +lonc=20 +alpha=60 +gamma=0 +ellps=GRS80 +title=Oblique-Mercator" --extent=-30,0,75,70 \
    -o "$folder/oblique-mercator.svg"
