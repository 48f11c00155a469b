#!/bin/sh
# The sources of the kernels are compiled for vector units that not every processor has. An inline function or template
# of theirs that other sources have as well is kept once in the library, and that one may be theirs: so there must be
# none but those that are named after the lanes that they are for.
#
#   kernel-symbols.sh <object file>...    those of the library
set -eu
kernels=$(printf '%s\n' "$@" | grep '/kernels/Kernels[^/]*$')
[ "$(echo "$kernels" | wc -l)" -eq 2 ]
for object in $kernels; do
    names=$(nm -C "$object" | sed -n 's/^[0-9a-f]* [Wu] //p')
    echo "$names" | grep -q 'runOn'
    if echo "$names" | grep -vE '(Four|Eight)(Lanes)?\b|runOn(Four|Eight)'; then
        echo "$object: these may be taken for those of every processor"
        exit 1
    fi
done
