// What every benchmark program needs: its data source, a connection for the
// run, and silence instead of messages.
#pragma once

#include <kodbc/kodbc.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kodbc::bench {

// KODBC_BENCH_RUNS measurements of each, the best kept (fallback unless set).
inline int Runs(int fallback) {
    const char *runs = std::getenv("KODBC_BENCH_RUNS");
    return runs && std::atoi(runs) > 0 ? std::atoi(runs) : fallback;
}

// KODBC_BENCH_MODES "batch" or "per-record" measures that way alone.
inline bool Wanted(bool batch) {
    const char *modes = std::getenv("KODBC_BENCH_MODES");
    return !modes || !*modes || std::string(modes) == (batch ? "batch" : "per-record");
}

// The raw loops' batches: what the library's batch writer is bounded by.
constexpr std::size_t kBatchBytes = 256 * 1024, kBatchRecords = 500;

inline void AutoCommit(SQLHDBC hdbc, bool on) {
    SQLSetConnectAttr(hdbc, SQL_ATTR_AUTOCOMMIT, reinterpret_cast<SQLPOINTER>(on ? SQL_AUTOCOMMIT_ON : SQL_AUTOCOMMIT_OFF),
                      0);
}

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

// One measured run in a child process of its own, so that the peak resident
// size is that run's alone: work's count (-1 when it failed), its time, and
// the child's peak and CPU time.
struct Measurement {
    double seconds = 0;
    long count = 0;
    long peakKiB = 0;
    double cpuSeconds = 0;  // the client's own user and system time
};

inline Measurement MeasureInChild(const std::string &dsn, const std::function<long(SQLHDBC)> &work) {
    int pipeFds[2];
    if (pipe(pipeFds) != 0) std::exit(1);
    pid_t child = fork();
    if (child == 0) {
        close(pipeFds[0]);
        Measurement m;
        Connection c(dsn);
        auto start = std::chrono::steady_clock::now();
        m.count = work(c.hdbc);
        m.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        if (write(pipeFds[1], &m, sizeof m) != sizeof m) _exit(1);
        _exit(0);
    }
    close(pipeFds[1]);
    Measurement m;
    if (read(pipeFds[0], &m, sizeof m) != sizeof m) m.count = -1;
    close(pipeFds[0]);
    int status = 0;
    struct rusage usage {};
    wait4(child, &status, 0, &usage);
    m.peakKiB = usage.ru_maxrss;
    m.cpuSeconds = usage.ru_utime.tv_sec + usage.ru_utime.tv_usec / 1e6 + usage.ru_stime.tv_sec +
                   usage.ru_stime.tv_usec / 1e6;
    return m;
}

} // namespace kodbc::bench
