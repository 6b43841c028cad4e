/*
** kodbc — the wizards' work for callers that need no window: the record
** wizards' counts, statements and texts.
*/
#ifndef KODBC_WIZARDS_H
#define KODBC_WIZARDS_H

#include "kodbc_types.h"

#ifdef __cplusplus
extern "C" {
#endif

/*
** Deleting and updating records: the work of the delete-records and
** update-records wizards, for callers that have the table and the
** descriptors already (batch use, scripts).
**
** table is a plain (unquoted) table name; the statement formatter quotes
** it. selDesc is a selection descriptor and setDesc an assignment
** descriptor in the SET form (kodbc_seldesc.h); null or empty selDesc
** selects every record. Records are counted with the whole condition
** (formed in 10000 bytes), but the statement, its WHERE condition and its
** SET clause are formed in 500 bytes each, as the wizards do (the
** formatter keeps 299 characters of the SET clause). A condition formed
** in 500 bytes loses the groups and conditions that do not fit (a lone
** group too long leaves no condition at all), which would concern other
** records than were counted; a statement that would hold less of the
** condition than the count, or less of the SET clause than the
** assignments give, is therefore refused with message 2171 (conditions)
** or 2172 (assignments) and not run. The statement is offered to the SQL dump
** (Korvel_DumpSqlStatement) with its buffer size 500 before it runs; a
** refusal is silent. ODBC errors are shown at the point of failure with
** the statement text.
*/

/* Room of the record wizards' page texts (summary, confirmation, result). */
#define KODBC_RECORD_PAGE_TEXT_SIZE  200

/*
** Kodbc_DeleteRecordsSummary: what the delete wizard's summary page says
** before "Fertigstellen": message 2163 ("Es werden insgesamt  %ld
** Datensätze aus der Tabelle gelöscht. …") with the count, or 2164 when
** the count is below 1, into text (cut to textSize-1; text may be null).
** The records are counted once and, when there is at least one, a second
** time for the number shown.
** Returns the count shown; -1 when the condition cannot be formed; 0 also
** for hdbc 0, a null or empty table or a failed count (shown).
*/
KODBC_API long KODBC_CALL Kodbc_DeleteRecordsSummary(SQLHDBC hdbc, const char *table, const char *selDesc,
                                                     char *text, int textSize);

/*
** Kodbc_DeleteRecords: runs "DELETE from %t" with " WHERE (" condition ")"
** when selDesc gives a condition (see above); nothing is counted or asked
** first, and a condition that matches nothing still runs.
** Returns 1 when the statement ran; 2 for hdbc 0, a null or empty table,
** the dump's refusal or an ODBC error (shown).
*/
KODBC_API int KODBC_CALL Kodbc_DeleteRecords(SQLHDBC hdbc, const char *table, const char *selDesc);

/*
** Kodbc_CheckRecordStatement: whether the statement of Kodbc_DeleteRecords
** (setDesc null) or Kodbc_UpdateRecords would hold the whole condition
** and SET clause. Returns 1 when it would (also when the condition cannot
** be formed or nothing is assigned, which those functions report); 2
** after showing message 2171 or 2172, and for hdbc 0 or a null or empty
** table (nothing shown). Nothing is counted or run.
*/
KODBC_API int KODBC_CALL Kodbc_CheckRecordStatement(SQLHDBC hdbc, const char *table, const char *selDesc,
                                                    const char *setDesc);

/*
** Kodbc_UpdateRecords: the update wizard's checks and work in one call.
** Counts the records selDesc selects (the whole condition) into *count
** (count may be null; set to 0 first); when none match (or the count
** failed) shows message 1626 and returns 2. Forms the SET clause of
** setDesc in 300 bytes; when it is empty shows 1635 and returns 2.
** Otherwise runs "UPDATE %t SET %s" with the SET clause (formed in 500
** bytes; the formatter keeps 299 characters of it) and " WHERE ("
** condition ")" when there is one.
** Returns 1 when the statement ran (*count is the number counted before,
** not what the driver reports); 2 for hdbc 0, a null or empty table
** (nothing shown, *count 0), the two refusals above, the dump's refusal or
** an ODBC error (shown).
*/
KODBC_API int KODBC_CALL Kodbc_UpdateRecords(SQLHDBC hdbc, const char *table, const char *selDesc,
                                             const char *setDesc, long *count);

#ifdef _WIN32
/*
** The delete-records and update-records wizards (Windows). Both run in the
** wizard frame over the active window on the caller's thread.
**
** Kodbc_DeleteRecordsWizzard: three pages (the table, up to five
** conditions, the number of records that will go); after "Fertigstellen"
** the records are deleted as Kodbc_DeleteRecords does it (no condition:
** all of them; also when none match). hdbc: the open connection of the
** table. table (may be null): the preselected table name and, in its
** object type, the kinds of tables listed; its last 40 bytes are kept.
** reserved is kept and not used. Returns 1 when the wizard was finished
** and the statement ran, and then writes the whole table record back with
** the chosen table; 2 when it was cancelled, ran out of memory (1600), the
** condition could not be formed, the dump refused the statement or it
** failed (shown).
*/
KODBC_API int KODBC_CALL Kodbc_DeleteRecordsWizzard(SQLHDBC hdbc, TableRecord *table, int reserved);

/*
** Kodbc_UpdateRecordsWizzard: five pages (the table, up to five
** conditions, up to three assignments, the confirmation, the result). The
** update runs, as Kodbc_UpdateRecords runs it, each time the confirmation
** page is left forwards; a failure (shown) keeps the user there. Arguments
** as for Kodbc_DeleteRecordsWizzard. Returns 1 when the wizard was ended
** with "Fertigstellen" (the update has run), and then writes the whole
** table record back; 2 when it was cancelled (also on the result page,
** after the update ran) or ran out of memory (1600).
*/
KODBC_API int KODBC_CALL Kodbc_UpdateRecordsWizzard(SQLHDBC hdbc, TableRecord *table, int reserved);

/*
** DelRecsWizzCallback, UpdRecsWizzCallback: the two wizards' step
** callbacks, called by the wizard frame for every message of every page
** (wizard: the frame's handle, page: the page's template number, then the
** page window's message). Return 0 when the handle names no running wizard
** of their kind, the page is not theirs or the message was not handled, 1
** when it was. A page-leave message (WM_USER+2) answers through the 32-bit
** value lParam points to (nothing when lParam is null): 1 the page may be
** left, 2 it stays; backwards (wParam 2) is always 1.
*/
KODBC_API int KODBC_CALL DelRecsWizzCallback(LONG_PTR wizard, int page, HWND window, UINT message, WPARAM wParam,
                                             LPARAM lParam);
KODBC_API int KODBC_CALL UpdRecsWizzCallback(LONG_PTR wizard, int page, HWND window, UINT message, WPARAM wParam,
                                             LPARAM lParam);
#endif

/*
** Adding records: the work of the add-records wizard for callers that
** know both tables already. The records of a table on one connection are
** copied into an existing table on another (or the same) connection, one
** INSERT per record, or in replace mode an UPDATE of the destination
** record whose identifying field matches the source's.
**
** Every destination field is first filled as the wizard presets it: from
** the source field of the same name (compared without case) when there is
** one, the destination field is writable (not auto-increment, updatable)
** and the types allow it; otherwise left empty (NULL). The choices in the
** options then override that per field.
*/

/* Fill modes of a destination field. */
#define KODBC_FILL_LEAVE_EMPTY     2100  /* NULL */
#define KODBC_FILL_FIXED_VALUE     2101  /* Value, between quotes exactly as given (quotes are not doubled) */
#define KODBC_FILL_SOURCE_FIELD    2102  /* the source field named by Value */

/* Record modes. */
#define KODBC_ADDREC_ADD           2100  /* always add */
#define KODBC_ADDREC_REPLACE       2101  /* update the record whose identifying field matches, else add */
/* Added to the record mode (RecordMode | KODBC_ADDREC_BATCH): the run is
   one transaction that the function ends on destination -- committed after
   the last record; on a failed or refused statement, a value that cannot be
   converted, or a cancel, rolled back, RecordsWritten 0 and 3831 or 3832
   shown, a refused statement's source record named first with the
   database's reason (3830). Added records then go in INSERTs of many
   records each where the database type takes them (replace mode runs every
   statement singly). The caller must have switched the destination
   connection's auto-commit off. */
#define KODBC_ADDREC_BATCH         0x10000

/* How a run ended (KodbcAddRecordsResult.Ended). */
#define KODBC_ADDREC_COMPLETE      0     /* every source record was processed */
#define KODBC_ADDREC_CANCELLED     1     /* the user stopped the progress indicator (Ctrl+C on a terminal) */
#define KODBC_ADDREC_STOPPED       2     /* a statement failed (shown) or was refused, or a value could not be converted */

/* Result of Kodbc_AddRecords besides 1 and 2. */
#define KODBC_ADDREC_REFUSED_CHOICE 3

typedef struct KodbcAddRecordsField {
    const char *DestinationField;  /* destination field, compared without case */
    int32_t Mode;                  /* KODBC_FILL_* */
    const char *Value;             /* the fixed value, or the source field's name; null counts as empty */
} KodbcAddRecordsField;

typedef struct KodbcAddRecordsOptions {
    int32_t RecordMode;                  /* KODBC_ADDREC_ADD or KODBC_ADDREC_REPLACE (anything else: add),
                                            with KODBC_ADDREC_BATCH or not */
    const char *SourceIdField;           /* replace mode: identifying field of the source table */
    const char *DestIdField;             /* replace mode: identifying field of the destination table */
    const KodbcAddRecordsField *Fields;  /* choices applied in order; may be null when FieldCount is 0 */
    int32_t FieldCount;
} KodbcAddRecordsOptions;

typedef struct KodbcAddRecordsResult {
    long RecordsRead;      /* source records fetched */
    long RecordsWritten;   /* INSERT and UPDATE statements that ran (KODBC_ADDREC_BATCH: records committed) */
    int32_t Ended;         /* KODBC_ADDREC_COMPLETE, _CANCELLED or _STOPPED */
    int32_t RefusedField;  /* index of the refused choice, else -1 */
    /* What the conversions changed on the way, for the user to hear: */
    long ValuesCut;              /* values longer than 30000 bytes, cut */
    long NumbersChanged;         /* numbers written into text fields that lost characters (1e+20 as 1+20) */
    long FirstNumberRecord;      /* the first of them: its source record, */
    char FirstNumber[100];       /* its text in the source (cut), */
    char FirstNumberAs[100];     /* what was written (cut), */
    char FirstNumberField[100];  /* and its destination field */
} KodbcAddRecordsResult;

/*
** Kodbc_AddRecords: copies the records of sourceTable (on source) into
** destinationTable (on destination); source may be the very connection
** of destination. options may be null (add mode, preset mapping only);
** result may be null, else it is zeroed first (RefusedField -1).
** The mapping is checked as the wizard checks it before it lets the user
** go on: no field filled from the source shows message 1633; a source type
** that cannot go into its destination field's type (numbers into dates,
** dates into numbers or long text) shows 1630 with the source field; the
** destination table's last field is not checked. Each record's statement
** is offered to the SQL dump (Korvel_DumpSqlStatement) and executed; the
** platform's progress indicator runs meanwhile. No transaction is used:
** what was written before a failed statement or a cancel stays (unless
** KODBC_ADDREC_BATCH makes the run one transaction, all or nothing).
** Returns 1 when the records were processed (result->Ended says whether
** all of them); 2 for a null connection or a null or empty table name
** (nothing shown), a destination table without fields (1617), the two
** check messages above, out of memory (1600) or a failed source query or
** catalogue call (shown); KODBC_ADDREC_REFUSED_CHOICE (3) when a choice
** names no field of the destination table, a field that cannot be written,
** an unknown mode, or a source field whose properties cannot be read
** (result->RefusedField tells which; nothing has been written).
*/
KODBC_API int KODBC_CALL Kodbc_AddRecords(SQLHDBC destination, const char *destinationTable, SQLHDBC source,
                                          const char *sourceTable, const KodbcAddRecordsOptions *options,
                                          KodbcAddRecordsResult *result);

#ifdef _WIN32
/*
** The add-records wizard (Windows). Six pages in the wizard frame: the
** destination table, the source data source, the source table, the field
** mapping (a list of the destination fields with what each is filled
** with; the dialog "Eigenschaften Importiertes Feld" and a pop-up menu
** change it), the identifying fields and a summary. Nothing is written
** before "Fertigstellen"; then the records are copied as Kodbc_AddRecords
** does it, under a progress indicator that can be cancelled.
**
** Kodbc_AddRecordsWizzard: destination is the open connection of the
** destination table; table (may be null) names the preselected destination
** table and, in its object type, the kinds of tables listed; its last 40
** bytes are kept. The source data source, source table and identifying
** fields are preset from the registry (HKEY_CURRENT_USER, the library's key,
** subkey "AddRecords") and written back there as the pages are left.
** Returns 1 when the wizard was finished and the records were processed
** (also when the run was cancelled or stopped by a failed statement: what
** was written stays), and then writes the whole table record back with the
** chosen destination table; 2 when it was cancelled, could not be run, ran
** out of memory (1600) or the source query failed (shown). The source
** connection the wizard opened is closed on every path.
*/
KODBC_API int KODBC_CALL Kodbc_AddRecordsWizzard(SQLHDBC destination, TableRecord *table);

/*
** AddRecsWizzCallback: the wizard's step callback, called by the wizard
** frame for every message of every page (wizard: the frame's handle, page:
** the page's template number, then the page window's message). Returns 0
** when the handle names no running add-records wizard or the message was
** not handled, 1 when it was. A page-leave message (WM_USER+2) answers
** through the 32-bit value lParam points to (nothing when lParam is null):
** 1 the page may be left, 2 it stays; backwards (wParam 2) is always 1.
*/
KODBC_API int KODBC_CALL AddRecsWizzCallback(LONG_PTR wizard, int page, HWND window, UINT message, WPARAM wParam,
                                             LPARAM lParam);

/*
** EditAddRecFieldDialogCallback: the dialog procedure of dialog 10035
** ("Eigenschaften Importiertes Feld"); WM_INITDIALOG's lParam is the
** wizard's field entry the dialog edits (null: the dialog shows nothing and
** only closes). The dialog ends with 1 after "OK" stored the choice in the
** entry, 0 when cancelled or when the choice could not be stored (a
** read-only field, a source field whose properties cannot be read).
** Returns TRUE for the messages it handled, FALSE otherwise.
*/
KODBC_API INT_PTR KODBC_CALL EditAddRecFieldDialogCallback(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
#endif

#ifdef __cplusplus
}
#endif

#endif /* KODBC_WIZARDS_H */
