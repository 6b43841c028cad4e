/*
** kodbc — catalogue queries: tables, schemata, fields, column properties,
** primary keys, and the library's own data-type codes.
**
** Every function that takes a connection allocates its own statement for
** the one catalogue call and frees it before returning. ODBC failures are
** shown through the diagnostics display at the point of failure, so the
** failure values below mean "the user has been told".
**
** "Blank" means null, empty or made only of white space (codes 1 to 32).
** Result lists are flat texts of names joined by one separator; the order
** is the driver's, nothing is sorted.
*/
#ifndef KODBC_CATALOG_H
#define KODBC_CATALOG_H

#include "kodbc_types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Name-format flags of the table listings. */
#define KODBC_TABLES_QUALIFY      0x1  /* "schema.table" where schemata are in use */
#define KODBC_TABLES_BOX_OPTION8  0x2  /* box fillers only: the box helper's option 8 */

/* Field-listing flags (Kodbc_GetFields, Kodbc_FillFieldsBox). */
#define KODBC_FIELDS_QUALIFY      0x01 /* every name "table.field", cut to 49 characters */
#define KODBC_FIELDS_WITH_TYPE    0x02 /* separator and the ODBC type number after each name */
#define KODBC_FIELDS_QUOTE_ALSO   0x04 /* implies KODBC_FIELDS_QUOTE */
#define KODBC_FIELDS_QUOTE        0x08 /* names prepared for SQL-92 (driver's quote character) */
#define KODBC_FIELDS_DISAMBIGUATE 0x10 /* a name found in several tables becomes "table.field" */
#define KODBC_FIELDS_NOT_NULL     0x20 /* only fields declared NOT NULL */

/* Column-box flags (Kodbc_AddColumnsToBox). */
#define KODBC_COLUMNS_TABLE_PREFIX  0x01 /* "table." before each field */
#define KODBC_COLUMNS_NOT_NULL      0x20 /* only fields declared NOT NULL */
#define KODBC_COLUMNS_SCHEMA_PREFIX 0x40 /* "schema." first, when a schema is given */

/* Primary-key flag: names prepared for SQL-92. */
#define KODBC_PK_QUOTE            0x08

/*
** Column properties record, six 32-bit integers (24 bytes). Set to zeros
** before it is filled; a property the driver refuses stays 0.
*/
typedef struct ColumnPropertiesRecord {
    int32_t SqlDataType;    /* ODBC SQL type (SQL_COLUMN_TYPE) */
    int32_t AutoIncrement;  /* 0/1 */
    int32_t CaseSensitive;  /* 0/1 */
    int32_t Length;         /* SQL_COLUMN_LENGTH */
    int32_t Nullable;       /* 1 unless the driver answers "no nulls" (unknown counts as nullable) */
    int32_t Updatable;      /* 1 unless the driver answers "read only" (unknown counts as updatable) */
} ColumnPropertiesRecord;

#ifdef __cplusplus
static_assert(sizeof(ColumnPropertiesRecord) == 24, "ColumnPropertiesRecord is 24 bytes");
#else
_Static_assert(sizeof(ColumnPropertiesRecord) == 24, "ColumnPropertiesRecord is 24 bytes");
#endif

/*
** Kodbc_GetTablesExtended: the names of the database objects that typeFlags
** (KODBC_OBJECT_* bits) selects, joined by separator (null: ",") into out.
** - typeFlags: 0x1 'TABLE', 0x4 'ALIAS', 0x2 'VIEW', 0x100 'SYNONYM',
**   0x8 'SYSTEM TABLE' (in this order in the type list); 0x10 passes no
**   type list (every object) and overrides the others. Bits without any of
**   these give an empty type list.
** - Unless typeFlags has 0x8, tables whose names begin with "USys" (with
**   case) and the table "KorvelSysTable" (any case) are left out.
** - schema: blank lists all schemata.
** - nameFlags 0x1: "schema.table" (at most 199 characters) where the
**   connection uses schemata and the row has a schema.
** - Room: the listing stops, without error, at the first name whose bare
**   length plus the separator's is not less than the room left; a
**   qualified item that still does not fit is cut. Nothing is ever written
**   past outSize.
** Returns 0 done; -1 when out is null, outSize below 1, hdbc 0 or an ODBC
** error (shown).
*/
KODBC_API int KODBC_CALL Kodbc_GetTablesExtended(SQLHDBC hdbc, int typeFlags, const char *schema, int nameFlags,
    char *out, int outSize, const char *separator);
/* Kodbc_GetTables: Kodbc_GetTablesExtended with no schema and no name flags. */
KODBC_API int KODBC_CALL Kodbc_GetTables(SQLHDBC hdbc, int typeFlags, char *out, int outSize,
    const char *separator);

