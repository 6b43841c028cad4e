/*
** kodbc — export and import for callers without windows: the export
** wizard's writer.
*/
#ifndef KODBC_TRANSFER_H
#define KODBC_TRANSFER_H

#include "kodbc_types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Field delimiters and decimal marks of an export file. */
#define KODBC_EXPORT_TAB        0
#define KODBC_EXPORT_BLANK      1
#define KODBC_EXPORT_OTHER      2   /* otherDelimiter / otherDecimal */
#define KODBC_EXPORT_COMMA      0
#define KODBC_EXPORT_POINT      1

/* Export flags. */
#define KODBC_EXPORT_ASCII      0x1 /* names and values in the OEM code page */
#define KODBC_EXPORT_NO_HEADER  0x2 /* no line of field names */

/* Results of Kodbc_ExportTable besides 1 and 2. */
#define KODBC_EXPORT_CANCELLED  3

typedef struct KodbcExportOptions {
    const char *fields;         /* tab-separated "NAME" or "NAME=HEADING": only these (null or empty: all) */
    const char *skip;           /* tab-separated names left out (may be null) */
    int delimiter;              /* KODBC_EXPORT_TAB, _BLANK, _OTHER */
    const char *otherDelimiter; /* written whole, up to 9 characters */
    int decimal;                /* KODBC_EXPORT_COMMA, _POINT, _OTHER */
    char otherDecimal;          /* for KODBC_EXPORT_OTHER; 0 falls back to the point */
    char leftBracket;           /* around every name and value; 0: none */
    char rightBracket;
    int flags;                  /* KODBC_EXPORT_* flags */
} KodbcExportOptions;

/*
** Kodbc_ExportTable: the export wizard's work after "Fertigstellen". The
** records of table that the selection descriptor selDesc selects (null or
** empty: all) are counted, then written to fileName (replaced) as a
** delimited text file: with a line of headings unless
** KODBC_EXPORT_NO_HEADER, every line ended by CR LF, values converted for
** display (decimal mark, "dd.mm.yyyy" dates), a NULL value written as
** nothing (brackets included), nothing escaped. A field's heading is its
** name with points and blanks replaced by "-", unless options->fields
** names another. Null options: the wizard's defaults (tab, decimal comma,
** headings, ANSI, no brackets). A progress indicator runs over the count
** (a terminal's bar on Linux; Ctrl+C stops). written (may be null)
** receives the number of records written.
** Returns 1 written; KODBC_EXPORT_CANCELLED when stopped by the user (the
** records written so far stay in the file); 2 for a null connection,
** table or file name, a table without fields (1617 shown), a field in
** options that the table does not have, no field left to export, a file that cannot be opened or written (1637,
** 1638, 1639, 1640, 1650 shown) or an ODBC error (shown).
*/
KODBC_API int KODBC_CALL Kodbc_ExportTable(SQLHDBC hdbc, const char *table, const char *selDesc,
                                           const KodbcExportOptions *options, const char *fileName,
                                           long *written);

#ifdef _WIN32
/*
** Kodbc_ExportWizzard: the export wizard (Windows) over the active window
** on the open connection hdbc: the table (table, may be null, names the
** preselected one and in its object type the kinds listed; its last 40
** bytes are kept), up to five conditions, the fields and their headings
** (a field dialog and a pop-up menu), the file and its format (the last
** file is remembered under HKEY_CURRENT_USER, the library's key, subkey
** "Export", "FileName"), and the number of records. After "Fertigstellen"
** the file is written as Kodbc_ExportTable writes it, at most the number
** of records announced, under a progress indicator that can be cancelled.
** options is kept and passed along. Returns 1 when the file was written
** (also after a cancel: what was written stays), and then writes the whole
** table record back with the chosen table; 2 when cancelled, out of memory
** (1600), or when the file could not be written or the query failed
** (shown).
*/
KODBC_API int KODBC_CALL Kodbc_ExportWizzard(SQLHDBC hdbc, TableRecord *table, int options);

/*
** ExportWizzCallback: the wizard's step callback, called by the wizard
** frame for every message of every page (wizard: the frame's handle, page:
** the page's template number, then the page window's message). Returns 0
** when the handle names no running export wizard or the message was not
** handled, 1 when it was. A page-leave message (WM_USER+2) answers through
** the 32-bit value lParam points to (nothing when lParam is null): 1 the
** page may be left, 2 it stays; backwards (wParam 2) is always 1 (the file
** page keeps its choices either way).
*/
KODBC_API int KODBC_CALL ExportWizzCallback(LONG_PTR wizard, int page, HWND window, UINT message, WPARAM wParam,
                                            LPARAM lParam);

/*
** EditExportFieldDialogCallback: the dialog procedure of the field dialog
** "Eigenschaften exportiertes Feld"; WM_INITDIALOG's lParam is the
** wizard's field (null: the dialog shows nothing and "OK" only closes).
** The type shown is the library type whose number equals the field's ODBC
** type number, as the applications always showed it. "OK" with an empty
** export name shows 3703 and stays; otherwise name and export flag are
** taken over and the dialog ends with 1; "Abbrechen" ends with 2.
** Returns TRUE for the messages it handled, FALSE otherwise.
*/
KODBC_API INT_PTR KODBC_CALL EditExportFieldDialogCallback(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
#endif

#ifdef __cplusplus
}
#endif

#endif /* KODBC_TRANSFER_H */
