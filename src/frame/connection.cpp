// Connections, data-source records in the registry, and the driver queries
// the rest of the library adapts its SQL to.
#include "internal/diagnostics.h"
#include "internal/driver_info.h"
#include "internal/library.h"
#include "internal/odbc_call.h"

#include <korvel/bounded_text.h>
#include <korvel/korvel32.h>

#include <kodbc/kodbc_connect.h>
#include <kodbc/kodbc_diag.h>

#include <cstring>
#include <strings.h>

namespace kodbc {

int DatabaseTypeFromName(const char *name) {
    if (!name) return KODBC_DBTYPE_OTHER;
    if (strcasecmp(name, "MICROSOFT SQL SERVER") == 0) return KODBC_DBTYPE_SQLSERVER;
    if (strcasecmp(name, "ACCESS") == 0) return KODBC_DBTYPE_ACCESS;
    if (strncasecmp(name, "ORACLE", 6) == 0) return KODBC_DBTYPE_ORACLE;
    if (strcasecmp(name, "MYSQL") == 0) return KODBC_DBTYPE_MYSQL;
    if (strcasecmp(name, "PROGRESS") == 0) return KODBC_DBTYPE_PROGRESS;
    if (strcasecmp(name, "EXCEL") == 0) return KODBC_DBTYPE_EXCEL;
    return KODBC_DBTYPE_OTHER;
}

bool GetInfoText(SQLHDBC hdbc, SQLUSMALLINT item, char *buffer, int size) {
    korvel::BoundedText out(buffer, size);
    if (!hdbc || !out.valid()) return false;
    SQLSMALLINT length = 0;
    SQLRETURN rc = KODBC_SQL(SQLGetInfo, hdbc, item, static_cast<SQLPOINTER>(buffer),
                             static_cast<SQLSMALLINT>(size), &length);
    if (!odbc::succeeded(rc)) {
        buffer[0] = '\0';
        return false;
    }
    buffer[size - 1] = '\0';
    return true;
}

bool LiteralsTakeBackslashEscapes(SQLHDBC hdbc) {
    char name[100];
    if (!GetInfoText(hdbc, SQL_DBMS_NAME, name, sizeof name)) return false;
    return DatabaseTypeFromName(name) == KODBC_DBTYPE_MYSQL || strcasecmp(name, "MariaDB") == 0;
}

namespace {

// A field of a record: the stored value, else the default record's field,
// else an empty text.
const char *DefaultField(const void *defaults, std::size_t offset) {
    return defaults ? static_cast<const char *>(defaults) + offset : "";
}

void ReadSourceFields(DataSourceRecord *record, const DataSourceRecord *defaults,
                      int (*read)(const void *location, const char *value, const char *def, char *buf, int size),
                      const void *location) {
    read(location, "DataSourceName", DefaultField(defaults, offsetof(DataSourceRecord, DataSourceName)),
         record->DataSourceName, sizeof record->DataSourceName);
    read(location, "UserId", DefaultField(defaults, offsetof(DataSourceRecord, UserId)), record->UserId,
         sizeof record->UserId);
    read(location, "Password", DefaultField(defaults, offsetof(DataSourceRecord, Password)), record->Password,
         sizeof record->Password);
}

struct RegistryLocation {
    HKEY root;
    const char *keyPath;
    int reserved;
    const char *section;
};

int ReadFromKey(const void *where, const char *value, const char *def, char *buf, int size) {
    auto *l = static_cast<const RegistryLocation *>(where);
    return Korvel_ReadRegistryString(l->root, l->keyPath, l->reserved, l->section, value, def, buf, size);
}

int ReadFromUserOrMachine(const void *where, const char *value, const char *def, char *buf, int size) {
    auto *l = static_cast<const RegistryLocation *>(where);
    return Korvel_ReadStringFromHKCUorHKLM(l->keyPath, l->section, value, def, buf, size);
}

void FreePair(SQLHENV *henv, SQLHDBC *hdbc) {
    if (*hdbc) {
        KODBC_SQL(SQLDisconnect, *hdbc);
        KODBC_SQL(SQLFreeConnect, *hdbc);
        *hdbc = SQL_NULL_HDBC;
    }
    if (*henv) {
        KODBC_SQL(SQLFreeEnv, *henv);
        *henv = SQL_NULL_HENV;
    }
}

} // namespace
} // namespace kodbc

