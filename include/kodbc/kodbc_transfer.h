/*
** kodbc — export and import for callers without windows: the export
** wizard's writer and the import wizard's readers.
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
#define KODBC_EXPORT_CSV        0x4 /* comma-separated values: quoted where needed, no brackets, ISO dates */
#define KODBC_EXPORT_GERMAN_DATES 0x8 /* with KODBC_EXPORT_CSV: dates as "dd.mm.yyyy" */

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
    const char *nullText;       /* written for a NULL value; null: nothing */
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
** KODBC_EXPORT_CSV writes comma-separated values as other programs read
** them instead: a value holding the delimiter, a quote, CR or LF, or
** beginning or ending with a blank, is put in quotes with its quotes
** doubled (so is a value equal to nullText); dates as "yyyy-mm-dd
** hh:mm:ss" unless KODBC_EXPORT_GERMAN_DATES; brackets are not written.
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

/*
** Kodbc_ImportTableWizzard: the import-table wizard (Windows) over the
** active window: creates a new table on the open connection hdbc and fills
** it from a table of another ODBC data source, a delimited text file or a
** selection file (SDI or SEL). The user picks the kind of source, the
** source, edits the fields (names, target types and lengths, which are
** imported, auto-increment, file content; a field dialog, a pop-up menu,
** moving and dragging rows), names the new table and confirms. The choices
** are remembered under HKEY_CURRENT_USER, the library's key, subkey
** "Import" ("Type", the data-source record, "Table", "TextFile",
** "SdiFile", "SelFile"). After "Fertigstellen" the table is created and
** one INSERT per source record is sent, as Kodbc_ImportTextFile and
** Kodbc_ImportTable do it, under a progress indicator that can be
** cancelled (the records written so far stay).
** Returns 1 when the table was created and every record read was written
** (also after a cancel); the new table's name is then copied into
** tableName (size bytes, cut to size-1; nothing when null or size is 0).
** Returns 2 when the wizard was cancelled, out of memory (1600), or when
** the table could not be created or a record not written (shown; a table
** created stays with the records written before).
*/
KODBC_API int KODBC_CALL Kodbc_ImportTableWizzard(SQLHDBC hdbc, char *tableName, int size);

/*
** ImportWizzCallback: the import wizard's step callback, called by the
** wizard frame for every message of every page (wizard: the frame's
** handle, page: the page's template number, then the page window's
** message). Returns 0 when the handle names no running import wizard or
** the message was not handled, 1 when it was. A page-leave message
** (WM_USER+2) answers through the 32-bit value lParam points to (nothing
** when lParam is null): 1 the page may be left, 2 it stays; backwards
** (wParam 2) is always 1. Leaving the first page switches the source pages
** of the kind chosen on and the others off.
*/
KODBC_API int KODBC_CALL ImportWizzCallback(LONG_PTR wizard, int page, HWND window, UINT message, WPARAM wParam,
                                            LPARAM lParam);

