// Add records: Kodbc_AddRecords against a raw loop that reads the same
// source rows with SQLFetch + SQLGetData and sends the INSERT statements
// through SQLExecDirect on one reused statement handle. Both copy a table
// of N rows of 6 mixed columns into an empty table of the same layout on
// the same connection. Each measurement runs in a child process of its
// own, so the peak resident size is that run's alone.
//
// Both ways, each in its own row: one INSERT per record in auto-commit (the
// wizard's stream), and batches: auto-commit off, the records' values
// strung together into INSERTs of at most 500 records and 256 KiB, one
// commit at the end (the library with KODBC_ADDREC_BATCH, as the
// command-line tool runs it).
//
//   kodbc_bench_addrecords [rows ...]      (default: 10000 100000)
//
// KODBC_BENCH_MODES "batch" or "per-record" measures that way alone;
// KODBC_BENCH_RUNS measurements of each, the best kept (5 unless set).
//
// KODBC_BENCH_DSNS names the data sources, comma-separated (for example
// kodbc_sqlite,kodbc_pg,kodbc_maria with the test servers' ODBCINI);
// without it a SQLite database file of the build is used (no sync per
// commit, so that the disk does not hide the difference).
#include "bench_support.h"

#include <kodbc/kodbc.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr const char *kColumns = "id, qty, price, name, stamp, note";
constexpr const char *kLayout =
    " (id INTEGER, qty INTEGER, price FLOAT, name VARCHAR(40), stamp DATE, note VARCHAR(100))";
const int kRuns = kodbc::bench::Runs(5);
using kodbc::bench::AutoCommit;
using kodbc::bench::kBatchBytes;
using kodbc::bench::kBatchRecords;
using kodbc::bench::Wanted;

int Silent(const KodbcMessage *message, void *) {
    std::fprintf(stderr, "message: %s\n", message->odbc ? message->odbc->description : message->text);
    return KODBC_ANSWER_OK;
}

using kodbc::bench::Connection;

// The source through a cross join of digits, which all three databases
// understand; every fifth note is NULL and every name carries a quote.
void Fill(const std::string &dsn, long rows) {
    Connection c(dsn);
    for (const char *table : {"ab_digits", "ab_src", "ab_dst"}) c.Run(std::string("DROP TABLE ") + table, "*");
    bool ok = c.Run("CREATE TABLE ab_digits (d INTEGER)") && c.Run(std::string("CREATE TABLE ab_src") + kLayout) &&
              c.Run(std::string("CREATE TABLE ab_dst") + kLayout) &&
              c.Run("INSERT INTO ab_digits VALUES (0),(1),(2),(3),(4),(5),(6),(7),(8),(9)");
    std::string id = "(a.d + 10 * b.d + 100 * c.d + 1000 * d.d + 10000 * e.d + 100000 * f.d + 1)";
    ok = ok && c.Run("INSERT INTO ab_src (" + std::string(kColumns) + ") SELECT " + id + ", " + id + " % 1000, " + id +
                         " * 0.25, 'O''Neil und Partner', '2024-03-01', CASE WHEN " + id +
                         " % 5 = 0 THEN NULL ELSE 'a note of moderate length for every record' END"
                         " FROM ab_digits a, ab_digits b, ab_digits c, ab_digits d, ab_digits e, ab_digits f"
                         " WHERE " + id + " <= " + std::to_string(rows));
    if (!ok || Kodbc_GetRecordCount(c.hdbc, "ab_src", 0) != rows) {
        std::fprintf(stderr, "cannot fill the source on %s\n", dsn.c_str());
        std::exit(1);
    }
}

void AppendLiteral(std::string &sql, const char *value, SQLLEN indicator, bool number) {
    if (indicator == SQL_NULL_DATA || !*value) {
        sql += "NULL";
        return;
    }
    if (number) {
        sql += value;
        return;
    }
    sql += '\'';
    for (const char *p = value; *p; ++p) {
        if (*p == '\'') sql += '\'';
        sql += *p;
    }
    sql += '\'';
}

// The baseline: what a hand-written copy does; in batches the values of
// many records after one head, as the library strings them.
long RawCopy(SQLHDBC hdbc, bool batch) {
    if (batch) AutoCommit(hdbc, false);
    SQLHSTMT select = nullptr, insert = nullptr;
    SQLAllocStmt(hdbc, &select);
    SQLAllocStmt(hdbc, &insert);
    std::string query = std::string("SELECT ") + kColumns + " FROM ab_src";
    if (!SQL_SUCCEEDED(SQLExecDirect(select, (SQLCHAR *)query.c_str(), SQL_NTS))) return -1;
    const bool number[] = {true, true, true, false, false, false};
    const std::string head = "INSERT INTO ab_dst (id,qty,price,name,stamp,note) VALUES ";
    std::string sql, values;
    std::size_t pending = 0;
    static char value[30000];
    long written = 0;
    auto send = [&] { return SQL_SUCCEEDED(SQLExecDirect(insert, (SQLCHAR *)sql.c_str(), SQL_NTS)); };
    while (SQL_SUCCEEDED(SQLFetch(select))) {
        values.assign("(");
        for (SQLUSMALLINT c = 1; c <= 6; ++c) {
            if (c > 1) values += ',';
            SQLLEN indicator = 0;
            value[0] = '\0';
            SQLGetData(select, c, SQL_C_CHAR, value, sizeof value, &indicator);
            AppendLiteral(values, value, indicator, number[c - 1]);
        }
        values += ')';
        if (!batch) {
            sql.assign(head).append(values);
            if (!send()) break;
            ++written;
            continue;
        }
        if (pending && (pending == kBatchRecords || sql.size() + 1 + values.size() > kBatchBytes)) {
            if (!send()) return -1;
            written += static_cast<long>(pending);
            pending = 0;
        }
        if (pending++ == 0) sql.assign(head).append(values);
        else sql.append(",").append(values);
    }
    if (pending) {
        if (!send()) return -1;
        written += static_cast<long>(pending);
    }
    SQLFreeStmt(insert, SQL_DROP);
    SQLFreeStmt(select, SQL_DROP);
    if (batch && !SQL_SUCCEEDED(SQLEndTran(SQL_HANDLE_DBC, hdbc, SQL_COMMIT))) return -1;
    return written;
}

