// Driver queries shared across the library.
#pragma once

#include <kodbc/kodbc_types.h>

namespace kodbc {

// The KODBC_DBTYPE_* code for a DBMS name (null: other).
int DatabaseTypeFromName(const char *dbmsName);

// SQLGetInfo for a text item into buffer (cut to size-1). False when hdbc is
// 0 or the driver refuses; buffer then holds an empty text.
bool GetInfoText(SQLHDBC hdbc, SQLUSMALLINT item, char *buffer, int size);

// MySQL and MariaDB (in their default mode) read a backslash inside a
// string literal as an escape of their own; literals for them double it.
bool LiteralsTakeBackslashEscapes(SQLHDBC hdbc);

} // namespace kodbc
