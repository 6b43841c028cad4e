// Running one statement on the caller's connection: the common start that
// every execution function shares, plain execution and row counting.
#include "internal/text.h"
#include "internal/execution.h"
#include "internal/library.h"

#include <korvel/korvel32.h>

#include <kodbc/kodbc_diag.h>
#include <kodbc/kodbc_exec.h>

namespace kodbc {

bool PrepareStatement(SQLHDBC hdbc, const char *sql, odbc::Statement &statement, int bufferSize) noexcept {
    statement = odbc::Statement(hdbc);
    if (!statement.ok()) {
        Kodbc_DisplayErrorHdbc(hdbc);
        return false;
    }
    if (Korvel_DumpSqlStatement(sql, bufferSize) != 1) {
        statement.reset();
        return false;
    }
    return true;
}

bool ReportStatementError(SQLHSTMT statement, SQLRETURN rc, const char *sql, const char *tolerated) noexcept {
    if (Kodbc_IsLastErrorInList(KODBC_HANDLE_STMT, statement, tolerated, rc)) return true;
    Kodbc_DisplayErrorOrInfoHstmt(statement, rc, sql);
    return false;
}

ExecOutcome ExecuteStatement(odbc::Statement &statement, const char *sql, const char *tolerated) noexcept {
    SQLRETURN rc = KODBC_SQL(SQLExecDirect, statement.get(), reinterpret_cast<SQLCHAR *>(const_cast<char *>(sql)),
                             static_cast<SQLINTEGER>(SQL_NTS));
    // A searched UPDATE or DELETE that matches nothing answers SQL_NO_DATA:
    // the statement ran.
    if (rc == SQL_SUCCESS || rc == SQL_NO_DATA) return ExecOutcome::Executed;
    if (rc == SQL_SUCCESS_WITH_INFO) {
        // Shown only when the dump state asks for warnings.
        ReportStatementError(statement, rc, sql, tolerated);
        return ExecOutcome::Executed;
    }
    return ReportStatementError(statement, rc, sql, tolerated) ? ExecOutcome::Tolerated : ExecOutcome::Failed;
}

ValueClass ClassifySqlType(SQLLEN sqlType) noexcept {
    switch (sqlType) {
    case SQL_CHAR: case SQL_VARCHAR: case SQL_LONGVARCHAR:
    case SQL_WCHAR: case SQL_WVARCHAR: case SQL_WLONGVARCHAR:
        return ValueClass::Text;
    case SQL_TINYINT: case SQL_BIGINT: case SQL_NUMERIC: case SQL_DECIMAL: case SQL_INTEGER:
    case SQL_SMALLINT: case SQL_FLOAT: case SQL_REAL: case SQL_DOUBLE:
        return ValueClass::Number;
    // SQL_DESC_TYPE reports every date and time type as SQL_DATETIME (9);
    // the concise ODBC 3 codes are accepted as well.
    case SQL_DATE: case SQL_TIME: case SQL_TIMESTAMP:
    case SQL_TYPE_DATE: case SQL_TYPE_TIME: case SQL_TYPE_TIMESTAMP:
        return ValueClass::Date;
    default:
        return ValueClass::Other;
    }
}

namespace {

// Reads up to `digits` digits; false when there is none.
bool ReadNumber(const char *&p, const char *end, int digits, int &value) {
    int n = 0, v = 0;
    while (p < end && n < digits && *p >= '0' && *p <= '9') {
        v = v * 10 + (*p++ - '0');
        ++n;
    }
    if (n == 0) return false;
    value = v;
    return true;
}

bool ReadTime(const char *&p, const char *end, DateTimeFields &f) {
    if (!ReadNumber(p, end, 2, f.hour) || p >= end || *p++ != ':') return false;
    if (!ReadNumber(p, end, 2, f.minute)) return false;
    if (p < end && *p == ':') {
        ++p;
        ReadNumber(p, end, 2, f.second);
    }
    return true;
}

} // namespace

DateTimeFields ParseOdbcDateTime(const char *text, std::size_t length) noexcept {
    DateTimeFields f;
    const char *p = text, *end = text + length;
    while (p < end && *p == ' ') ++p;
    // A bare time has its colon at the third place.
    if (end - p >= 3 && p[2] == ':') {
        DateTimeFields t;
        if (ReadTime(p, end, t)) f = t;
        return f;
    }
    DateTimeFields d;
    if (!ReadNumber(p, end, 4, d.year) || p >= end || *p++ != '-') return f;
    if (!ReadNumber(p, end, 2, d.month) || p >= end || *p++ != '-') return f;
    if (!ReadNumber(p, end, 2, d.day)) return f;
    while (p < end && (*p == ' ' || *p == 'T')) ++p;
    if (p < end) ReadTime(p, end, d);
    return d;
}

} // namespace kodbc

using namespace kodbc;

extern "C" {

KODBC_API int KODBC_CALL OdbcEh_PerformSqlStatement(HWND, SQLHDBC hdbc, const char *sql, const char *tolerated) {
    if (!hdbc || IsBlank(sql)) return KODBC_FAILURE;
    odbc::Statement statement;
    if (!PrepareStatement(hdbc, sql, statement)) return KODBC_FAILURE;
    return ExecuteStatement(statement, sql, tolerated) == ExecOutcome::Failed ? KODBC_FAILURE : KODBC_SUCCESS;
}

KODBC_API long KODBC_CALL OdbcEh_CountRows(HWND, SQLHDBC hdbc, const char *sql) {
    if (!hdbc || IsBlank(sql)) return 0;
    odbc::Statement statement;
    if (!PrepareStatement(hdbc, sql, statement)) return 0;
    if (ExecuteStatement(statement, sql, nullptr) != ExecOutcome::Executed) return 0;
    long rows = 0;
    SQLRETURN rc;
    while ((rc = KODBC_SQL(SQLFetch, statement.get())) == SQL_SUCCESS) ++rows;
    if (rc != SQL_NO_DATA && rc != SQL_SUCCESS_WITH_INFO) {
        // A count cut short by an error is no count.
        Kodbc_DisplayErrorOrInfoHstmt(statement, rc, sql);
        return 0;
    }
    return rows;
}

} // extern "C"
