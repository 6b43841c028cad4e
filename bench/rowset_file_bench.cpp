// Result set to file: OdbcEh_SelectRowSetToFile, and the export wizard's
// writer (Kodbc_ExportTable: a count first, then every value converted for
// display), against a raw SQLFetch + SQLGetData loop that writes through
// the same buffered file, on a SQLite table of N rows of 8 mixed columns. Each measurement runs in its own
// child process, so the peak resident size reported is that run's alone.
//
//   kodbc_bench_rowset_file [rows ...]     (default: 10000 100000 1000000)
//
// KODBC_BENCH_DSN names another data source (the table is SQLite SQL).
// On the private SQLite data source (which streams its results, as every
// data source the project writes does) the last column shows the peak of
// the same transfer from a data source that holds the whole result.
#include "bench_support.h"
#include "internal/execution.h"

#include <kodbc/kodbc.h>

#include <algorithm>
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

constexpr const char *kTable = "h7_bench_rowset";
constexpr const char *kSelect = "SELECT id, code, name, qty, price, stamp, note, flag FROM h7_bench_rowset";
constexpr int kRuns = 3;

std::string Dsn() {
    const char *dsn = std::getenv("KODBC_BENCH_DSN");
    return dsn && *dsn ? dsn : "kodbc_bench_sqlite";
}

int Silent(const KodbcMessage *message, void *) {
    std::fprintf(stderr, "message: %s\n", message->odbc ? message->odbc->description : message->text);
    return KODBC_ANSWER_OK;
}

// The same database file through a data source that does not ask the driver
// to step through the rows: the driver then holds the whole result.
constexpr const char *kWholeResultDsn = "kodbc_bench_sqlite_whole";

struct Connection : kodbc::bench::Connection {
    explicit Connection(const std::string &dsn = Dsn()) : kodbc::bench::Connection(dsn) {}
};

void Fill(long rows) {
    Connection c;
    OdbcEh_PerformSqlStatement(nullptr, c.hdbc, (std::string("DROP TABLE ") + kTable).c_str(), "*");
    std::string create = std::string("CREATE TABLE ") + kTable +
                         " (id INTEGER, code CHAR(8), name VARCHAR(40), qty INTEGER, price DOUBLE,"
                         " stamp TIMESTAMP, note VARCHAR(100), flag SMALLINT)";
    std::string insert = std::string("INSERT INTO ") + kTable +
                         " WITH RECURSIVE c(x) AS (SELECT 1 UNION ALL SELECT x + 1 FROM c WHERE x < " +
                         std::to_string(rows) +
                         ") SELECT x, printf('C%07d', x), 'Name of row ' || x, x % 1000, x * 0.25,"
                         " datetime(1600000000 + x * 60, 'unixepoch'),"
                         " CASE WHEN x % 7 = 0 THEN NULL ELSE 'O''Neil and a note of moderate length' END,"
                         " x % 2 FROM c";
    if (OdbcEh_PerformSqlStatement(nullptr, c.hdbc, create.c_str(), nullptr) != KODBC_SUCCESS ||
        OdbcEh_PerformSqlStatement(nullptr, c.hdbc, insert.c_str(), nullptr) != KODBC_SUCCESS) {
        std::fprintf(stderr, "cannot fill the table\n");
        std::exit(1);
    }
}

// The baseline: the same calls a hand-written transfer makes, with the
// buffer size of the transfer it is compared with (the SQLite driver fills
// the whole buffer on every SQLGetData, so the size counts; the export asks
// for a short first part of its 10000 bytes and beats its baseline by that).
template <std::size_t BufferSize>
long RawTransfer(SQLHDBC hdbc, const char *fileName) {
    SQLHSTMT stmt = nullptr;
    SQLAllocStmt(hdbc, &stmt);
    if (!SQL_SUCCEEDED(SQLExecDirect(stmt, (SQLCHAR *)kSelect, SQL_NTS))) return -1;
    SQLSMALLINT columns = 0;
    SQLNumResultCols(stmt, &columns);
    kodbc::ResultFile file;
    if (!file.create(fileName)) return -1;
    static char value[BufferSize];
    long lines = 0;
    while (SQL_SUCCEEDED(SQLFetch(stmt))) {
        if (lines) file.write('\n');
        for (SQLUSMALLINT c = 1; c <= columns; ++c) {
            if (c > 1) file.write('\t');
            SQLLEN indicator = 0;
            SQLGetData(stmt, c, SQL_C_CHAR, value, sizeof value, &indicator);
            if (indicator > 0) file.write(value, std::min<SQLLEN>(indicator, sizeof value - 1));
        }
        ++lines;
    }
    SQLFreeStmt(stmt, SQL_DROP);
    return file.close() ? lines : -1;
}

