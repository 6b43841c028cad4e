// A database server that goes away in the middle of an export or an import:
// the driver's error is shown, the file complete up to the last record
// written; the import leaves no record, and its table only where the database
// commits DDL by itself (saying so). The servers are the suite's own:
// stopping the run's would break every test after it.
#include "test_support.h"

#include "transfer/export_file.h"
#include "transfer/import_run.h"

#include <sql.h>
#include <sqlext.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>

namespace kodbc::test {
namespace {

using namespace transfer;

constexpr long kRows = 10000;
// Rows this wide keep far more on their way than the connection's buffers
// hold when the server goes away.
constexpr int kPadding = 150;
constexpr long kStopAt = 1000;

struct Engine {
    const char *name;  // also the driver's section in the run's odbcinst.ini
    const char *portFile;
    const char *options;  // the driver fetches while the export runs
    const char *fillSql;  // kRows numbered rows into kodbc_stop
    // False where the driver reads the whole result when the statement runs:
    // the export cannot notice the stop and must simply complete.
    bool fetchesWhileExporting;
    bool ddlInTransaction;  // the stop takes the created table too
};

const Engine kEngines[] = {
    {"PostgreSQL", "pg.port", "Servername=127.0.0.1;Username=kodbc;UseDeclareFetch=1;Fetch=100",
     "INSERT INTO kodbc_stop SELECT n, 'Zeile ' || n || repeat('x', 150) FROM generate_series(1, 10000) AS s(n)", true,
     true},
    {"MariaDB", "maria.port", "Server=127.0.0.1;User=kodbc;NO_CACHE=1",
     // Recursive queries stop at 1000 rows there; the sequence tables do not.
     "INSERT INTO kodbc_stop SELECT seq, CONCAT('Zeile ', seq, REPEAT('x', 150)) FROM seq_1_to_10000", false,
     false},
};

class ServerStop : public ::testing::TestWithParam<Engine> {
protected:
    // One folder of servers (per process) for the suite, open to the
    // database's own account so that its cluster survives the restarts.
    static void SetUpTestSuite() {
        if (!Contains(DataSources(), "kodbc_pg")) return;
        dir_ = ::testing::TempDir() + "kodbc_server_stop_" + std::to_string(::getpid());
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
    void TearDown() override { Disconnect(); }
    static bool Servers(const char *action) {
        const std::string command = std::string("bash '") + KODBC_SOURCE_DIR "/scripts/servers.sh' " + action +
                                    " '" + dir_ + "' >'" + dir_ + ".log' 2>&1";
        return std::system(command.c_str()) == 0;
    }
    // Stops one engine's server with the script's signal and waits until it
    // is gone: the next start then has only this one to bring back.
    static bool Stop(const Engine &engine) {
        const bool postgres = std::string(engine.name) == "PostgreSQL";
        std::ifstream rootFile(dir_ + "/pg.root");
        std::string root;
        std::getline(rootFile, root);
        const std::string pidFile = postgres ? root + "/data/postmaster.pid" : dir_ + "/maria/mariadbd.pid";
        const pid_t pid = static_cast<pid_t>(std::atol(ReadFile(pidFile).c_str()));
        if (pid <= 0 || ::kill(pid, postgres ? SIGINT : SIGTERM) != 0) return false;
        for (int waited = 0; waited < 6000 && ::kill(pid, 0) == 0; ++waited) ::usleep(10000);
        return ::kill(pid, 0) != 0;
    }
    void Connect() {
        Disconnect();
        ASSERT_TRUE(Servers("start")) << ReadFile(dir_ + ".log");
        const Engine &engine = GetParam();
        const std::string text = "DRIVER={" + std::string(engine.name) +
                                 "};Port=" + std::to_string(std::stol(ReadFile(dir_ + "/" + engine.portFile))) +
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
    struct StoppingProgress : RecordingProgress {
        explicit StoppingProgress(const Engine &engine) : engine(engine) {}
        bool Step(long value) override {
            if (value == kStopAt) stopped = Stop(engine);
            return false;
        }
        const Engine &engine;
        bool stopped = false;
    };

    static inline std::string dir_;
    SQLHENV henv_ = nullptr;
    SQLHDBC hdbc_ = nullptr;
    MessageRecorder messages_;
};

// Export and import in one test: the import starts the server again.
TEST_P(ServerStop, EndsWithTheErrorAndAWholeFileOrNoRecord) {
    const Engine &engine = GetParam();
    ASSERT_NO_FATAL_FAILURE(Connect());
    RunStatement(hdbc_, "DROP TABLE kodbc_stop");
    RunStatement(hdbc_, "DROP TABLE kodbc_stop_imp");
    ASSERT_TRUE(RunStatement(hdbc_, "CREATE TABLE kodbc_stop (nr INTEGER, name VARCHAR(200))"));
    ASSERT_TRUE(RunStatement(hdbc_, engine.fillSql));

    const std::string file = dir_ + "/transfer.txt";  // gone with the servers' folder
    std::vector<ExportField> exported;
    ASSERT_TRUE(ReadExportFields(hdbc_, "kodbc_stop", exported));
    StoppingProgress exporting(engine);
    ExportCounts exportCounts;
    const bool written =
        WriteExportFile(hdbc_, ExportStatement(hdbc_, "kodbc_stop", exported, "") + " ORDER BY nr", exported,
                        ExportFormat(), file.c_str(), kRows, exporting, &exportCounts);
    ASSERT_TRUE(exporting.stopped);
    const long count = exportCounts.written;
    EXPECT_EQ(written, !engine.fetchesWhileExporting);
    EXPECT_TRUE(!engine.fetchesWhileExporting || messages_.count(KODBC_MESSAGE_ODBC_ERROR) > 0);
    EXPECT_TRUE(engine.fetchesWhileExporting ? count >= kStopAt && count < kRows : count == kRows) << count;
    // Every record counted as written is in the file, whole, in order and
    // ended; nothing after it.
    const std::vector<std::string> lines = Split(ReadFile(file), "\r\n");
    ASSERT_EQ(lines.size(), static_cast<std::size_t>(count) + 2);
    EXPECT_EQ(lines.front(), "nr\tname");
    EXPECT_EQ(lines[count], std::to_string(count) + "\tZeile " + std::to_string(count) + std::string(kPadding, 'x'));
    EXPECT_EQ(lines.back(), "");

    // The command-line tool's import: its own connection without
    // auto-commit, the table created in the run's transaction.
    messages_.clear();
    std::string records = "nr\tname\r\n";
    for (long n = 1; n <= kRows; ++n) records += std::to_string(n) + "\tZeile " + std::to_string(n) + "\r\n";
    std::ofstream(file, std::ios::binary) << records;
    ASSERT_NO_FATAL_FAILURE(Connect());
    ImportTextFormat format;
    ImportFieldList fields;
    ASSERT_TRUE(DiscoverTextFields(file.c_str(), format, fields));
    ASSERT_TRUE(SQL_SUCCEEDED(SQLSetConnectAttr(hdbc_, SQL_ATTR_AUTOCOMMIT,
                                                reinterpret_cast<SQLPOINTER>(SQL_AUTOCOMMIT_OFF), 0)));
    ImportCounts counts;
    {
        ImportRecordWriter writer(hdbc_, "kodbc_stop_imp", fields, false,
                                  CreateImportTableStatement(hdbc_, "kodbc_stop_imp", fields, ""), true);
        StoppingProgress importing(engine);
        EXPECT_FALSE(ImportTextRecords(file.c_str(), format, fields, writer, importing, kRows, counts));
        ASSERT_TRUE(importing.stopped);
    }
    EXPECT_EQ(counts.written, 0);
    std::string said;
    for (const auto &entry : messages_.entries()) said += entry.text + "\n";
    EXPECT_NE(said.find("konnte nicht importiert werden"), std::string::npos) << said;
    EXPECT_NE(said.find("zur\xC3\xBC" "ckgenommen"), std::string::npos) << said;
    const bool named = said.find("'kodbc_stop_imp'  konnte nicht wieder entfernt werden") != std::string::npos;
    EXPECT_EQ(named, !engine.ddlInTransaction) << said;

    ASSERT_NO_FATAL_FAILURE(Connect());
    // No such table where the stop took it with the transaction, else an empty one.
    bool ran = false;
    const std::vector<std::string> rows = QueryColumn(hdbc_, "SELECT COUNT(*) FROM kodbc_stop_imp", &ran);
    EXPECT_EQ(ran ? rows : std::vector<std::string>{"-"},
              std::vector<std::string>{engine.ddlInTransaction ? "-" : "0"});
}

INSTANTIATE_TEST_SUITE_P(Engine, ServerStop, ::testing::ValuesIn(kEngines),
                         [](const ::testing::TestParamInfo<Engine> &info) { return std::string(info.param.name); });

} // namespace
} // namespace kodbc::test
