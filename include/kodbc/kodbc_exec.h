/*
** kodbc — running statements and carrying their results.
**
** Every function here runs on the caller's connection, allocates its own
** statement handle and frees it before returning. A statement is first
** offered to the SQL dump (Korvel_DumpSqlStatement); when the dump does not
** let it run, the function fails silently. ODBC errors are shown in the
** diagnostics dialog unless their SQLSTATE is in the caller's tolerated list
** (comma-separated SQLSTATEs, "*" for all, "NOINFO" for warnings; see
** Kodbc_IsLastErrorInList). `owner` is handed on to error reporting and
** otherwise unused.
*/
#ifndef KODBC_EXEC_H
#define KODBC_EXEC_H

#include "kodbc_types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Result-file flags of OdbcEh_SelectRowSetToFile and _ToBuffer. */
#define KODBC_ROWSET_QUOTE_TEXT      0x01 /* text (and, with 0x10, dates) in ' with every ' doubled */
#define KODBC_ROWSET_HEADER          0x02 /* first line: the column names */
#define KODBC_ROWSET_NUMERIC_ZERO    0x08 /* NULL or blank numeric value written as 0 */
#define KODBC_ROWSET_COMPACT_DATES   0x10 /* dates as yyyymmddhhmmss */
#define KODBC_ROWSET_ENCODE_TEXT     0x20 /* text through the base library's string encoding */
#define KODBC_ROWSET_PROGRESS        0x40 /* progress indicator above 100 expected rows */
#define KODBC_ROWSET_CSV             0x100 /* names and values as comma-separated values: a value holding the
                                             field separator, a quote, CR or LF, or with a blank at either
                                             end, in " with every " doubled (instead of 0x01) */
#define KODBC_ROWSET_JSON            0x200 /* a JSON array of one object per row, by column name: NULL as
                                             null, numbers as numbers, everything else as strings; the
                                             separators and the other flags are not used */

/* Item-data flags of OdbcEh_SelectRowSetToListView and _ToBox (Windows). */
#define KODBC_ROWSET_ITEMDATA_NUMBER 0x04  /* list view: first column's number is the item data */
#define KODBC_ROWSET_ITEMDATA_TEXT   0x80  /* a copy of the text on the process heap is the item data */

/* Results of the table and column tests. */
#define KODBC_EXISTS                 1
#define KODBC_DOES_NOT_EXIST         0
#define KODBC_NO_STATEMENT           2

/*
** OdbcEh_PerformSqlStatement: executes sql directly.
** Returns 1 when it ran (SQL_SUCCESS_WITH_INFO included; the warning is
** shown only when the dump state asks for warnings and the list does not
** hold "NOINFO") or failed with a tolerated SQLSTATE; 2 when hdbc is null,
** sql is null or blank, no statement could be allocated, the dump refused,
** or it failed with an error that has been shown.
*/
KODBC_API int KODBC_CALL OdbcEh_PerformSqlStatement(HWND owner, SQLHDBC hdbc, const char *sql,
    const char *tolerated);

/*
** OdbcEh_CountRows: executes sql and counts the rows fetched with
** SQL_SUCCESS. No SQLSTATE is tolerated. Returns the count; 0 on any
** failure (null hdbc, blank sql, refused by the dump, an error shown).
*/
KODBC_API long KODBC_CALL OdbcEh_CountRows(HWND owner, SQLHDBC hdbc, const char *sql);

/*
** OdbcEh_SelectRowSetToFile: executes sql and writes its rows to fileName
** (created or truncated, binary, locked against other writers).
** Fields are joined by fieldSeparator (null or empty: a tab), lines by
** recordSeparator (null or empty: a line feed); the separator stands
** between lines, never after the last. Each value is read as text, at most
** 4998 characters. flags: KODBC_ROWSET_* above.
** rowCount may be null; on entry it holds the rows the caller expects (for
** the progress indicator), it is set to 0 at once and on success to the
** number of lines written, the header line included.
** A cancelled progress indicator ends the transfer as a success with the
** lines written so far.
** Returns 1 written; 2 when fileName, sql or hdbc is missing, the file
** cannot be created (file error report), the dump refused, the statement
** failed (the dialog unless tolerated; a tolerated error still gives 2 and
** leaves an empty file), reading a value failed, or writing the file failed
** (message 1650: the file is then incomplete).
*/
KODBC_API int KODBC_CALL OdbcEh_SelectRowSetToFile(HWND owner, SQLHDBC hdbc, const char *sql,
    const char *fieldSeparator, const char *recordSeparator, const char *fileName, long *rowCount,
    const char *tolerated, unsigned flags);

/*
** OdbcEh_SelectRowSetToFileWithNull: OdbcEh_SelectRowSetToFile, a NULL
** value written as nullText (null: as there), so that NULL and the empty
** text stay apart; with KODBC_ROWSET_CSV a value equal to nullText is
** quoted. Returns as there.
*/
KODBC_API int KODBC_CALL OdbcEh_SelectRowSetToFileWithNull(HWND owner, SQLHDBC hdbc, const char *sql,
    const char *fieldSeparator, const char *recordSeparator, const char *nullText, const char *fileName,
    long *rowCount, const char *tolerated, unsigned flags);

