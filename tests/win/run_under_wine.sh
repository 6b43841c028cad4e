#!/bin/sh
# Runs the Windows test program under 64-bit Wine on a private X server.
#   run_under_wine.sh PROGRAM WORKDIR [test arguments...]
#
# Wine prefix and display: when the caller provides both (WINEPREFIX and
# DISPLAY, as the test command does) they are used; otherwise a fresh prefix
# is made in WORKDIR for this run and xvfb-run supplies the display.
# ODBCSYSINI/ODBCINI from the environment are passed on: Wine's odbc32 hands
# every call to the host's driver manager, which reads them from the Unix
# environment. Without them the private SQLite-only configuration in
# $KODBC_WIN_ODBC_DIR is used. Screenshots land in WORKDIR/screenshots and
# are converted to PNG at the end. Every run ends with wineserver -k.
#
# Wine runs in the German locale (scripts/setup.sh generates it), so that
# its message boxes and common dialogs read "Ja", "Nein", "Abbrechen" like
# the library's own texts; only the Wine process gets it, the test program
# compares nothing with the locale's formats. The title-bar and scroll-bar
# glyphs come from the font marlett.ttf, which Wine ships but does not find
# where the packages put it: it is copied into the prefix's font folder.
set -u
program=$1
work=$2
shift 2

wine=${KODBC_WINE:-/usr/lib/wine/wine64}
wineserver=${KODBC_WINESERVER:-/usr/lib/wine/wineserver64}
[ -x "$wineserver" ] || wineserver=/usr/lib/wine/wineserver

if [ -n "${WINEPREFIX:-}" ] && [ -n "${DISPLAY:-}" ]; then
    own_prefix=0
else
    own_prefix=1
    export WINEPREFIX="$work/wineprefix"
    rm -rf "$WINEPREFIX"
fi
export WINEDEBUG=${WINEDEBUG:--all}
# No Mono or Gecko installer prompts while the prefix is made.
export WINEDLLOVERRIDES=${WINEDLLOVERRIDES:-mscoree,mshtml=}
if [ -z "${ODBCSYSINI:-}" ] && [ -n "${KODBC_WIN_ODBC_DIR:-}" ]; then
    export ODBCSYSINI="$KODBC_WIN_ODBC_DIR"
    export ODBCINI="$KODBC_WIN_ODBC_DIR/odbc.ini"
fi
if locale -a 2>/dev/null | grep -qix 'de_DE.utf8'; then
    wine_locale=de_DE.UTF-8
else
    echo "run_under_wine: no de_DE.UTF-8 locale; Wine's own texts stay English" >&2
    wine_locale=${LC_ALL:-${LANG:-C.UTF-8}}
fi
marlett=
for font in /usr/share/wine/fonts/marlett.ttf /usr/lib/wine/fonts/marlett.ttf; do
    [ -e "$font" ] && { marlett=$font; break; }
done
shots="$work/screenshots"
# Wine's drive Z: is the Unix root.
export KODBC_SCREENSHOT_DIR="Z:$shots"
rm -rf "$shots"
mkdir -p "$shots"

cleanup() {
    "$wineserver" -k 2>/dev/null
}
trap cleanup EXIT INT TERM

# The part that needs the display.
export wine wineserver program marlett wine_locale
session='
    export LANG="$wine_locale" LC_ALL="$wine_locale"
    "$wine" wineboot -i >/dev/null 2>&1
    fonts="$WINEPREFIX/drive_c/windows/Fonts"
    if [ -n "$marlett" ] && [ -d "$fonts" ] && [ ! -e "$fonts/marlett.ttf" ]; then
        cp "$marlett" "$fonts/" && "$wineserver" -k 2>/dev/null
    fi
    # No window manager here: Wine draws the title bars itself.
    "$wine" reg add "HKCU\\Software\\Wine\\X11 Driver" /v Decorated /t REG_SZ /d N /f >/dev/null 2>&1
    "$wine" "$program" "$@"
    rc=$?
    "$wineserver" -k 2>/dev/null
    exit $rc
'
if [ "$own_prefix" = 1 ]; then
    xvfb-run -a -s "-screen 0 1280x1024x24" sh -c "$session" sh "$@"
else
    sh -c "$session" sh "$@"
fi
rc=$?

if command -v convert >/dev/null 2>&1; then
    for bmp in "$shots"/*.bmp; do
        [ -e "$bmp" ] || continue
        convert "$bmp" "${bmp%.bmp}.png" && rm -f "$bmp"
    done
fi
exit $rc