long LibraryCopy(SQLHDBC hdbc, bool batch) {
    if (batch) AutoCommit(hdbc, false);
    KodbcAddRecordsOptions options{};
    options.RecordMode = KODBC_ADDREC_ADD | (batch ? KODBC_ADDREC_BATCH : 0);
    KodbcAddRecordsResult result{};
    if (Kodbc_AddRecords(hdbc, "ab_dst", hdbc, "ab_src", &options, &result) != KODBC_SUCCESS ||
        result.Ended != KODBC_ADDREC_COMPLETE)
        return -1;
    return result.RecordsWritten;
}

using kodbc::bench::Measurement;

Measurement Measure(const std::string &dsn, bool library, bool batch) {
    // A new destination each time: after a DELETE the database still
    // purges the old rows while the next run writes, and only the first
    // run of all would be spared that.
    {
        Connection c(dsn);
        c.Run("DROP TABLE ab_dst", "*");
        if (!c.Run(std::string("CREATE TABLE ab_dst") + kLayout)) std::exit(1);
    }
    return kodbc::bench::MeasureInChild(dsn, [&](SQLHDBC hdbc) -> long {
        return library ? LibraryCopy(hdbc, batch) : RawCopy(hdbc, batch);
    });
}

} // namespace

int main(int argc, char **argv) {
    std::vector<std::string> dsns;
    if (const char *list = std::getenv("KODBC_BENCH_DSNS"); list && *list) {
        std::string text = list;
        for (std::size_t start = 0, end; start <= text.size(); start = end + 1) {
            end = text.find(',', start);
            if (end == std::string::npos) end = text.size();
            if (end > start) dsns.push_back(text.substr(start, end - start));
        }
    } else {
        setenv("ODBCSYSINI", KODBC_BENCH_ODBC_DIR, 1);
        setenv("ODBCINI", KODBC_BENCH_ODBC_DIR "/odbc.ini", 1);
        dsns.push_back("kodbc_bench_sqlite");
    }
    Kodbc_SetMessageHandler(Silent, nullptr);
    std::vector<long> sizes;
    for (int i = 1; i < argc; ++i) sizes.push_back(std::atol(argv[i]));
    if (sizes.empty()) sizes = {10000, 100000};

    // Wall time depends on the server and on everything else the machine
    // does; the client's CPU time shows what the library itself adds.
    std::printf("%-14s %8s %-10s %12s %12s %7s %13s %13s %9s %9s\n", "data source", "records", "mode", "raw rec/s",
                "kodbc rec/s", "ratio", "raw peak KiB", "kodbc peak KiB", "raw cpu", "kodbc cpu");
    for (const std::string &dsn : dsns) {
        for (long rows : sizes) {
            Fill(dsn, rows);
            for (bool batch : {false, true}) {
                if (!Wanted(batch)) continue;
                // Best of a few runs each, alternating, so both see the same caches.
                Measurement raw, lib;
                for (int run = 0; run < kRuns; ++run) {
                    Measurement r = Measure(dsn, false, batch);
                    Measurement l = Measure(dsn, true, batch);
                    if (r.count != rows || l.count != rows) {
                        std::fprintf(stderr, "%s: copy failed (%ld / %ld of %ld)\n", dsn.c_str(), r.count, l.count,
                                     rows);
                        return 1;
                    }
                    if (run == 0 || r.seconds < raw.seconds) raw = r;
                    if (run == 0 || l.seconds < lib.seconds) lib = l;
                }
                double rawRate = rows / raw.seconds, libRate = rows / lib.seconds;
                std::printf("%-14s %8ld %-10s %12.0f %12.0f %7.3f %13ld %13ld %8.2fs %8.2fs\n", dsn.c_str(), rows,
                            batch ? "batch" : "per-record", rawRate, libRate, libRate / rawRate, raw.peakKiB,
                            lib.peakKiB, raw.cpuSeconds, lib.cpuSeconds);
                std::fflush(stdout);
            }
        }
        Connection c(dsn);
        for (const char *table : {"ab_digits", "ab_src", "ab_dst"}) c.Run(std::string("DROP TABLE ") + table, "*");
    }
    return 0;
}
