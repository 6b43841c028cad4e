/*
** kodbc — table design for callers without windows: the create-table
** wizard's work.
*/
#ifndef KODBC_TABLEDESIGN_H
#define KODBC_TABLEDESIGN_H

#include "kodbc_types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The structures of a new table (the create-table wizard's "Type"). */
#define KODBC_CREATE_AUTOINC   2100  /* one auto-incrementing column "Id" */
#define KODBC_CREATE_COPY      2101  /* the empty structure of another table (SELECT INTO) */
#define KODBC_CREATE_ADDRESS   2102  /* a sample address table, with "Id" where the database can */

/*
** Kodbc_CreateTable: creates a table on hdbc as the create-table wizard
** does after "Fertigstellen". name: the new table (plain, unquoted); null
** or empty: "Neue_Tabelle", made the name of no object. A name that any
** object of the data source already has is refused with message 1616.
** source: the table whose structure kind KODBC_CREATE_COPY copies
** (otherwise not read); null or empty there is refused with 1625. What
** the database cannot do is refused with 1642 (for a missing SELECT INTO
** too: the wizard's message). Each statement is offered to the SQL dump
** first; errors are shown with the statement. created (may be null)
** receives the new table's name, cut to size-1 characters.
** Returns 1 created; 2 refused (message shown), an unknown kind (nothing
** shown), a null hdbc, the dump's refusal or an ODBC error; an address
** table whose "Id" column could not be added then stays without it.
*/
KODBC_API int KODBC_CALL Kodbc_CreateTable(SQLHDBC hdbc, int kind, const char *name, const char *source,
                                           char *created, int size);

/*
** Changing a table's structure: the work of the table administration
** dialog, for callers without windows. table and column names are plain
** (unquoted); the statements quote them. Each statement is offered to the
** SQL dump first; errors are shown with the statement, refusals as the
** dialog shows them. Each returns 1 done, 2 refused, cancelled or failed
** (also for a null hdbc or table).
**
** Kodbc_AddColumn: "ALTER TABLE %t ADD %f %s%s" with the column definition
** of the library type typeCode (KODBC_TYPE_*; an unknown code: 2, nothing
** shown) formatted with length, and the database's added-column clause
** (" NOT NULL DEFAULT ''" where the database has one). A type that needs a
** length and length below 1: message 1624.
** Kodbc_DropColumns: removes the tab-separated columns in order, each
** after question 1703 unless flags has KODBC_ALTER_NO_QUESTION ("Nein"
** skips the column, "Abbrechen" ends). dropped (may be null) receives how
** many went. Returns 1 when the list was worked through, 2 when it ended
** early (cancelled or a failed statement).
** Kodbc_AddAutoIncrementColumn: 1642 where the database has no
** auto-incrementing definition, 1623 when the table has such a column.
** Kodbc_AddPrimaryKey: the key over the tab-separated columns in their
** order; 1647 when the table has a key; success shows notice 437.
** Kodbc_DropPrimaryKey: 1646 without a key, 1648 where the database cannot
** drop one, question 1704 unless KODBC_ALTER_NO_QUESTION; success shows
** notice 438.
*/
#define KODBC_ALTER_NO_QUESTION  0x1

KODBC_API int KODBC_CALL Kodbc_AddColumn(SQLHDBC hdbc, const char *table, const char *column, int typeCode,
                                         int length);
KODBC_API int KODBC_CALL Kodbc_DropColumns(SQLHDBC hdbc, const char *table, const char *columns, int flags,
                                           int *dropped);
KODBC_API int KODBC_CALL Kodbc_AddAutoIncrementColumn(SQLHDBC hdbc, const char *table, const char *column);
KODBC_API int KODBC_CALL Kodbc_AddPrimaryKey(SQLHDBC hdbc, const char *table, const char *columns);
KODBC_API int KODBC_CALL Kodbc_DropPrimaryKey(SQLHDBC hdbc, const char *table, int flags);

