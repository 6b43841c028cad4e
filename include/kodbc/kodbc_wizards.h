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
** SET clause are formed in 500 bytes each, as the wizards do: a condition
** that does not fit loses the groups and conditions that do not fit (a
** lone group too long for 500 bytes leaves no condition at all, so every
** record is concerned), and a statement that does not fit is cut (and
** then fails). The statement is offered to the SQL dump
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

#ifdef __cplusplus
}
#endif

#endif /* KODBC_WIZARDS_H */
