/*
** kodbc — connections, data-source records and driver queries.
**
** The environment and connection handles belong to the caller: the library
** fills them in Kodbc_ConnectDataSource, frees them in
** Kodbc_DisconnectDataSource and keeps no reference between calls.
*/
#ifndef KODBC_CONNECT_H
#define KODBC_CONNECT_H

#include "kodbc_types.h"

#ifdef __cplusplus
extern "C" {
#endif

/*
** Kodbc_ConnectDataSource: connects to the data source the record names.
** - Any null pointer: -1, nothing shown.
** - *henv and *hdbc both already set: 0 at once; the pair is taken to be
**   connected and the record is not compared with it.
** - Empty DataSourceName: message 1607, -1.
** Otherwise a half-set pair is freed first, then environment and connection
** are allocated and SQLConnect is called with null user and password where
** those fields are empty. SQL_SUCCESS_WITH_INFO counts as success and is not
** shown. No environment or connection attribute is set.
** Returns 0 when connected; -1 on failure, with the ODBC diagnostics shown
** and both handles 0.
*/
KODBC_API int KODBC_CALL Kodbc_ConnectDataSource(DataSourceRecord *source, SQLHENV *henv, SQLHDBC *hdbc);

/*
** Kodbc_DisconnectDataSource: disconnects and frees whatever of the pair is
** set and zeroes it. Does nothing when either pointer is null. Results of the
** driver calls are ignored.
*/
KODBC_API void KODBC_CALL Kodbc_DisconnectDataSource(SQLHENV *henv, SQLHDBC *hdbc);

/*
** Registry records. The location is given as the base library takes it:
** root key, key path, a reserved argument (pass 0) and a section (subkey).
** Values: "DataSourceName" (up to 100 characters), "UserId" (50),
** "Password" (50) — passwords are stored as given; "DbObjectName" (50) and
** the number "DbObjectType". A missing value takes the matching field of
** defaults, or an empty text / 0 when defaults is null. A null record does
** nothing. Nothing is reported.
*/
KODBC_API void KODBC_CALL Kodbc_ReadDataSourceFromRegistry(HKEY root, const char *keyPath, int reserved,
    const char *section, const DataSourceRecord *defaults, DataSourceRecord *record);
KODBC_API void KODBC_CALL Kodbc_WriteDataSourceToRegistry(HKEY root, const char *keyPath, int reserved,
    const char *section, const DataSourceRecord *record);
/* As Kodbc_ReadDataSourceFromRegistry, looking under HKEY_CURRENT_USER first
** and under HKEY_LOCAL_MACHINE second. */
KODBC_API void KODBC_CALL Kodbc_ReadDataSourceFromHKCUorHKLM(const char *keyPath, const char *section,
    const DataSourceRecord *defaults, DataSourceRecord *record);
KODBC_API void KODBC_CALL Kodbc_ReadDbObjectFromRegistry(HKEY root, const char *keyPath, int reserved,
    const char *section, const DbObjectRecord *defaults, DbObjectRecord *record);
KODBC_API void KODBC_CALL Kodbc_WriteDbObjectToRegistry(HKEY root, const char *keyPath, int reserved,
    const char *section, const DbObjectRecord *record);

/*
** Kodbc_GetDatabaseType: the KODBC_DBTYPE_* code of the connected DBMS, from
** SQL_DBMS_NAME compared case-insensitively: whole name "MICROSOFT SQL
** SERVER" 4, "ACCESS" 3, first six characters "ORACLE" 6, "MYSQL" 2,
** "PROGRESS" 1, "EXCEL" 5, anything else (a failed query, hdbc 0) 0.
*/
KODBC_API int KODBC_CALL Kodbc_GetDatabaseType(SQLHDBC hdbc);

/*
** Kodbc_GetDelimiter: the first character of the driver's identifier quote
** character. A driver that does not quote reports a blank, returned as it
** is. A failed query (or hdbc 0) gives 0.
*/
KODBC_API char KODBC_CALL Kodbc_GetDelimiter(SQLHDBC hdbc);

/*
** Kodbc_GetSchemaUsage: the driver's SQL_SCHEMA_USAGE bit mask; 0 when hdbc
** is 0 or the query fails. 0 means: build no schema-qualified names.
*/
KODBC_API unsigned KODBC_CALL Kodbc_GetSchemaUsage(SQLHDBC hdbc);

/*
** Kodbc_GetDatabaseName (SQL_DATABASE_NAME), Kodbc_GetDataSourceName
** (SQL_DATA_SOURCE_NAME), Kodbc_GetDriverVersion (SQL_DRIVER_VER): the
** driver's answer, cut to size-1 characters. Nothing is written when buffer
** is null or size below 1; an empty text when hdbc is 0 or the query fails.
*/
KODBC_API void KODBC_CALL Kodbc_GetDatabaseName(SQLHDBC hdbc, char *buffer, int size);
KODBC_API void KODBC_CALL Kodbc_GetDataSourceName(SQLHDBC hdbc, char *buffer, int size);
KODBC_API void KODBC_CALL Kodbc_GetDriverVersion(SQLHDBC hdbc, char *buffer, int size);

#ifdef _WIN32
/*
** Kodbc_FillDataSourcesBox: empties the list or combo box and fills it with
** the names of all data sources the driver manager knows. Message 1600 when
** no environment can be had (the box stays empty).
*/
KODBC_API void KODBC_CALL Kodbc_FillDataSourcesBox(HWND box);
#endif

#ifdef __cplusplus
}
#endif

#endif /* KODBC_CONNECT_H */
