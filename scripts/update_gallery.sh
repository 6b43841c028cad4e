#!/bin/sh
# Copies the screenshots of a Windows test run into docs/gallery and checks
# the gallery's index against its pictures.
#   update_gallery.sh BUILD_DIR
#
# BUILD_DIR is a win64 build whose test `wine_tests` has run: the robot's
# pictures are in BUILD_DIR/tests/win/screenshots/*.png. Not copied: a
# "watchdog" picture (a window a test left open) and the numbered
# "messagebox-N" pictures, whose numbers change with the tests that run
# (photograph a message box under a name of its own to show it here).
# Afterwards every
# picture in docs/gallery that docs/gallery/README.md does not show, and
# every picture the README shows that is not there, is listed.
# Exit status: 0 done and index complete, 1 wrong usage or no screenshots,
# 2 copied but the index and the pictures disagree.
set -eu

if [ $# -ne 1 ]; then
    echo "usage: $0 BUILD_DIR" >&2
    exit 1
fi
shots="$1/tests/win/screenshots"
root=$(cd "$(dirname "$0")/.." && pwd)
gallery="$root/docs/gallery"
index="$gallery/README.md"

set -- "$shots"/*.png
if [ ! -e "$1" ]; then
    echo "no screenshots in $shots (run the win64 tests first)" >&2
    exit 1
fi

mkdir -p "$gallery"
copied=0
for png in "$@"; do
    name=$(basename "$png")
    case "$name" in
    watchdog*) echo "skipped $name: a window was left open in that run" >&2; continue ;;
    messagebox-[0-9]*) continue ;;
    esac
    cp "$png" "$gallery/$name"
    copied=$((copied + 1))
done
echo "copied $copied pictures into docs/gallery"

status=0
shown=$(grep -o '](\([^)]*\.png\))' "$index" 2>/dev/null | sed 's/^](//; s/)$//' | sort -u || true)
for png in "$gallery"/*.png; do
    [ -e "$png" ] || continue
    name=$(basename "$png")
    if ! printf '%s\n' "$shown" | grep -qx "$name"; then
        echo "not shown in docs/gallery/README.md: $name"
        status=2
    fi
done
for name in $shown; do
    if [ ! -e "$gallery/$name" ]; then
        echo "shown in docs/gallery/README.md but missing: $name"
        status=2
    fi
done
exit $status
