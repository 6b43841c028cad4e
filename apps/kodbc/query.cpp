// Tables and statements.
#include "commands.h"
#include "terminal.h"

#include <cstdio>
#include <string>
#include <vector>

namespace kodbc_cli {
namespace {

// A statement on the command's connection, dropped when the command ends.
class Statement {
public:
    explicit Statement(SQLHDBC hdbc) {
        if (!SQL_SUCCEEDED(SQLAllocStmt(hdbc, &h_))) {
            h_ = nullptr;
            Kodbc_DisplayErrorHdbc(hdbc);
        }
    }
    ~Statement() {
        if (h_) SQLFreeStmt(h_, SQL_DROP);
    }
    Statement(const Statement &) = delete;
    Statement &operator=(const Statement &) = delete;
    SQLHSTMT get() const { return h_; }

private:
    SQLHSTMT h_ = nullptr;
};

// Prints the open result set as tab-separated lines with a header.
bool PrintResult(SQLHSTMT stmt, const std::string &sql) {
    SQLSMALLINT columns = 0;
    SQLNumResultCols(stmt, &columns);
    for (SQLSMALLINT c = 1; c <= columns; ++c) {
        char name[256] = {};
        SQLSMALLINT length = 0;
        SQLColAttribute(stmt, c, SQL_DESC_NAME, name, sizeof name, &length, nullptr);
        std::printf("%s%s", c > 1 ? "\t" : "", name);
    }
    if (columns) std::printf("\n");
    std::vector<char> value(65536);
    long rows = 0;
    SQLRETURN rc;
    while (SQL_SUCCEEDED(rc = SQLFetch(stmt))) {
        for (SQLSMALLINT c = 1; c <= columns; ++c) {
            SQLLEN indicator = 0;
            SQLRETURN got = SQLGetData(stmt, c, SQL_C_CHAR, value.data(), static_cast<SQLLEN>(value.size()), &indicator);
            std::printf("%s%s", c > 1 ? "\t" : "",
                        SQL_SUCCEEDED(got) && indicator != SQL_NULL_DATA ? value.data() : "");
        }
        std::printf("\n");
        ++rows;
    }
    if (rc != SQL_NO_DATA) {
        Kodbc_DisplayErrorHstmt(stmt, sql.c_str());
        return false;
    }
    if (columns) std::fprintf(stderr, "(%ld Zeilen)\n", rows);
    return true;
}

} // namespace

int ListTables(const std::string &dsn, const Login &login) {
    Connection connection(dsn, login.user, login.password);
    if (!connection.ok()) return kExitFailed;
    Statement stmt(connection.hdbc());
    if (!stmt.get()) return kExitFailed;
    if (!SQL_SUCCEEDED(SQLTables(stmt.get(), nullptr, 0, nullptr, 0, nullptr, 0, (SQLCHAR *)"TABLE,VIEW", SQL_NTS))) {
        Kodbc_DisplayErrorHstmt(stmt.get(), nullptr);
        return kExitFailed;
    }
    char name[256], type[64];
    SQLLEN nameLength = 0, typeLength = 0;
    SQLBindCol(stmt.get(), 3, SQL_C_CHAR, name, sizeof name, &nameLength);
    SQLBindCol(stmt.get(), 4, SQL_C_CHAR, type, sizeof type, &typeLength);
    while (SQL_SUCCEEDED(SQLFetch(stmt.get()))) std::printf("%-40s %s\n", name, type);
    return kExitOk;
}

int RunSql(const std::string &dsn, const Login &login, const std::string &statement) {
    Connection connection(dsn, login.user, login.password);
    if (!connection.ok()) return kExitFailed;
    Statement stmt(connection.hdbc());
    if (!stmt.get()) return kExitFailed;
    SQLRETURN rc = SQLExecDirect(stmt.get(), (SQLCHAR *)statement.c_str(), SQL_NTS);
    if (!SQL_SUCCEEDED(rc) && rc != SQL_NO_DATA) {
        Kodbc_DisplayErrorHstmt(stmt.get(), statement.c_str());
        return kExitFailed;
    }
    return PrintResult(stmt.get(), statement) ? kExitOk : kExitFailed;
}

} // namespace kodbc_cli
