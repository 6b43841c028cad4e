// Operations on whole tables and single fields: drop, rename by copying, a
// free name, counts and aggregates, field tests.
#include "catalog/catalog_internal.h"
#include "catalog/table_ops_internal.h"
#include "internal/execution.h"
#include "internal/library.h"

#include <korvel/bounded_text.h>
#include <korvel/korvel32.h>

#include <kodbc/kodbc_catalog.h>
#include <kodbc/kodbc_diag.h>
#include <kodbc/kodbc_exec.h>
#include <kodbc/kodbc_sqltext.h>
#include <kodbc/kodbc_tableops.h>

#include <cctype>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <string_view>

namespace kodbc::tableops {
namespace {

using catalog::IsBlank;

constexpr int kDropStatementSize = 500;
constexpr int kCopyStatementSize = 300;
constexpr int kProbeStatementSize = 200;
constexpr int kAggregateStatementSize = 30000;
constexpr int kNamePatternSize = 100;       // the free-name pattern, at most 99 characters
constexpr int kColumnNameSize = 100;
// The rename's notice stays up while the copy runs.
constexpr int kCopyNoticeTiming = 30000;
// What "no such table" looks like from ODBC 2 and ODBC 3 drivers.
constexpr const char *kMissingTableStates = "S0002,42S02";

void Format(SQLHDBC hdbc, char *out, int size, const char *sqlTemplate, const char *arg1,
            const char *arg2 = nullptr) {
    Kodbc_SprintfSqlStatement(hdbc, out, size, sqlTemplate, arg1, arg2, nullptr, nullptr, nullptr, nullptr,
                              nullptr, nullptr);
}

const char *SkipBlanks(const char *p) {
    while (*p && std::isspace(static_cast<unsigned char>(*p))) ++p;
    return p;
}

// "SELECT <aggregate> FROM %t" with the optional condition, then its value.
bool AggregateValue(SQLHDBC hdbc, const char *sqlTemplate, const char *field, const char *table,
                    const char *condition, char (&value)[kValueSize]) {
    std::unique_ptr<char[]> sql(new (std::nothrow) char[kAggregateStatementSize]);
    if (!sql) {
        LibraryMessage(msg::OUT_OF_MEMORY);
        return false;
    }
    if (field) Format(hdbc, sql.get(), kAggregateStatementSize, sqlTemplate, field, table);
    else Format(hdbc, sql.get(), kAggregateStatementSize, sqlTemplate, table);
    if (condition && *condition) {
        auto text = korvel::BoundedText::continuing(sql.get(), kAggregateStatementSize);
        text.append(" WHERE ");
        text.append(condition);
    }
    return FetchFirstValue(hdbc, sql.get(), value);
}

int AggregateAsDouble(SQLHDBC hdbc, const char *sqlTemplate, const char *table, const char *field,
                      const char *condition, double *result) {
    if (!result) return -1;
    *result = 0;
    if (!hdbc || IsBlank(table) || IsBlank(field)) return -1;
    char value[kValueSize];
    if (!AggregateValue(hdbc, sqlTemplate, field, table, condition, value)) return -1;
    *result = TextToDouble(value);
    return 0;
}

// Writes pattern into out with every "%d" replaced by number and "%%" by
// one "%"; any other "%" stands for itself.
void ExpandPattern(std::string_view pattern, int number, char *out, int size) {
    korvel::BoundedText text(out, size);
    char digits[16];
    auto [end, ec] = std::to_chars(digits, digits + sizeof digits, number);
    std::string_view formatted(digits, static_cast<std::size_t>(end - digits));
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        if (pattern[i] == '%' && i + 1 < pattern.size() && (pattern[i + 1] == 'd' || pattern[i + 1] == '%')) {
            text.append(pattern[i + 1] == 'd' ? formatted : std::string_view("%"));
            ++i;
        } else {
            text.append(pattern[i]);
        }
    }
}

} // namespace

bool FetchFirstValue(SQLHDBC hdbc, const char *sql, char (&value)[kValueSize]) {
    value[0] = '\0';
    odbc::Statement statement;
    if (!PrepareStatement(hdbc, sql, statement)) return false;
    if (ExecuteStatement(statement, sql, nullptr) != ExecOutcome::Executed) return false;
    SQLLEN indicator = 0;
    SQLRETURN rc = KODBC_SQL(SQLBindCol, statement.get(), static_cast<SQLUSMALLINT>(1),
                             static_cast<SQLSMALLINT>(SQL_C_CHAR), static_cast<SQLPOINTER>(value),
                             static_cast<SQLLEN>(kValueSize), &indicator);
    if (!odbc::succeeded(rc)) {
        Kodbc_DisplayErrorHstmt(statement, sql);
        return false;
    }
    rc = KODBC_SQL(SQLFetch, statement.get());
    if (rc == SQL_NO_DATA) return true;
    if (!odbc::succeeded(rc)) {
        Kodbc_DisplayErrorHstmt(statement, sql);
        value[0] = '\0';
        return false;
    }
    if (indicator == SQL_NULL_DATA) value[0] = '\0';
    value[kValueSize - 1] = '\0';
    return true;
}

