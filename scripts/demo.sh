#!/usr/bin/env bash
# The demo: installs what is missing, builds the command-line tool and runs
# `kodbc demo`, which creates (when missing) a SQLite database with German
# sample data and a user data source for it, then shows driver information,
# the tables and a query. Extra arguments go to `kodbc demo`.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"

bash scripts/setup.sh
cmake --preset native </dev/null
cmake --build --preset native -j2 --target kodbc_cli </dev/null
exec build/native/apps/kodbc/kodbc demo "$@"
