#!/usr/bin/env bash
# The test command: installs what is missing, starts PostgreSQL and MariaDB
# in a temporary folder, then configures, builds and tests every preset
# (native, asan, win64, win32, and fuzz once it has targets). Servers, Wine
# and the X server it started are stopped on every way out. Exit status 0
# only when every step of every preset passed.
#
#   scripts/test.sh [PRESET...]     default: all presets, in that order
#
# KODBC_KEEP_TEST_DIR=1 keeps the temporary folder (logs, databases).
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"

presets=("$@")
if ((${#presets[@]} == 0)); then
  presets=(native asan win64 win32)
  if [[ -f fuzz/CMakeLists.txt ]] && compgen -G 'fuzz/*.cpp' >/dev/null; then
    presets+=(fuzz)
  fi
fi

bash scripts/setup.sh

work=$(mktemp -d /tmp/kodbc-test.XXXXXX)
chmod 755 "$work"  # the PostgreSQL cluster inside belongs to another account
xvfb_pid=

cleanup() {
  local status=$?
  set +e
  if [[ -n ${WINEPREFIX:-} && -d $WINEPREFIX ]]; then
    local wineserver
    for wineserver in wineserver /usr/lib/wine/wineserver64; do
      if command -v "$wineserver" >/dev/null; then
        "$wineserver" -k 2>/dev/null
        break
      fi
    done
  fi
  [[ -n $xvfb_pid ]] && kill "$xvfb_pid" 2>/dev/null && wait "$xvfb_pid" 2>/dev/null
  bash scripts/servers.sh stop "$work/servers"
  if [[ ${KODBC_KEEP_TEST_DIR:-0} == 1 ]]; then
    echo "test: kept $work"
  else
    rm -rf "$work"
  fi
  exit "$status"
}
trap cleanup EXIT
trap 'exit 130' INT
trap 'exit 143' TERM

exports=$(bash scripts/servers.sh start "$work/servers")
eval "$exports"
export ODBCSYSINI ODBCINI KODBC_TEST_DSNS
export KODBC_REGISTRY_DIR=$work/registry
mkdir -p "$KODBC_REGISTRY_DIR"

# Drivers stay loaded until exit so that leak reports of the sanitizer
# build can name them (and the suppressions match).
export LSAN_OPTIONS=suppressions=$root/scripts/lsan.supp:print_suppressions=0
# Drivers are built without frame pointers: the slow unwinder gives leak
# reports whole stacks, which the suppressions need to recognise a driver.
export ASAN_OPTIONS=fast_unwind_on_malloc=0

# The Windows tests run under 64-bit Wine in one prefix per run, on an X
# server of their own.
if [[ " ${presets[*]} " == *" win64 "* ]]; then
  export WINEPREFIX=$work/wine WINEDEBUG=-all WINEDLLOVERRIDES='mscoree,mshtml='
  Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp 3>"$work/xvfb.display" >"$work/xvfb.log" 2>&1 &
  xvfb_pid=$!
  for _ in $(seq 1 100); do
    [[ -s $work/xvfb.display ]] && break
    kill -0 "$xvfb_pid" 2>/dev/null || break
    sleep 0.2
  done
  [[ -s $work/xvfb.display ]] || { echo "test: Xvfb did not start" >&2; cat "$work/xvfb.log" >&2; exit 1; }
  export DISPLAY=:$(head -n1 "$work/xvfb.display")
fi

summary=()
failed=0
for preset in "${presets[@]}"; do
  started=$SECONDS
  result=passed
  echo "=== $preset: configure"
  if ! cmake --preset "$preset" </dev/null; then
    result="FAILED at configure"
  else
    echo "=== $preset: build"
    if ! cmake --build --preset "$preset" -j2 </dev/null; then
      result="FAILED at build"
    else
      echo "=== $preset: test"
      if ! ctest --preset "$preset" --timeout 600 </dev/null; then
        result="FAILED at test"
      fi
    fi
  fi
  [[ $result == passed ]] || failed=1
  summary+=("$(printf '%-7s %-20s %4ds' "$preset" "$result" $((SECONDS - started)))")
done

echo
echo "=== summary"
printf 'test: %s\n' "${summary[@]}"
exit "$failed"