long TextToLong(const char *text) {
    return std::strtol(SkipBlanks(text), nullptr, 10);
}

double TextToDouble(const char *text) {
    // Drivers write numbers with a point whatever the process locale says.
    const char *p = SkipBlanks(text);
    if (*p == '+') ++p;
    double value = 0;
    std::from_chars(p, p + std::strlen(p), value);
    return value;
}

} // namespace kodbc::tableops

using namespace kodbc;
using namespace kodbc::tableops;
using kodbc::catalog::IsBlank;

extern "C" {

KODBC_API int KODBC_CALL Kodbc_DeleteTableExtended(SQLHDBC hdbc, const char *schema, const char *table, int flags) {
    if (!hdbc || IsBlank(table)) return KODBC_FAILURE;
    if (!(flags & KODBC_DROP_NO_QUESTION) && LibraryMessage(msg::ASK_DROP_TABLE, table) != KODBC_ANSWER_YES)
        return KODBC_FAILURE;
    char sql[kDropStatementSize];
    Format(hdbc, sql, sizeof sql, "DROP TABLE %t%.%t", schema, table);
    odbc::Statement statement;
    if (!PrepareStatement(hdbc, sql, statement)) return KODBC_FAILURE;
    const char *tolerated = (flags & KODBC_DROP_MISSING_OK) ? kMissingTableStates : nullptr;
    return ExecuteStatement(statement, sql, tolerated) == ExecOutcome::Failed ? KODBC_FAILURE : KODBC_SUCCESS;
}

KODBC_API int KODBC_CALL Kodbc_DeleteTable(SQLHDBC hdbc, const char *table, int flags) {
    return Kodbc_DeleteTableExtended(hdbc, nullptr, table, flags);
}

KODBC_API int KODBC_CALL Kodbc_RenameTable(SQLHDBC hdbc, const char *oldName, const char *newName, int flags) {
    if (!hdbc || IsBlank(oldName) || IsBlank(newName)) return KODBC_FAILURE;
    // A failed listing (shown) is no proof that the name is free.
    if (Kodbc_DoesTableExist(hdbc, KODBC_OBJECT_ALL, newName) != 0) return KODBC_FAILURE;
    char sql[kCopyStatementSize];
    Format(hdbc, sql, sizeof sql, "SELECT * INTO %t FROM %t", newName, oldName);
    if (flags & KODBC_RENAME_NOTICE)
        Korvel_DisplayTempWind(LibraryInstance(), msg::TABLE_COPYING, kCopyNoticeTiming, kNoticeColor);
    {
        odbc::Statement statement;
        if (!PrepareStatement(hdbc, sql, statement)) return KODBC_FAILURE;
        bool copied = ExecuteStatement(statement, sql, nullptr) == ExecOutcome::Executed;
        if (flags & KODBC_RENAME_NOTICE) Korvel_CloseTempWind();
        if (!copied) return KODBC_FAILURE;
    }
    return Kodbc_DeleteTable(hdbc, oldName, KODBC_DROP_NO_QUESTION);
}

KODBC_API void KODBC_CALL Kodbc_CreateUniqueTableName(SQLHDBC hdbc, char *name, int size) {
    if (!name || size < 1 || !hdbc) return;
    std::string_view base(name, strnlen(name, static_cast<std::size_t>(size) - 1));
    char candidate[kNamePatternSize];
    if (!base.empty()) {
        korvel::BoundedText(candidate, sizeof candidate).append(base);
        if (Kodbc_DoesTableExist(hdbc, KODBC_OBJECT_ALL, candidate) == 0) return;
    }
    char pattern[kNamePatternSize];
    korvel::BoundedText text(pattern, sizeof pattern);
    text.append(base);
    text.append("_%d");

    std::unique_ptr<char[]> tried(new (std::nothrow) char[static_cast<std::size_t>(size)]);
    std::unique_ptr<char[]> previous(new (std::nothrow) char[static_cast<std::size_t>(size)]);
    if (!tried || !previous) {
        LibraryMessage(msg::OUT_OF_MEMORY);
        return;
    }
    previous[0] = '\0';
    for (int number = 1; number > 0; ++number) {
        ExpandPattern(text.view(), number, tried.get(), size);
        // Once the number is cut away every candidate is the same: take it.
        if (number > 1 && std::strcmp(tried.get(), previous.get()) == 0) break;
        int found = Kodbc_DoesTableExist(hdbc, KODBC_OBJECT_ALL, tried.get());
        if (found < 0) return;
        if (found == 0) break;
        std::memcpy(previous.get(), tried.get(), static_cast<std::size_t>(size));
    }
    std::memcpy(name, tried.get(), static_cast<std::size_t>(size));
}

KODBC_API long KODBC_CALL Kodbc_GetRecordCountExt(SQLHDBC hdbc, const char *table, const char *condition, int) {
    if (!hdbc || IsBlank(table)) return 0;
    char value[kValueSize];
    if (!AggregateValue(hdbc, "SELECT Count(*) FROM %t", nullptr, table, condition, value)) return 0;
    return TextToLong(value);
}

KODBC_API long KODBC_CALL Kodbc_GetRecordCount(SQLHDBC hdbc, const char *table, int reserved) {
    return Kodbc_GetRecordCountExt(hdbc, table, nullptr, reserved);
}

KODBC_API int KODBC_CALL Kodbc_AddFields(SQLHDBC hdbc, const char *table, const char *field, const char *condition,
                                         double *result) {
    return AggregateAsDouble(hdbc, "SELECT Sum(%f) FROM %t", table, field, condition, result);
}

KODBC_API int KODBC_CALL Kodbc_GetMaximum(SQLHDBC hdbc, const char *table, const char *field, const char *condition,
                                          double *result) {
    return AggregateAsDouble(hdbc, "SELECT max(%f) FROM %t", table, field, condition, result);
}

KODBC_API int KODBC_CALL Kodbc_DoesFieldExist(SQLHDBC hdbc, const char *table, const char *field) {
    return OdbcEh_DoesColumnExist(nullptr, hdbc, table, nullptr, field);
}

KODBC_API int KODBC_CALL Kodbc_FindFirstAutoIncrementField(SQLHDBC hdbc, const char *table, char *out,
                                                           int outSize) {
    korvel::BoundedText result(out, outSize);
    if (!result.valid() || !hdbc || IsBlank(table)) return KODBC_FAILURE;
    if (Kodbc_DoesTableExist(hdbc, KODBC_OBJECT_ALL, table) != 1) return KODBC_FAILURE;

    char sql[kProbeStatementSize];
    Format(hdbc, sql, sizeof sql, "SELECT * FROM %t", table);
    odbc::Statement statement(hdbc);
    if (!statement.ok()) {
        Kodbc_DisplayErrorHdbc(hdbc);
        return KODBC_FAILURE;
    }
    // Prepared only: the driver describes the columns without a row being read.
    SQLRETURN rc = KODBC_SQL(SQLPrepare, statement.get(), reinterpret_cast<SQLCHAR *>(sql),
                             static_cast<SQLINTEGER>(SQL_NTS));
    SQLLEN count = 0;
    if (odbc::succeeded(rc))
        rc = KODBC_SQL(SQLColAttributes, statement.get(), static_cast<SQLUSMALLINT>(1),
                       static_cast<SQLUSMALLINT>(SQL_COLUMN_COUNT), static_cast<SQLPOINTER>(nullptr),
                       static_cast<SQLSMALLINT>(0), static_cast<SQLSMALLINT *>(nullptr), &count);
    if (!odbc::succeeded(rc)) {
        Kodbc_DisplayErrorHstmt(statement, sql);
        return KODBC_FAILURE;
    }
    for (SQLLEN c = 1; c <= count; ++c) {
        const auto column = static_cast<SQLUSMALLINT>(c);
        SQLLEN autoIncrement = 0;
        rc = KODBC_SQL(SQLColAttributes, statement.get(), column, static_cast<SQLUSMALLINT>(SQL_COLUMN_AUTO_INCREMENT),
                       static_cast<SQLPOINTER>(nullptr), static_cast<SQLSMALLINT>(0),
                       static_cast<SQLSMALLINT *>(nullptr), &autoIncrement);
        if (!odbc::succeeded(rc)) {
            Kodbc_DisplayErrorHstmt(statement, sql);
            return KODBC_FAILURE;
        }
        if (!autoIncrement) continue;
        char name[kColumnNameSize] = {};
        SQLSMALLINT length = 0;
        SQLLEN unused = 0;
        rc = KODBC_SQL(SQLColAttributes, statement.get(), column, static_cast<SQLUSMALLINT>(SQL_COLUMN_NAME),
                       static_cast<SQLPOINTER>(name), static_cast<SQLSMALLINT>(sizeof name), &length, &unused);
        if (!odbc::succeeded(rc)) {
            Kodbc_DisplayErrorHstmt(statement, sql);
            return KODBC_FAILURE;
        }
        result.append(std::string_view(name, strnlen(name, sizeof name - 1)));
        return KODBC_SUCCESS;
    }
    return KODBC_FAILURE;
}

} // extern "C"
