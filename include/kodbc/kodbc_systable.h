/*
** kodbc — the system table and the library's text escaping.
**
** The applications keep small named values in the user's own database, in
** the table "KorvelSysTable" (Object VARCHAR (100), Type VARCHAR (50),
** ItemName VARCHAR (50), all NOT NULL, and ItemValue of a type chosen per
** database). One row is one item of one object; the triple (Object, Type,
** ItemName) is kept unique by deleting before inserting. The table is
** created on first use and hidden from the table listings. Values are
** stored escaped by the string encoding below.
**
** Object, type and item name go into the statements as they are: quotes
** in them are not doubled, so they must not contain a single quote. The
** statements on the table accept every SQLSTATE, so reading, writing and
** deleting never show an ODBC error; only creating the table does.
**
** "Blank" means null, empty or made only of white space (codes 1 to 32).
*/
#ifndef KODBC_SYSTABLE_H
#define KODBC_SYSTABLE_H

#include "kodbc_types.h"

#ifdef __cplusplus
extern "C" {
#endif

#define KODBC_SYSTABLE_NAME "KorvelSysTable"

/*
** Kodbc_CreateSystemTable: creates the table; ItemValue is "VARCHAR (5000)"
** on SQL Server, "MEMO" on Access and "BLOB" everywhere else (database type
** of Kodbc_GetDatabaseType).
** Returns 1 created; 2 for hdbc 0, the dump's refusal or an error (shown,
** also when the table exists already).
*/
KODBC_API int KODBC_CALL Kodbc_CreateSystemTable(SQLHDBC hdbc);

/*
** Kodbc_ReadSysTableString: the value of one item into out (size outSize
** with the terminator). defaultValue (null: empty) is copied into out
** first, and again when the stored value is blank, the item is missing or
** reading fails. The table is created when it does not exist. The value is
** read as text, at most 4998 characters, cut to outSize-1 (an outSize
** below 3 reads nothing: out holds the default), and decoded in place; a
** default that takes the stored value's place is decoded the same way.
** Returns the decoded length; 1 when object or type is blank (out holds the
** default); 0 for a null out or outSize below 1; the creation's failure 2
** when the table could not be created (out holds the default).
*/
KODBC_API int KODBC_CALL Kodbc_ReadSysTableString(SQLHDBC hdbc, const char *object, const char *type,
                                                  const char *itemName, const char *defaultValue, char *out,
                                                  int outSize);

/*
** Kodbc_WriteSysTableString: replaces the value of one item: the item is
** deleted, and unless value is blank a row with the encoded value is
** inserted (a blank value thus deletes the item). The table is created when
** it does not exist. The encoded value (at most 9999 characters) is cut so
** that the INSERT statement keeps within 999 characters: a value is never
** split over rows, what does not fit is lost.
** Returns 1 done, also when object, type or item name is blank (nothing
** is written then); 2 when the table could not be created (shown), for
** hdbc 0 or when the dump refused the DELETE or the INSERT.
*/
KODBC_API int KODBC_CALL Kodbc_WriteSysTableString(SQLHDBC hdbc, const char *object, const char *type,
                                                   const char *itemName, const char *value);

/*
** Kodbc_DeleteSysTableItem: deletes one item, or every item of object and
** type when itemName is blank.
** Returns 1 done (a missing item is no error), also when object or type is
** blank (nothing is deleted); 0 when the table does not exist (also for
** hdbc 0); 2 when the dump refused.
*/
KODBC_API int KODBC_CALL Kodbc_DeleteSysTableItem(SQLHDBC hdbc, const char *object, const char *type,
                                                  const char *itemName);

/*
** The escaping of text that travels inside SQL string literals, the
** registry or tab-separated lists:
**   tab \t, line feed \n, carriage return \r, double quote \q,
**   single quote \Q, backslash \\, any other byte 1..31 \x and two
**   upper-case hex digits; every other byte (0x80 and above too) as it is.
**
** Kodbc_EncodeString: encodes text in place (from a copy of its first
** size-1 characters); size is the buffer's size with the terminator. A
** character is encoded only while at least 11 bytes of the buffer are
** left, the rest of the input is dropped, so a buffer of 10 bytes or less
** ends up empty. Nothing happens for a null text or size below 1.
** Returns the encoded length.
**
** Kodbc_DecodeString: decodes in place; the result is never longer. After
** a backslash: Q ' , n line feed, q " , r carriage return, t tab, x and
** two more characters the byte of those hex digits; any other character
** (a second backslash too) gives one backslash and is consumed. Hex digits
** are read upper case only: "A".."F" count 10..15, any other character its
** distance from "0", the high digit shifted by four and OR-ed with the low
** one (so "\x1f" gives 0x36). An "x" with fewer than two characters after
** it gives a backslash; a backslash at the very end is dropped. A null
** text does nothing.
** Returns the decoded length.
*/
KODBC_API int KODBC_CALL Kodbc_EncodeString(char *text, int size);
KODBC_API int KODBC_CALL Kodbc_DecodeString(char *text);

#ifdef __cplusplus
}
#endif

#endif /* KODBC_SYSTABLE_H */
