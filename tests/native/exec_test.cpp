// Running statements (tolerated SQLSTATEs, the dump gate, row counts), the names they need
// (columns, existence, table lists), and result sets into files and buffers.
#include "test_support.h"

#include "internal/odbc_handles.h"

#include <kodbc/kodbc_catalog.h>
#include <kodbc/kodbc_exec.h>
#include <korvel/korvel32.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <fstream>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace kodbc::test {
namespace {

class ExecTest : public DataSourceTest {
protected:
    void SetUp() override {
        DataSourceTest::SetUp();
        file_ = ::testing::TempDir() + "h7_rowset_" + GetParam() + "_" + std::to_string(getpid()) + ".txt";
        OwnTables({"h7_rows_t"});
        // MariaDB gives the first TIMESTAMP column a default and an update rule.
        std::string stamp = DbmsName() == "MariaDB" ? "DATETIME" : "TIMESTAMP";
        Exec("CREATE TABLE h7_rows_t (id INTEGER, name VARCHAR(40), amount INTEGER, born " + stamp + ")");
        messages_.clear();
    }
    void TearDown() override {
        std::remove(file_.c_str());
        DataSourceTest::TearDown();
    }
    long Rows() { return OdbcEh_CountRows(nullptr, hdbc_, "SELECT id FROM h7_rows_t"); }
    int ToFile(const char *sql, unsigned flags, long &lines) {
        return OdbcEh_SelectRowSetToFile(nullptr, hdbc_, sql, nullptr, nullptr, file_.c_str(), &lines, nullptr, flags);
    }
    std::string Written() const { return ReadFile(file_); }

