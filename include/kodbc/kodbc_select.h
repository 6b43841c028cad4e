/*
** kodbc — the SELECT statement scanner: finding, reading and rewriting the
** clauses of a SELECT statement held as text, and the list boxes that show
** a clause one item per line.
**
** No SQL parser: a clause starts at a word (a run of letters) equal, in any
** case, to one of SELECT, FROM, ORDER, BY, HAVING, INTO, WHERE, GROUP,
** TEMP, outside quotes ('...' and "...") and outside parentheses, and runs
** to the next such word. So "GROUP" is a clause of its own whose text
** begins with "BY", and a name such as ORDER_NR ends the clause before it.
** An unmatched ")" outside quotes shows message 1618 and the clause then
** counts as absent.
**
** Items of a clause are separated by "," and their words by blanks; a ","
** or blank between two identifier quote characters of the connected
** database is text. Parentheses and string literals are not respected
** there: "f(a,b)" gives the items "f(a" and "b)". Items are cut at 199
** characters, words at 99.
**
** Where a connection is taken it is only asked for its identifier quote
** character; hdbc 0 means none is recognised and names are not quoted.
*/
#ifndef KODBC_SELECT_H
#define KODBC_SELECT_H

#include "kodbc_types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Sort-scan flags (Kodbc_SelectScanOrderByClause). */
#define KODBC_SCAN_DESC_SUFFIX    0x02 /* " DESC" behind a column sorted descending */
#define KODBC_SCAN_DIRECTION_TAB  0x04 /* "\tA" or "\tD" behind every column */

/* Clause-to-box flags. */
#define KODBC_BOX_SORT_LABEL      0x08 /* sort box: tab and "aufsteigend"/"absteigend" */
#define KODBC_BOX_FIELD_ALIAS     0x10 /* column box: tab and the alias, when there is one */

/* Item data of a sort-box line. */
#define KODBC_SORT_ASCENDING      0
#define KODBC_SORT_DESCENDING     1

/* Working buffer of the box-to-clause functions, in bytes. */
#define KODBC_SELECT_CLAUSE_BUFFER 30000

/*
** Kodbc_SelectScanFieldsClause: the result names of the column list (per
** item its last word: the alias when there is one, else the column),
** delimiters stripped, empty ones skipped, joined by separator (null: ",")
** into out, cut to outSize-1. flags is not used.
** Returns -1 when out is null, outSize below 1, or the statement has no
** SELECT clause (out is then empty when it could be written); 0 otherwise.
** A null or empty statement gives an empty list and 0.
*/
KODBC_API int KODBC_CALL Kodbc_SelectScanFieldsClause(SQLHDBC hdbc, const char *statement, const char *separator,
                                                      int flags, char *out, int outSize);
/*
** Kodbc_SelectScanTablesClause: the table names of the FROM clause (per
** item its first word, the second when the first is "OUTER"), delimiters
** stripped, joined by separator (null: ","). Aliases are not read. Results
** as Kodbc_SelectScanFieldsClause, -1 also when there is no FROM clause.
*/
KODBC_API int KODBC_CALL Kodbc_SelectScanTablesClause(SQLHDBC hdbc, const char *statement, const char *separator,
                                                      int flags, char *out, int outSize);
/*
** Kodbc_SelectScanOrderByClause: the sort columns of the ORDER BY clause
** (per item its first word, delimiters stripped), joined by separator
** (null: ","). A column is descending exactly when its second word is
** "DESC" (any case). flags KODBC_SCAN_DESC_SUFFIX, KODBC_SCAN_DIRECTION_TAB.
** Returns -1 when out is null or outSize below 1; 0 otherwise, also when
** there is no ORDER BY clause (empty list).
*/
KODBC_API int KODBC_CALL Kodbc_SelectScanOrderByClause(SQLHDBC hdbc, const char *statement, const char *separator,
                                                       int flags, char *out, int outSize);

/*
** The three scans without a connection and with flags 0: no identifier
** quote character is recognised. reserved is not used.
*/
KODBC_API int KODBC_CALL Kodbc_Select_Scan_FieldsClause(const char *statement, const char *separator, int reserved,
                                                        char *out, int outSize);
KODBC_API int KODBC_CALL Kodbc_Select_Scan_TablesClause(const char *statement, const char *separator, int reserved,
                                                        char *out, int outSize);
KODBC_API int KODBC_CALL Kodbc_Select_Scan_OrderByClause(const char *statement, const char *separator,
                                                         int reserved, char *out, int outSize);

/*
** Kodbc_Select_Get_Clause: the text of the clause named by keyword and,
** when not null, secondKeyword (as "ORDER", "BY"): what follows the
** keywords and their blanks up to the next clause keyword or the end, less
** trailing white space, cut to outSize-1. Empty when the clause is absent,
** keyword is null or the statement is null.
** Returns -1 when out is null or outSize below 1; 0 otherwise.
*/
KODBC_API int KODBC_CALL Kodbc_Select_Get_Clause(const char *statement, const char *keyword,
                                                 const char *secondKeyword, char *out, int outSize);

