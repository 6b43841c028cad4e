// A database server that goes away in the middle of an export or an import:
// the run must end with the driver's error shown, the file complete up to
// the last record written; the import, all or nothing, leaves no record,
// and its table only where the database commits DDL by itself (saying so);
// a hang would show as the test's timeout. The servers are private to this
// suite (started in a folder of its own with the test command's script),
// because stopping the run's shared ones would break every test after it.
#include "test_support.h"

#include "transfer/export_file.h"
#include "transfer/import_run.h"

#include <sql.h>
#include <sqlext.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>

namespace kodbc::test {
namespace {

using namespace transfer;

constexpr long kRows = 10000;
// Each exported row is this wide, so that the rows still on their way are far
// more than the connection's buffers hold when the server goes away.
constexpr int kPadding = 150;
constexpr long kStopAt = 1000;

struct Engine {
    const char *name;  // also the driver's section in the run's odbcinst.ini
    const char *portFile;
    // Connection attributes beyond server, port, database and account, asking
    // the driver to fetch while the export runs instead of reading the whole
    // result first, so that the stop falls into the fetching.
    const char *options;
    const char *fillSql;  // kRows numbered rows into kodbc_stop
    // False where the driver reads the whole result when the statement runs
    // whatever the options say: a stop while fetching cannot touch the
    // export there, which must then simply complete.
    bool fetchesWhileExporting;
    // CREATE TABLE is part of the transaction, so the stop takes the table too.
    bool ddlInTransaction;
};

const Engine kEngines[] = {
    {"PostgreSQL", "pg.port", "Servername=127.0.0.1;Username=kodbc;UseDeclareFetch=1;Fetch=100",
     "INSERT INTO kodbc_stop SELECT n, 'Zeile ' || n || repeat('x', 150) FROM generate_series(1, 10000) AS s(n)", true,
     true},
    {"MariaDB", "maria.port", "Server=127.0.0.1;User=kodbc;NO_CACHE=1",
     // The server bounds recursive queries at 1000 rows; its sequence tables are not bounded.
     "INSERT INTO kodbc_stop SELECT seq, CONCAT('Zeile ', seq, REPEAT('x', 150)) FROM seq_1_to_10000", false,
     false},
};

std::string Trimmed(std::string text) {
    while (!text.empty() && (text.back() == '\n' || text.back() == '\r')) text.pop_back();
    return text;
}

class ServerStop : public ::testing::TestWithParam<Engine> {
protected:
    // One folder of servers for the suite, so that each cluster is made once.
    static void SetUpTestSuite() {
        if (!Contains(DataSources(), "kodbc_pg")) return;
        // The process number keeps two test runs on one machine apart.
        dir_ = ::testing::TempDir() + "kodbc_server_stop_" + std::to_string(::getpid());
        // Open to the database's own account, so that its cluster lives in
        // here and survives the restarts.
        ::mkdir(dir_.c_str(), 0755);
        ::chmod(dir_.c_str(), 0755);
    }
    static void TearDownTestSuite() {
        if (dir_.empty()) return;
        Servers("stop");
        std::system(("rm -rf '" + dir_ + "' '" + dir_ + ".log'").c_str());
        dir_.clear();
    }
    void SetUp() override {
        if (dir_.empty()) GTEST_SKIP() << "the database servers are not part of this run";
    }
    // The folder's servers, through the script the test command uses.
    static bool Servers(const char *action) {
        const std::string command = std::string("bash '") + KODBC_SOURCE_DIR "/scripts/servers.sh' " + action +
                                    " '" + dir_ + "' >'" + dir_ + ".log' 2>&1";
        return std::system(command.c_str()) == 0;
    }
    // Stops one engine's server the way the script does (the same signal)
    // and waits until it is gone; the other one keeps running, so that the
    // next start has only this one to bring back.
    static bool Stop(const Engine &engine) {
        const bool postgres = std::string(engine.name) == "PostgreSQL";
        const std::string pidFile = postgres ? Trimmed(ReadFile(dir_ + "/pg.root")) + "/data/postmaster.pid"
                                             : dir_ + "/maria/mariadbd.pid";
        const pid_t pid = static_cast<pid_t>(std::atol(ReadFile(pidFile).c_str()));
        if (pid <= 0 || ::kill(pid, postgres ? SIGINT : SIGTERM) != 0) return false;
        for (int waited = 0; waited < 6000 && ::kill(pid, 0) == 0; ++waited) ::usleep(10000);
        return ::kill(pid, 0) != 0;
    }
    void TearDown() override { Disconnect(); }

    void Connect() {
        Disconnect();
        ASSERT_TRUE(Servers("start")) << ReadFile(dir_ + ".log");
        const Engine &engine = GetParam();
        const std::string text = "DRIVER={" + std::string(engine.name) +
                                 "};Port=" + Trimmed(ReadFile(dir_ + "/" + engine.portFile)) +
                                 ";Database=kodbc;Password=kodbc-test-pw;" + engine.options;
        ASSERT_TRUE(SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &henv_)));
        SQLSetEnvAttr(henv_, SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0);
        ASSERT_TRUE(SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_DBC, henv_, &hdbc_)));
        ASSERT_TRUE(SQL_SUCCEEDED(SQLDriverConnect(hdbc_, nullptr, (SQLCHAR *)text.c_str(),
                                                   SQL_NTS, nullptr, 0, nullptr, SQL_DRIVER_NOPROMPT)))
            << text;
    }
    void Disconnect() {
        if (hdbc_) {
            SQLDisconnect(hdbc_);
            SQLFreeHandle(SQL_HANDLE_DBC, hdbc_);
        }
        if (henv_) SQLFreeHandle(SQL_HANDLE_ENV, henv_);
        hdbc_ = henv_ = nullptr;
    }

    // Stops the engine's server when the work loop reports record kStopAt.
    class StoppingProgress : public RecordingProgress {
    public:
        explicit StoppingProgress(const Engine &engine) : engine_(engine) {}
        bool Step(long value) override {
            if (value == kStopAt) stopped_ = Stop(engine_);
            return false;
        }
        bool stopped_ = false;

    private:
        const Engine &engine_;
    };

    static inline std::string dir_;
    SQLHENV henv_ = nullptr;
    SQLHDBC hdbc_ = nullptr;
    MessageRecorder messages_;
};

