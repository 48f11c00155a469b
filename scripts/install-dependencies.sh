#!/bin/sh
# Installs the packages that the project needs on Debian 12 and that are missing, with apt-get.
#
#   scripts/install-dependencies.sh build   what it takes to build the libraries and the command
#   scripts/install-dependencies.sh test    that, and what the tests, the benchmarks and the checks need
set -eu

build_packages="g++ cmake ninja-build libpugixml-dev libutfcpp-dev libcli11-dev nlohmann-json3-dev \
libproj-dev proj-data libcairo2-dev libsleef-dev pkg-config"
test_packages="proj-bin libgtest-dev libgmock-dev libbenchmark-dev libgeographiclib-dev libxsimd-dev \
clang-format clang-tidy doxygen mandoc locales"

case "${1-}" in
    build) packages=$build_packages ;;
    test) packages="$build_packages $test_packages" ;;
    *)
        echo "usage: $0 build|test" >&2
        exit 2
        ;;
esac

missing=""
for package in $packages; do
    if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q '^install ok installed$'; then
        missing="$missing $package"
    fi
done
[ -n "$missing" ] || exit 0

echo "Installing:$missing"
as_root=""
[ "$(id -u)" -eq 0 ] || as_root="sudo"
apt_get() { $as_root env DEBIAN_FRONTEND=noninteractive apt-get -q "$@" >/dev/null; }
apt_get update
# shellcheck disable=SC2086  # the list is words to be split
apt_get install -y --no-install-recommends $missing