/*
** Kodbc_DoesTableExist: whether an object of typeFlags named name (any
** case, names compared up to 99 characters) is listed. The listing is held
** in 10000 bytes: on a data source with very many tables, a table beyond
** that is reported missing.
** Returns 1 exists, 0 not (also for a null name), -1 listing failed.
*/
KODBC_API int KODBC_CALL Kodbc_DoesTableExist(SQLHDBC hdbc, int typeFlags, const char *name);
/*
** Kodbc_DoesTableExistExtended: as Kodbc_DoesTableExist over the listing of
** schema with name flag 0x1, so where schemata are in use name is compared
** with "schema.table".
*/
KODBC_API int KODBC_CALL Kodbc_DoesTableExistExtended(SQLHDBC hdbc, int typeFlags, const char *schema,
    const char *name);

/*
** Kodbc_ObjectTypeToName: "TABLE", "VIEW", "FORM" or "REPORT" for the
** object-record types 1, 2, 4, 8, else an empty text; cut to outSize-1.
** Nothing is written when out is null or outSize below 1.
*/
KODBC_API void KODBC_CALL Kodbc_ObjectTypeToName(int type, char *out, int outSize);

/*
** Kodbc_GetFields: the fields of the tab-separated tables (each optionally
** "schema.table") joined by separator (null: tab) into out, with the
** KODBC_FIELDS_* flags. The tables are read twice: once to count the
** fields, once to collect them (a table that gains columns in between
** cannot overflow). An entry that does not fit the room left (name plus
** twice the separator plus the type text) is skipped; later, shorter ones
** are still tried.
** Returns 1 done (an empty result for null or empty tables); 2 when out is
** null, outSize below 1, on an ODBC error (shown) or out of memory
** (message 1600).
*/
KODBC_API int KODBC_CALL Kodbc_GetFields(SQLHDBC hdbc, const char *tables, int flags, const char *separator,
    char *out, int outSize);

/*
** Kodbc_GetFieldCount: the number of rows SQLColumns gives for table (no
** catalogue, no schema); 2 on an ODBC error (shown) or bad argument. The
** failure value is also a valid count: callers cannot tell a two-column
** table from a failure, and the value stays 2 for their sake.
*/
KODBC_API int KODBC_CALL Kodbc_GetFieldCount(SQLHDBC hdbc, const char *table);

/*
** Kodbc_GetColumnNamesFromRowSet: the column names of an executed
** statement's result joined by separator (0: tab) into out. Stops before a
** name whose length plus 2 does not fit into the room left.
** Returns 1 done; 2 on bad argument or an ODBC error (shown).
*/
KODBC_API int KODBC_CALL Kodbc_GetColumnNamesFromRowSet(SQLHSTMT hstmt, char separator, char *out, int outSize);

/*
** Single-column properties. Each prepares "SELECT field FROM table" (names
** prepared for SQL-92) without executing it and asks the driver about
** column 1. Null connection or blank table or field: the failure value at
** once.
** Kodbc_GetColumnDataType: the ODBC SQL type; 0 on any failure.
** Kodbc_GetColumnLength: SQL_COLUMN_LENGTH; -1 on any failure.
** Kodbc_IsColumnAutoIncrement, Kodbc_IsColumnUpdateable: 1 when the
** property is non-zero, else 0 (also on failure).
** Kodbc_GetColumnProperties: fills *record (zeroed first); a property the
** driver does not support stays 0. 1 done, 2 bad argument (null record
** included) or ODBC error (shown).
*/
KODBC_API int KODBC_CALL Kodbc_GetColumnDataType(SQLHDBC hdbc, const char *table, const char *field);
KODBC_API int KODBC_CALL Kodbc_GetColumnLength(SQLHDBC hdbc, const char *table, const char *field);
KODBC_API int KODBC_CALL Kodbc_IsColumnAutoIncrement(SQLHDBC hdbc, const char *table, const char *field);
KODBC_API int KODBC_CALL Kodbc_IsColumnUpdateable(SQLHDBC hdbc, const char *table, const char *field);
KODBC_API int KODBC_CALL Kodbc_GetColumnProperties(SQLHDBC hdbc, const char *table, const char *field,
    ColumnPropertiesRecord *record);

/*
** Kodbc_GetColumnDescriptions: the columns of table (no schema) in
** catalogue order, one line each, lines joined by line feeds (none after
** the last), each line five tab-separated fields: name; the data-type
** display name with the length in parentheses where the catalogue gives
** one ("VarText (20)"); "Ja" or "Nein" for whether empty values are
** allowed ("Ja" when the driver does not know); the default as the
** catalogue writes it; the remark. Defaults and remarks longer than 299
** characters are cut; the whole text is cut to outSize-1. Returns 1 done
** (an empty text for a blank table), 2 for a null connection, a null out,
** outSize below 1 or an ODBC error (shown).
*/
KODBC_API int KODBC_CALL Kodbc_GetColumnDescriptions(SQLHDBC hdbc, const char *table, char *out, int outSize);

