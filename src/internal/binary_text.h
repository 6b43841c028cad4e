// Binary column values in their character form, the same on every driver:
// drivers asked for such a value as text answer with raw bytes, hex digits
// of either case or a literal of their own.
#pragma once

#include <kodbc/kodbc_types.h>

namespace kodbc {

// Whether a column of this SQL type holds bytes rather than text.
bool IsBinarySqlType(SQLLEN sqlType) noexcept;

// SQLGetData as SQL_C_BINARY into `text` (`size` bytes), written back as two
// uppercase hex digits a byte and terminated; at most (size - 1) / 2 bytes
// are kept. indicator gives SQL_NULL_DATA or the number of digits.
SQLRETURN ReadBinaryAsHex(SQLHSTMT handle, SQLUSMALLINT column, char *text, SQLLEN size, SQLLEN *indicator) noexcept;

} // namespace kodbc