    std::string file_;
};
KODBC_DATA_SOURCE_TEST_SUITE(ExecTest);

TEST_P(ExecTest, PerformRunsAndCountSeesTheRowsMissingArgumentsFailQuietly) {
    for (const char *tolerated : {static_cast<const char *>(nullptr), "", "*"})
        EXPECT_EQ(OdbcEh_PerformSqlStatement(nullptr, hdbc_, "INSERT INTO h7_rows_t (id) VALUES (1)", tolerated), 1);
    EXPECT_EQ(Rows(), 3);
    EXPECT_EQ(OdbcEh_CountRows(nullptr, hdbc_, "SELECT id FROM h7_rows_t WHERE id > 5"), 0);
    // An UPDATE that matches nothing still ran.
    EXPECT_EQ(OdbcEh_PerformSqlStatement(nullptr, hdbc_, "UPDATE h7_rows_t SET name = 'x' WHERE id = 99", nullptr), 1);

    EXPECT_EQ(OdbcEh_PerformSqlStatement(nullptr, nullptr, "SELECT 1", nullptr), 2);
    EXPECT_EQ(OdbcEh_PerformSqlStatement(nullptr, hdbc_, nullptr, nullptr), 2);
    EXPECT_EQ(OdbcEh_PerformSqlStatement(nullptr, hdbc_, " \t\n", nullptr), 2);
    EXPECT_EQ(OdbcEh_CountRows(nullptr, nullptr, "SELECT id FROM h7_rows_t"), 0);
    EXPECT_EQ(OdbcEh_CountRows(nullptr, hdbc_, ""), 0);
    EXPECT_TRUE(messages_.entries().empty());

    // Which tokens tolerate what is the diagnostics' rule; here the list reaches it, counting not.
    const char *sql = "SELECT * FROM h7_exec_missing";
    EXPECT_EQ(OdbcEh_PerformSqlStatement(nullptr, hdbc_, sql, "01004"), 2);
    ASSERT_EQ(messages_.entries().size(), 1u);
    const MessageRecorder::Entry shown = messages_.entries()[0];
    EXPECT_EQ(shown.kind, KODBC_MESSAGE_ODBC_ERROR);
    EXPECT_EQ(shown.statement, sql);
    messages_.clear();
    EXPECT_EQ(OdbcEh_PerformSqlStatement(nullptr, hdbc_, sql, ("22001," + shown.sqlState).c_str()), 1);
    EXPECT_TRUE(messages_.entries().empty());
    EXPECT_EQ(OdbcEh_CountRows(nullptr, hdbc_, sql), 0);
    EXPECT_EQ(messages_.entries().size(), 1u);

    // Refused by the dump nothing runs, and only the two questions are shown.
    messages_.clear();
    SetDumpState(KORVEL_DUMP_ASK);
    messages_.set_answer(KODBC_ANSWER_NO);
    const char *insert = "INSERT INTO h7_rows_t (id) VALUES (4)";
    EXPECT_EQ(OdbcEh_PerformSqlStatement(nullptr, hdbc_, insert, nullptr), 2);
    EXPECT_EQ(Rows(), 0);  // the count is refused as well: the second question
    ASSERT_EQ(messages_.entries().size(), 2u);
    EXPECT_EQ(messages_.entries()[0].text, insert);
    messages_.set_answer(KODBC_ANSWER_YES);
    EXPECT_EQ(OdbcEh_PerformSqlStatement(nullptr, hdbc_, insert, nullptr), 1);
    SetDumpState(0);
    EXPECT_EQ(Rows(), 4);
}

TEST_P(ExecTest, ColumnAndTableNamesExistenceAndCuts) {
    auto names = [&](const char *table, const char *schema, const char *separator, int size, int result = 1) {
        return Guarded(size, [&](char *out, int n) {
            EXPECT_EQ(OdbcEh_GetColumnNames(nullptr, hdbc_, table, schema, 0, separator, nullptr, out, n), result)
                << table;
        });
    };
    EXPECT_EQ(names("h7_rows_t", nullptr, nullptr, 100), "id\tname\tamount\tborn");
    EXPECT_EQ(names("h7_rows_t", "", ", ", 100), "id, name, amount, born");
    EXPECT_EQ(names("h7_rows_t", nullptr, nullptr, 9), "id\tname\t");
    EXPECT_EQ(names("h7_exec_missing", nullptr, nullptr, 100), "");  // an unknown table simply has no columns
    names("", nullptr, nullptr, 100, 2);

    // Columns and tables are found whatever the case of their names.
    for (const auto &[table, column, found] : {std::tuple{"h7_rows_t", "NAME", 1}, {"h7_rows_t", "nam", 0},
                                               {"h7_rows_t", "", 0}, {static_cast<const char *>(nullptr), "id", 0}})
        EXPECT_EQ(OdbcEh_DoesColumnExist(nullptr, hdbc_, table, nullptr, column), found) << column;
    for (const auto &[type, table, found] :
         {std::tuple{KODBC_OBJECT_TABLE, "H7_Rows_T", 1}, {KODBC_OBJECT_ALL, "h7_rows_t", 1},
          {KODBC_OBJECT_VIEW, "h7_rows_t", 0}, {KODBC_OBJECT_ALL, "h7_rows", 0}, {KODBC_OBJECT_ALL, "", 0}})
        EXPECT_EQ(OdbcEh_DoesTableExist(nullptr, hdbc_, type, nullptr, table, 0), found) << type << " " << table;

    // The table list stops at the first name that does not fit with its separator.
    std::vector<char> all(100000);
    ASSERT_EQ(OdbcEh_GetTablesExtended(nullptr, hdbc_, KODBC_OBJECT_TABLE, nullptr, 0, all.data(),
                                       static_cast<int>(all.size()), nullptr), 0);
    std::vector<std::string> tables = Split(all.data(), ",");
    ASSERT_TRUE(Contains(tables, "h7_rows_t"));
    for (const auto &[size, expected] : {std::pair{tables[0].size() + 2, tables[0]}, {tables[0].size() + 1, ""}})
        EXPECT_EQ(Guarded(static_cast<int>(size), [&](char *out, int n) {
                      EXPECT_EQ(OdbcEh_GetTablesExtended(nullptr, hdbc_, KODBC_OBJECT_TABLE, nullptr, 0, out, n, ";"),
                                0);
                  }),
                  expected);
    EXPECT_EQ(OdbcEh_GetTablesExtended(nullptr, hdbc_, KODBC_OBJECT_TABLE, nullptr, 0, all.data(), 0, ";"), -1);
    EXPECT_EQ(OdbcEh_GetTablesExtended(nullptr, hdbc_, KODBC_OBJECT_TABLE, nullptr, 0, nullptr, 10, ";"), -1);
    EXPECT_TRUE(messages_.entries().empty());

    // A result's names; "id;name" takes 7 bytes and its terminator, "amount" needs 7 more.
    odbc::Statement statement(hdbc_);
    const char *sql = "SELECT id, name, amount FROM h7_rows_t";
    ASSERT_TRUE(odbc::succeeded(SQLExecDirect(statement, (SQLCHAR *)sql, SQL_NTS)));
    for (const auto &[separator, size, expected] :
         {std::tuple{'\0', 64, "id\tname\tamount"}, {';', 64, "id;name;amount"}, {';', 14, "id;name"}})
        EXPECT_EQ(Guarded(size, [&, separator = separator](char *out, int n) {
                      EXPECT_EQ(Kodbc_GetColumnNamesFromRowSet(statement, separator, out, n), 1);
                  }),
                  expected);
    char out[8];
    EXPECT_EQ(Kodbc_GetColumnNamesFromRowSet(statement, ';', out, 0), 2);
    EXPECT_EQ(Kodbc_GetColumnNamesFromRowSet(nullptr, ';', out, sizeof out), 2);
}

// Every flag's exact output. CSV quotes what a reader would misread; a NULL text keeps NULL
// apart from the empty text and from a value that reads like it.
TEST_P(ExecTest, FlagsGiveTheirExactOutput) {
    Exec("INSERT INTO h7_rows_t VALUES (1, 'a', NULL, '2001-02-03 04:05:06'), (2, NULL, 42, NULL), "
         "(3, 'O''N\t\"x', 7, NULL), (4, '', NULL, NULL), (5, 'NULL', NULL, NULL), (6, ' a,b ', NULL, NULL)");
    const char *names = "SELECT name, id FROM h7_rows_t WHERE id < 3 ORDER BY id";
    const char *texts = "SELECT id, name FROM h7_rows_t WHERE id < 4 ORDER BY id";
    const char *amounts = "SELECT amount, id FROM h7_rows_t WHERE id < 4 ORDER BY id";
    const char *born = "SELECT born FROM h7_rows_t WHERE id < 3 ORDER BY id";
    const char *csv = "SELECT id, name FROM h7_rows_t WHERE id > 1 ORDER BY id";
    const char *none = "SELECT id, name FROM h7_rows_t WHERE id > 9";
    const struct {
        const char *sql;
        unsigned flags;
        const char *fieldSep, *recordSep, *nullText, *expected;
        long lines;
    } cases[] = {
        // The default separators separate, they do not terminate; empty ones are the defaults.
        {names, 0, nullptr, nullptr, nullptr, "a\t1\n\t2", 2},
        {names, 0, "", "", nullptr, "a\t1\n\t2", 2},
        {names, KODBC_ROWSET_HEADER, ";", "\r\n", nullptr, "name;id\r\na;1\r\n;2", 3},
        {none, KODBC_ROWSET_HEADER, nullptr, nullptr, nullptr, "id\tname", 1},
        {none, 0, nullptr, nullptr, nullptr, "", 0},
        // Quotes are doubled; NULL text is an empty quoted value.
        {texts, KODBC_ROWSET_QUOTE_TEXT, ",", nullptr, nullptr, "1,'a'\n2,''\n3,'O''N\t\"x'", 3},
        {texts, 0, ",", nullptr, nullptr, "1,a\n2,\n3,O'N\t\"x", 3},
        // Encoded text carries no separators or quotes.
        {texts, KODBC_ROWSET_ENCODE_TEXT, nullptr, nullptr, nullptr, "1\ta\n2\t\n3\tO\\QN\\t\\qx", 3},
        {texts, KODBC_ROWSET_ENCODE_TEXT | KODBC_ROWSET_QUOTE_TEXT, ",", nullptr, nullptr,
         "1,'a'\n2,''\n3,'O\\QN\\t\\qx'", 3},
        // NULL numbers are 0 only with the flag.
        {amounts, KODBC_ROWSET_NUMERIC_ZERO, nullptr, nullptr, nullptr, "0\t1\n42\t2\n7\t3", 3},
        {amounts, 0, nullptr, nullptr, nullptr, "\t1\n42\t2\n7\t3", 3},
        {born, KODBC_ROWSET_COMPACT_DATES | KODBC_ROWSET_QUOTE_TEXT, nullptr, nullptr, nullptr,
         "'20010203040506'\n''", 2},
        {born, KODBC_ROWSET_COMPACT_DATES, nullptr, nullptr, nullptr, "20010203040506\n", 2},
        {csv, KODBC_ROWSET_CSV | KODBC_ROWSET_HEADER, ",", "\r\n", nullptr,
         "id,name\r\n2,\r\n3,\"O'N\t\"\"x\"\r\n4,\r\n5,NULL\r\n6,\" a,b \"", 6},
        {csv, KODBC_ROWSET_CSV, ",", "\r\n", "NULL",
         "2,NULL\r\n3,\"O'N\t\"\"x\"\r\n4,\r\n5,\"NULL\"\r\n6,\" a,b \"", 5},
        {csv, KODBC_ROWSET_CSV, "\t", "\r\n", "",
         "2\t\r\n3\t\"O'N\t\"\"x\"\r\n4\t\"\"\r\n5\tNULL\r\n6\t\" a,b \"", 5},
        {csv, KODBC_ROWSET_QUOTE_TEXT, ",", "\r\n", "\\N",
         "2,\\N\r\n3,'O''N\t\"x'\r\n4,''\r\n5,'NULL'\r\n6,' a,b '", 5},
        // JSON: numbers bare, NULL as null, strings escaped; no separators.
        {csv, KODBC_ROWSET_JSON | KODBC_ROWSET_HEADER, ",", "\r\n", "NULL",
         "[{\"id\":2,\"name\":null},\n{\"id\":3,\"name\":\"O'N\\t\\\"x\"},\n{\"id\":4,\"name\":\"\"},\n"
         "{\"id\":5,\"name\":\"NULL\"},\n{\"id\":6,\"name\":\" a,b \"}]\n", 5},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(std::string(c.sql) + " flags " + std::to_string(c.flags));
        long lines = 99;
        ASSERT_EQ(OdbcEh_SelectRowSetToFileWithNull(nullptr, hdbc_, c.sql, c.fieldSep, c.recordSep, c.nullText,
                                                    file_.c_str(), &lines, nullptr, c.flags),
                  1);
        EXPECT_EQ(Written(), c.expected);
        EXPECT_EQ(lines, c.lines);
    }
    // Without the flag the driver's own date text stands, unquoted.
    long lines = 0;
    ASSERT_EQ(ToFile(born, KODBC_ROWSET_QUOTE_TEXT, lines), 1);
    EXPECT_EQ(Written().substr(0, 19), "2001-02-03 04:05:06");
    EXPECT_EQ(Written().back(), '\n');
    EXPECT_TRUE(messages_.entries().empty());
}

// Every failure returns 2 and says why, once, unless asked not to; an unfinished file is no result.
TEST_P(ExecTest, FailuresGiveTwoAndSayWhyOnce) {
    Exec("INSERT INTO h7_rows_t (id, name) VALUES (1, 'a')");
    const std::string rows = "SELECT id, name FROM h7_rows_t", missing = "SELECT * FROM h7_rows_missing";
    const std::string noDir = "/nonexistent-h7-dir/out.txt";
    enum Setup { None, Locked, DumpCancelled };
    const char *const kNoFile = "(no file)";
    const struct {
        const char *what;
        bool connected;
        std::string sql, file;
        const char *tolerated;
        Setup setup;
        long lines;        // 7 before the call
        const char *left;  // the file afterwards
        int kind;          // of the one message (-1: none), and part of its text
        std::string text;
    } cases[] = {
        {"no file name", true, rows, "", nullptr, None, 7, kNoFile, -1, ""},
        {"no connection", false, rows, file_, nullptr, None, 7, kNoFile, -1, ""},
        {"a blank statement", true, "  ", file_, nullptr, None, 7, kNoFile, -1, ""},
        {"a tolerated error", true, missing, file_, "*", None, 0, "", -1, ""},
        {"an error", true, missing, file_, nullptr, None, 0, "", KODBC_MESSAGE_ODBC_ERROR, ""},
        {"refused by the dump", true, rows, file_, nullptr, DumpCancelled, 0, kNoFile, KODBC_MESSAGE_YESNOCANCEL,
         "SELECT id"},
        // Class 3 (no such file) and class 2 (access denied) have texts of their own.
        {"no such folder", true, rows, noDir, nullptr, None, 0, kNoFile, KODBC_MESSAGE_STOP,
         "Die Datei  " + noDir + "  existiert nicht."},
        {"in use by another writer", true, rows, file_, nullptr, Locked, 0, "someone else's", KODBC_MESSAGE_STOP,
         "Zugriff verweigert"},
        {"a full disk", true, rows, "/dev/full", nullptr, None, 0, kNoFile, KODBC_MESSAGE_STOP,
         "Fehler beim Schreiben der Datei\n\n/dev/full"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        std::remove(file_.c_str());
        messages_.clear();
        int fd = -1;
        if (c.setup == Locked) {
            std::ofstream(file_, std::ios::binary) << "someone else's";
            fd = open(file_.c_str(), O_RDWR);
            ASSERT_GE(fd, 0);
            ASSERT_EQ(flock(fd, LOCK_EX), 0);
        }
        if (c.setup == DumpCancelled) {
            SetDumpState(KORVEL_DUMP_ASK);
            messages_.set_answer(KODBC_ANSWER_CANCEL);
        }
        long lines = 7;
        EXPECT_EQ(OdbcEh_SelectRowSetToFile(nullptr, c.connected ? hdbc_ : nullptr, c.sql.c_str(), nullptr, nullptr,
                                            c.file.c_str(), &lines, c.tolerated, 0),
                  2);
        SetDumpState(0);
        messages_.set_answer(KODBC_ANSWER_OK);
        if (fd >= 0) close(fd);
        EXPECT_EQ(lines, c.lines);
        struct stat info {};
        EXPECT_EQ(stat(file_.c_str(), &info) == 0 ? Written() : kNoFile, c.left);
        ASSERT_EQ(messages_.entries().size(), c.kind < 0 ? 0u : 1u);
        if (c.kind < 0) continue;
        EXPECT_EQ(messages_.entries()[0].kind, c.kind);
        EXPECT_NE(messages_.entries()[0].text.find(c.text), std::string::npos) << messages_.entries()[0].text;
    }
}

// A buffer too small for anything runs nothing; else the rows are cut to it.
TEST_P(ExecTest, BufferIsCutAndGuarded) {
    const char *sql = "SELECT id, name FROM h7_rows_t ORDER BY id";
    Exec("INSERT INTO h7_rows_t (id, name) VALUES (1, 'alpha'), (2, 'beta')");
    const struct {
        int size;
        const char *sql, *fieldSep, *recordSep, *tolerated;
        unsigned flags;
        int result;
        const char *expected;
    } cases[] = {
        {64, sql, ",", "|", nullptr, KODBC_ROWSET_QUOTE_TEXT, 1, "1,'alpha'|2,'beta'"},
        {8, sql, ",", "|", nullptr, 0, 1, "1,alpha"},
        {3, sql, nullptr, nullptr, nullptr, 0, 1, "1\t"},
        {16, "SELECT * FROM h7_rows_missing", nullptr, nullptr, "*", 0, 2, ""},  // a tolerated error
        {2, "INSERT INTO h7_rows_t (id) VALUES (3)", nullptr, nullptr, nullptr, 0, 2, "\x7F\x7F"},  // untouched
    };
    for (const auto &c : cases) {
        GuardedBuffer out(c.size);
        EXPECT_EQ(OdbcEh_SelectRowSetToBuffer(nullptr, hdbc_, c.sql, c.fieldSep, c.recordSep, out.data(), c.size,
                                              c.tolerated, c.flags),
                  c.result);
        EXPECT_EQ(out.text(), c.expected) << c.size;
        EXPECT_TRUE(out.guards_intact()) << c.size;
    }
    EXPECT_EQ(Rows(), 2);
    EXPECT_TRUE(messages_.entries().empty());
}

// Ctrl+C on a running transfer stops it as a success with what was written. The file is a pipe
// whose reader presses Ctrl+C on the first block, so the cancel always lands in the middle.
TEST_P(ExecTest, ProgressCountsEveryLineAndACancelEndsAsSuccess) {
    // Long lines, about 2000 to the first block; MariaDB stops recursion at 1000 steps: a join.
    const long total = 5000;
    std::string sql = "WITH RECURSIVE c(x) AS (SELECT 1 UNION ALL SELECT x + 1 FROM c WHERE x < 100) "
                      "SELECT a.x, b.x, 'some padding text for the file, some padding text for the file, "
                      "some padding text for the file, some padding text for the file' "
                      "FROM c a, c b WHERE b.x <= 50";
    // Uninterrupted, every line is counted, the header too, not only the progress steps.
    long lines = total;
    ASSERT_EQ(ToFile(sql.c_str(), KODBC_ROWSET_PROGRESS | KODBC_ROWSET_HEADER, lines), 1);
    EXPECT_EQ(lines, total + 1);
    const std::string whole = Written();
    EXPECT_EQ(std::count(whole.begin(), whole.end(), '\n'), total);
    std::remove(file_.c_str());
    ASSERT_EQ(mkfifo(file_.c_str(), 0600), 0);
    std::string text;
    std::thread interrupter([&] {
        const int fd = open(file_.c_str(), O_RDONLY | O_CLOEXEC);  // waits for the transfer to open it
        if (fd < 0) return;
        char buffer[4096];
        bool pressed = false;
        for (ssize_t n; (n = read(fd, buffer, sizeof buffer)) > 0;) {
            if (!pressed) pressed = std::raise(SIGINT) == 0;
            text.append(buffer, static_cast<std::size_t>(n));
        }
        close(fd);
    });
    lines = total;
    int result = ToFile(sql.c_str(), KODBC_ROWSET_PROGRESS, lines);
    // A transfer that never opened the file leaves the reader waiting for a writer.
    if (const int fd = open(file_.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC); fd >= 0) close(fd);
    interrupter.join();
    EXPECT_EQ(result, 1);
    EXPECT_GT(lines, 0);
    EXPECT_LT(lines, total);
    EXPECT_EQ(lines % 100, 0);
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), lines - 1);
}

} // namespace
} // namespace kodbc::test
