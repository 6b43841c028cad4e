// Reading one column of the current row as text, for the export writer and
// the import's table source alike.
#pragma once

#include <kodbc/kodbc_types.h>

namespace kodbc::transfer {

// SQLGetData as SQL_C_CHAR into `text` (`size` bytes): the same text, NULL
// indicator and truncation as one call with the whole size, but a short
// value costs only a short read. A binary column (sqlType) is read as bytes
// and written as two uppercase hex digits a byte, the ODBC character form
// of binary data, whatever form the driver would give as text; at most
// (size - 1) / 2 bytes are kept.
SQLRETURN ReadTextValue(SQLHSTMT handle, SQLUSMALLINT column, char *text, SQLLEN size, SQLLEN *indicator,
                        SQLLEN sqlType = 0) noexcept;

} // namespace kodbc::transfer
