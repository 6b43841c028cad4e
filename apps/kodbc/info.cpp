// Data sources and driver information.
#include "commands.h"
#include "terminal.h"

#include <cstdio>

namespace kodbc_cli {
namespace {

std::string InfoText(SQLHDBC hdbc, SQLUSMALLINT item) {
    char text[256] = {};
    SQLSMALLINT length = 0;
    if (!SQL_SUCCEEDED(SQLGetInfo(hdbc, item, text, sizeof text, &length))) return {};
    return text;
}

} // namespace

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
    while (SQL_SUCCEEDED(SQLDataSources(henv, direction, name, sizeof name, &nameLength, description,
                                        sizeof description, &descriptionLength))) {
        std::printf("%-32s %s\n", reinterpret_cast<char *>(name), reinterpret_cast<char *>(description));
        direction = SQL_FETCH_NEXT;
    }
    SQLFreeHandle(SQL_HANDLE_ENV, henv);
    return kExitOk;
}

int ShowInfo(const std::string &dsn, const Login &login) {
    Connection connection(dsn, login.user, login.password);
    if (!connection.ok()) return kExitFailed;
    SQLHDBC hdbc = connection.hdbc();

    char dataSource[256], database[256], driverVersion[256];
    Kodbc_GetDataSourceName(hdbc, dataSource, sizeof dataSource);
    Kodbc_GetDatabaseName(hdbc, database, sizeof database);
    Kodbc_GetDriverVersion(hdbc, driverVersion, sizeof driverVersion);
    char quote = Kodbc_GetDelimiter(hdbc);

    auto line = [](const char *label, const std::string &value) { std::printf("%-18s %s\n", label, value.c_str()); };
    line("Datenquelle:", dataSource);
    line("DBMS:", InfoText(hdbc, SQL_DBMS_NAME));
    line("DBMS-Version:", InfoText(hdbc, SQL_DBMS_VER));
    line("ODBC-Version:", InfoText(hdbc, SQL_DRIVER_ODBC_VER));
    line("Treiber:", InfoText(hdbc, SQL_DRIVER_NAME));
    line("Treiber-Version:", driverVersion);
    line("Datenbank:", database);
    line("Namensbegrenzer:", quote == ' ' ? std::string("(keiner)") : std::string(1, quote));
    line("Datenbanktyp:", std::to_string(Kodbc_GetDatabaseType(hdbc)));
    line("Schemata:", Kodbc_GetSchemaUsage(hdbc) ? "ja" : "nein");
    return kExitOk;
}

} // namespace kodbc_cli
