#!/usr/bin/env bash
# Installs the Debian packages the build and the tests need, when missing.
# Writes no ODBC configuration: the test command makes its own.
set -euo pipefail

packages=(
  # build
  cmake ninja-build g++ clang python3 pkg-config libcli11-dev
  googletest libgtest-dev libbenchmark-dev libclang-rt-14-dev
  # Windows builds and their tests under Wine (64-bit only: no i386 here)
  g++-mingw-w64-i686 g++-mingw-w64-x86-64 mingw-w64-tools wine64 xvfb xauth
  imagemagick x11-apps locales
  # ODBC: driver manager, drivers, and the servers behind them
  unixodbc unixodbc-dev libsqliteodbc odbc-postgresql odbc-mariadb
  postgresql mariadb-server sqlite3
)

missing=()
for package in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed'; then
    missing+=("$package")
  fi
done

# The Windows tests run under a German locale, so that Wine's own dialogs
# and message-box buttons speak the language of the library's; the Latin-1
# one lets the native tests see the messages converted for an 8-bit terminal.
german_locale() {
  if ! locale -a 2>/dev/null | grep -qix 'de_DE.utf8'; then
    echo "setup: generating the locale de_DE.UTF-8"
    "${sudo[@]}" localedef -i de_DE -f UTF-8 de_DE.UTF-8
  fi
  if ! locale -a 2>/dev/null | grep -qix 'de_DE.iso88591'; then
    echo "setup: generating the locale de_DE.ISO-8859-1"
    "${sudo[@]}" localedef -i de_DE -f ISO-8859-1 de_DE.ISO-8859-1
  fi
}

sudo=()
if [[ $(id -u) -ne 0 ]] && command -v sudo >/dev/null; then
  sudo=(sudo)
fi

if ((${#missing[@]} == 0)); then
  echo "setup: all ${#packages[@]} packages present"
  german_locale
  exit 0
fi

if [[ $(id -u) -ne 0 && ${#sudo[@]} -eq 0 ]]; then
  echo "setup: need root or sudo to install: ${missing[*]}" >&2
  exit 1
fi

echo "setup: installing ${missing[*]}"
"${sudo[@]}" apt-get update
# Server packages try to start their default instance; the tests do not use it.
"${sudo[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y "${missing[@]}"
german_locale
