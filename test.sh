#!/bin/sh
# What the project checks about itself, on a fresh Debian 12, as root or with sudo: installs what is
# missing, then format, lint, documentation, and the tests, plain and under the sanitizers. A red step ends the run.
#
#   ./test.sh           all of it
#   ./test.sh quick     the tests only, plain
#   ./test.sh portable  the plain tests of a build without kernels
#   ./test.sh threads   the tests of several threads, under the thread sanitizer
set -eu
cd "$(dirname "$0")"

say() { printf '\n== %s\n' "$*"; }

sources() { git ls-files --cached --others --exclude-standard -- '*.h' '*.cpp'; }

format() {
    say "Format: clang-format"
    sources | xargs -d '\n' clang-format --dry-run --Werror
}

includes() {
    say "Includes lead downwards only"
    scripts/check-includes.sh
}

tests() {
    say "Tests: CMake preset \"$1\" in build/$1"
    cmake --preset "$1"
    cmake --build --preset "$1"
    ctest --preset "$1" -j "$(nproc)" --output-on-failure
}

headers() {
    say "Every public header compiles alone"
    cmake --build --preset dev --target all_verify_interface_header_sets
}

threads() {
    say "Threads: the tests of several threads under the thread sanitizer, CMake preset \"tsan\" in build/tsan"
    cmake --preset tsan
    cmake --build --preset tsan --target proj-tests projections-tests tools-tests
    build/tsan/tests/proj-tests --gtest_brief=1 --gtest_filter='*Thread*'
    build/tsan/tests/projections-tests --gtest_brief=1 --gtest_filter='*Threads*'
    build/tsan/tests/tools-tests --gtest_brief=1 --gtest_filter='*Jobs*:MessageWatch.*'
}

demonstration() {
    say "The demonstration: ./run.sh converts every city there and back"
    ./run.sh >build/run.txt
    tail -n 1 build/run.txt
    cities=$(grep -cv '^#' resources/samples/cities.csv)
    # --precision full leaves rounding and the stop test of the inverse, 0.43 micrometres.
    tail -n 1 build/run.txt | awk -v cities="$cities" '
        { exit !($5 == cities && $9 ~ /^[0-9.e-]+$/ && $9 < 0.001) }' ||
        { echo "not every city came back within a micrometre"; exit 1; }
}

lint() {
    say "Lint: clang-tidy, CMake preset \"tidy\" in build/tidy"
    cmake --preset tidy
    cmake --build --preset tidy
}

documentation() {
    say "Documentation: Doxygen without warnings, man page without faults"
    mkdir -p build/doc
    doxygen docs/Doxyfile
    mandoc -Tlint -Wwarning tools/tqproj/tqproj.1
}

scripts/install-dependencies.sh test
if [ "${1-}" = quick ]; then
    tests dev
elif [ "${1-}" = threads ]; then
    threads
elif [ "${1-}" = portable ]; then
    tests portable
else
    format
    includes
    tests dev
    headers
    documentation
    demonstration
    lint
    tests asan
fi
say "All passed"
