#!/bin/sh
# Sends ten million lines through `tqproj convert`, which may use 64 MiB of memory for all it needs, its libraries
# included.
#
#   bounded-memory.sh <root of the project> <folder of the built command>
set -eu
cd "$1"
lines=10000000
converted=$(
    ulimit -v 65536
    yes '2.3522 48.8566 Paris' | head -n "$lines" |
        "$2/tqproj" convert -p 'resources/resProj/Projection/UTM zone 31N (WGS 84).proj' |
        uniq -c
)
[ "$(echo $converted)" = "$lines 452482.533 5411717.177 Paris" ] || {
    echo "converted: $converted"
    exit 1
}