/*
** Primary keys. Both return 2, without showing anything, unless the driver
** supports SQLPrimaryKeys; a blank table gives 1 and an empty result. The
** table name (at most 99 characters) is prepared for SQL-92 first on a
** MySQL data source. flags KODBC_PK_QUOTE prepares the result names.
** Kodbc_GetPrimaryKeyColumns: the key's columns in the driver's order,
** joined by separator (null: tab), cut to outSize-1.
** Kodbc_GetPrimaryKeyName: the key's name (empty when the table has no key
** or the driver names none), cut to outSize-1.
** Return 1 done; 2 when out is null, outSize below 1, hdbc 0, the function
** is not supported, or on an ODBC error (shown).
*/
KODBC_API int KODBC_CALL Kodbc_GetPrimaryKeyColumns(SQLHDBC hdbc, const char *table, int flags,
    const char *separator, char *out, int outSize);
KODBC_API int KODBC_CALL Kodbc_GetPrimaryKeyName(SQLHDBC hdbc, const char *table, int flags, char *out,
    int outSize);

/*
** Kodbc_SqlDataTypeToKodbcDataType: the KODBC_TYPE_* code of an ODBC SQL
** type. VARCHAR, WVARCHAR and 0 (unknown) 10; LONGVARCHAR, WLONGVARCHAR 9;
** TINYINT, BIGINT, INTEGER, SMALLINT 2; NUMERIC, DECIMAL, FLOAT, REAL,
** DOUBLE 3; the ODBC 2 codes DATE, TIME, TIMESTAMP (9, 10, 11) 4; BINARY,
** VARBINARY, LONGVARBINARY 7; everything else 1 — the ODBC 3 date codes
** 91 to 93 and GUID included, deliberately.
*/
KODBC_API int KODBC_CALL Kodbc_SqlDataTypeToKodbcDataType(int sqlType);

/*
** Kodbc_OdbcDataToString: rewrites in place a value read as text, for
** display or export. NUMERIC, DECIMAL, FLOAT, REAL, DOUBLE: every "."
** becomes decimalMark. DATE, TIME, TIMESTAMP (9, 10, 11): an ODBC date or
** timestamp text becomes "dd.mm.yyyy", followed by " hh:mm:ss" when it had
** a time, cut to size-1; a text that is not a date stays. Every other type
** (the ODBC 3 date codes 91 to 93 included) stays. A null text or a size
** below 1 does nothing.
*/
KODBC_API void KODBC_CALL Kodbc_OdbcDataToString(char *text, int size, int sqlType, char decimalMark);

#ifdef _WIN32
/*
** Box fillers (list or combo box).
** Kodbc_FillTablesBoxExtended: lists as Kodbc_GetTablesExtended with the
** separator tab into 30000 bytes and fills the box from it (nameFlags 0x2
** passes option 8 to the box helper). Returns 0 / -1 as the listing; after
** a failure the box is left as it was. Kodbc_FillTablesBox: with no schema
** and no name flags.
*/
KODBC_API int KODBC_CALL Kodbc_FillTablesBoxExtended(SQLHDBC hdbc, int typeFlags, const char *schema,
    int nameFlags, HWND box);
KODBC_API int KODBC_CALL Kodbc_FillTablesBox(SQLHDBC hdbc, int typeFlags, HWND box);
/*
** Kodbc_FillSchemataBox: empties the box and adds each schema that holds a
** table, once. Returns 1 done (also with no schemata: the box stays
** empty); 2 bad argument or ODBC error (shown).
*/
KODBC_API int KODBC_CALL Kodbc_FillSchemataBox(SQLHDBC hdbc, HWND box);
/*
** Kodbc_FillFieldsBox: empties the box and fills it from Kodbc_GetFields
** (separator tab, 30000 bytes). Returns Kodbc_GetFields' result.
*/
KODBC_API int KODBC_CALL Kodbc_FillFieldsBox(SQLHDBC hdbc, const char *tables, int flags, HWND box);
/*
** Kodbc_AddColumnsToBox: adds one entry (at most 199 characters) per column
** of the table at the end of the box, without emptying it first; flags
** KODBC_COLUMNS_*. Returns 1 done (also for a blank table or box 0), 2 on
** an ODBC error (shown).
*/
KODBC_API int KODBC_CALL Kodbc_AddColumnsToBox(SQLHDBC hdbc, const char *schema, const char *table, HWND box,
    int flags);
/* Forms and reports belong to the applications, not the database: these
** exports do nothing and leave the box as it is. */
KODBC_API void KODBC_CALL Kodbc_FillFormsBox(SQLHDBC hdbc, HWND box);
KODBC_API void KODBC_CALL Kodbc_FillReportsBox(SQLHDBC hdbc, HWND box);
#endif

#ifdef __cplusplus
}
#endif

#endif /* KODBC_CATALOG_H */
