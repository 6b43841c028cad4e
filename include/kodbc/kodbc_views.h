/*
** kodbc — stored views: a named query kept as a view in the caller's
** database and, beside it in the system table (object of type "VIEW"),
** the query designer's descriptors it was made from (items "Sql",
** "Tables", "Columns", "Selection"), so that it can be opened in the
** designer again. The sort order is not kept: a view has no ORDER BY.
**
** Names are qualified with the schema (may be null or empty) as the
** statement formatter's "%t%.%t" writes them. A view's name may hold the
** characters a-z, A-Z, 1-9 and "_" (the digit 0 is not among them).
*/
#ifndef KODBC_VIEWS_H
#define KODBC_VIEWS_H

#include "kodbc_types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Results. */
#define KODBC_VIEW_OK                1
#define KODBC_VIEW_FAILED            2
#define KODBC_VIEW_NOT_DEFINED       3   /* Kodbc_View_Load: no "Sql" item */

/* Kodbc_View_Drop: what a failing drop statement may report and still
   count as done. */
#define KODBC_VIEW_TOLERATE_ALL      0x1 /* every error */
#define KODBC_VIEW_TOLERATE_MISSING  0x2 /* SQLSTATE S0002, no such view */

/* Kodbc_View_Load: no message box for a view without its definition. */
#define KODBC_VIEW_LOAD_QUIET        0x1

/* Kodbc_View_Edit modes. */
#define KODBC_VIEW_MODE_NEW          0x1
#define KODBC_VIEW_MODE_EXISTING     0x2
#define KODBC_VIEW_MODE_CALLER       0x1000000 /* set by the family's callers */

/*
** Kodbc_View_Create: runs "CREATE VIEW schema.name AS sql" (the statement
** cut to 4999 characters) and, when it went through, writes the four
** system-table items for name: sql, tables, columns and selection (the
** designer's descriptors, kodbc_selfact.h; null tables or selection are
** empty, null columns is "*"; empty items are not stored). A failing
** statement is shown by the library's error display.
** Returns KODBC_VIEW_OK, or KODBC_VIEW_FAILED for a null hdbc, a null or
** empty name or sql, or a failed statement (nothing stored then).
*/
KODBC_API int KODBC_CALL Kodbc_View_Create(SQLHDBC hdbc, const char *schema, const char *name, const char *sql,
                                           const char *tables, const char *columns, const char *selection);

/*
** Kodbc_View_Drop: runs the database's drop statement for schema.name
** ("DROP VIEW" where the database names none); tolerance is a set of
** KODBC_VIEW_TOLERATE_* bits (0: every error counts and is shown). When
** it went through, every system-table item of the view goes too.
** Returns KODBC_VIEW_OK, or KODBC_VIEW_FAILED for a null hdbc, a null or
** empty name, or a failed, untolerated statement (the items stay).
*/
KODBC_API int KODBC_CALL Kodbc_View_Drop(SQLHDBC hdbc, const char *schema, const char *name, int tolerance);

/*
** Kodbc_View_Test: whether sql can be the body of a view in schema: drops
** a view "__KORVEL_TEST__" left from before (every error tolerated),
** creates it from sql and drops it again, its system-table items with it.
** A failing creation is shown by the library's error display.
** Returns KODBC_VIEW_OK when the creation went through, KODBC_VIEW_FAILED
** otherwise and for a null hdbc or a null or empty sql.
*/
KODBC_API int KODBC_CALL Kodbc_View_Test(SQLHDBC hdbc, const char *schema, const char *sql);

/*
** Kodbc_View_Load: the stored design of view name: the items "Sql",
** "Tables", "Columns" ("*" when missing) and "Selection" (each read in up
** to 4999 characters) into sql, tables, columns and selection, each cut
** to its size-1 characters and terminated. A null buffer or a size below
** 1 skips that item.
** Returns KODBC_VIEW_OK; KODBC_VIEW_NOT_DEFINED when the view has no
** "Sql" item (it exists in the database but was not made here, or the
** system table lost it): the buffers are filled all the same, and message
** 1612 is shown unless flags holds KODBC_VIEW_LOAD_QUIET, so that callers
** without a window refuse the edit themselves; KODBC_VIEW_FAILED for a
** null hdbc or a null or empty name (nothing written).
*/
KODBC_API int KODBC_CALL Kodbc_View_Load(SQLHDBC hdbc, const char *schema, const char *name, char *sql, int sqlSize,
                                         char *tables, int tablesSize, char *columns, int columnsSize,
                                         char *selection, int selectionSize, unsigned flags);

/*
** Kodbc_View_CopyName: the name proposed for a copy of view name:
** "Kopie_von_<name>" (string 1963, cut to 99 characters) made unique
** among the objects of schema; written into out, cut to outSize-1
** characters and terminated. With a null or empty name it proposes a
** name for a new view instead: "Neue_Abfrage" (string 1964) made unique.
** Returns KODBC_VIEW_OK, KODBC_VIEW_FAILED for a null hdbc, a null out or
** outSize below 1 (nothing written).
*/
KODBC_API int KODBC_CALL Kodbc_View_CopyName(SQLHDBC hdbc, const char *schema, const char *name, char *out,
                                             int outSize);

#ifdef _WIN32
/*
** Kodbc_View_Edit: dialog 10063 "Abfrage bearbeiten" over owner for view
** name in schema. name is in and out: with an empty name the dialog
** proposes "Neue_Abfrage" made unique; with KODBC_VIEW_MODE_EXISTING the
** view's stored design is loaded, and a view without its "Sql" item is
** refused with message 1612 (result 2, no dialog). mode is a set of
** KODBC_VIEW_MODE_* bits. The dialog edits a copy: its name (only the
** name characters can be typed), the SQL text, "Assistent..." (the query
** designer on the view's descriptors, which regenerates the SQL text),
** "Testen..." (notice 1707 when the view could be made), loading and
** saving the SQL text from and to a file (the file used last is kept in
** HKEY_CURRENT_USER "Software\\Korvel Software\\Kodbc\\LastUsed", value
** "SqlStatementFile"). "&OK" refuses an empty name
** (1611), a name with other characters (1603), an empty SQL text (1609)
** and an SQL text that fails the test; then it creates the view under
** the name with its design. With KODBC_VIEW_MODE_EXISTING or
** KODBC_VIEW_MODE_CALLER a view of the name the dialog opened with is
** replaced (the name unchanged) or, once the new one is made, dropped (a
** rename). A failure is shown and keeps the dialog open.
** Returns 1 after OK, the view created and its name written into name
** (cut to nameSize-1); 2 when cancelled, refused, for a null hdbc or
** name, a nameSize below 1, or out of memory (message 1600).
*/
KODBC_API int KODBC_CALL Kodbc_View_Edit(SQLHDBC hdbc, const char *schema, char *name, int nameSize, int mode,
                                         HWND owner);

/*
** ViewEdit_Dialog_Callback: the dialog procedure of dialog 10063.
** WM_INITDIALOG's lParam is the library's own view record that
** Kodbc_View_Edit builds (a working copy); with a null lParam the dialog
** offers nothing to act on and only closes (2). Ends with 1 after OK as
** Kodbc_View_Edit describes, 2 when cancelled, 2 after message 1600 when
** memory ran out. Returns TRUE for the messages it handled, else FALSE.
*/
KODBC_API INT_PTR KODBC_CALL ViewEdit_Dialog_Callback(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
#endif

#ifdef __cplusplus
}
#endif

#endif /* KODBC_VIEWS_H */
