// Import of a text file: Kodbc_ImportTextFile against a raw loop that reads
// the same file with fgets, splits it at tabs, and sends the identical
// INSERT statements (checked against the library's first one) through
// SQLExecDirect on one reused statement handle. The file has N lines of 6
// columns as the export writes them (decimal commas, German dates, a quote
// in every name, every fifth note empty). Each measurement runs in a child
// process of its own, so the peak resident size is that run's alone. Then
// the line reader and splitter alone, in MB/s.
//
// Both ways, each in its own row: one INSERT per record in auto-commit (the
// wizard's stream), and batches: auto-commit off, the records' values
// strung together into INSERTs of at most 500 records and 256 KiB, one
// commit at the end (the library with KODBC_IMPORT_BATCH, as the
// command-line tool runs it).
//
//   kodbc_bench_import [lines ...]      (default: 100000)
#include "bench_support.h"

#include "transfer/import_text.h"

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

const int kRuns = kodbc::bench::Runs(3);
using kodbc::bench::AutoCommit;
using kodbc::bench::kBatchBytes;
using kodbc::bench::kBatchRecords;
using kodbc::bench::Wanted;
constexpr const char *kFile = KODBC_BENCH_ODBC_DIR "/kodbc_bench_import.txt";

using kodbc::bench::Connection;

const KodbcImportField kTypes[] = {{"nr", nullptr, KODBC_TYPE_INTEGER, 0, 0},
                                   {"qty", nullptr, KODBC_TYPE_INTEGER, 0, 0},
                                   {"price", nullptr, KODBC_TYPE_FLOAT, 0, 0},
                                   {"stamp", nullptr, KODBC_TYPE_DATETIME, 0, 0}};

KodbcImportOptions Options(int flags = 0) {
    KodbcImportOptions options{};
    options.fields = kTypes;
    options.fieldCount = 4;
    options.flags = flags;
    return options;
}

void WriteFile(long lines) {
    std::FILE *file = std::fopen(kFile, "wb");
    if (!file) std::exit(1);
    std::fputs("nr\tqty\tprice\tname\tstamp\tnote\r\n", file);
    for (long i = 1; i <= lines; ++i)
        std::fprintf(file, "%ld\t%ld\t%ld,%02ld\tO'Neil und Partner\t%02ld.%02ld.%04ld\t%s\r\n", i, i % 1000, i / 4,
                     (i % 4) * 25, i % 28 + 1, i % 12 + 1, 1990 + i % 30,
                     i % 5 == 0 ? "" : "a note of moderate length for every record");
    std::fclose(file);
}

// What a hand-written import does with one line, into the statement.
void RawInsert(char *line, std::string &sql) {
    line[std::strcspn(line, "\r\n")] = '\0';
    char *values[6] = {};
    char *p = line;
    for (int i = 0; i < 6; ++i) {
        values[i] = p;
        p = std::strchr(p, '\t');
        if (p) *p++ = '\0';
        else p = line + std::strlen(line);
    }
    sql.assign("INSERT INTO ib_dst (nr,qty,price,name,stamp,note) VALUES (");
    for (int i = 0; i < 6; ++i) {
        if (i) sql += ',';
        const char *v = values[i];
        if (!*v) {
            sql += "NULL";
        } else if (i < 3) {
            for (; *v; ++v) sql += *v == ',' ? '.' : *v;
        } else if (i == 4) {
            int d = 0, m = 0, y = 0;
            std::sscanf(v, "%d.%d.%d", &d, &m, &y);
            char stamp[40];
            std::snprintf(stamp, sizeof stamp, "'%04d-%02d-%02d 00:00:00'", y, m, d);
            sql += stamp;
        } else {
            sql += '\'';
            for (; *v; ++v) {
                if (*v == '\'') sql += '\'';
                sql += *v;
            }
            sql += '\'';
        }
    }
    sql += ')';
}

constexpr std::size_t kValuesAt = sizeof "INSERT INTO ib_dst (nr,qty,price,name,stamp,note) VALUES " - 1;

long RawImport(SQLHDBC hdbc, const std::string &create, std::string *first, bool batch = false) {
    if (batch) AutoCommit(hdbc, false);
    SQLHSTMT statement = nullptr;
    SQLAllocStmt(hdbc, &statement);
    if (!SQL_SUCCEEDED(SQLExecDirect(statement, (SQLCHAR *)create.c_str(), SQL_NTS))) return -1;
    std::FILE *file = std::fopen(kFile, "rb");
    static char line[30000];
    std::fgets(line, sizeof line, file);
    std::string sql, pending;
    std::size_t inPending = 0;
    long written = 0;
    auto send = [&](const std::string &text) {
        return SQL_SUCCEEDED(SQLExecDirect(statement, (SQLCHAR *)text.c_str(), SQL_NTS));
    };
    while (std::fgets(line, sizeof line, file)) {
        RawInsert(line, sql);
        if (first && written == 0 && inPending == 0) *first = sql;
        if (!batch) {
            if (!send(sql)) break;
            ++written;
            continue;
        }
        if (inPending == kBatchRecords || pending.size() + sql.size() - kValuesAt + 1 > kBatchBytes) {
            if (!send(pending)) return -1;
            written += static_cast<long>(inPending);
            inPending = 0;
        }
        if (inPending++ == 0) pending.assign(sql);
        else pending.append(",").append(sql, kValuesAt);
    }
    if (inPending) {
        if (!send(pending)) return -1;
        written += static_cast<long>(inPending);
    }
    std::fclose(file);
    SQLFreeStmt(statement, SQL_DROP);
    if (batch && !SQL_SUCCEEDED(SQLEndTran(SQL_HANDLE_DBC, hdbc, SQL_COMMIT))) return -1;
    return written;
}

