// INSERT, UPDATE and DELETE of one record, and their literals.
#include "wizards/record_statements.h"

#include "internal/driver_info.h"
#include "internal/library.h"
#include "internal/string_literal.h"
#include "sqltext/column_name.h"

#include <kodbc/kodbc_sqltext.h>

#include <new>

namespace kodbc::wizards {
namespace {

constexpr int kHeadSize = 400;
constexpr int kNameSize = 200;

bool IsBareSqlType(int sqlType) noexcept {
    switch (sqlType) {
    case SQL_TINYINT: case SQL_BIGINT: case SQL_NUMERIC: case SQL_DECIMAL: case SQL_INTEGER:
    case SQL_SMALLINT: case SQL_FLOAT: case SQL_REAL: case SQL_DOUBLE:
        return true;
    default:
        return false;
    }
}

std::string FormatHead(SQLHDBC hdbc, const char *pattern, const char *table) {
    char text[kHeadSize];
    Kodbc_SprintfSqlStatement(hdbc, text, sizeof text, pattern, table, nullptr, nullptr, nullptr, nullptr,
                              nullptr, nullptr, nullptr);
    return text;
}

// Bytes of a binary source arrive as pairs of hex digits.
bool IsHexDigits(std::string_view text) noexcept {
    return text.size() % 2 == 0 && text.find_first_not_of("0123456789ABCDEF") == std::string_view::npos;
}

void AppendCondition(korvel::BoundedText &out, const char *condition) noexcept {
    if (condition && *condition) {
        out.append(" WHERE ");
        out.append(condition);
    }
}

} // namespace

bool AppendStringLiteral(korvel::BoundedText &out, std::string_view text, bool backslashEscapes) noexcept {
    bool whole = out.append('\'');
    // The closing quote always keeps its place, so a cut literal stays closed.
    whole = AppendLiteralBody(out, text, 1, backslashEscapes) && whole;
    return out.append('\'') && whole;
}

void AppendValueLiteral(korvel::BoundedText &out, const AddRecField &field, bool backslashEscapes,
                        std::string_view binaryOpen) noexcept {
    switch (field.mode) {
    case kFillFixedValue:
        if (field.fixedValue.empty()) break;
        out.append('\'');
        out.append(field.fixedValue);
        out.append('\'');
        return;
    case kFillSourceField:
        if (field.valueIsNull || field.value.empty()) break;
        if (field.destinationType == KODBC_TYPE_INTEGER || field.destinationType == KODBC_TYPE_FLOAT) {
            out.append(field.value);
        } else if (field.destinationType == KODBC_TYPE_BINARY && field.sourceType == KODBC_TYPE_BINARY &&
                   IsHexDigits(field.value)) {
            out.append(binaryOpen);
            out.append(field.value);
            out.append('\'');
        }
        else {
            AppendStringLiteral(out, field.value, backslashEscapes);
        }
        return;
    default:
        break;
    }
    out.append("NULL");
}

bool PrepareRecordStatementParts(SQLHDBC hdbc, const char *table, const AddRecFieldList &fields,
                                 RecordStatementParts &parts) noexcept {
    try {
        parts.insertHead = FormatHead(hdbc, "INSERT INTO %t (", table);
        parts.updateHead = FormatHead(hdbc, "UPDATE %t SET ", table);
        parts.deleteHead = FormatHead(hdbc, "DELETE FROM %t", table);
        parts.backslashEscapes = LiteralsTakeBackslashEscapes(hdbc);
        // PostgreSQL reads X'..' as bits; its bytes take the hex escape.
        char dbms[kHeadSize] = {};
        if (GetInfoText(hdbc, SQL_DBMS_NAME, dbms, sizeof dbms) && std::string_view(dbms) == "PostgreSQL")
            parts.binaryOpen = "'\\x";
        parts.names.assign(fields.size(), std::string());
        for (std::size_t i = 0; i < fields.size(); ++i) {
            if (!fields[i] || !fields[i]->isWritten()) continue;
            char name[kNameSize];
            sqltext::PrepareColumnName(hdbc, fields[i]->destinationName.c_str(), name, sizeof name);
            parts.names[i] = name;
        }
        return true;
    } catch (const std::bad_alloc &) {
        LibraryMessage(msg::OUT_OF_MEMORY);
        return false;
    }
}

namespace {

void AppendInsertNames(korvel::BoundedText &sql, const RecordStatementParts &parts, const AddRecFieldList &fields) {
    sql.append(parts.insertHead);
    bool first = true;
    for (std::size_t i = 0; i < fields.size() && i < parts.names.size(); ++i) {
        if (!fields[i] || !fields[i]->isWritten()) continue;
        if (!first) sql.append(',');
        sql.append(parts.names[i]);
        first = false;
    }
    sql.append(") VALUES ");
}

void AppendInsertValues(korvel::BoundedText &sql, const RecordStatementParts &parts, const AddRecFieldList &fields) {
    sql.append('(');
    bool first = true;
    for (std::size_t i = 0; i < fields.size() && i < parts.names.size(); ++i) {
        if (!fields[i] || !fields[i]->isWritten()) continue;
        if (!first) sql.append(',');
        AppendValueLiteral(sql, *fields[i], parts.backslashEscapes, parts.binaryOpen);
        first = false;
    }
    sql.append(')');
}

} // namespace

bool BuildInsertStatement(const RecordStatementParts &parts, const AddRecFieldList &fields, char *out,
                          int size) noexcept {
    korvel::BoundedText sql(out, size);
    AppendInsertNames(sql, parts, fields);
    AppendInsertValues(sql, parts, fields);
    return !sql.truncated();
}

std::string InsertHead(const RecordStatementParts &parts, const AddRecFieldList &fields) {
    std::string head(kRecordStatementSize, '\0');
    korvel::BoundedText sql(head.data(), kRecordStatementSize);
    AppendInsertNames(sql, parts, fields);
    head.resize(sql.length());
    return head;
}

bool BuildInsertValues(const RecordStatementParts &parts, const AddRecFieldList &fields, char *out,
                       int size) noexcept {
    korvel::BoundedText sql(out, size);
    AppendInsertValues(sql, parts, fields);
    return !sql.truncated();
}

bool BuildUpdateStatement(const RecordStatementParts &parts, const AddRecFieldList &fields,
                          const char *condition, char *out, int size) noexcept {
    korvel::BoundedText sql(out, size);
    sql.append(parts.updateHead);
    bool first = true;
    for (std::size_t i = 0; i < fields.size() && i < parts.names.size(); ++i) {
        if (!fields[i] || !fields[i]->isWritten()) continue;
        if (!first) sql.append(',');
        sql.append(parts.names[i]);
        sql.append('=');
        AppendValueLiteral(sql, *fields[i], parts.backslashEscapes, parts.binaryOpen);
        first = false;
    }
    AppendCondition(sql, condition);
    return !sql.truncated();
}

bool BuildDeleteStatement(const RecordStatementParts &parts, const char *condition, char *out, int size) noexcept {
    korvel::BoundedText sql(out, size);
    sql.append(parts.deleteHead);
    AppendCondition(sql, condition);
    return !sql.truncated();
}

void BuildIdentifyingCondition(std::string_view preparedField, std::string_view value, int sqlType, char *out,
                               int size, bool backslashEscapes) noexcept {
    korvel::BoundedText condition(out, size);
    condition.append(preparedField);
    condition.append('=');
    if (IsBareSqlType(sqlType)) condition.append(value);
    else AppendStringLiteral(condition, value, backslashEscapes);
}

} // namespace kodbc::wizards
