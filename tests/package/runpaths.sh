#!/bin/sh
# Where programs and libraries look for libraries: an empty or relative entry is a place that depends on the directory
# in which somebody starts them, who may find anything there.
#
#   runpaths.sh <directory>...    those with the programs and libraries
set -eu
IFS='
'
checked=0
for file in $(find "$@" -maxdepth 1 -type f \( -perm -u+x -o -name '*.so*' \)); do
    path=$(readelf -d "$file" 2> /dev/null | sed -n 's/.*(R\(UN\)\{0,1\}PATH).*\[\(.*\)\]$/\2/p')
    [ -n "$path" ] || continue
    checked=$((checked + 1))
    # Every entry between two colons, also the one behind the last.
    if printf '%s:' "$path" | tr ':' '\n' | grep -qvE '^(/|\$ORIGIN(/|$)|\$\{ORIGIN\}(/|$))'; then
        echo "$file: [$path]"
        exit 1
    fi
done
[ "$checked" -gt 0 ]
