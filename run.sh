#!/bin/sh
# Shows the project at work on a fresh Debian 12, as root or with sudo: installs what is missing, builds the
# libraries and the command, converts real cities with a real projection file, and converts them back.
set -eu
cd "$(dirname "$0")"
export LC_ALL=C # numbers with a decimal point, whatever the user's locale

cities="resources/samples/cities.csv"
projection="resources/resProj/Projection/World Mercator (WGS 84).proj"
build="build/release"
tqproj="$build/bin/tqproj"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

say() { printf '\n== %s\n' "$*"; }

# Runs a command silently; when it fails, shows what it said.
quietly() {
    "$@" >"$work/log" 2>&1 || {
        cat "$work/log" >&2
        exit 2
    }
}

say "1. Packages: what is missing is installed with apt-get"
scripts/install-dependencies.sh build

say "2. Build: CMake preset \"release\" in $build (the first time takes a minute or two)"
quietly cmake --preset release -DTQ_BUILD_BENCHMARKS=OFF
quietly cmake --build --preset release --target tqproj

say "3. The projection: tqproj show -p \"$projection\""
"$tqproj" show -p "$projection"

say "4. The cities: tqproj convert -p \"$projection\" $cities"
"$tqproj" convert -p "$projection" "$cities" >"$work/plane.csv"
paste -d , "$cities" "$work/plane.csv" | grep -v '^#' | awk -F , '
    BEGIN { printf "%11s %10s %15s %15s  %s\n", "longitude", "latitude", "x [m]", "y [m]", "city" }
    { printf "%11s %10s %15s %15s  %s, %s\n", $1, $2, $5, $6, $3, $4 }'

say "5. And back: tqproj convert --inverse, both ways with --precision full"
"$tqproj" convert -p "$projection" --precision full "$cities" >"$work/full.csv"
"$tqproj" convert -p "$projection" --precision full --inverse "$work/full.csv" >"$work/back.csv"
paste -d , "$cities" "$work/back.csv" | grep -v '^#' | awk -F , '
    function abs(value) { return value < 0 ? -value : value }
    {
        degree = atan2(0, -1) / 180
        longitude = abs($5 - $1)
        latitude = abs($6 - $2)
        degrees = longitude > latitude ? longitude : latitude
        east = longitude * degree * 6378137000 * cos($2 * degree)
        north = latitude * degree * 6378137000
        millimetres = sqrt(east * east + north * north)
        if (degrees > greatestDegrees) greatestDegrees = degrees
        if (millimetres > greatestMillimetres) greatestMillimetres = millimetres
    }
    END {
        printf "largest round-trip difference of %d cities: %.3g degrees, %.3g mm on the ground\n",
            NR, greatestDegrees, greatestMillimetres
    }'
