#!/bin/sh
# Checks that the folders include each other downwards only, as docs/architecture.md draws them.
#
# The one exception: TQProjParam stands in manager/, beside the tables it serves, and needs nothing but
# support/; the projections, which lie below, exchange their parameters in it.
set -eu
cd "$(dirname "$0")/.."

faults=0

# check <folder> <folders that it may include>...
check() {
    folder=$1
    shift
    allowed=$(printf '%s|' "$folder" "$@")
    found=$(grep -rnE '^#include "[a-z]+/' --include='*.h' --include='*.cpp' "$folder" |
        grep -vE "#include \"(${allowed%|})/" |
        grep -v '#include "manager/TQProjParam.h"' || true)
    if [ -n "$found" ]; then
        printf 'includes that lead upwards or sideways:\n%s\n' "$found"
        faults=1
    fi
}

# only <header> <files that may include it>...
only() {
    header=$1
    shift
    found=$(grep -rlE "#include [<\"]$header" --include='*.h' --include='*.cpp' support ellipsoid projection \
        projections proj manager grid tools | grep -vE "^($(printf '%s|' "$@")none)" || true)
    if [ -n "$found" ]; then
        printf '%s may not be included by:\n%s\n' "$header" "$found"
        faults=1
    fi
}

check support
check ellipsoid support
check projection ellipsoid support
check projections projection ellipsoid support
check proj projection ellipsoid support
check manager proj projections projection ellipsoid support
check grid manager projection ellipsoid support
check tools grid manager proj projections projection ellipsoid support
check ellipsoid/formulas ellipsoid/formulas
check projections/formulas projections/formulas ellipsoid/formulas
check projections/kernels projections/kernels projections/formulas ellipsoid/formulas projection support
only 'projections/TQPr' projections/ manager/TQProjectionFactory.cpp
only 'proj/TQPrProj4' proj/ manager/TQProjectionFactory.cpp tools/
only 'proj/TQ(ExternalProjList|ReferenceSystem)' proj/ manager/ tools/
only 'CLI/' tools/tqproj/CommandLine.cpp
only 'nlohmann/' tools/tqproj/CatalogCommand.cpp
only 'cairo' tools/tqproj/map/MapCanvas.cpp
only 'pugixml' support/TQXMLTree.cpp
only 'sleef' 'projections/kernels/'
only 'projections/kernels/(TQKernels|Kernels|Conversions)' projections/
only 'proj(_experimental)?\.h' 'proj/' 'tools/tqresources/'
only '(unistd|dlfcn|windows|sys/)' support/TQPlatform.cpp

exit $faults
