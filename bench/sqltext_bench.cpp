// Cost of the statement formatter and the SQL-92 name preparation per call,
// next to the one driver query each of them has to make: the bare
// SQLGetInfo(SQL_IDENTIFIER_QUOTE_CHAR). The ratio to that baseline is what
// the library adds.
//
// Runs on a private SQLite data source unless KODBC_BENCH_DSN names another
// (with ODBCINI/ODBCSYSINI set by the caller).
#include "bench_support.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

using kodbc::bench::Connection;

Connection &Shared() {
    static Connection connection;
    return connection;
}

void BM_GetInfoQuoteChar(benchmark::State &state) {
    SQLHDBC hdbc = Shared().hdbc;
    char quote[10];
    SQLSMALLINT length = 0;
    for (auto _ : state) {
        SQLGetInfo(hdbc, SQL_IDENTIFIER_QUOTE_CHAR, quote, sizeof quote, &length);
        benchmark::DoNotOptimize(quote);
    }
}
BENCHMARK(BM_GetInfoQuoteChar);

void BM_PrepareNameForSql92(benchmark::State &state) {
    SQLHDBC hdbc = Shared().hdbc;
    char out[300];
    for (auto _ : state) {
        Kodbc_PrepareNameForSql92(hdbc, "dbo.Meine Tabelle", out, sizeof out);
        benchmark::DoNotOptimize(out);
    }
}
BENCHMARK(BM_PrepareNameForSql92);

void BM_PrepareNameForSql92_InPlace(benchmark::State &state) {
    SQLHDBC hdbc = Shared().hdbc;
    char name[300];
    for (auto _ : state) {
        std::memcpy(name, "Kunden", 7);
        Kodbc_PrepareNameForSql92(hdbc, name, name, sizeof name);
        benchmark::DoNotOptimize(name);
    }
}
BENCHMARK(BM_PrepareNameForSql92_InPlace);

// A statement of the kind the catalogue and table operations build.
void BM_SprintfSqlStatement(benchmark::State &state) {
    SQLHDBC hdbc = Shared().hdbc;
    char out[1000];
    for (auto _ : state) {
        Kodbc_SprintfSqlStatement(hdbc, out, sizeof out, "SELECT %f, %f FROM %t%.%t WHERE %f > %s", "Kunden Nr",
                                  "Name", "dbo", "Meine Tabelle", "Umsatz", "1000", nullptr, nullptr);
        benchmark::DoNotOptimize(out);
    }
}
BENCHMARK(BM_SprintfSqlStatement);

// No name placeholder: the formatter must not ask the driver at all.
void BM_SprintfSqlStatement_TextOnly(benchmark::State &state) {
    SQLHDBC hdbc = Shared().hdbc;
    char out[1000];
    for (auto _ : state) {
        Kodbc_SprintfSqlStatement(hdbc, out, sizeof out, "SELECT Count(*) FROM Kunden WHERE Umsatz > %s", "1000",
                                  nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
        benchmark::DoNotOptimize(out);
    }
}
BENCHMARK(BM_SprintfSqlStatement_TextOnly);

} // namespace

BENCHMARK_MAIN();
