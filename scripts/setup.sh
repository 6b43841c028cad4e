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
  imagemagick x11-apps
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

if ((${#missing[@]} == 0)); then
  echo "setup: all ${#packages[@]} packages present"
  exit 0
fi

sudo=()
if [[ $(id -u) -ne 0 ]]; then
  command -v sudo >/dev/null || { echo "setup: need root or sudo to install: ${missing[*]}" >&2; exit 1; }
  sudo=(sudo)
fi

echo "setup: installing ${missing[*]}"
"${sudo[@]}" apt-get update
# Server packages try to start their default instance; the tests do not use it.
"${sudo[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y "${missing[@]}"
