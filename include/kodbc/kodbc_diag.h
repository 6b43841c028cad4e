/*
** kodbc — ODBC diagnostics: display and tolerance tests.
**
** The library keeps no error state: "the last error" is always diagnostic
** record 1 that the driver still holds on the handle, so show or test it
** before making another call on that handle.
*/
#ifndef KODBC_DIAG_H
#define KODBC_DIAG_H

#include "kodbc_types.h"

#ifdef __cplusplus
extern "C" {
#endif

/*
** The display functions show diagnostic record 1 of the handle in the
** diagnostics dialog "Fehler beim ODBC-Datenbankzugriff" (on Linux: handed
** to the message handler with the same fields). The message text is split
** into vendor, component, data source and description at its brackets.
** SQLSTATE 01S02 offers the hint message 1606.
**
** A retcode of SQL_SUCCESS_WITH_INFO is shown only when bit 2 of the dump
** state is set; otherwise nothing is shown and 1 is returned.
** Returns 1 when the dialog was closed with "Schließen", when there was
** nothing to show (no diagnostic record, null handle) or a warning was
** suppressed; 2 when the dialog was cancelled. Both mean: the error has been
** shown.
*/
KODBC_API int KODBC_CALL Kodbc_DisplayErrorHenv(SQLHENV henv);
KODBC_API int KODBC_CALL Kodbc_DisplayErrorHdbc(SQLHDBC hdbc);
/* statement may be null: "SQL-Befehl" stays empty. */
KODBC_API int KODBC_CALL Kodbc_DisplayErrorHstmt(SQLHSTMT hstmt, const char *statement);
KODBC_API int KODBC_CALL Kodbc_DisplayErrorOrInfoHstmt(SQLHSTMT hstmt, short retcode, const char *statement);
/* The same three displays; owner is accepted and not used. */
KODBC_API int KODBC_CALL OdbcEh_HandleErrorHenv(HWND owner, SQLHENV henv);
KODBC_API int KODBC_CALL OdbcEh_HandleErrorHdbc(HWND owner, SQLHDBC hdbc);
KODBC_API int KODBC_CALL OdbcEh_HandleErrorHstmt(HWND owner, SQLHSTMT hstmt, const char *statement);

/*
** Kodbc_GetErrorCode: copies the SQLSTATE of diagnostic record 1 of the
** handle (handleType 1 environment, 2 connection, 3 statement) into buffer,
** cut to size-1 characters; an empty text when there is no record.
** Nothing is written when buffer is null or size below 1.
** Returns the number of characters copied.
*/
KODBC_API int KODBC_CALL Kodbc_GetErrorCode(short handleType, SQLHANDLE handle, char *buffer, int size);

/*
** Kodbc_IsLastErrorInList: whether the current diagnostic is tolerated by a
** comma-separated SQLSTATE list. First rule that applies decides:
** null, empty or blank list (characters 1..32 only) 0; the list "*" 1;
** retcode SQL_SUCCESS_WITH_INFO and the list contains "NOINFO"
** (case-sensitive) 1; otherwise 1 when a token, kept with its blanks and cut
** to 99 characters, equals the SQLSTATE of record 1 ignoring case, else 0.
*/
KODBC_API int KODBC_CALL Kodbc_IsLastErrorInList(short handleType, SQLHANDLE handle, const char *list, short retcode);

#ifdef __cplusplus
}
#endif

#endif /* KODBC_DIAG_H */