using namespace kodbc;

extern "C" {

KODBC_API int KODBC_CALL Kodbc_ConnectDataSource(DataSourceRecord *source, SQLHENV *henv, SQLHDBC *hdbc) {
    if (!source || !henv || !hdbc) return KODBC_NOT_CONNECTED;
    if (*henv && *hdbc) return KODBC_CONNECTED;
    if (source->DataSourceName[0] == '\0') {
        LibraryMessage(msg::NO_DATA_SOURCE);
        return KODBC_NOT_CONNECTED;
    }
    FreePair(henv, hdbc);

    if (!odbc::succeeded(KODBC_SQL(SQLAllocEnv, henv))) {
        *henv = SQL_NULL_HENV;
        LibraryMessage(msg::OUT_OF_MEMORY);
        FreePair(henv, hdbc);
        return KODBC_NOT_CONNECTED;
    }
    if (!odbc::succeeded(KODBC_SQL(SQLAllocConnect, *henv, hdbc))) {
        *hdbc = SQL_NULL_HDBC;
        Kodbc_DisplayErrorHenv(*henv);
        FreePair(henv, hdbc);
        return KODBC_NOT_CONNECTED;
    }

    // The record's fields are bounded by their sizes even when a caller
    // left them unterminated.
    char name[sizeof source->DataSourceName + 1], user[sizeof source->UserId + 1],
        password[sizeof source->Password + 1];
    std::memcpy(name, source->DataSourceName, sizeof source->DataSourceName);
    name[sizeof source->DataSourceName] = '\0';
    std::memcpy(user, source->UserId, sizeof source->UserId);
    user[sizeof source->UserId] = '\0';
    std::memcpy(password, source->Password, sizeof source->Password);
    password[sizeof source->Password] = '\0';

    SQLCHAR *userArg = user[0] ? reinterpret_cast<SQLCHAR *>(user) : nullptr;
    SQLCHAR *passwordArg = password[0] ? reinterpret_cast<SQLCHAR *>(password) : nullptr;
    SQLRETURN rc = KODBC_SQL(SQLConnect, *hdbc, reinterpret_cast<SQLCHAR *>(name), static_cast<SQLSMALLINT>(SQL_NTS),
                             userArg, static_cast<SQLSMALLINT>(SQL_NTS), passwordArg,
                             static_cast<SQLSMALLINT>(SQL_NTS));
    if (odbc::succeeded(rc)) return KODBC_CONNECTED;

    Kodbc_DisplayErrorHdbc(*hdbc);
    // SQLDisconnect on a connection that never connected only fails quietly.
    FreePair(henv, hdbc);
    return KODBC_NOT_CONNECTED;
}

KODBC_API void KODBC_CALL Kodbc_DisconnectDataSource(SQLHENV *henv, SQLHDBC *hdbc) {
    if (!henv || !hdbc) return;
    FreePair(henv, hdbc);
}

KODBC_API void KODBC_CALL Kodbc_ReadDataSourceFromRegistry(HKEY root, const char *keyPath, int reserved,
                                                           const char *section, const DataSourceRecord *defaults,
                                                           DataSourceRecord *record) {
    if (!record) return;
    RegistryLocation where{root, keyPath, reserved, section};
    ReadSourceFields(record, defaults, ReadFromKey, &where);
}

KODBC_API void KODBC_CALL Kodbc_ReadDataSourceFromHKCUorHKLM(const char *keyPath, const char *section,
                                                             const DataSourceRecord *defaults,
                                                             DataSourceRecord *record) {
    if (!record) return;
    RegistryLocation where{HKEY_CURRENT_USER, keyPath, 0, section};
    ReadSourceFields(record, defaults, ReadFromUserOrMachine, &where);
}

KODBC_API void KODBC_CALL Kodbc_WriteDataSourceToRegistry(HKEY root, const char *keyPath, int reserved,
                                                          const char *section, const DataSourceRecord *record) {
    if (!record) return;
    char field[101];
    auto write = [&](const char *value, const char *text, std::size_t width) {
        std::memcpy(field, text, width);
        field[width] = '\0';
        Korvel_WriteRegistryString(root, keyPath, reserved, section, value, field);
    };
    write("DataSourceName", record->DataSourceName, sizeof record->DataSourceName);
    write("UserId", record->UserId, sizeof record->UserId);
    write("Password", record->Password, sizeof record->Password);
}

KODBC_API void KODBC_CALL Kodbc_ReadDbObjectFromRegistry(HKEY root, const char *keyPath, int reserved,
                                                         const char *section, const DbObjectRecord *defaults,
                                                         DbObjectRecord *record) {
    if (!record) return;
    char name[sizeof record->DbObjectName];
    Korvel_ReadRegistryString(root, keyPath, reserved, section, "DbObjectName",
                              DefaultField(defaults, offsetof(DbObjectRecord, DbObjectName)), name, sizeof name);
    std::memcpy(record->DbObjectName, name, sizeof name);
    int32_t type = 0;
    if (defaults) std::memcpy(&type, reinterpret_cast<const char *>(defaults) + offsetof(DbObjectRecord, DbObjectType),
                              sizeof type);
    type = static_cast<int32_t>(Korvel_ReadRegistryNumber(root, keyPath, reserved, section, "DbObjectType", type));
    std::memcpy(reinterpret_cast<char *>(record) + offsetof(DbObjectRecord, DbObjectType), &type, sizeof type);
}

KODBC_API void KODBC_CALL Kodbc_WriteDbObjectToRegistry(HKEY root, const char *keyPath, int reserved,
                                                        const char *section, const DbObjectRecord *record) {
    if (!record) return;
    char name[sizeof record->DbObjectName + 1];
    std::memcpy(name, record->DbObjectName, sizeof record->DbObjectName);
    name[sizeof record->DbObjectName] = '\0';
    int32_t type;
    std::memcpy(&type, reinterpret_cast<const char *>(record) + offsetof(DbObjectRecord, DbObjectType), sizeof type);
    Korvel_WriteRegistryString(root, keyPath, reserved, section, "DbObjectName", name);
    Korvel_WriteRegistryNumber(root, keyPath, reserved, section, "DbObjectType", type);
}

KODBC_API int KODBC_CALL Kodbc_GetDatabaseType(SQLHDBC hdbc) {
    char name[100];
    if (!GetInfoText(hdbc, SQL_DBMS_NAME, name, sizeof name)) return KODBC_DBTYPE_OTHER;
    return DatabaseTypeFromName(name);
}

KODBC_API char KODBC_CALL Kodbc_GetDelimiter(SQLHDBC hdbc) {
    char quote[10];
    if (!GetInfoText(hdbc, SQL_IDENTIFIER_QUOTE_CHAR, quote, sizeof quote)) return 0;
    return quote[0];
}

KODBC_API unsigned KODBC_CALL Kodbc_GetSchemaUsage(SQLHDBC hdbc) {
    if (!hdbc) return 0;
    SQLUINTEGER usage = 0;
    SQLRETURN rc = KODBC_SQL(SQLGetInfo, hdbc, static_cast<SQLUSMALLINT>(SQL_SCHEMA_USAGE),
                             static_cast<SQLPOINTER>(&usage), static_cast<SQLSMALLINT>(sizeof usage),
                             static_cast<SQLSMALLINT *>(nullptr));
    return odbc::succeeded(rc) ? usage : 0;
}

KODBC_API void KODBC_CALL Kodbc_GetDatabaseName(SQLHDBC hdbc, char *buffer, int size) {
    GetInfoText(hdbc, SQL_DATABASE_NAME, buffer, size);
}
KODBC_API void KODBC_CALL Kodbc_GetDataSourceName(SQLHDBC hdbc, char *buffer, int size) {
    GetInfoText(hdbc, SQL_DATA_SOURCE_NAME, buffer, size);
}
KODBC_API void KODBC_CALL Kodbc_GetDriverVersion(SQLHDBC hdbc, char *buffer, int size) {
    GetInfoText(hdbc, SQL_DRIVER_VER, buffer, size);
}

} // extern "C"