/*
** EditImportFieldDialogCallback: the dialog procedure of the field dialog
** "Eigenschaften Importiertes Feld"; WM_INITDIALOG's lParam is the
** wizard's import field (null: the dialog shows nothing and "OK" only
** closes). The source's name, type and length are shown read-only; "OK"
** takes over the target's name, type, length (when it is a number above
** 0) and the flags and ends the dialog with 1; "Abbrechen" ends it with 2.
** Returns TRUE for the messages it handled, FALSE otherwise.
*/
KODBC_API INT_PTR KODBC_CALL EditImportFieldDialogCallback(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
#endif

/* Import: flags of KodbcImportOptions. The delimiters and decimal marks are
   those of the export (KODBC_EXPORT_TAB ... KODBC_EXPORT_OTHER). */
#define KODBC_IMPORT_ASCII          0x1 /* the file is in the OEM code page */
#define KODBC_IMPORT_NUMBERED_NAMES 0x2 /* the first line holds values; fields are F0, F1, ... */
#define KODBC_IMPORT_DRY_RUN        0x4 /* build the statements, run none */
#define KODBC_IMPORT_CSV            0x8 /* comma-separated values as KODBC_EXPORT_CSV writes them */
/* Several records per INSERT ("VALUES (...),(...)", where the database type
   takes it) in one transaction that the function ends on hdbc: committed
   after the last record; on a failure or a cancel rolled back, the new
   table removed (dropped where the database commits DDL by itself; 3828
   when that fails) and nothing counted written, the failing line or record
   named with the database's reason (3824, 3825), then 3826 or 3827. The
   caller must have switched the connection's auto-commit off. */
#define KODBC_IMPORT_BATCH          0x10

/* Flags of KodbcImportField. */
#define KODBC_IMPORT_SKIP           0x1 /* not taken into the new table */
#define KODBC_IMPORT_AUTOINC        0x2 /* counts by itself: no value is written */
#define KODBC_IMPORT_FILE_CONTENT   0x4 /* the value names a file whose content is imported */
#define KODBC_IMPORT_FILE_MESSAGE   0x8 /* tell when such a file cannot be opened */

/* Kinds of file of Kodbc_ImportTextFile (KodbcImportOptions.kind). */
#define KODBC_IMPORT_KIND_TEXT      0   /* a delimited text file */
#define KODBC_IMPORT_KIND_SDI       1   /* a Windows selection file (.sdi) */
#define KODBC_IMPORT_KIND_SEL       2   /* an older selection file (.sel) */

/* Results of Kodbc_ImportTextFile and Kodbc_ImportTable besides 1 and 2. */
#define KODBC_IMPORT_CANCELLED      3
#define KODBC_IMPORT_NO_SUCH_FIELD  4

/* What the field page would change in one discovered field. */
typedef struct KodbcImportField {
    const char *name;        /* the field as discovered: its unique name from the source */
    const char *targetName;  /* its name in the new table; null or empty: unchanged */
    int targetType;          /* KODBC_TYPE_*; 0: unchanged */
    int targetLength;        /* 0: unchanged */
    int flags;               /* KODBC_IMPORT_SKIP, _AUTOINC, _FILE_CONTENT, _FILE_MESSAGE */
} KodbcImportField;

typedef struct KodbcImportOptions {
    int delimiter;              /* text files: KODBC_EXPORT_TAB, _BLANK, _OTHER */
    const char *otherDelimiter; /* its first character is the delimiter */
    int decimal;                /* KODBC_EXPORT_COMMA, _POINT, _OTHER */
    char otherDecimal;          /* for KODBC_EXPORT_OTHER; 0 falls back to the point */
    char leftBracket;           /* around values; 0: none */
    char rightBracket;
    int flags;                  /* KODBC_IMPORT_ASCII, _NUMBERED_NAMES, _DRY_RUN, _BATCH */
    const KodbcImportField *fields; /* changes to the discovered fields (may be null) */
    int fieldCount;
    int kind;                   /* KODBC_IMPORT_KIND_TEXT, _SDI, _SEL */
    const char *nullText;       /* text files: a value equal to it (unquoted) is NULL, an empty one
                                   an empty text; null: an empty value is NULL */
} KodbcImportOptions;

typedef struct KodbcImportResult {
    long written;           /* records inserted */
    int badField;           /* KODBC_IMPORT_NO_SUCH_FIELD: the index into options->fields */
    char *createStatement;  /* receives the CREATE TABLE (may be null) */
    int createSize;
    char *firstInsert;      /* receives the first record's INSERT (may be null) */
    int insertSize;
    /* What the format's rules changed on the way, for the user to hear: */
    long valuesCut;             /* values cut to the text format's 99 characters */
    long linesCut;              /* lines cut to the line limit (30000 bytes) */
    long numbersChanged;        /* numbers that lost characters to the number rule ("4.10" -> 410) */
    long firstNumberAt;         /* the first of them: its line (firstNumberInLine) or record */
    int firstNumberInLine;
    char firstNumber[100];      /* its text in the source (cut) */
    char firstNumberAs[100];    /* what was written (cut) */
    char firstNumberField[100]; /* its field */
    /* The fields not imported, one line each: the name, a tab and why:
       "LangText" or "Binärdaten" for a column the import cannot carry
       (turned into VarText and left out), empty when left out by choice. */
    char notImported[2000];
} KodbcImportResult;

/*
** Kodbc_ImportTextFile: the import wizard's work for a text file after
** "Fertigstellen". The fields are discovered from the file's first line
** (one per value; named by the values, made unique, or F0, F1, ... with
** KODBC_IMPORT_NUMBERED_NAMES), each VarText of 255; options->fields then
** change them by name. The field page's checks follow (their message shown
** on failure), then each line after the names becomes one INSERT, the
** new table being created ("CREATE TABLE") just before the first (or after
** the last line for a file without records, so a file that cannot be read
** leaves no table): values split at the delimiter outside brackets,
** numbers kept as digits and signs with the decimal mark made a point and
** an exponent kept ("1,0e+20"), German dates as timestamps, empty values
** NULL; a number field's value that makes no number ("12-05-2024") ends
** the run with 3820 (its line and field shown). As many
** lines are read as there are non-empty ones (an empty line is a record
** too). table names the new table; null or empty: the file's name without
** folder and extension. Null options: the wizard's defaults (tab, decimal
** comma, names in the first line, ANSI, no brackets) -- a file written by
** Kodbc_ExportTable with its defaults. A progress indicator runs over the
** records (a terminal's bar on Linux; Ctrl+C stops). result (may be null)
** receives the count and, where buffers are given, the statements (cut to
** size-1), and what the format's rules changed on the way (values and
** lines cut, numbers that lost characters, fields not imported); with
** KODBC_IMPORT_DRY_RUN nothing is executed and the statements are the
** whole answer. KODBC_IMPORT_CSV reads comma-separated values instead
** (the delimiter's first character separates): a quoted value may hold
** the delimiter, doubled quotes and line breaks, a record may span lines,
** lines end with LF or CR LF, no value is cut, empty lines are skipped,
** brackets are not used.
** Returns 1 imported (or built, in a dry run); KODBC_IMPORT_CANCELLED when
** stopped by the user (the records inserted so far stay, none with
** KODBC_IMPORT_BATCH);
** KODBC_IMPORT_NO_SUCH_FIELD when options->fields names a field the file
** does not have (result->badField says which); 2 for a null connection or
** file name, a file that cannot be opened or has no fields (3800, 3806
** shown), a field list the checks refuse (3801 to 3804, 3822, 3823
** shown), a value that makes no number (3820 or 3821 shown), a type
** outside the data-type table, or a statement that was refused or failed
** (shown; records inserted before stay, none with KODBC_IMPORT_BATCH).
**
** options->kind KODBC_IMPORT_KIND_SDI or _SEL reads one of the family's
** selection files (OEM code page) instead; the text-format members of
** options are then not used, and a file that does not follow the layout
** of its kind gives 2 with 3810 (SDI) or 3811 (SEL) shown. An SDI file's
** fields come from its field lines (types from their FORMAT words), its
** records are its tab-separated lines after the header; with the
** contact-field conversion switched on in the settings, fields named
** prefix + one or two digits are not imported and the kinds of contact
** they name become fields of their own. A SEL file's fields come from its
** field lines, and each record is one line per field, at most as many
** records as its second line announces. Any other kind gives 2.
*/
KODBC_API int KODBC_CALL Kodbc_ImportTextFile(SQLHDBC hdbc, const char *table, const char *fileName,
                                              const KodbcImportOptions *options, KodbcImportResult *result);

/*
** Kodbc_ImportTable: the import wizard's work for a table of another data
** source: sourceTable's columns on the connection source (the caller's; it
** may be hdbc itself) become the fields with their library types and
** lengths (long-text and binary columns are not imported unless
** options->fields says so), options->fields change them, and each row
** becomes one INSERT into the new table on hdbc, its values read as text
** and converted as for a text file (dates as the export writes them). The
** text-format members of options are not used. table: null or empty takes
** the source table's name. Results as Kodbc_ImportTextFile; 2 also for a
** null source or table, and a source table without fields (1617 shown).
*/
KODBC_API int KODBC_CALL Kodbc_ImportTable(SQLHDBC hdbc, const char *table, SQLHDBC source,
                                           const char *sourceTable, const KodbcImportOptions *options,
                                           KodbcImportResult *result);

#ifdef __cplusplus
}
#endif

#endif /* KODBC_TRANSFER_H */
