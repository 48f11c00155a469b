#!/bin/sh
# Runs every command of the README's console blocks and compares what it prints with what the README says.
#
#   readme-examples.sh <root of the project> <folder of the built command>
set -eu
cd "$1"
PATH="$2:$PATH"

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

awk '/^```console$/ { inside = 1; next } /^```$/ { inside = 0 } inside' README.md >"$work/said"
[ -s "$work/said" ] || {
    echo "README.md holds no console block"
    exit 1
}
mkdir "$work/run" # the commands may write files
ln -s "$PWD/resources" "$work/run/resources"
cd "$work/run"
while IFS= read -r line; do
    case $line in
        '$ '*)
            printf '%s\n' "$line"
            sh -c "${line#\$ }" 2>&1 || true
            ;;
    esac
done <"$work/said" >"$work/printed"
diff -u "$work/said" "$work/printed"
