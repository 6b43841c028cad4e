// Per-call cost of Kodbc_GetRecordCountExt (formatting, the dump gate, a
// statement of its own, bind, fetch) next to the same count as raw ODBC
// calls in the same run, with and without a condition.
#include "bench_support.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <cstring>
#include <string>

namespace {

constexpr const char *kTable = "kc_bench_count";
constexpr int kRows = 1000;

// One connection and a table of kRows rows for the whole run.
struct Connected : kodbc::bench::Connection {
    Connected() {
        Run("DROP TABLE kc_bench_count", "*");
        Run("CREATE TABLE kc_bench_count (id INTEGER, name VARCHAR(20))");
        for (int i = 0; i < kRows; ++i) Run("INSERT INTO kc_bench_count VALUES (" + std::to_string(i) + ", 'n')");
    }
    ~Connected() { Run("DROP TABLE kc_bench_count", "*"); }
};

Connected &Connection() {
    static Connected c;
    return c;
}

void CountWithLibrary(benchmark::State &state, const char *condition, long expected) {
    SQLHDBC hdbc = Connection().hdbc;
    if (!hdbc) {
        state.SkipWithError("connect failed");
        return;
    }
    for (auto _ : state) {
        long n = Kodbc_GetRecordCountExt(hdbc, kTable, condition, 0);
        if (n != expected) {
            state.SkipWithError("wrong count");
            break;
        }
        benchmark::DoNotOptimize(n);
    }
}

// The same work by hand: a statement, execute, bind, fetch, free.
void CountRaw(benchmark::State &state, const char *sql, long expected) {
    SQLHDBC hdbc = Connection().hdbc;
    if (!hdbc) {
        state.SkipWithError("connect failed");
        return;
    }
    for (auto _ : state) {
        SQLHSTMT stmt = nullptr;
        SQLAllocStmt(hdbc, &stmt);
        char value[99] = {};
        SQLLEN indicator = 0;
        SQLExecDirect(stmt, (SQLCHAR *)sql, SQL_NTS);
        SQLBindCol(stmt, 1, SQL_C_CHAR, value, sizeof value, &indicator);
        SQLFetch(stmt);
        SQLFreeStmt(stmt, SQL_DROP);
        long n = std::atol(value);
        if (n != expected) {
            state.SkipWithError("wrong count");
            break;
        }
        benchmark::DoNotOptimize(n);
    }
}

void BM_Kodbc_GetRecordCountExt(benchmark::State &state) { CountWithLibrary(state, nullptr, kRows); }
BENCHMARK(BM_Kodbc_GetRecordCountExt);

void BM_Raw_SelectCount(benchmark::State &state) { CountRaw(state, "SELECT Count(*) FROM kc_bench_count", kRows); }
BENCHMARK(BM_Raw_SelectCount);

void BM_Kodbc_GetRecordCountExt_Where(benchmark::State &state) { CountWithLibrary(state, "id < 100", 100); }
BENCHMARK(BM_Kodbc_GetRecordCountExt_Where);

void BM_Raw_SelectCount_Where(benchmark::State &state) {
    CountRaw(state, "SELECT Count(*) FROM kc_bench_count WHERE id < 100", 100);
}
BENCHMARK(BM_Raw_SelectCount_Where);

} // namespace

int main(int argc, char **argv) {
    kodbc::bench::Quiet();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
