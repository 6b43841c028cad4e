// Per-call cost of Kodbc_GetRecordCountExt (formatting, the dump gate, a
// statement of its own, bind, fetch) next to the same count as raw ODBC
// calls in the same run, with and without a condition.
#include <kodbc/kodbc.h>

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <cstring>
#include <string>

namespace {

constexpr const char *kTable = "kc_bench_count";
constexpr int kRows = 1000;

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

// One connection and a table of kRows rows for the whole run.
struct Connected {
    SQLHENV henv = nullptr;
    SQLHDBC hdbc = nullptr;
    Connected() {
        DataSourceRecord source{};
        std::strncpy(source.DataSourceName, Dsn().c_str(), sizeof source.DataSourceName - 1);
        if (Kodbc_ConnectDataSource(&source, &henv, &hdbc) != 0) return;
        OdbcEh_PerformSqlStatement(nullptr, hdbc, "DROP TABLE kc_bench_count", "*");
        OdbcEh_PerformSqlStatement(nullptr, hdbc, "CREATE TABLE kc_bench_count (id INTEGER, name VARCHAR(20))",
                                   nullptr);
        for (int i = 0; i < kRows; ++i) {
            std::string sql = "INSERT INTO kc_bench_count VALUES (" + std::to_string(i) + ", 'n')";
            OdbcEh_PerformSqlStatement(nullptr, hdbc, sql.c_str(), nullptr);
        }
    }
    ~Connected() {
        if (hdbc) OdbcEh_PerformSqlStatement(nullptr, hdbc, "DROP TABLE kc_bench_count", "*");
        Kodbc_DisconnectDataSource(&henv, &hdbc);
    }
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
    UsePrivateOdbcConfiguration();
    Kodbc_SetMessageHandler(&Silent, nullptr);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
