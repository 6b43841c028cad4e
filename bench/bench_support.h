// What every benchmark program needs: its data source, a connection for the
// run, and silence instead of messages.
#pragma once

#include <kodbc/kodbc.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace kodbc::bench {

// KODBC_BENCH_DSN, else the private SQLite data source of the build (whose
// configuration is switched on here, so a run never reads the user's).
inline std::string DataSource() {
    const char *dsn = std::getenv("KODBC_BENCH_DSN");
    if (dsn && *dsn) return dsn;
    setenv("ODBCSYSINI", KODBC_BENCH_ODBC_DIR, 1);
    setenv("ODBCINI", KODBC_BENCH_ODBC_DIR "/odbc.ini", 1);
    return "kodbc_bench_sqlite";
}

inline int Silent(const KodbcMessage *, void *) { return KODBC_ANSWER_OK; }

// Messages would stop a measurement; errors show up as failed benchmarks.
inline void Quiet() { Kodbc_SetMessageHandler(&Silent, nullptr); }

// A connection through the library; a benchmark without one is meaningless,
// so failing to connect ends the program.
struct Connection {
    SQLHENV henv = nullptr;
    SQLHDBC hdbc = nullptr;
    explicit Connection(const std::string &dsn = DataSource()) {
        DataSourceRecord source{};
        std::strncpy(source.DataSourceName, dsn.c_str(), sizeof source.DataSourceName - 1);
        if (Kodbc_ConnectDataSource(&source, &henv, &hdbc) != KODBC_CONNECTED) {
            std::fprintf(stderr, "cannot connect to %s\n", dsn.c_str());
            std::exit(1);
        }
    }
    ~Connection() { Kodbc_DisconnectDataSource(&henv, &hdbc); }
    Connection(const Connection &) = delete;
    Connection &operator=(const Connection &) = delete;
    bool Run(const std::string &sql, const char *tolerated = nullptr) const {
        return OdbcEh_PerformSqlStatement(nullptr, hdbc, sql.c_str(), tolerated) == KODBC_SUCCESS;
    }
};

} // namespace kodbc::bench