/*
** OdbcEh_SelectRowSetToBuffer: as OdbcEh_SelectRowSetToFile, through a
** temporary file, into buffer (cut to size-1 bytes and terminated).
** Returns 1 filled; 2 when buffer is null or size below 3 (nothing is
** executed), or when the transfer or reading the temporary file failed
** (the buffer then holds an empty text).
*/
KODBC_API int KODBC_CALL OdbcEh_SelectRowSetToBuffer(HWND owner, SQLHDBC hdbc, const char *sql,
    const char *fieldSeparator, const char *recordSeparator, char *buffer, int size,
    const char *tolerated, unsigned flags);

#ifdef _WIN32
/*
** OdbcEh_SelectRowSetToListView: replaces the items of a list view whose
** columns the caller has set up by the rows of sql, one item per row,
** every displayed column a sub-item. With KODBC_ROWSET_ITEMDATA_NUMBER the
** first column's decimal value becomes the item data, with
** KODBC_ROWSET_ITEMDATA_TEXT a copy of its text on the process heap (the
** caller frees it with HeapFree(GetProcessHeap(), 0, data)); in both cases
** the display starts at the second column.
** Returns 1 filled; 2 when listView or sql is missing, the dump refused, or
** an error occurred (shown unless tolerated).
*/
KODBC_API int KODBC_CALL OdbcEh_SelectRowSetToListView(HWND owner, SQLHDBC hdbc, const char *sql,
    HWND listView, const char *tolerated, unsigned flags);

/*
** OdbcEh_SelectRowSetToBox: replaces the entries of a list or combo box by
** the first column of each row (up to 998 characters). A second column that
** is not NULL becomes the item data: with KODBC_ROWSET_ITEMDATA_TEXT a copy
** of its text on the process heap (the caller frees it with HeapFree), else
** its decimal value.
** Returns 1 filled; 2 when box or sql is missing, the dump refused, or an
** error occurred (shown unless tolerated).
*/
KODBC_API int KODBC_CALL OdbcEh_SelectRowSetToBox(HWND owner, SQLHDBC hdbc, const char *sql, HWND box,
    const char *tolerated, unsigned flags);
#endif

/*
** OdbcEh_GetColumnNames: the column names of table (in schema; all schemas
** when blank), joined by separator (null or empty: a tab), into out, cut to
** size. `reserved` is ignored.
** Returns 1 (also with an empty list when the catalogue call failed with a
** tolerated SQLSTATE); 2 for a missing out, hdbc or table, or an error
** (shown).
*/
KODBC_API int KODBC_CALL OdbcEh_GetColumnNames(HWND owner, SQLHDBC hdbc, const char *table,
    const char *schema, int reserved, const char *separator, const char *tolerated, char *out, int size);

/*
** OdbcEh_DoesColumnExist: whether table (in schema, when given) has a
** column of that name, compared without case.
** Returns 1 exists; 0 not, missing names or an error (shown); 2 when no
** statement could be allocated.
*/
KODBC_API int KODBC_CALL OdbcEh_DoesColumnExist(HWND owner, SQLHDBC hdbc, const char *table,
    const char *schema, const char *column);

/*
** OdbcEh_GetTablesExtended: the names of the objects of `types` (object-type
** bits; 0x10 all kinds) in schema (all when blank), joined by separator
** (null or empty: ","). A name that does not fit together with one
** separator's length, the first name included, ends the list. `reserved` is ignored.
** Returns 0 listed; -1 when out is null, size below 1, hdbc null, or an
** error (shown); 2 when no statement could be allocated.
*/
KODBC_API int KODBC_CALL OdbcEh_GetTablesExtended(HWND owner, SQLHDBC hdbc, int types, const char *schema,
    int reserved, char *out, int size, const char *separator);

/*
** OdbcEh_DoesTableExist: whether an object of `types` named table (compared
** without case) exists in schema (any when blank). `reserved` is ignored.
** Returns 1 exists; 0 not, missing name or an error (shown); 2 when no
** statement could be allocated.
*/
KODBC_API int KODBC_CALL OdbcEh_DoesTableExist(HWND owner, SQLHDBC hdbc, int types, const char *schema,
    const char *table, int reserved);

/*
** OdbcEh_CreateUniqueTableName: makes name the name of no object in schema.
** A non-empty name that is free is kept; otherwise name_1, name_2, … (the
** base cut so that the result has at most 99 characters) is tried until one
** is free; an empty name becomes "_1". The result is written back cut to
** size. `reserved` is ignored.
** Returns 1; 2 when name is null, size below 1 or hdbc null (name is left
** as it is) or when the catalogue cannot be asked.
*/
KODBC_API int KODBC_CALL OdbcEh_CreateUniqueTableName(HWND owner, SQLHDBC hdbc, const char *schema, char *name,
    int size, int reserved);

#ifdef __cplusplus
}
#endif

#endif /* KODBC_EXEC_H */
