// Per-call cost of connecting and of the driver queries the library makes,
// each next to the same raw ODBC calls in the same run.
#include "bench_support.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <cstring>
#include <string>

namespace {

using kodbc::bench::Connection;
using kodbc::bench::DataSource;

void BM_Kodbc_ConnectDisconnect(benchmark::State &state) {
    DataSourceRecord source{};
    std::strncpy(source.DataSourceName, DataSource().c_str(), sizeof source.DataSourceName - 1);
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
    std::string dsn = DataSource();
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

void BM_Kodbc_GetDelimiter(benchmark::State &state) {
    Connection c;
    for (auto _ : state) benchmark::DoNotOptimize(Kodbc_GetDelimiter(c.hdbc));
}
BENCHMARK(BM_Kodbc_GetDelimiter);

void BM_Raw_GetInfo_IdentifierQuote(benchmark::State &state) {
    Connection c;
    char quote[10];
    SQLSMALLINT length = 0;
    for (auto _ : state) {
        SQLGetInfo(c.hdbc, SQL_IDENTIFIER_QUOTE_CHAR, quote, sizeof quote, &length);
        benchmark::DoNotOptimize(quote[0]);
    }
}
BENCHMARK(BM_Raw_GetInfo_IdentifierQuote);

void BM_Kodbc_GetDatabaseType(benchmark::State &state) {
    Connection c;
    for (auto _ : state) benchmark::DoNotOptimize(Kodbc_GetDatabaseType(c.hdbc));
}
BENCHMARK(BM_Kodbc_GetDatabaseType);

void BM_Raw_GetInfo_DbmsName(benchmark::State &state) {
    Connection c;
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
    kodbc::bench::Quiet();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
