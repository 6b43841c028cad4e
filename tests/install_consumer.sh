#!/bin/sh
# Installs the build into a fresh prefix and builds a C program against it
# through pkg-config alone: the installed headers must stand on their own
# and the .pc file must lead to them wherever the prefix lies.
set -eu
build=$1
prefix=$(mktemp -d /tmp/kodbc-install.XXXXXX)
trap 'rm -rf "$prefix"' EXIT
cmake --install "$build" --prefix "$prefix" >/dev/null
pcdir=$(dirname "$(find "$prefix" -name kodbc.pc)")
cat >"$prefix/consumer.c" <<'C'
#include <kodbc/kodbc.h>
#include <stdio.h>
#include <string.h>
int main(void) {
    char version[16];
    DataSourceRecord record;
    Kodbc_GetVersion(version, sizeof version);
    printf("%s %u\n", version, (unsigned)sizeof record);
    return strcmp(version, "5.2.0.0") != 0 || sizeof record != 220;
}
C
cc -std=c11 -Wall -Werror "$prefix/consumer.c" $(PKG_CONFIG_PATH=$pcdir pkg-config --cflags --libs kodbc) -o "$prefix/consumer"
LD_LIBRARY_PATH=$(PKG_CONFIG_PATH=$pcdir pkg-config --variable=libdir kodbc) "$prefix/consumer"
