#!/bin/sh
# Times `tqproj convert` beside PROJ's cs2cs on the same million lines, both ways, with one job, as cs2cs has, and with
# as many as there are cores, and prints the ratios: the best of five runs each, from file to file.
#
#   bench/command-bench.sh [folder of the built command, build/release/bin unless given]
set -eu
cd "$(dirname "$0")/.."
tqproj="${1-build/release/bin}/tqproj"
projection="resources/resProj/Projection/UTM zone 31N (WGS 84).proj"
geographic="+proj=longlat +datum=WGS84"
plane="+proj=utm +zone=31 +datum=WGS84"

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export LC_ALL=C

awk 'BEGIN { srand(1); for (i = 0; i < 1000000; ++i) printf "%.9f %.9f point%d\n", 12 * rand() - 3, 80 * rand(), i }' \
    >"$work/geographic.txt"
"$tqproj" convert -p "$projection" "$work/geographic.txt" >"$work/plane.txt"

# best <command>...: the shortest of five runs, in seconds
best() {
    for _ in 1 2 3 4 5; do
        begin=$(date +%s%N)
        "$@" >"$work/out"
        end=$(date +%s%N)
        echo $((end - begin))
    done | sort -n | head -n 1 | awk '{ printf "%.3f", $1 / 1e9 }'
}

report() {
    awk -v what="$1" -v jobs="$2" -v ours="$3" -v theirs="$4" 'BEGIN {
        printf "%-27s jobs %-7s  tqproj %6.3f s   cs2cs %6.3f s   cs2cs / tqproj %5.1f\n", what, jobs, ours, theirs,
            theirs / ours }'
}

# compare <what> <seconds of cs2cs> <arguments of tqproj convert>...
compare() {
    what=$1
    theirs=$2
    shift 2
    report "$what" 1 "$(best "$tqproj" convert --jobs 1 -p "$projection" "$@")" "$theirs"
    report "$what" "default" "$(best "$tqproj" convert -p "$projection" "$@")" "$theirs"
}

# shellcheck disable=SC2086  # the definitions are words to be split
compare "longitude, latitude -> UTM" "$(best cs2cs -f %.3f $geographic +to $plane "$work/geographic.txt")" \
    "$work/geographic.txt"
# shellcheck disable=SC2086
compare "UTM -> longitude, latitude" "$(best cs2cs -f %.9f $plane +to $geographic "$work/plane.txt")" \
    -I "$work/plane.txt"
