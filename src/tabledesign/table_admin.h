// Table administration's work, for its dialogs and the command-line tool:
// the column list and key displays, which changes a database and table
// allow, and the ALTER TABLE statements of each change. Every operation
// shows its own refusals and errors; each statement is offered to the SQL
// dump with its buffer size before it runs.
#pragma once

#include "internal/db_capabilities.h"
#include "internal/list_header.h"

#include <string>
#include <vector>

namespace kodbc::tabledesign {

// The list view's columns, from the text of string 1973 (one of them
// centred).
std::vector<ListHeaderColumn> AdminListColumns();

// One row of the column list: name, type with length, "Ja"/"Nein" for empty
// values allowed, default and remark, in catalogue order.
struct AdminColumn {
    std::string name, type, nullableText, defaultValue, remark;
    bool nullable = true;
};
// False after an ODBC error (shown); columns then holds what was read.
bool ReadAdminColumns(SQLHDBC hdbc, const char *table, std::vector<AdminColumn> &columns);

// The key displays: the primary key's columns joined by ", " (empty for no
// key or a driver that cannot tell), and the first auto-incrementing
// column (empty for none).
std::string PrimaryKeyText(SQLHDBC hdbc, const char *table);
std::string AutoIncrementColumnName(SQLHDBC hdbc, const char *table);

// Which buttons of the main dialog can act now: what the database cannot
// do and what the table's state forbids is greyed (a key when there is one,
// dropping it when there is none or the database cannot, a second
// auto-incrementing column); removing needs a selection that leaves a
// column. The operations below still refuse with their messages, for
// callers without buttons.
struct AdminAbilities {
    bool addColumn, dropColumns, addPrimaryKey, dropPrimaryKey, addAutoIncrement;
};
AdminAbilities AdminAbilitiesOf(const DbCapabilityRow &capabilities, int columnCount, int selectedCount,
                                bool hasPrimaryKey, bool hasAutoIncrement);

// The column list's rows, names in list order. The row a column stands in
// (-1: none), the catalogue spelling a name in another case than it was
// typed.
int AdminRowOf(const std::vector<std::string> &columns, const std::string &name);
// After the columns names, selected at rows, were removed: the row to
// select, where the first of them that went stood (the column that moved up
// into its place), the last row when the list now ends before it, -1 for an
// empty list.
int AdminRowAfterDrop(const std::vector<int> &rows, const std::vector<std::string> &names,
                      const std::vector<std::string> &columns);

// Removes columns in order, each after question 1703 when ask is true
// ("Abbrechen" ends at once, "Nein" skips the column). Returns how many
// were removed; *cancelled (may be null) tells whether it ended early (by
// the user or a failed statement).
int DropColumns(SQLHDBC hdbc, const char *table, const std::vector<std::string> &columns, bool ask,
                bool *cancelled = nullptr);

// 1624 when a column of a library type (KODBC_TYPE_*) needs a length and
// length is below 1, else 0 (an unknown type too). The column dialog asks
// before it closes, so that the length is corrected in place.
int CheckColumnLength(int typeCode, int length);

// Adds a column of a library type with the database's added-column clause,
// whatever the caller meant by "not empty"; CheckColumnLength refuses first
// (shown).
bool AddColumn(SQLHDBC hdbc, const char *table, const char *name, int typeCode, int length);

// Before the name is asked: 1642 when the database has no auto-incrementing
// definition, 1623 when the table has such a column already (shown). True
// when one may be added.
bool MayAddAutoIncrement(SQLHDBC hdbc, const char *table);
bool AddAutoIncrementColumn(SQLHDBC hdbc, const char *table, const char *name);

// Before the key dialog: 1647 when the table has a primary key (shown).
bool MayAddPrimaryKey(SQLHDBC hdbc, const char *table);
// The columns that may form the key: those that do not allow empty values.
std::vector<std::string> KeyCandidates(SQLHDBC hdbc, const char *table);
// The key over columns in their order; success shows notice 437.
bool AddPrimaryKey(SQLHDBC hdbc, const char *table, const std::vector<std::string> &columns);

// 1646 without a key, 1648 where the database cannot drop one, else (when
// ask) question 1704; then the database's statement with the key's name;
// success shows notice 438.
bool DropPrimaryKey(SQLHDBC hdbc, const char *table, bool ask);

// Sort clauses other dialogs remembered are stale once a structure changed:
// the key "Software\Korvel Software\Order By Clauses" under
// HKEY_USERS\.Default goes.
void ForgetOrderByClauses();

} // namespace kodbc::tabledesign