long LibraryImport(SQLHDBC hdbc, bool batch) {
    if (batch) AutoCommit(hdbc, false);
    const KodbcImportOptions options = Options(batch ? KODBC_IMPORT_BATCH : 0);
    KodbcImportResult result{};
    if (Kodbc_ImportTextFile(hdbc, "ib_dst", kFile, &options, &result) != KODBC_SUCCESS) return -1;
    return result.written;
}

using kodbc::bench::Measurement;

Measurement Measure(const std::string &dsn, bool library, const std::string &create, bool batch) {
    {
        Connection c(dsn);
        c.Run("DROP TABLE ib_dst", "*");
    }
    return kodbc::bench::MeasureInChild(dsn, [&](SQLHDBC hdbc) -> long {
        return library ? LibraryImport(hdbc, batch) : RawImport(hdbc, create, nullptr, batch);
    });
}

// The reader and splitter over the whole file, best of a few passes.
double SplitterMegabytesPerSecond() {
    double best = 0;
    std::vector<std::string> values;
    for (int run = 0; run < kRuns; ++run) {
        std::FILE *file = std::fopen(kFile, "rb");
        kodbc::transfer::LineReader reader(file);
        std::string_view line;
        std::size_t fields = 0;
        auto start = std::chrono::steady_clock::now();
        while (reader.Next(line)) fields += kodbc::transfer::SplitLine(line, '\t', 0, 0, values);
        const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        const double rate = reader.Offset() / seconds / 1e6;
        std::fclose(file);
        if (fields == 0) std::exit(1);
        if (rate > best) best = rate;
    }
    return best;
}

} // namespace

int main(int argc, char **argv) {
    const std::string dsn = kodbc::bench::DataSource();
    kodbc::bench::Quiet();
    std::vector<long> sizes;
    for (int i = 1; i < argc; ++i) sizes.push_back(std::atol(argv[i]));
    if (sizes.empty()) sizes = {100000};

    // Wall time depends on the server and on everything else the machine
    // does; the client's CPU time shows what the library itself adds.
    std::printf("%8s %-10s %12s %12s %7s %13s %14s %12s %9s %9s\n", "lines", "mode", "raw rec/s", "kodbc rec/s",
                "ratio", "raw peak KiB", "kodbc peak KiB", "split MB/s", "raw cpu", "kodbc cpu");
    for (long lines : sizes) {
        WriteFile(lines);
        // The statements must be the same: the raw loop's first one against
        // the library's, from a dry run.
        std::vector<char> create(30000), insert(30000);
        {
            Connection c(dsn);
            c.Run("DROP TABLE ib_dst", "*");
            const KodbcImportOptions dry = Options(KODBC_IMPORT_DRY_RUN);
            KodbcImportResult result{};
            result.createStatement = create.data();
            result.createSize = 30000;
            result.firstInsert = insert.data();
            result.insertSize = 30000;
            std::string first;
            if (Kodbc_ImportTextFile(c.hdbc, "ib_dst", kFile, &dry, &result) != KODBC_SUCCESS ||
                RawImport(c.hdbc, create.data(), &first, !Wanted(false)) != lines || first != insert.data()) {
                std::fprintf(stderr, "the statements differ:\n%s\n%s\n", insert.data(), first.c_str());
                return 1;
            }
        }
        for (bool batch : {false, true}) {
            if (!Wanted(batch)) continue;
            Measurement raw, lib;
            for (int run = 0; run < kRuns; ++run) {
                Measurement r = Measure(dsn, false, create.data(), batch);
                Measurement l = Measure(dsn, true, create.data(), batch);
                if (r.count != lines || l.count != lines) {
                    std::fprintf(stderr, "import failed (%ld / %ld of %ld)\n", r.count, l.count, lines);
                    return 1;
                }
                if (run == 0 || r.seconds < raw.seconds) raw = r;
                if (run == 0 || l.seconds < lib.seconds) lib = l;
            }
            const double rawRate = lines / raw.seconds, libRate = lines / lib.seconds;
            std::printf("%8ld %-10s %12.0f %12.0f %7.3f %13ld %14ld %12.1f %8.2fs %8.2fs\n", lines,
                        batch ? "batch" : "per-record", rawRate, libRate, libRate / rawRate, raw.peakKiB, lib.peakKiB,
                        SplitterMegabytesPerSecond(), raw.cpuSeconds, lib.cpuSeconds);
            std::fflush(stdout);
        }
    }
    Connection c(dsn);
    c.Run("DROP TABLE ib_dst", "*");
    std::remove(kFile);
    return 0;
}
