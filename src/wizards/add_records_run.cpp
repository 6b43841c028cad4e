// The add-records work loop.
#include "wizards/add_records_run.h"
#include "wizards/record_statements.h"
#include "wizards/value_conversion.h"

#include "internal/batch_insert.h"
#include "internal/binary_text.h"
#include "internal/execution.h"
#include "internal/library.h"
#include "internal/odbc_handles.h"
#include "sqltext/column_name.h"

#include <korvel/bounded_text.h>
#include <korvel/korvel32.h>

#include <kodbc/kodbc_diag.h>
#include <kodbc/kodbc_sqltext.h>
#include <kodbc/kodbc_tableops.h>

#include <cstring>
#include <memory>
#include <new>
#include <string_view>
#include <vector>

namespace kodbc::wizards {
namespace {

constexpr int kBufferSize = 30000;
constexpr int kNameSize = 200;
constexpr int kFromSize = 300;

// "SELECT <mapped source fields>[,<source id field>] FROM <source table>".
void BuildSourceQuery(const AddRecordsContext &context, bool replace, char *out, int size) {
    korvel::BoundedText sql(out, size);
    sql.append("SELECT ");
    bool first = true;
    char name[kNameSize];
    for (const auto &field : context.fields) {
        if (!field || !field->readsSource()) continue;
        if (!first) sql.append(',');
        sqltext::PrepareColumnName(context.sourceDbc, field->sourceField.c_str(), name, sizeof name);
        sql.append(name);
        first = false;
    }
    if (replace) {
        if (!first) sql.append(',');
        sqltext::PrepareColumnName(context.sourceDbc, context.sourceIdField, name, sizeof name);
        sql.append(name);
    }
    char from[kFromSize];
    Kodbc_SprintfSqlStatement(context.sourceDbc, from, sizeof from, " FROM %t", context.sourceTable, nullptr,
                              nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
    sql.append(from);
}

// Column `column` of the current row as text, bytes as their hex digits;
// false for NULL or a column that cannot be read. cut (may be null) tells
// whether the value was longer than the buffer.
bool ReadColumn(SQLHSTMT statement, SQLUSMALLINT column, int sqlType, char *buffer, int size,
                std::string_view &value, bool *cut = nullptr) {
    SQLLEN indicator = 0;
    SQLRETURN rc = IsBinarySqlType(sqlType)
                       ? ReadBinaryAsHex(statement, column, buffer, static_cast<SQLLEN>(size), &indicator)
                       : KODBC_SQL(SQLGetData, statement, column, static_cast<SQLSMALLINT>(SQL_C_CHAR),
                                   static_cast<SQLPOINTER>(buffer), static_cast<SQLLEN>(size), &indicator);
    if (!odbc::succeeded(rc) || indicator == SQL_NULL_DATA) return false;
    // A value longer than the buffer arrives cut (and the driver may not
    // know its length): what is in the buffer counts.
    std::size_t length = indicator >= 0 && indicator < size ? static_cast<std::size_t>(indicator)
                                                            : std::strlen(buffer);
    if (cut) *cut = rc == SQL_SUCCESS_WITH_INFO && (indicator == SQL_NO_TOTAL || indicator >= size);
    value = std::string_view(buffer, length);
    return true;
}

int ResultColumnType(SQLHSTMT statement, SQLUSMALLINT column) {
    SQLLEN type = 0;
    SQLRETURN rc = KODBC_SQL(SQLColAttributes, statement, column, static_cast<SQLUSMALLINT>(SQL_COLUMN_TYPE),
                             static_cast<SQLPOINTER>(nullptr), static_cast<SQLSMALLINT>(0),
                             static_cast<SQLSMALLINT *>(nullptr), &type);
    return odbc::succeeded(rc) ? static_cast<int>(type) : 0;
}

} // namespace

int RunAddRecords(AddRecordsContext &context, WizardProgress &progress, AddRecordsRunCounts *counts) noexcept {
    AddRecordsRunCounts local;
    AddRecordsRunCounts &result = counts ? *counts : local;
    result = AddRecordsRunCounts{};
    const bool replace = context.recordMode == kRecordModeReplace;
    char table[sizeof context.table.Object.DbObjectName + 1];
    KorvelCopyString(table, context.table.Object.DbObjectName, sizeof table);

    const long total = Kodbc_GetRecordCount(context.sourceDbc, context.sourceTable, 0);
    std::unique_ptr<char[]> sql(new (std::nothrow) char[kBufferSize]);
    std::unique_ptr<char[]> value(new (std::nothrow) char[kBufferSize]);
    if (!sql || !value) return KODBC_FAILURE;

    BuildSourceQuery(context, replace, sql.get(), kBufferSize);
    odbc::Statement query;
    if (!PrepareStatement(SourceQueryConnection(context.sourceDbc, context.destination), sql.get(), query)) return KODBC_FAILURE;
    if (ExecuteStatement(query, sql.get(), nullptr) != ExecOutcome::Executed) return KODBC_FAILURE;

    RecordStatementParts parts;
    if (!PrepareRecordStatementParts(context.destination, table, context.fields, parts)) return KODBC_FAILURE;
    SQLUSMALLINT idColumn = 1;
    for (const auto &field : context.fields) idColumn += field && field->readsSource() ? 1 : 0;
    char idField[kNameSize] = {};
    int idType = 0;
    if (replace) {
        sqltext::PrepareColumnName(context.destination, context.destIdField, idField, sizeof idField);
        idType = ResultColumnType(query.get(), idColumn);
    }
    std::vector<int> columnTypes;
    for (SQLUSMALLINT c = 1; c < idColumn; ++c) columnTypes.push_back(ResultColumnType(query.get(), c));
    char idValue[kIdentifyingValueSize];
    char condition[kIdentifyingConditionSize];

    // Batch mode: the records' values strung together after the INSERT's
    // head, each given the room it has in a one-record statement; in
    // replace mode every statement runs singly (a later record's question
    // whether it matches must see the earlier ones), all in the one
    // transaction.
    std::unique_ptr<BatchInsert> batch;
    int room = kBufferSize;
    // A batch that runs out of memory is taken back like a refused one.
    auto guarded = [&](auto &&step) noexcept -> bool {
        try {
            return step();
        } catch (...) {
            LibraryMessage(msg::OUT_OF_MEMORY);
            if (batch) batch->Abandon(false);
            return false;
        }
    };
    if (context.batch && !guarded([&] {
            BatchMessages messages;
            messages.failedRecord = msg::ADDREC_FAILED_RECORD;
            messages.rolledBack = msg::ADDREC_ROLLED_BACK;
            messages.cancelledRolledBack = msg::ADDREC_CANCELLED_ROLLED_BACK;
            const std::string head = InsertHead(parts, context.fields);
            room = kBufferSize - static_cast<int>(head.size());
            batch = std::make_unique<BatchInsert>(context.destination, head, messages);
            return true;
        }))
        return KODBC_FAILURE;
    bool writeFailed = false;

    // One statement serves every record of the per-record stream: each is
    // offered to the dump and executed directly on it.
    odbc::Statement statement;
    auto executeOne = [&](const char *text) {
        if (!statement.ok()) {
            statement = odbc::Statement(context.destination);
            if (!statement.ok()) {
                Kodbc_DisplayErrorHdbc(context.destination);
                return false;
            }
        }
        return Korvel_DumpSqlStatement(text, 0) == 1 && ExecuteStatement(statement, text, nullptr) != ExecOutcome::Failed;
    };
    progress.Start(total);
    bool converted = true;
    for (long record = 1; record <= total && converted; ++record) {
        for (const auto &field : context.fields)
            if (field) field->valueIsNull = true;
        if (!odbc::succeeded(KODBC_SQL(SQLFetch, query.get()))) break;
        ++result.read;

        SQLUSMALLINT column = 0;
        for (const auto &field : context.fields) {
            if (!field || !field->readsSource()) continue;
            std::string_view text;
            bool cut = false;
            ++column;
            if (!ReadColumn(query.get(), column, columnTypes[column - 1], value.get(), kBufferSize, text, &cut))
                continue;
            if (cut) ++result.valuesCut;
            if (!ConvertSourceValue(field->sourceType, field->destinationType, text, field->value)) {
                converted = false;
                continue;
            }
            const bool number = field->sourceType == KODBC_TYPE_INTEGER || field->sourceType == KODBC_TYPE_FLOAT;
            if (number && field->value != text && result.numbersChanged++ == 0) {
                result.firstNumber = text;
                result.firstNumberAs = field->value;
                result.firstNumberField = field->destinationName;
                result.firstNumberRecord = record;
            }
            field->valueIsNull = false;
        }

        bool update = false;
        if (replace) {
            std::string_view id;
            if (!ReadColumn(query.get(), idColumn, idType, idValue, sizeof idValue, id)) id = {};
            BuildIdentifyingCondition(idField, id, idType, condition, sizeof condition, parts.backslashEscapes);
            update = Kodbc_GetRecordCountExt(context.destination, table, condition, 0) >= 1;
        }
        bool written;
        if (batch && !replace) {
            BuildInsertValues(parts, context.fields, sql.get(), room > 1 ? room : 1);
            written = guarded([&] { return batch->Add(sql.get(), record); });
        } else {
            if (update) BuildUpdateStatement(parts, context.fields, condition, sql.get(), kBufferSize);
            else BuildInsertStatement(parts, context.fields, sql.get(), kBufferSize);
            written = batch ? guarded([&] { return batch->Run(sql.get(), record); }) : executeOne(sql.get());
        }
        if (!written) {
            result.stopped = true;
            writeFailed = batch != nullptr;
            break;
        }
        ++result.written;
        if (progress.Step(record)) {
            result.cancelled = true;
            break;
        }
    }
    if (!converted) result.stopped = true;
    if (batch) {
        if (!result.stopped && !result.cancelled) result.stopped = !guarded([&] { return batch->Finish(); });
        else if (!writeFailed) batch->Abandon(result.cancelled);
        if (result.stopped || result.cancelled) result.written = 0;
    }
    progress.Finish();
    return KODBC_SUCCESS;
}

} // namespace kodbc::wizards
