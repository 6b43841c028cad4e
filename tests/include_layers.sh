#!/bin/sh
# The layers call downward only: a subsystem may include the internal
# headers of its own layer and the ones below, never those above.
#   include_layers.sh SRC_DIR
set -u
src=$1
rank() {
    case $1 in
    internal) echo 0 ;; frame) echo 1 ;; sqltext) echo 2 ;; catalog) echo 3 ;; select) echo 4 ;;
    wizards|tabledesign|transfer|tools) echo 5 ;; *) echo 9 ;;
    esac
}
failures=0
for file in $(find "$src" -name '*.cpp' -o -name '*.h'); do
    from=$(basename "$(dirname "$file")")
    [ "$(rank "$from")" = 9 ] && continue
    for to in $(sed -n 's|^#include "\([a-z]*\)/.*"|\1|p' "$file"); do
        if [ "$(rank "$to")" -gt "$(rank "$from")" ]; then
            echo "FAIL: ${file#"$src"/} includes from $to/, a layer above $from/"
            failures=$((failures + 1))
        fi
    done
done
[ "$failures" -eq 0 ] && echo "include layers: all downward"
[ "$failures" -eq 0 ]
