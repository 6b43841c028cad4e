// Data sources and driver information.
#include "commands.h"
#include "terminal.h"

#include <cstdio>
#include <string>
#include <vector>

namespace kodbc_cli {

int ListDataSources() {
    SQLHENV henv = nullptr;
    if (!SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &henv))) {
        Error("kein ODBC-Treibermanager verfügbar");
        return kExitFailed;
    }
    SQLSetEnvAttr(henv, SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0);
    SQLCHAR name[200], description[200];
    SQLSMALLINT nameLength = 0, descriptionLength = 0;
    SQLUSMALLINT direction = SQL_FETCH_FIRST;
    std::vector<std::vector<std::string>> rows;
    while (SQL_SUCCEEDED(SQLDataSources(henv, direction, name, sizeof name, &nameLength, description,
                                        sizeof description, &descriptionLength))) {
        rows.push_back({reinterpret_cast<char *>(name), reinterpret_cast<char *>(description)});
        direction = SQL_FETCH_NEXT;
    }
    SQLFreeHandle(SQL_HANDLE_ENV, henv);
    PrintAligned(rows);
    return kExitOk;
}

int ShowInfo(const std::string &dsn, const Login &login) {
    Connection connection(dsn, login.user, login.password);
    if (!connection.ok()) return kExitFailed;
    char text[4096];
    if (Kodbc_GetDriverInformation(connection.hdbc(), text, sizeof text) != KODBC_SUCCESS) return kExitFailed;
    std::vector<std::vector<std::string>> rows;
    for (const std::string &line : Split(text, '\n')) {
        std::vector<std::string> row = Split(line, '\t');
        row.resize(2);
        row[0] += ':';
        rows.push_back(row);
    }
    PrintAligned(rows);
    return kExitOk;
}

} // namespace kodbc_cli
