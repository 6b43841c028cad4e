#include "internal/db_capabilities.h"
#include "internal/driver_info.h"

#include <kodbc/kodbc_connect.h>

#include <strings.h>

namespace kodbc::tabledesign {
namespace {

constexpr char kDropPrimaryKey[] = "ALTER TABLE %t DROP PRIMARY KEY";
constexpr char kNotNullEmpty[] = " NOT NULL DEFAULT ''";
constexpr int kDbmsNameSize = 100;

// PostgreSQL has no DATETIME; FLOAT is single precision on MySQL and
// MariaDB (12345.678 comes back as 12345.7).
const struct {
    const char *dbmsName;
    int typeCode;
    const char *columnType;
} kColumnTypesInsteadOfTemplates[] = {
    {"PostgreSQL", KODBC_TYPE_DATETIME, "TIMESTAMP"},
    {"MySQL", KODBC_TYPE_FLOAT, "DOUBLE"},
    {"MariaDB", KODBC_TYPE_FLOAT, "DOUBLE"},
};

// Databases that refuse the added-column clause's empty-text default on a
// number or date column, so that such a column could not be added at all.
const char *const kRefuseEmptyTextDefault[] = {"PostgreSQL", "MySQL", "MariaDB"};

} // namespace

// The order matters only for the fallback: an unknown type gets the row of
// type 0, which stands first.
const DbCapabilityRow DbCapabilities[] = {
    {KODBC_DBTYPE_OTHER, true, nullptr, nullptr, kDropPrimaryKey, kNotNullEmpty, true},
    {KODBC_DBTYPE_MYSQL, false, nullptr, "INTEGER NOT NULL AUTO_INCREMENT PRIMARY KEY", kDropPrimaryKey, kNotNullEmpty,
     true},
    {KODBC_DBTYPE_ACCESS, true, "DROP TABLE", "AUTOINCREMENT", nullptr, nullptr, false},
    {KODBC_DBTYPE_SQLSERVER, true, nullptr, "INTEGER NOT NULL IDENTITY PRIMARY KEY", "ALTER TABLE %t DROP %f",
     kNotNullEmpty, true},
    {KODBC_DBTYPE_PROGRESS, true, nullptr, nullptr, kDropPrimaryKey, kNotNullEmpty, false},
    {KODBC_DBTYPE_EXCEL, false, nullptr, nullptr, nullptr, nullptr, false},
    {KODBC_DBTYPE_ORACLE, true, nullptr, nullptr, kDropPrimaryKey, kNotNullEmpty, false},
    {7, true, nullptr, nullptr, kDropPrimaryKey, kNotNullEmpty, false},
    {-1, false, nullptr, nullptr, nullptr, nullptr, false},
};

const DbCapabilityRow &CapabilitiesOf(int databaseType) {
    const DbCapabilityRow *other = nullptr;
    for (const DbCapabilityRow *row = DbCapabilities; row->databaseType != -1; ++row) {
        if (row->databaseType == databaseType) return *row;
        if (!other && row->databaseType == KODBC_DBTYPE_OTHER) other = row;
    }
    return other ? *other : DbCapabilities[0];
}

const DbCapabilityRow &CapabilitiesOf(SQLHDBC hdbc) {
    return CapabilitiesOf(Kodbc_GetDatabaseType(hdbc));
}

const char *ColumnTypeInsteadOfTemplate(const char *dbmsName, int typeCode) {
    if (!dbmsName) return nullptr;
    for (const auto &entry : kColumnTypesInsteadOfTemplates)
        if (entry.typeCode == typeCode && strcasecmp(entry.dbmsName, dbmsName) == 0) return entry.columnType;
    return nullptr;
}

const char *ColumnTypeInsteadOfTemplate(SQLHDBC hdbc, int typeCode) {
    char name[kDbmsNameSize];
    if (!GetInfoText(hdbc, SQL_DBMS_NAME, name, sizeof name)) return nullptr;
    return ColumnTypeInsteadOfTemplate(name, typeCode);
}

const char *AddedColumnClause(const DbCapabilityRow &row, const char *dbmsName, int typeCode) {
    const bool textOnlyDefault = typeCode == KODBC_TYPE_INTEGER || typeCode == KODBC_TYPE_FLOAT ||
                                 typeCode == KODBC_TYPE_DATETIME;
    if (textOnlyDefault && dbmsName)
        for (const char *refusing : kRefuseEmptyTextDefault)
            if (strcasecmp(refusing, dbmsName) == 0) return nullptr;
    return row.addedColumnClause;
}

const char *AddedColumnClause(SQLHDBC hdbc, int typeCode) {
    char name[kDbmsNameSize] = {};
    if (!GetInfoText(hdbc, SQL_DBMS_NAME, name, sizeof name)) name[0] = '\0';
    return AddedColumnClause(CapabilitiesOf(hdbc), name, typeCode);
}

} // namespace kodbc::tabledesign
