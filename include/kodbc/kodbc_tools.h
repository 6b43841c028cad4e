/*
** kodbc — the interactive tools' services for callers without windows:
** what the driver information dialog shows.
*/
#ifndef KODBC_TOOLS_H
#define KODBC_TOOLS_H

#include "kodbc_types.h"

#ifdef __cplusplus
extern "C" {
#endif

/*
** Kodbc_GetDriverInformation: the seven fields of the driver information
** dialog as lines "label TAB value", joined by line feeds (no line feed
** after the last), in the dialog's order: "ODBC-Datenquelle",
** "Datenbank-System", "Datenbank-Version", "ODBC-Version", "Treiberversion",
** "Datenbank" and "Delimiter für Namen", whose value is the line
** "Delimiter: %s  (Dezimal %d   Hex %02x)" of the identifier quote text.
** Every field is queried anew; a query the driver refuses gives an empty
** value. Cut to size-1 and terminated. Returns 1 done, 2 for a null
** connection, a null buffer or a size below 1 (nothing queried).
*/
KODBC_API int KODBC_CALL Kodbc_GetDriverInformation(SQLHDBC hdbc, char *out, int size);

#ifdef __cplusplus
}
#endif

#endif /* KODBC_TOOLS_H */
