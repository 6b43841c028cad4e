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

#ifdef __cplusplus
}
#endif

#endif /* KODBC_TABLEDESIGN_H */
