#include "tabledesign/table_admin.h"

#include "catalog/catalog_internal.h"
#include "internal/datatypes.h"
#include "internal/execution.h"
#include "internal/library.h"
#include "sqltext/column_name.h"

#include <korvel/bounded_text.h>
#include <korvel/korvel32.h>

#include <kodbc/kodbc_catalog.h>
#include <kodbc/kodbc_sqltext.h>
#include <kodbc/kodbc_tableops.h>

#include <strings.h>

#include <algorithm>
#include <memory>

namespace kodbc::tabledesign {
namespace {

constexpr int kHeaderSize = 300;
constexpr int kKeyListSize = 1000;
constexpr int kNameSize = 100;
constexpr int kColumnDefinitionSize = 100;
constexpr int kAnswerYes = 6;
constexpr int kAnswerCancel = 2;

// Formats sqlTemplate for the connection in bufferSize bytes, offers it to
// the dump and runs it; errors are shown with the statement.
bool RunAlter(SQLHDBC hdbc, int bufferSize, const char *sqlTemplate, const char *arg1, const char *arg2 = nullptr,
              const char *arg3 = nullptr, const char *arg4 = nullptr) {
    auto sql = std::make_unique<char[]>(static_cast<std::size_t>(bufferSize));
    Kodbc_SprintfSqlStatement(hdbc, sql.get(), bufferSize, sqlTemplate, arg1, arg2, arg3, arg4, nullptr, nullptr,
                              nullptr, nullptr);
    odbc::Statement statement;
    if (!PrepareStatement(hdbc, sql.get(), statement, bufferSize)) return false;
    return ExecuteStatement(statement, sql.get(), nullptr) == ExecOutcome::Executed;
}

// A column is one name, a point in it included.
std::string ColumnName(SQLHDBC hdbc, const std::string &name) { return sqltext::PrepareColumnName(hdbc, name); }

std::string LibraryText(int id) {
    char text[kHeaderSize] = {};
    LoadLibraryString(LibraryInstance(), id, text, sizeof text);
    return text;
}

} // namespace

std::vector<ListHeaderColumn> AdminListColumns() { return ParseListHeader(LibraryText(msg::HEADER_TABLE_COLUMNS)); }

bool ReadAdminColumns(SQLHDBC hdbc, const char *table, std::vector<AdminColumn> &columns) {
    columns.clear();
    const std::string yes = LibraryText(msg::YES), no = LibraryText(msg::NO);
    return catalog::ForEachColumnDescription(hdbc, table, [&](const catalog::ColumnDescription &column) {
               columns.push_back({column.name, column.type, column.nullable ? yes : no, column.defaultValue,
                                  column.remark, column.nullable});
           }) == KODBC_SUCCESS;
}

std::string PrimaryKeyText(SQLHDBC hdbc, const char *table) {
    char keys[kKeyListSize] = {};
    if (Kodbc_GetPrimaryKeyColumns(hdbc, table, 0, ", ", keys, sizeof keys) != KODBC_SUCCESS) keys[0] = '\0';
    return keys;
}

std::string AutoIncrementColumnName(SQLHDBC hdbc, const char *table) {
    char name[kNameSize] = {};
    Kodbc_FindFirstAutoIncrementField(hdbc, table, name, sizeof name);
    return name;
}

AdminAbilities AdminAbilitiesOf(const DbCapabilityRow &capabilities, int columnCount, int selectedCount,
                                bool hasPrimaryKey, bool hasAutoIncrement) {
    return {
        true,
        selectedCount > 0 && selectedCount < columnCount,
        !hasPrimaryKey && columnCount > 0,
        hasPrimaryKey && capabilities.dropPrimaryKey != nullptr,
        SupportsAutoIncrement(capabilities) && !hasAutoIncrement,
    };
}

int AdminRowOf(const std::vector<std::string> &columns, const std::string &name) {
    for (std::size_t i = 0; i < columns.size(); ++i)
        if (strcasecmp(columns[i].c_str(), name.c_str()) == 0) return static_cast<int>(i);
    return -1;
}

int AdminRowAfterDrop(const std::vector<int> &rows, const std::vector<std::string> &names,
                      const std::vector<std::string> &columns) {
    int at = -1;
    for (std::size_t i = 0; i < names.size() && at < 0; ++i)
        if (AdminRowOf(columns, names[i]) < 0) at = rows[i];
    const int count = static_cast<int>(columns.size());
    return count == 0 ? -1 : std::min(at, count - 1);
}

int DropColumns(SQLHDBC hdbc, const char *table, const std::vector<std::string> &columns, bool ask,
                bool *cancelled) {
    int dropped = 0;
    bool ended = false;
    for (const std::string &column : columns) {
        if (ask) {
            const int answer = LibraryMessage(msg::ASK_DROP_COLUMN, column.c_str());
            if (answer == kAnswerCancel) {
                ended = true;
                break;
            }
            if (answer != kAnswerYes) continue;
        }
        if (!RunAlter(hdbc, 300, "ALTER TABLE %t DROP COLUMN %s", table, ColumnName(hdbc, column).c_str())) {
            ended = true;
            break;
        }
        ++dropped;
    }
    if (cancelled) *cancelled = ended;
    return dropped;
}

int CheckColumnLength(int typeCode, int length) {
    const DataTypeRow *row = FindDataType(typeCode);
    return row && row->lengthRequired && length < 1 ? msg::LENGTH_REQUIRED : 0;
}

bool AddColumn(SQLHDBC hdbc, const char *table, const char *name, int typeCode, int length) {
    const DataTypeRow *row = FindDataType(typeCode);
    if (!row) return false;
    if (const int refused = CheckColumnLength(typeCode, length)) {
        LibraryMessage(refused);
        return false;
    }
    char definition[kColumnDefinitionSize] = {};
    FormatColumnDefinition(hdbc, row, length, definition, sizeof definition);
    // The clause is the database's, whatever the user meant by "not empty".
    const char *clause = AddedColumnClause(hdbc, typeCode);
    return RunAlter(hdbc, 200, "ALTER TABLE %t ADD %s %s%s", table, ColumnName(hdbc, name).c_str(), definition,
                    clause ? clause : "");
}

bool MayAddAutoIncrement(SQLHDBC hdbc, const char *table) {
    if (!SupportsAutoIncrement(CapabilitiesOf(hdbc))) {
        LibraryMessage(msg::AUTOINC_NOT_SUPPORTED);
        return false;
    }
    if (!AutoIncrementColumnName(hdbc, table).empty()) {
        LibraryMessage(msg::AUTOINC_COLUMN_EXISTS);
        return false;
    }
    return true;
}

bool AddAutoIncrementColumn(SQLHDBC hdbc, const char *table, const char *name) {
    const DbCapabilityRow &capabilities = CapabilitiesOf(hdbc);
    if (!SupportsAutoIncrement(capabilities)) {
        LibraryMessage(msg::AUTOINC_NOT_SUPPORTED);
        return false;
    }
    return RunAlter(hdbc, 200, "ALTER TABLE %t ADD %s %s", table, ColumnName(hdbc, name).c_str(),
                    capabilities.autoIncrementColumn);
}

bool MayAddPrimaryKey(SQLHDBC hdbc, const char *table) {
    if (PrimaryKeyText(hdbc, table).empty()) return true;
    LibraryMessage(msg::PRIMARY_KEY_EXISTS);
    return false;
}

std::vector<std::string> KeyCandidates(SQLHDBC hdbc, const char *table) {
    std::vector<std::string> names;
    catalog::ForEachColumnDescription(hdbc, table, [&](const catalog::ColumnDescription &column) {
        if (!column.nullable) names.emplace_back(column.name);
    });
    return names;
}

bool AddPrimaryKey(SQLHDBC hdbc, const char *table, const std::vector<std::string> &columns) {
    if (columns.empty()) return false;
    std::string joined;
    for (const std::string &column : columns) joined += (joined.empty() ? "" : ",") + ColumnName(hdbc, column);
    char list[kKeyListSize] = {};
    korvel::BoundedText(list, sizeof list).append(joined);
    if (!RunAlter(hdbc, 200, "ALTER TABLE %t ADD PRIMARY KEY (%s)", table, list)) return false;
    ShowTempNotice(msg::PRIMARY_KEY_CREATED);
    return true;
}

bool DropPrimaryKey(SQLHDBC hdbc, const char *table, bool ask) {
    if (PrimaryKeyText(hdbc, table).empty()) {
        LibraryMessage(msg::NO_PRIMARY_KEY);
        return false;
    }
    const char *statement = CapabilitiesOf(hdbc).dropPrimaryKey;
    if (!statement) {
        LibraryMessage(msg::DROP_PRIMARY_KEY_NOT_SUPPORTED);
        return false;
    }
    if (ask && LibraryMessage(msg::ASK_DROP_PRIMARY_KEY) != kAnswerYes) return false;
    char keyName[kNameSize] = {};
    Kodbc_GetPrimaryKeyName(hdbc, table, 0, keyName, sizeof keyName);
    if (!RunAlter(hdbc, 300, statement, table, keyName)) return false;
    ShowTempNotice(msg::PRIMARY_KEY_DROPPED);
    return true;
}

void ForgetOrderByClauses() {
    Korvel_DeleteRegistryKey(HKEY_USERS, ".Default\\Software\\Korvel Software\\Order By Clauses", 0, nullptr);
}

} // namespace kodbc::tabledesign
