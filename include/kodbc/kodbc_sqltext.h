/*
** kodbc — identifier quoting, name preparation and the statement formatter.
**
** A plain SQL identifier is an ASCII letter followed by ASCII letters,
** digits, "_" or "$"; anything else (blank, umlaut, dot, quote, leading
** digit or "_", the empty name) needs quoting. White space means the
** characters 1 to 32. A qualified name is split at "." and every part is
** handled by itself. Quotes already inside a part are never doubled.
**
** None of these functions returns a result or shows an ODBC error. Where a
** working copy of a long name cannot be allocated, message 1600 is shown
** and the result is as described per function.
*/
#ifndef KODBC_SQLTEXT_H
#define KODBC_SQLTEXT_H

#include "kodbc_types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Flag of the bracket-style functions: leave plain identifiers unquoted.
** Without it every part is bracketed. */
#define KODBC_PREPARE_KEEP_PLAIN 1

/*
** Kodbc_PrepareNameForSql: bracket style, in place. Nothing happens when
** name is null, size below 1, or the name empty or white space only.
** The name is cut at "." into a first and a second part of at most 99
** characters each (anything after a second "." is dropped). A part is left
** as it is when it is "*", empty or blank, or plain with
** KODBC_PREPARE_KEEP_PLAIN; otherwise it becomes "[" part "]" cut to 99
** characters, even when already bracketed ([a] gives [[a]]). The result,
** first part, then "." and the second part when that is not empty, is
** written back cut to size-1.
*/
KODBC_API void KODBC_CALL Kodbc_PrepareNameForSql(char *name, int size, int flags);

/*
** Kodbc_PrepareNameListForSql: out is emptied first (when out is given and
** size is at least 1). Nothing more happens when list is null or separator
** is 0. The list is always cut at tab characters, whatever non-zero
** separator is passed; each piece, at most 99 characters, is prepared as by
** Kodbc_PrepareNameForSql with a size of 100 and appended to out with ","
** before every piece but the first, cut to size-1.
*/
KODBC_API void KODBC_CALL Kodbc_PrepareNameListForSql(const char *list, char separator, char *out, int size,
                                                      int flags);

/*
** Kodbc_PrepareNameForSql92: SQL-92 style into out, which may be the buffer
** of name. Nothing is written when out is null or size below 1; out is
** empty when name is null or blank. When the driver reports no identifier
** quote text, a blank one, or the query fails (hdbc 0), the name is copied
** unchanged, cut to size-1. Otherwise the name is cut at "." into any
** number of parts of at most 199 characters; from each, leading white
** space, leading quote characters, trailing white space and trailing quote
** characters are removed, and unless it is then "*", empty or plain it is
** enclosed in the quote text (cut to 199). Parts are written one after
** another: the "." before a part only while at least 3 bytes remain, a part
** only when all of it fits (a part that does not fit is skipped, a later
** shorter one may still follow). Out of memory: message 1600, out empty.
*/
KODBC_API void KODBC_CALL Kodbc_PrepareNameForSql92(SQLHDBC hdbc, const char *name, char *out, int size);

/*
** Kodbc_PrepareNameListForSql92: in place. Nothing happens when list is
** null or size below 1. The list is cut at separator (a zero separator
** leaves it one piece) into pieces of at most 199 characters; each is
** prepared as by Kodbc_PrepareNameForSql92 into 200 bytes and the pieces are
** written back joined by joiner (none when 0) under the same room rules.
** ignored is not used. Out of memory: message 1600, list unchanged.
*/
KODBC_API void KODBC_CALL Kodbc_PrepareNameListForSql92(SQLHDBC hdbc, char *list, int size, char separator,
                                                        char joiner, int ignored);

/*
** Kodbc_QuoteNameIfNotPureSql: when the name is not a plain identifier,
** encloses the whole name (no splitting at ".") in the driver's quote text,
** cut to size-1. A driver reporting a blank gets the name enclosed in
** blanks; a failed query (hdbc 0) leaves the name as it is. Nothing happens
** when name is null or size below 1.
*/
KODBC_API void KODBC_CALL Kodbc_QuoteNameIfNotPureSql(SQLHDBC hdbc, char *name, int size);

/*
** Kodbc_StripDelimitersFromName: in place; the result is never longer.
** The name is cut at "." into parts of at most 199 characters; from each
** part that is not empty or blank, leading white space, at most one leading
** quote character (the first character of the driver's quote text),
** trailing white space and at most one trailing quote character are
** removed; the parts are joined with "." again. With hdbc 0 or a failed
** query only white space is removed. A null name does nothing.
** Kodbc_StripBracketsFromSqlName: the same without a connection, removing
** "[" at the front and "]" at the end of each part.
*/
KODBC_API void KODBC_CALL Kodbc_StripDelimitersFromName(SQLHDBC hdbc, char *name);
KODBC_API void KODBC_CALL Kodbc_StripBracketsFromSqlName(char *name);

/*
** Kodbc_ParseSchemaAndTable: nothing happens unless schema and table are
** given and both sizes are at least 2; a null name counts as empty. When
** hdbc is given and Kodbc_GetSchemaUsage reports 0, schema is empty and
** table the whole name. Otherwise (always with hdbc 0) a name with "."
** gives the text before the first "." as schema and the text up to a second
** "." as table (the rest is dropped); without "." schema is empty and table
** the whole name. Quoting is kept. Both are cut to their sizes less one.
*/
KODBC_API void KODBC_CALL Kodbc_ParseSchemaAndTable(SQLHDBC hdbc, const char *name, char *schema, int schemaSize,
                                                    char *table, int tableSize);

/*
** Kodbc_SprintfSqlStatement: formats sqlTemplate into out (at most size
** bytes, terminator included); all eight argument slots are always passed,
** unused ones 0, and only the first seven can be consumed. out must not be
** one of the arguments. Placeholders:
**   "%t", "%f"  the next argument prepared as by Kodbc_PrepareNameForSql92
**   "%s"        the next argument as it is, at most 299 characters
**   "%."        "." when an argument has been consumed and the last one is
**               neither null, empty nor blank; consumes nothing
** Any other letter after "%" (a second "%" too) vanishes with it and
** consumes nothing. Once seven arguments are consumed a further "%" is
** dropped and its letter printed. A "%" at the very end ends the output.
** Template characters are copied while more than 2 bytes remain, so at most
** size-2 of them appear; an expansion that would leave fewer than 2 bytes
** ends the output before it. Null or small out (size below 1) does nothing;
** a null template gives an empty text. hdbc is only asked for its
** identifier quote text, at most once per call. No result.
*/
KODBC_API void KODBC_CALL Kodbc_SprintfSqlStatement(SQLHDBC hdbc, char *out, int size, const char *sqlTemplate,
                                                    const char *arg1, const char *arg2, const char *arg3,
                                                    const char *arg4, const char *arg5, const char *arg6,
                                                    const char *arg7, const char *arg8);

#ifdef __cplusplus
}
#endif

#endif /* KODBC_SQLTEXT_H */
