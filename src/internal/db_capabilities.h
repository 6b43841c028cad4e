// What each kind of database allows when tables and views are designed: SELECT INTO,
// auto-incrementing key columns, dropping views and primary keys, and the
// clause an added column gets. One table read by the create-table wizard,
// the table administration, the views and the command-line tool.
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

} // namespace kodbc::tabledesign
