/*
** kodbc — the query object: a SELECT statement (or a view's body) held as
** its four parts — tables with their joins, result columns, selection
** conditions, sort order — exchanged with the caller as descriptor texts
** and turned into SQL. Callers keep a query from one use to the next only
** as the four descriptors; SQL is never read back.
*/
#ifndef KODBC_SELFACT_H
#define KODBC_SELFACT_H

#include "kodbc_types.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct SelFact SelFact;

/* Flag: the statement is the body of a view (no sort order in the
   designer, the test creates a view, "*" as the LIKE wildcard on
   databases of type 3). */
#define SELFACT_VIEW            0x1

/* Parts of a query. Descriptor texts: entries separated by line feeds,
   fields by tabs, an absent field written empty; on reading each line and
   each field is taken up to 999 characters and an empty field is absent.
   Tables: name, alias, join key ("", "LJ", "IJ", "RJ"), operator key
   ("EQ", "NE", "GT", "GE", "LT", "LE"), first and second operand (keys any
   case; an unknown or empty key is no join / "EQ"). Columns: expression,
   alias. Sort order: column, direction ("ASC", "DESC" or empty). The
   selection is a selection descriptor (kodbc_seldesc.h) as it stands. */
#define SELFACT_TABLES          1
#define SELFACT_COLUMNS         2
#define SELFACT_SORT            3
#define SELFACT_SELECTION       4

/* Results. */
#define SELFACT_OK              0
#define SELFACT_NO_QUERY        1000
#define SELFACT_NO_MEMORY       1001

/*
** Kodbc_SelFact_Create: a new, empty query on hdbc (not owned; used to
** prepare names and conditions and to test) in schema (may be null; at
** most 99 characters are kept) with the SELFACT_* flags. Returns 0 and
** stores it in *query; SELFACT_NO_MEMORY (nothing stored) when it could
** not be built or query is null.
*/
KODBC_API int KODBC_CALL Kodbc_SelFact_Create(SelFact **query, SQLHDBC hdbc, const char *schema, unsigned flags);

/* Kodbc_SelFact_Destroy: frees the query and its parts; null is ignored. */
KODBC_API void KODBC_CALL Kodbc_SelFact_Destroy(SelFact *query);

/*
** Kodbc_SelFact_SetDescriptor: replaces part (SELFACT_TABLES ..
** SELFACT_SELECTION) from its descriptor text (null or empty: the part is
** emptied). A null query or another part number is ignored. reserved is
** not used. Out of memory leaves the part holding what could be stored.
*/
KODBC_API void KODBC_CALL Kodbc_SelFact_SetDescriptor(SelFact *query, int part, const char *text, int reserved);

/*
** Kodbc_SelFact_GetDescriptor: writes part's descriptor text into out,
** cut to outSize-1 characters and terminated. Nothing is written for a
** null query, another part number, a null out or outSize below 1.
*/
KODBC_API void KODBC_CALL Kodbc_SelFact_GetDescriptor(SelFact *query, int part, char *out, int outSize,
                                                      int reserved);

/*
** Kodbc_SelFact_CreateSql: the statement, cut to sqlSize-1 characters:
** "SELECT", the columns ("expression AS alias", joined by ", "), " FROM "
** and the tables in list order (a table that is not joined follows a
** ", ", a joined one a blank and "LEFT JOIN" / "INNER JOIN" / "RIGHT
** JOIN", its name, " AS alias", " ON first op second", where the ordering
** operators are written mirrored as the designer always wrote them: "GT"
** writes "<", "GE" "<=", "LT" ">", "LE" ">="), " WHERE " and the
** selection's condition, " ORDER BY " and the sort entries (a direction
** other than "ASC" follows its column). Each part is formed in 10000
** characters; an empty part is left out with its keyword. Nothing is
** checked: no columns gives "SELECT FROM t". Returns 0, SELFACT_NO_QUERY
** for a null query (nothing written).
*/
KODBC_API int KODBC_CALL Kodbc_SelFact_CreateSql(SelFact *query, char *sql, int sqlSize, int reserved);

/*
** Kodbc_SelFact_ParseSql: reading SQL back into the parts is not provided
** (callers keep the descriptors): returns 0 and changes nothing;
** SELFACT_NO_QUERY for a null query.
*/
KODBC_API int KODBC_CALL Kodbc_SelFact_ParseSql(SelFact *query, const char *sql, int reserved);

/*
** Kodbc_SelFact_DisplayError: shows message 1600 ("Speichermangel") for
** SELFACT_NO_MEMORY and nothing for any other code. Returns 1.
*/
KODBC_API int KODBC_CALL Kodbc_SelFact_DisplayError(int code);

#ifdef _WIN32
/*
** Kodbc_SelFact_Edit: the designer (dialog 10064 "Assistent für
** SELECT-Befehl") over owner on a copy of query: pages for the tables and
** their joins, the columns, the selection and (without SELFACT_VIEW) the
** sort order, the statement as it stands, the data source, the schema
** (another can be picked; it serves the designer only) and "Testen". OK
** is accepted only when the query has a table, its first table is not
** joined and every other one is, it has a column, every join has both
** operands, and the statement passes the test (a view with
** SELFACT_VIEW); the refusing page is brought to the front with its
** message. Returns 1 when accepted: the query then holds the four edited
** parts (its schema and flags are unchanged). Returns 2 when cancelled,
** for a null query, or when memory ran out (message 1600 shown); the
** query is then unchanged.
*/
KODBC_API int KODBC_CALL Kodbc_SelFact_Edit(SelFact *query, HWND owner);
#endif

#ifdef __cplusplus
}
#endif

#endif /* KODBC_SELFACT_H */