long LibraryTransfer(SQLHDBC hdbc, const char *fileName) {
    long lines = 0;
    return OdbcEh_SelectRowSetToFile(nullptr, hdbc, kSelect, nullptr, nullptr, fileName, &lines, nullptr, 0) ==
                   KODBC_SUCCESS
               ? lines
               : -1;
}

long ExportTransfer(SQLHDBC hdbc, const char *fileName) {
    KodbcExportOptions options = {};
    options.flags = KODBC_EXPORT_NO_HEADER;
    long lines = 0;
    return Kodbc_ExportTable(hdbc, kTable, nullptr, &options, fileName, &lines) == KODBC_SUCCESS ? lines : -1;
}

enum class Transfer { Raw, RowSet, RawExportBuffer, Export };

using kodbc::bench::Measurement;

// One transfer in a child process: its time, lines and peak resident size.
Measurement Measure(Transfer transfer, const char *fileName, const std::string &dsn = Dsn()) {
    return kodbc::bench::MeasureInChild(dsn, [&](SQLHDBC hdbc) -> long {
        switch (transfer) {
        case Transfer::Raw: return RawTransfer<4999>(hdbc, fileName);
        case Transfer::RowSet: return LibraryTransfer(hdbc, fileName);
        case Transfer::RawExportBuffer: return RawTransfer<10000>(hdbc, fileName);
        case Transfer::Export: return ExportTransfer(hdbc, fileName);
        }
        return -1;
    });
}

} // namespace

int main(int argc, char **argv) {
    const bool privateSqlite = !std::getenv("KODBC_BENCH_DSN");
    if (privateSqlite) {
        setenv("ODBCSYSINI", KODBC_BENCH_ODBC_DIR, 1);
        setenv("ODBCINI", KODBC_BENCH_ODBC_DIR "/odbc.ini", 1);
    }
    Kodbc_SetMessageHandler(Silent, nullptr);
    std::vector<long> sizes;
    for (int i = 1; i < argc; ++i) sizes.push_back(std::atol(argv[i]));
    if (sizes.empty()) sizes = {10000, 100000, 1000000};

    std::string fileName = "/tmp/kodbc_bench_rowset_" + std::to_string(getpid()) + ".txt";
    std::printf("%10s %14s %14s %7s %14s %14s %7s %12s %12s %12s %s\n", "rows", "raw rows/s", "kodbc rows/s", "ratio",
                "raw 10000 r/s", "export rows/s", "ratio", "raw peak KiB", "kodbc peak KiB", "export KiB",
                privateSqlite ? " kodbc peak KiB, whole result held" : "");
    for (long rows : sizes) {
        Fill(rows);
        // Best of a few runs each, alternating, so both see the same caches.
        Measurement raw, lib, rawWide, exp;
        for (int run = 0; run < kRuns; ++run) {
            Measurement r = Measure(Transfer::Raw, fileName.c_str());
            Measurement l = Measure(Transfer::RowSet, fileName.c_str());
            Measurement w = Measure(Transfer::RawExportBuffer, fileName.c_str());
            Measurement e = Measure(Transfer::Export, fileName.c_str());
            if (r.count != rows || l.count != rows || w.count != rows || e.count != rows) {
                std::fprintf(stderr, "transfer failed (%ld / %ld / %ld / %ld lines of %ld)\n", r.count, l.count,
                             w.count, e.count, rows);
                return 1;
            }
            if (run == 0 || r.seconds < raw.seconds) raw = r;
            if (run == 0 || l.seconds < lib.seconds) lib = l;
            if (run == 0 || w.seconds < rawWide.seconds) rawWide = w;
            if (run == 0 || e.seconds < exp.seconds) exp = e;
        }
        double rawRate = rows / raw.seconds, libRate = rows / lib.seconds, wideRate = rows / rawWide.seconds,
               expRate = rows / exp.seconds;
        std::printf("%10ld %14.0f %14.0f %7.3f %14.0f %14.0f %7.3f %12ld %12ld %12ld", rows, rawRate, libRate,
                    libRate / rawRate, wideRate, expRate, expRate / wideRate, raw.peakKiB, lib.peakKiB, exp.peakKiB);
        if (privateSqlite) std::printf(" %12ld", Measure(Transfer::RowSet, fileName.c_str(), kWholeResultDsn).peakKiB);
        std::printf("\n");
        std::fflush(stdout);
    }
    std::remove(fileName.c_str());
    Connection c;
    OdbcEh_PerformSqlStatement(nullptr, c.hdbc, (std::string("DROP TABLE ") + kTable).c_str(), "*");
    return 0;
}