/*
** Replacing a clause, in place, every append bounded by statementSize.
** newClause null counts as empty. A present clause is cut out from its
** keyword on and written again as "KEYWORD [SECOND ]text" followed by a
** blank and whatever followed it; an absent one is appended at the end as
** " KEYWORD [SECOND ]text" when text is not empty. An empty text removes a
** WHERE or ORDER BY clause with its keywords; SELECT and FROM keep theirs.
**
** Kodbc_Select_Replace_FieldsClause, Kodbc_Select_Replace_TablesClause:
** a statement without both a SELECT and a FROM clause is first replaced by
** "SELECT FROM". Kodbc_Select_Replace_OrderByClause and
** Kodbc_Select_Replace_WhereClause: afterwards a WHERE clause is moved
** behind the table list ("tables WHERE condition" as the FROM clause), so
** a WHERE appended behind ORDER BY ends up before it.
** reserved is not used. Each returns 0 done; -1 when statement is null or
** statementSize below 1.
*/
KODBC_API int KODBC_CALL Kodbc_Select_Replace_FieldsClause(char *statement, int statementSize,
                                                           const char *newClause, int reserved);
KODBC_API int KODBC_CALL Kodbc_Select_Replace_TablesClause(char *statement, int statementSize,
                                                           const char *newClause, int reserved);
KODBC_API int KODBC_CALL Kodbc_Select_Replace_OrderByClause(char *statement, int statementSize,
                                                            const char *newClause, int reserved);
KODBC_API int KODBC_CALL Kodbc_Select_Replace_WhereClause(char *statement, int statementSize,
                                                          const char *newClause);

#ifdef _WIN32
/*
** Clause to box (list or combo box). Each empties the box, then adds one
** line per item of the clause at the end. Returns 0; -1 when the box is 0
** (the box then is untouched).
** Kodbc_Select_FieldsClause_To_FieldsBox: the column (first word),
** delimiters stripped; with KODBC_BOX_FIELD_ALIAS and an alias (the second
** word, or the third when the second is "AS") "column\talias". Item data 0.
** Kodbc_Select_TablesClause_To_TablesBox: the table name as the table scan
** reads it. Item data 0.
** Kodbc_Select_OrderByClause_To_OrderByBox: the column; with
** KODBC_BOX_SORT_LABEL a tab and "aufsteigend" or "absteigend". Item data
** KODBC_SORT_DESCENDING or KODBC_SORT_ASCENDING.
*/
KODBC_API int KODBC_CALL Kodbc_Select_FieldsClause_To_FieldsBox(SQLHDBC hdbc, const char *statement, int flags,
                                                                HWND box);
KODBC_API int KODBC_CALL Kodbc_Select_TablesClause_To_TablesBox(SQLHDBC hdbc, const char *statement, int flags,
                                                                HWND box);
KODBC_API int KODBC_CALL Kodbc_Select_OrderByClause_To_OrderByBox(SQLHDBC hdbc, const char *statement, int flags,
                                                                  HWND box);

/*
** Box to clause: the lines joined by "," (no blanks) into a working buffer
** of KODBC_SELECT_CLAUSE_BUFFER bytes, then put into the statement by the
** matching replace function above.
** Fields: "column\talias" gives column " AS " alias (both prepared as
** identifiers of hdbc, 99 characters each); a column beginning with "*" is
** written as a lone "*". Tables: the whole line (199 characters) prepared.
** Sort keys: the text before the first tab prepared, " DESC" when the
** line's item data is not 0.
** Each returns 0 done; -1 when the working buffer cannot be had, the box is
** 0, or the replacement fails (null statement, statementSize below 1).
*/
KODBC_API int KODBC_CALL Kodbc_Select_FieldsBox_To_FieldsClause(SQLHDBC hdbc, HWND box, char *statement,
                                                                int statementSize);
KODBC_API int KODBC_CALL Kodbc_Select_TablesBox_To_TablesClause(SQLHDBC hdbc, HWND box, char *statement,
                                                                int statementSize);
KODBC_API int KODBC_CALL Kodbc_Select_OrderByBox_To_OrderByClause(SQLHDBC hdbc, HWND box, char *statement,
                                                                  int statementSize);

/*
** Kodbc_FieldsBox_EditAlias: asks for a new alias of the column line at
** index (below 0: the selected line) in the modal dialog "Eingabe eines
** neuen Verwendungs-Namens". The edit field keeps only ASCII letters, the
** digits 1 to 9 and "_" (no 0). On OK the line becomes "column" or
** "column\talias", at the same position, item data 0, selected.
** Returns 1 when the line was changed; 2 when the user cancelled, no line
** is selected, the index is past the end or the box is 0.
*/
KODBC_API int KODBC_CALL Kodbc_FieldsBox_EditAlias(HWND box, int index);
/*
** Kodbc_OrderByBox_ToggleDirection: flips the direction of the sort line at
** index (below 0: the selected line): the item data becomes 1 unless it was
** 1, then 0, and the text behind the first tab the matching label. The
** line is replaced at the same position and selected.
** Returns the box helper's result of selecting it (the index); a negative
** value when nothing is selected or the index is past the end.
*/
KODBC_API int KODBC_CALL Kodbc_OrderByBox_ToggleDirection(HWND box, int index);
#endif

#ifdef __cplusplus
}
#endif

#endif /* KODBC_SELECT_H */