// Export and import in one test: the import starts the server again after
// the export stopped it.
TEST_P(ServerStop, EndsWithTheErrorAndAWholeFileOrNoRecord) {
    ASSERT_NO_FATAL_FAILURE(Connect());
    RunStatement(hdbc_, "DROP TABLE kodbc_stop");
    RunStatement(hdbc_, "DROP TABLE kodbc_stop_imp");
    ASSERT_TRUE(RunStatement(hdbc_, "CREATE TABLE kodbc_stop (nr INTEGER, name VARCHAR(200))"));
    ASSERT_TRUE(RunStatement(hdbc_, GetParam().fillSql));

    {
        SCOPED_TRACE("export");
        std::vector<ExportField> fields;
        ASSERT_TRUE(ReadExportFields(hdbc_, "kodbc_stop", fields));
        const std::string file = dir_ + "_export.txt";
        StoppingProgress progress(GetParam());
        ExportCounts counts;
        const bool written = WriteExportFile(hdbc_, ExportStatement(hdbc_, "kodbc_stop", fields, "") + " ORDER BY nr",
                                             fields, ExportFormat(), file.c_str(), kRows, progress, &counts);
        ASSERT_TRUE(progress.stopped_);
        if (GetParam().fetchesWhileExporting) {
            EXPECT_FALSE(written);
            EXPECT_GT(messages_.count(KODBC_MESSAGE_ODBC_ERROR), 0u);
            EXPECT_GE(counts.written, kStopAt);
            EXPECT_LT(counts.written, kRows);
        } else {
            EXPECT_TRUE(written);
            EXPECT_EQ(counts.written, kRows);
        }

        // Every record counted as written is in the file, whole, in order and
        // ended; nothing after it.
        const std::string text = ReadFile(file);
        ASSERT_GE(text.size(), 2u);
        EXPECT_EQ(text.substr(text.size() - 2), "\r\n");
        const std::vector<std::string> lines = Split(text.substr(0, text.size() - 2), "\r\n");
        ASSERT_EQ(lines.size(), static_cast<std::size_t>(counts.written) + 1);
        EXPECT_EQ(lines.front(), "nr\tname");
        EXPECT_EQ(lines.back(), std::to_string(counts.written) + "\tZeile " + std::to_string(counts.written) +
                                   std::string(kPadding, 'x'));
        std::remove(file.c_str());
    }

    SCOPED_TRACE("import");
    messages_.clear();
    const std::string file = dir_ + "_import.txt";
    std::string lines = "nr\tname\r\n";
    for (long n = 1; n <= kRows; ++n) lines += std::to_string(n) + "\tZeile " + std::to_string(n) + "\r\n";
    std::ofstream(file, std::ios::binary) << lines;
    ASSERT_NO_FATAL_FAILURE(Connect());
    ImportTextFormat format;
    ImportFieldList fields;
    ASSERT_TRUE(DiscoverTextFields(file.c_str(), format, fields));
    // The command-line tool's way: its own connection without auto-commit,
    // the table created in the run's transaction.
    ASSERT_TRUE(SQL_SUCCEEDED(SQLSetConnectAttr(hdbc_, SQL_ATTR_AUTOCOMMIT,
                                                reinterpret_cast<SQLPOINTER>(SQL_AUTOCOMMIT_OFF), 0)));
    ImportCounts counts;
    {
        ImportRecordWriter writer(hdbc_, "kodbc_stop_imp", fields, false,
                                  CreateImportTableStatement(hdbc_, "kodbc_stop_imp", fields, ""), true);
        StoppingProgress progress(GetParam());
        EXPECT_FALSE(ImportTextRecords(file.c_str(), format, fields, writer, progress, kRows, counts));
        ASSERT_TRUE(progress.stopped_);
    }
    EXPECT_EQ(counts.written, 0);
    std::string said;
    for (const auto &entry : messages_.entries()) said += entry.text + "\n";
    EXPECT_NE(said.find("konnte nicht importiert werden"), std::string::npos) << said;
    EXPECT_NE(said.find("zur\xC3\xBC" "ckgenommen"), std::string::npos) << said;
    const bool named = said.find("'kodbc_stop_imp'  konnte nicht wieder entfernt werden") != std::string::npos;
    EXPECT_EQ(named, !GetParam().ddlInTransaction) << said;

    ASSERT_NO_FATAL_FAILURE(Connect());
    // No such table where the stop took it with the transaction, else an empty one.
    bool ran = false;
    const std::vector<std::string> count = QueryColumn(hdbc_, "SELECT COUNT(*) FROM kodbc_stop_imp", &ran);
    EXPECT_EQ(ran ? count : std::vector<std::string>{"-"},
              std::vector<std::string>{GetParam().ddlInTransaction ? "-" : "0"});
    std::remove(file.c_str());
}

INSTANTIATE_TEST_SUITE_P(Engine, ServerStop, ::testing::ValuesIn(kEngines),
                         [](const ::testing::TestParamInfo<Engine> &info) { return std::string(info.param.name); });

} // namespace
} // namespace kodbc::test
