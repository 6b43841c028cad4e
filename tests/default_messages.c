/* A program that embeds the library and installs no message handler: what
   its user sees of a failed statement is what the library writes to stderr. */
#include <kodbc/kodbc.h>

#include <string.h>

int main(int argc, char **argv) {
    DataSourceRecord source;
    SQLHENV henv = 0;
    SQLHDBC hdbc = 0;
    memset(&source, 0, sizeof source);
    strncpy(source.DataSourceName, argc > 1 ? argv[1] : "kodbc_sqlite", sizeof source.DataSourceName - 1);
    if (Kodbc_ConnectDataSource(&source, &henv, &hdbc) != 0) return 3;
    int rc = OdbcEh_PerformSqlStatement(0, hdbc, "SELEC x FROM nowhere", 0);
    Kodbc_DisconnectDataSource(&henv, &hdbc);
    return rc == 1 ? 4 : 0;
}
