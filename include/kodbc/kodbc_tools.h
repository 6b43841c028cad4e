/*
** kodbc — the interactive tools: the data-source and schema pickers, the
** SQL performer and the driver information dialog (Windows), and what the
** driver information dialog shows, for callers without windows.
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

#ifdef _WIN32
/*
** The pickers (Windows). Each runs one modal dialog on the caller's thread.
**
** Kodbc_DataSourceDialog: dialog 103 "Datenquelle auswählen" over the
** active window. It opens on the record's data source with its user and
** password, or, when that name is not among the data sources, on the first
** one with the user last confirmed for it. "OK" remembers the user for the
** data source (HKEY_CURRENT_USER, the library's key, section
** "DataSourceDialog"; the password is never stored) and tries a connection
** (its errors are shown); a failed connection keeps the dialog open; "OK"
** with no data source selected shows message 1608 and keeps it open too; a
** double click in the list acts as "OK". Returns 1 when a data source was
** confirmed and could be connected: then name, user and password are
** written into the record and its last 20 bytes are kept as they were; 2
** when cancelled or the dialog could not be shown (the record is
** untouched), and for a null record (nothing shown).
*/
KODBC_API int KODBC_CALL Kodbc_DataSourceDialog(DataSourceRecord *record);

/*
** Kodbc_SelectDbaseSchema: dialog 10056 "Datenbank-Schema auswählen" over
** owner, offering the schemata of the open connection hdbc in an editable
** combo box that starts with the text of schema. schema is in/out, 100
** bytes: "OK" writes the combo box's text (picked or typed, up to 99
** characters). reserved1 and reserved2 are not used. Returns 1 when
** confirmed, 2 when cancelled or when schema is null (nothing shown).
*/
KODBC_API int KODBC_CALL Kodbc_SelectDbaseSchema(HWND owner, SQLHDBC hdbc, char *schema, int reserved1,
                                                 int reserved2);

/*
** Kodbc_DataSourceAndSchemaDialog: dialog 10060 "Datenquelle auswählen"
** over owner, showing a data source, its user and a schema, with buttons
** that run the two pickers above. While it is up it holds a connection of
** its own to the shown data source, and the schema controls are enabled
** only when that connection uses schemata; choosing another data source
** clears the schema. title (may be null or blank: the template's title)
** replaces the window title. record (may be null: start with none) and
** schema (may be null: start empty) give the starting values. Returns 1
** when confirmed: the record is written back when record is not null, and
** the schema into schema cut to schemaSize-1 characters when schema is not
** null and schemaSize > 0; 2 when cancelled, when the dialog could not be
** shown, or when its state could not be allocated (then the file error
** report with class 1 is shown). The dialog's connection ends with it.
*/
KODBC_API int KODBC_CALL Kodbc_DataSourceAndSchemaDialog(HWND owner, DataSourceRecord *record, char *schema,
                                                         int schemaSize, const char *title);

/*
** The SQL performer (Windows): a dialog in which any statement is typed and
** executed directly. Rows a query returns are not shown; success is
** confirmed by a short notice ("Der SQL-Befehl wurde fehlerfrei
** ausgeführt"), failures by the ODBC error display. The last 20 executed
** statements are kept, newest first, under HKEY_CURRENT_USER, the library's
** key, subkey "SqlPerformer\Recent" ("Total" and "E001".."E020", encoded),
** and saved before each execution, so a failing statement is kept too. The
** edit field starts with the value "Sql" of the subkey "Parameters" (which
** the library never writes).
**
** Kodbc_DialogSqlPerformer: dialog 101 over the active window; every
** execution connects to the chosen data source and disconnects again.
** record (may be null: no data source chosen at first) names the data
** source, user and password to start with; "Datenquelle wählen..." runs
** Kodbc_DataSourceDialog on it, so the caller's record holds the last
** choice afterwards. Returns the dialog's result: 2 when closed, -1 when it
** could not be created.
*/
KODBC_API int KODBC_CALL Kodbc_DialogSqlPerformer(DataSourceRecord *record);

/*
** Kodbc_SqlPerformer: dialog 10058 over the active window; statements run
** on the caller's open connection hdbc, which stays open. Returns the
** dialog's result: 2 when closed, -1 when it could not be created.
*/
KODBC_API int KODBC_CALL Kodbc_SqlPerformer(SQLHDBC hdbc);

/*
** SqlPerformerDs_Callback, SqlPerformerHdbc_Callback: the dialog procedures
** of dialogs 101 and 10058; WM_INITDIALOG's lParam is the performer's
** argument (the DataSourceRecord pointer of Kodbc_DialogSqlPerformer, the
** connection of Kodbc_SqlPerformer). SqlHelpCallback: the dialog procedure
** of dialog 10037 "Mögliche SQL-Befehle"; its lParam is the performer's
** window, whose edit field "Übernehmen" (or a double click) fills with the
** chosen example (up to 400 characters) before the dialog ends with 1;
** "Abbrechen" ends with 2.
** Each returns TRUE for the messages it handled, FALSE otherwise.
*/
KODBC_API INT_PTR KODBC_CALL SqlPerformerDs_Callback(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
KODBC_API INT_PTR KODBC_CALL SqlPerformerHdbc_Callback(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
KODBC_API INT_PTR KODBC_CALL SqlHelpCallback(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

/*
** Kodbc_DisplayDriverInformation: dialog 10061 "Information über
** ODBC-Datenquelle" over owner, showing what Kodbc_GetDriverInformation
** returns for hdbc, each field read anew. Nothing is stored. Returns 1 or
** 2 as the dialog ended ("Schließen" and Escape give 2), 0 when its state
** could not be allocated.
*/
KODBC_API int KODBC_CALL Kodbc_DisplayDriverInformation(SQLHDBC hdbc, HWND owner);
#endif

#ifdef __cplusplus
}
#endif

#endif /* KODBC_TOOLS_H */