#ifdef _WIN32
/*
** Kodbc_CreateTableWizzard: the create-table wizard (Windows) over the
** active window, on the open connection hdbc: the structure (the three
** kinds above, as far as the database allows them), the source table for a
** copied structure, the name (proposed: "Neue_Tabelle" made unique; an
** empty name is refused with 1625, a taken one with 1616) and a summary.
** The kind and source table are remembered under HKEY_CURRENT_USER, the
** library's key, subkey "Create Table" ("Type", "Copy"). After
** "Fertigstellen" the table is created as Kodbc_CreateTable does it.
** tableName (may be null) receives the new table's name, cut to size-1.
** Returns 1 when the table was created; 2 when the wizard was cancelled,
** ran out of memory (1600) or the creation failed or was refused (shown).
*/
KODBC_API int KODBC_CALL Kodbc_CreateTableWizzard(SQLHDBC hdbc, char *tableName, int size);

/*
** CreateTableWizzCallback: the wizard's step callback, called by the
** wizard frame for every message of every page (wizard: the frame's handle,
** page: the page's template number, then the page window's message).
** Returns 0 when the handle names no running create-table wizard or the
** message was not handled, 1 when it was. A page-leave message (WM_USER+2)
** answers through the 32-bit value lParam points to (nothing when lParam
** is null): 1 the page may be left, 2 it stays; backwards (wParam 2) is
** always 1.
*/
KODBC_API int KODBC_CALL CreateTableWizzCallback(LONG_PTR wizard, int page, HWND window, UINT message, WPARAM wParam,
                                                 LPARAM lParam);

/*
** Kodbc_TableAdmin: table administration (Windows), dialog 10009
** "Tabelle  [table]" over the active window, on the open connection hdbc.
** It lists the table's columns (name, type with length, "Leer erlaubt",
** default, remark), its primary key's columns and its auto-incrementing
** column, and changes the structure as far as the database allows: add a
** column (dialog 10010), remove the selected columns (question 1703 for
** each), create the primary key (dialog 10059, notice 437), drop it
** (question 1704, notice 438), add an auto-incrementing column (dialog
** 10057); each change as the functions above make it. table: plain name,
** cut to 49 characters. reserved: kept with the dialog, not read. Closing
** deletes the key "Software\Korvel Software\Order By Clauses" under
** HKEY_USERS\.Default.
** Returns 0 when the dialog ran (whatever was changed); -1 when its state
** could not be allocated (message 1600), the dialog could not be created,
** or for a null hdbc or a null or empty table (nothing shown).
*/
KODBC_API int KODBC_CALL Kodbc_TableAdmin(SQLHDBC hdbc, const char *table, int reserved);

/*
** TableAdmin_Dialog_Callback, AddColumn_Dialog_Callback,
** AddAutoInc_Dialog_Callback, AddPk_Dialog_Callback: the dialog procedures
** of dialogs 10009, 10010 "Spalte hinzufügen", 10057 "Selbsthochzählende
** Spalte hinzufügen" and 10059 "Primärschlüssel anlegen". WM_INITDIALOG's
** lParam is the library's own record for the dialog (Kodbc_TableAdmin's
** state; the request each of the other three fills); with a null lParam a
** dialog offers nothing to act on and only closes. 10009 ends with 1
** however it is closed ("&Schließen", OK, Cancel); the other three end
** with 1 after OK filled the request, 2 when cancelled. Out of memory ends
** any of them with 2 (message 1600). 10010 refuses a type that needs a
** length without one (1624) and stays open. Each returns TRUE for the
** messages it handled, else FALSE.
*/
KODBC_API INT_PTR KODBC_CALL TableAdmin_Dialog_Callback(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
KODBC_API INT_PTR KODBC_CALL AddColumn_Dialog_Callback(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
KODBC_API INT_PTR KODBC_CALL AddAutoInc_Dialog_Callback(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
KODBC_API INT_PTR KODBC_CALL AddPk_Dialog_Callback(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
#endif

#ifdef __cplusplus
}
#endif

#endif /* KODBC_TABLEDESIGN_H */
