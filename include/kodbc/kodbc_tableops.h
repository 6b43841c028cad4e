/*
** kodbc — operations on whole tables and single fields: drop, rename by
** copying, a free table name, record counts, sum and maximum, the rows a
** SELECT statement would return, field existence and the first
** auto-increment field.
**
** Table and field names are plain (unquoted); the statement formatter
** (Kodbc_SprintfSqlStatement) quotes them for the connected database.
** Every function allocates its own statement and frees it before
** returning. Every statement it is about to execute is first offered to
** the SQL dump (Korvel_DumpSqlStatement); a refusal is silent and gives
** the failure value. ODBC errors are shown at the point of failure, with
** the statement text where one was built, so the failure values below mean
** "the user has been told" (or the dump refused).
**
** "Blank" means null, empty or made only of white space (codes 1 to 32).
*/
#ifndef KODBC_TABLEOPS_H
#define KODBC_TABLEOPS_H

#include "kodbc_types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Flags of Kodbc_DeleteTable and Kodbc_DeleteTableExtended. */
#define KODBC_DROP_NO_QUESTION   0x1  /* drop without asking the user */
#define KODBC_DROP_MISSING_OK    0x2  /* "no such table" (S0002, 42S02) from the data source counts as dropped */

/* Flag of Kodbc_RenameTable. */
#define KODBC_RENAME_NOTICE      0x1  /* show the temporary notice (string 427) while the copy runs */

/* Kodbc_GetRowSetCount's answer for a statement joined by UNION. */
#define KODBC_ROWSET_COUNT_UNION 9999999L

/*
** Kodbc_DeleteTableExtended: drops schema.table (schema may be null: the
** schema part and its point are left out).
** Unless flags has KODBC_DROP_NO_QUESTION, the user is asked (message 1702,
** "?YN … Wollen Sie die Tabelle '%s' wirklich löschen?") with the table
** name; any answer but yes gives 2 and nothing is executed.
** "DROP TABLE %t%.%t" (at most 499 characters) is executed directly. With
** KODBC_DROP_MISSING_OK a failure whose SQLSTATE is S0002 or 42S02 (any
** case) gives 1 and shows nothing; any other failure is shown.
** Returns 1 dropped; 2 for hdbc 0, a blank table, a "no", the dump's
** refusal or an error.
** Kodbc_DeleteTable: the same without a schema.
*/
KODBC_API int KODBC_CALL Kodbc_DeleteTableExtended(SQLHDBC hdbc, const char *schema, const char *table, int flags);
KODBC_API int KODBC_CALL Kodbc_DeleteTable(SQLHDBC hdbc, const char *table, int flags);

/*
** Kodbc_RenameTable: renames by copying: "SELECT * INTO %t FROM %t" (new,
** then old name; at most 299 characters) creates the copy, then the old
** table is dropped as by Kodbc_DeleteTable with KODBC_DROP_NO_QUESTION.
** Keys, indexes and auto-increment properties are what the data source's
** SELECT … INTO gives the copy. A data source without SELECT … INTO fails
** at the copy: the error is shown and the old table is left as it was.
** flags: KODBC_RENAME_NOTICE.
** Returns the drop's result (1 renamed) after a successful copy; 2 for
** hdbc 0, a blank name, a new name that any object already bears (nothing
** is shown then), the dump's refusal, or a failed copy (shown).
*/
KODBC_API int KODBC_CALL Kodbc_RenameTable(SQLHDBC hdbc, const char *oldName, const char *newName, int flags);

