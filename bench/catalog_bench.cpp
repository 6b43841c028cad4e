// Catalogue calls per call, each next to the bare ODBC catalogue function
// they are built on: the field list of a 20-column table, and the table
// list of a data source with 10,000 tables.
#include "bench_support.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

constexpr int kTables = 10000;

// The private configuration names a second data source with many tables.
struct Connected : kodbc::bench::Connection {
    explicit Connected(const char *dsn) : Connection(dsn) {}
};

// The field benchmark's table and the 10,000 tables, made once per process.
void Prepare() {
    Connected fields("kodbc_bench_sqlite");
    std::string create = "CREATE TABLE bench_fields (";
    for (int c = 0; c < 20; ++c) create += (c ? ", " : "") + std::string("column_") + std::to_string(c) + " VARCHAR(20)";
    fields.Run("DROP TABLE bench_fields");
    fields.Run(create + ")");

    Connected many("kodbc_bench_many");
    char probe[64];
    Kodbc_GetTables(many.hdbc, KODBC_OBJECT_TABLE, probe, sizeof probe, ",");
    if (probe[0]) return;  // already made by an earlier run
    many.Run("BEGIN");
    for (int t = 0; t < kTables; ++t) many.Run("CREATE TABLE t" + std::to_string(t) + " (id INTEGER)");
    many.Run("COMMIT");
}

void BM_Kodbc_GetFields(benchmark::State &state) {
    Connected c("kodbc_bench_sqlite");
    std::vector<char> out(8192);
    for (auto _ : state) {
        Kodbc_GetFields(c.hdbc, "bench_fields", 0, nullptr, out.data(), static_cast<int>(out.size()));
        benchmark::DoNotOptimize(out[0]);
    }
}
BENCHMARK(BM_Kodbc_GetFields);

// SQLColumns with every row fetched and its name read: the least the field
// list needs. Kodbc_GetFields reads the table twice (count, then collect).
void BM_Raw_SQLColumns(benchmark::State &state) {
    Connected c("kodbc_bench_sqlite");
    char name[256];
    SQLLEN length = 0;
    for (auto _ : state) {
        SQLHSTMT stmt = nullptr;
        SQLAllocStmt(c.hdbc, &stmt);
        SQLColumns(stmt, nullptr, 0, nullptr, 0, (SQLCHAR *)"bench_fields", SQL_NTS, nullptr, 0);
        while (SQL_SUCCEEDED(SQLFetch(stmt))) SQLGetData(stmt, 4, SQL_C_CHAR, name, sizeof name, &length);
        SQLFreeStmt(stmt, SQL_DROP);
        benchmark::DoNotOptimize(name[0]);
    }
}
BENCHMARK(BM_Raw_SQLColumns);

void BM_Kodbc_GetTablesExtended_10000(benchmark::State &state) {
    Connected c("kodbc_bench_many");
    std::vector<char> out(200000);
    for (auto _ : state) {
        Kodbc_GetTablesExtended(c.hdbc, KODBC_OBJECT_TABLE, nullptr, 0, out.data(), static_cast<int>(out.size()), ",");
        benchmark::DoNotOptimize(out[0]);
    }
}
BENCHMARK(BM_Kodbc_GetTablesExtended_10000)->Unit(benchmark::kMillisecond);

void BM_Raw_SQLTables_10000(benchmark::State &state) {
    Connected c("kodbc_bench_many");
    char name[256];
    SQLLEN length = 0;
    for (auto _ : state) {
        SQLHSTMT stmt = nullptr;
        SQLAllocStmt(c.hdbc, &stmt);
        SQLTables(stmt, nullptr, 0, nullptr, 0, nullptr, 0, (SQLCHAR *)"'TABLE'", SQL_NTS);
        while (SQL_SUCCEEDED(SQLFetch(stmt))) SQLGetData(stmt, 3, SQL_C_CHAR, name, sizeof name, &length);
        SQLFreeStmt(stmt, SQL_DROP);
        benchmark::DoNotOptimize(name[0]);
    }
}
BENCHMARK(BM_Raw_SQLTables_10000)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv) {
    kodbc::bench::DataSource();
    kodbc::bench::Quiet();
    Prepare();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
