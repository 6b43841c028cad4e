// Per-call cost of connecting and of the driver queries the library makes,
// each next to the same raw ODBC calls in the same run.
#include <kodbc/kodbc.h>

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <cstring>
#include <string>

namespace {

std::string Dsn() {
    const char *dsn = std::getenv("KODBC_BENCH_DSN");
    return dsn && *dsn ? dsn : "kodbc_bench_sqlite";
}

void UsePrivateOdbcConfiguration() {
    if (std::getenv("KODBC_BENCH_DSN")) return;
    setenv("ODBCSYSINI", KODBC_BENCH_ODBC_DIR, 1);
    setenv("ODBCINI", KODBC_BENCH_ODBC_DIR "/odbc.ini", 1);
}

int Silent(const KodbcMessage *, void *) { return KODBC_ANSWER_OK; }

void BM_Kodbc_ConnectDisconnect(benchmark::State &state) {
    DataSourceRecord source{};
    std::strncpy(source.DataSourceName, Dsn().c_str(), sizeof source.DataSourceName - 1);
    for (auto _ : state) {
        SQLHENV henv = nullptr;
        SQLHDBC hdbc = nullptr;
        if (Kodbc_ConnectDataSource(&source, &henv, &hdbc) != 0) {
            state.SkipWithError("connect failed");
            break;
        }
        Kodbc_DisconnectDataSource(&henv, &hdbc);
    }
}
BENCHMARK(BM_Kodbc_ConnectDisconnect);

void BM_Raw_ConnectDisconnect(benchmark::State &state) {
    std::string dsn = Dsn();
    for (auto _ : state) {
        SQLHENV henv = nullptr;
        SQLHDBC hdbc = nullptr;
        SQLAllocEnv(&henv);
        SQLAllocConnect(henv, &hdbc);
        if (!SQL_SUCCEEDED(SQLConnect(hdbc, (SQLCHAR *)dsn.c_str(), SQL_NTS, nullptr, SQL_NTS, nullptr, SQL_NTS))) {
            state.SkipWithError("connect failed");
            break;
        }
        SQLDisconnect(hdbc);
        SQLFreeConnect(hdbc);
        SQLFreeEnv(henv);
    }
}
BENCHMARK(BM_Raw_ConnectDisconnect);

// One connection for the query benchmarks.
struct Connected {
    SQLHENV henv = nullptr;
    SQLHDBC hdbc = nullptr;
    Connected() {
        DataSourceRecord source{};
        std::strncpy(source.DataSourceName, Dsn().c_str(), sizeof source.DataSourceName - 1);
        Kodbc_ConnectDataSource(&source, &henv, &hdbc);
    }
    ~Connected() { Kodbc_DisconnectDataSource(&henv, &hdbc); }
};

void BM_Kodbc_GetDelimiter(benchmark::State &state) {
    Connected c;
    for (auto _ : state) benchmark::DoNotOptimize(Kodbc_GetDelimiter(c.hdbc));
}
BENCHMARK(BM_Kodbc_GetDelimiter);

void BM_Raw_GetInfo_IdentifierQuote(benchmark::State &state) {
    Connected c;
    char quote[10];
    SQLSMALLINT length = 0;
    for (auto _ : state) {
        SQLGetInfo(c.hdbc, SQL_IDENTIFIER_QUOTE_CHAR, quote, sizeof quote, &length);
        benchmark::DoNotOptimize(quote[0]);
    }
}
BENCHMARK(BM_Raw_GetInfo_IdentifierQuote);

void BM_Kodbc_GetDatabaseType(benchmark::State &state) {
    Connected c;
    for (auto _ : state) benchmark::DoNotOptimize(Kodbc_GetDatabaseType(c.hdbc));
}
BENCHMARK(BM_Kodbc_GetDatabaseType);

void BM_Raw_GetInfo_DbmsName(benchmark::State &state) {
    Connected c;
    char name[100];
    SQLSMALLINT length = 0;
    for (auto _ : state) {
        SQLGetInfo(c.hdbc, SQL_DBMS_NAME, name, sizeof name, &length);
        benchmark::DoNotOptimize(name[0]);
    }
}
BENCHMARK(BM_Raw_GetInfo_DbmsName);

} // namespace

int main(int argc, char **argv) {
    UsePrivateOdbcConfiguration();
    Kodbc_SetMessageHandler(&Silent, nullptr);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