/*
** Kodbc_CreateUniqueTableName: makes name (in and out, size bytes with the
** terminator) the name of no object of any type. A non-empty name that is
** free stays. Otherwise the pattern name "_%d" (at most 99 characters) is
** formed, so the name is part of the number format ("%%" in it stands for
** one "%"), and name_1, name_2, … (each cut to size-1) are tried in turn;
** the first free one is written back. An empty name becomes "_1". A
** candidate in which the number no longer appears (a cut pattern or a small
** buffer) is taken as it is, and a failed catalogue query (shown) ends the
** search leaving name unchanged. Nothing happens for a null name, size
** below 1 or hdbc 0.
*/
KODBC_API void KODBC_CALL Kodbc_CreateUniqueTableName(SQLHDBC hdbc, char *name, int size);

/*
** Kodbc_GetRecordCountExt: "SELECT Count(*) FROM %t", followed by " WHERE "
** and condition (unchanged) when condition is not null and not empty,
** built in 30000 bytes. The first row's first column is read as text (at
** most 98 characters) and converted to an integer. `reserved` is ignored.
** Returns the count; 0 also on failure (hdbc 0, blank table, the dump's
** refusal, an error shown).
** Kodbc_GetRecordCount: the same without a condition.
*/
KODBC_API long KODBC_CALL Kodbc_GetRecordCountExt(SQLHDBC hdbc, const char *table, const char *condition,
                                                  int reserved);
KODBC_API long KODBC_CALL Kodbc_GetRecordCount(SQLHDBC hdbc, const char *table, int reserved);

/*
** Kodbc_AddFields, Kodbc_GetMaximum: "SELECT Sum(%f) FROM %t" and
** "SELECT max(%f) FROM %t" (field, then table) with the optional condition
** as for the count; the first value is read as text and converted to a
** double into *result (a NULL sum or maximum, as of an empty table, gives
** 0). *result is set to 0 first.
** Returns 0 done; -1 for a null result, hdbc 0, a blank table or field,
** the dump's refusal or an error (shown).
*/
KODBC_API int KODBC_CALL Kodbc_AddFields(SQLHDBC hdbc, const char *table, const char *field,
                                         const char *condition, double *result);
KODBC_API int KODBC_CALL Kodbc_GetMaximum(SQLHDBC hdbc, const char *table, const char *field,
                                          const char *condition, double *result);

/*
** Kodbc_GetRowSetCount: the number of rows statement would return. When
** the first "UNION" in it (upper case) has white space on both sides, the
** answer is KODBC_ROWSET_COUNT_UNION at once, without asking the data
** source; a UNION joined to other characters (xUNIONx) is no union. Else
** a copy (at most 29999 characters) gets "Count(*)" as its column list and
** loses its ORDER BY clause (the SELECT scanner's clause rewriting), and
** the first column of its row is read as an integer.
** Returns the count; 0 for a blank statement, hdbc 0, a failed rewriting,
** the dump's refusal or an error (shown).
*/
KODBC_API long KODBC_CALL Kodbc_GetRowSetCount(SQLHDBC hdbc, const char *statement);

/*
** Kodbc_DoesFieldExist: whether table (no catalogue, no schema) has a
** column named field, compared without case (names up to 98 characters).
** Returns 1 exists; 0 not, blank names, hdbc 0 or an ODBC error (shown);
** 2 when no statement could be allocated.
*/
KODBC_API int KODBC_CALL Kodbc_DoesFieldExist(SQLHDBC hdbc, const char *table, const char *field);

/*
** Kodbc_FindFirstAutoIncrementField: the name of the first column of table
** that the driver describes as auto-increment, into out (cut to
** outSize-1). out is emptied first (when out is given and outSize at least
** 1). "SELECT * FROM %t" is only prepared; no row is read and nothing is
** executed.
** Returns 1 found; 2 when out is null, outSize below 1, the table is no
** object of the data source, no column is auto-increment (nothing shown),
** or an ODBC error (shown with the statement).
*/
KODBC_API int KODBC_CALL Kodbc_FindFirstAutoIncrementField(SQLHDBC hdbc, const char *table, char *out,
                                                           int outSize);

#ifdef __cplusplus
}
#endif

#endif /* KODBC_TABLEOPS_H */
