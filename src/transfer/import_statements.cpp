#include "transfer/import_statements.h"

#include "internal/datatypes.h"
#include "internal/driver_info.h"
#include "internal/execution.h"
#include "internal/string_literal.h"
#include "internal/db_capabilities.h"
#include "sqltext/column_name.h"

#include <korvel/bounded_text.h>
#include <korvel/korvel32.h>

#include <kodbc/kodbc_connect.h>
#include <kodbc/kodbc_sqltext.h>

#include <algorithm>

namespace kodbc::transfer {
namespace {

constexpr int kHeadSize = 400;
constexpr int kNameSize = 100;   // a prepared name keeps at most 99 characters
constexpr int kTypeSize = 100;
constexpr int kTypeInfoColumnName = 1, kTypeInfoColumnType = 2, kTypeInfoColumnAutoUnique = 12;

bool IsWritten(const ImportField &field) { return field.imported && !field.autoIncrement; }

bool IsBare(const ImportField &field) {
    return field.targetType == KODBC_TYPE_INTEGER || field.targetType == KODBC_TYPE_FLOAT;
}

// An empty value is NULL, except an empty text that was meant as one.
bool IsNull(const ImportField &field) {
    return !field.value || (field.value->empty() && field.targetType != KODBC_TYPE_FIXED_TEXT &&
                            field.targetType != KODBC_TYPE_VAR_TEXT && field.targetType != KODBC_TYPE_LONG_TEXT);
}

bool IsLiteral(const ImportField &field) { return !IsNull(field) && !IsBare(field); }

// The length a value takes in the statement when nothing is cut.
std::size_t Need(const ImportField &field, bool backslashEscapes) {
    if (IsNull(field)) return 4;  // NULL
    const std::string &value = *field.value;
    if (IsBare(field)) return value.size();
    std::size_t doubled = static_cast<std::size_t>(std::count(value.begin(), value.end(), '\''));
    if (backslashEscapes) doubled += static_cast<std::size_t>(std::count(value.begin(), value.end(), '\\'));
    return value.size() + doubled + 2;
}

} // namespace

std::string CounterTypeName(SQLHDBC hdbc) {
    // The definition the table design uses for the kinds of database it
    // knows; the driver's type information for the others (some drivers
    // call every number type self-counting, so it comes second).
    const tabledesign::DbCapabilityRow &capabilities = tabledesign::CapabilitiesOf(hdbc);
    if (tabledesign::SupportsAutoIncrement(capabilities)) return capabilities.autoIncrementColumn;
    odbc::Statement statement(hdbc);
    if (!statement.ok() || !odbc::succeeded(KODBC_SQL(SQLGetTypeInfo, statement.get(), SQLSMALLINT{SQL_ALL_TYPES})))
        return {};
    std::string smallest;  // another integer type that counts, when INTEGER has none
    while (odbc::succeeded(KODBC_SQL(SQLFetch, statement.get()))) {
        char name[kTypeSize] = {};
        SQLSMALLINT type = 0, autoUnique = 0;
        SQLLEN nameLength = 0, typeLength = 0, uniqueLength = 0;
        KODBC_SQL(SQLGetData, statement.get(), SQLUSMALLINT{kTypeInfoColumnName}, SQLSMALLINT{SQL_C_CHAR}, name,
                  SQLLEN{sizeof name}, &nameLength);
        KODBC_SQL(SQLGetData, statement.get(), SQLUSMALLINT{kTypeInfoColumnType}, SQLSMALLINT{SQL_C_SSHORT}, &type,
                  SQLLEN{0}, &typeLength);
        if (!odbc::succeeded(KODBC_SQL(SQLGetData, statement.get(), SQLUSMALLINT{kTypeInfoColumnAutoUnique},
                                       SQLSMALLINT{SQL_C_SSHORT}, &autoUnique, SQLLEN{0}, &uniqueLength)) ||
            uniqueLength == SQL_NULL_DATA || autoUnique != 1 || nameLength == SQL_NULL_DATA)
            continue;
        if (type == SQL_INTEGER) return name;
        if (smallest.empty() && (type == SQL_BIGINT || type == SQL_SMALLINT)) smallest = name;
    }
    return smallest;
}

std::string CreateImportTableStatement(SQLHDBC hdbc, const char *table, const ImportFieldList &fields,
                                       const std::string &counterType) {
    char head[kHeadSize];
    Kodbc_SprintfSqlStatement(hdbc, head, sizeof head, "CREATE TABLE %t (", table, nullptr, nullptr, nullptr,
                              nullptr, nullptr, nullptr, nullptr);
    std::string sql = head;
    bool first = true;
    for (const ImportField &field : fields) {
        const DataTypeRow *row = field.imported ? FindDataType(field.targetType) : nullptr;
        if (!row) continue;
        char name[kNameSize];
        sqltext::PrepareColumnName(hdbc, field.targetName.c_str(), name, sizeof name);
        char type[kTypeSize];
        if (field.autoIncrement && row->counterTypeFromSource && !counterType.empty())
            korvel::BoundedText(type, sizeof type).append(counterType);
        else
            FormatColumnDefinition(hdbc, row, field.targetLength, type, sizeof type);
        if (!first) sql += ", ";
        sql += name;
        sql += ' ';
        sql += type;
        first = false;
    }
    return sql + ")";
}

ImportInsertParts PrepareImportInsert(SQLHDBC hdbc, const char *table, const ImportFieldList &fields) {
    ImportInsertParts parts;
    char head[kHeadSize];
    Kodbc_SprintfSqlStatement(hdbc, head, sizeof head, "INSERT INTO %t (", table, nullptr, nullptr, nullptr, nullptr,
                              nullptr, nullptr, nullptr);
    parts.head = head;
    parts.backslashEscapes = LiteralsTakeBackslashEscapes(hdbc);
    parts.swapDateParts = Kodbc_GetDatabaseType(hdbc) == KODBC_DBTYPE_SQLSERVER;
    for (const ImportField &field : fields) {
        char name[kNameSize] = {};
        if (IsWritten(field)) sqltext::PrepareColumnName(hdbc, field.targetName.c_str(), name, sizeof name);
        parts.names.emplace_back(name);
    }
    return parts;
}

namespace {

// "(<value>,<value>)" after what sql holds: each literal cut where it would
// leave no room for the rest of the values. False when something was cut.
bool AppendImportValues(korvel::BoundedText &sql, const ImportInsertParts &parts,
                        const ImportFieldList &fields) noexcept {
    const std::size_t count = std::min(fields.size(), parts.names.size());
    // What the values take at most, every character doubled: when that
    // fits, nothing is cut and what each still needs does not matter.
    std::size_t most = 1;
    for (std::size_t i = 0; i < count; ++i)
        if (IsWritten(fields[i])) most += IsNull(fields[i]) ? 5 : 2 * fields[i].value->size() + 3;
    const bool exact = most > sql.room();
    std::size_t rest = 1;  // what the values still need, the closing ")" included
    bool first = true;
    for (std::size_t i = 0; i < count && exact; ++i) {
        if (!IsWritten(fields[i])) continue;
        rest += Need(fields[i], parts.backslashEscapes) + (first ? 0 : 1);
        first = false;
    }
    sql.append('(');
    bool whole = true;
    first = true;
    for (std::size_t i = 0; i < count; ++i) {
        const ImportField &field = fields[i];
        if (!IsWritten(field)) continue;
        if (!first) {
            sql.append(',');
            rest -= exact ? 1 : 0;
        }
        first = false;
        rest -= exact ? Need(field, parts.backslashEscapes) : 0;
        if (!IsLiteral(field)) {
            sql.append(IsNull(field) ? std::string_view("NULL") : std::string_view(*field.value));
            continue;
        }
        std::string_view text = *field.value;
        char swapped[kTypeSize];
        if (field.targetType == KODBC_TYPE_DATETIME && parts.swapDateParts && text.size() >= 10 &&
            text.size() < sizeof swapped) {
            text.copy(swapped, text.size());
            std::swap(swapped[5], swapped[8]);
            std::swap(swapped[6], swapped[9]);
            text = std::string_view(swapped, text.size());
        }
        sql.append('\'');
        whole = AppendLiteralBody(sql, text, rest + 1, parts.backslashEscapes) && whole;
        sql.append('\'');
    }
    sql.append(')');
    return whole;
}

} // namespace

namespace {

// "INSERT INTO t (a,b) VALUES " after what text holds, be it bounded or not.
template <typename Text>
void AppendImportHead(Text &text, const ImportInsertParts &parts, const ImportFieldList &fields) {
    text.append(std::string_view(parts.head));
    const std::size_t count = std::min(fields.size(), parts.names.size());
    bool first = true;
    for (std::size_t i = 0; i < count; ++i) {
        if (!IsWritten(fields[i])) continue;
        if (!first) text.append(std::string_view(","));
        text.append(std::string_view(parts.names[i]));
        first = false;
    }
    text.append(std::string_view(") VALUES "));
}

} // namespace

std::string ImportInsertHead(const ImportInsertParts &parts, const ImportFieldList &fields) {
    std::string head;
    AppendImportHead(head, parts, fields);
    return head;
}

bool BuildImportInsert(const ImportInsertParts &parts, const ImportFieldList &fields, char *out, int size) noexcept {
    korvel::BoundedText sql(out, size);
    AppendImportHead(sql, parts, fields);
    const bool whole = AppendImportValues(sql, parts, fields);
    return whole && !sql.truncated();
}

bool BuildImportValues(const ImportInsertParts &parts, const ImportFieldList &fields, char *out, int size) noexcept {
    korvel::BoundedText sql(out, size);
    const bool whole = AppendImportValues(sql, parts, fields);
    return whole && !sql.truncated();
}

bool ImportStatementRunner::Run(const char *sql) noexcept {
    if (!statement_.ok()) {
        if (!PrepareStatement(hdbc_, sql, statement_, kImportStatementSize)) return false;
    } else if (Korvel_DumpSqlStatement(sql, kImportStatementSize) != 1) {
        return false;
    }
    return ExecuteStatement(statement_, sql, nullptr) == ExecOutcome::Executed;
}

} // namespace kodbc::transfer
