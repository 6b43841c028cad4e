// What each kind of database allows when tables and views are designed: SELECT INTO,
// auto-incrementing key columns, dropping views and primary keys, the
// clause an added column gets, INSERTs of several records, and the column types that keep a value where
// the data-type table's templates would not. Read by the create-table
// wizard, the table administration, the import, the views and the
// command-line tool.
#pragma once

#include <kodbc/kodbc_types.h>

#include <cstdint>

namespace kodbc::tabledesign {

struct DbCapabilityRow {
    int32_t databaseType;             // KODBC_DBTYPE_*; -1 ends the table
    bool selectInto;                  // "SELECT * INTO new FROM old" works
    const char *dropView;             // null: "DROP VIEW"
    const char *autoIncrementColumn;  // definition of an auto-incrementing key; null: none
    const char *dropPrimaryKey;       // template with %t (and %f, the key's name); null: not possible
    const char *addedColumnClause;    // appended to every added column; null: none
    bool multiRowValues;              // one INSERT takes several records: VALUES (...),(...)
};

// The rows in their order of precedence, ended by a row of type -1.
extern const DbCapabilityRow DbCapabilities[];

// The first row of the type, else the row of type 0, else the first row.
const DbCapabilityRow &CapabilitiesOf(int databaseType);
// The row of the connection's database type.
const DbCapabilityRow &CapabilitiesOf(SQLHDBC hdbc);

inline bool SupportsAutoIncrement(const DbCapabilityRow &row) {
    return row.autoIncrementColumn && *row.autoIncrementColumn;
}
inline const char *DropViewStatement(const DbCapabilityRow &row) {
    return row.dropView ? row.dropView : "DROP VIEW";
}

// The column type to use instead of the data-type table's template for a
// library type code on a database of this DBMS name (as the driver reports
// it), where the database lacks the template's type or would lose
// precision in it; null where the template stands. The database type code
// cannot tell: MariaDB and PostgreSQL both count as "other".
const char *ColumnTypeInsteadOfTemplate(const char *dbmsName, int typeCode);
// The same for the connection's DBMS.
const char *ColumnTypeInsteadOfTemplate(SQLHDBC hdbc, int typeCode);

// The clause a column of the library type gets when it is added to a
// table: the row's clause, except for a number or date column on a DBMS
// (by the name its driver reports) that refuses '' as such a column's
// default and with it the whole column.
const char *AddedColumnClause(const DbCapabilityRow &row, const char *dbmsName, int typeCode);
// The same for the connection's database.
const char *AddedColumnClause(SQLHDBC hdbc, int typeCode);

} // namespace kodbc::tabledesign
