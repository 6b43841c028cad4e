// Result sets into files and buffers: the flags' exact output, line counts,
// separators, and the failures that must not pass for success.
#include "test_support.h"

#include <kodbc/kodbc_exec.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <fstream>
#include <korvel/korvel32.h>
#include <sys/file.h>
#include <sstream>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace kodbc::test {
namespace {

class ExecRowSetTest : public DataSourceTest {
protected:
    void SetUp() override {
        DataSourceTest::SetUp();
        file_ = ::testing::TempDir() + "h7_rowset_" + GetParam() + "_" + std::to_string(getpid()) + ".txt";
        OwnTables({"h7_rows_t"});
        // MariaDB gives the first TIMESTAMP column a default and an update
        // rule; DATETIME is its plain timestamp.
        std::string stamp = DbmsName() == "MariaDB" ? "DATETIME" : "TIMESTAMP";
        Exec("CREATE TABLE h7_rows_t (id INTEGER, name VARCHAR(40), amount INTEGER, born " + stamp + ")");
        messages_.clear();
    }
    void TearDown() override {
        std::remove(file_.c_str());
        DataSourceTest::TearDown();
    }
    // Writes sql to the test's file; returns the result and the lines.
    int ToFile(const char *sql, unsigned flags, long &lines, const char *fieldSep = nullptr,
               const char *recordSep = nullptr, const char *tolerated = nullptr) {
        return OdbcEh_SelectRowSetToFile(nullptr, hdbc_, sql, fieldSep, recordSep, file_.c_str(), &lines, tolerated,
                                         flags);
    }
    std::string Written() const { return ReadFile(file_); }

    std::string file_;
};
KODBC_DATA_SOURCE_TEST_SUITE(ExecRowSetTest);

TEST_P(ExecRowSetTest, DefaultSeparatorsSeparateAndDoNotTerminate) {
    Exec("INSERT INTO h7_rows_t (id, name) VALUES (1, 'a')");
    Exec("INSERT INTO h7_rows_t (id, name) VALUES (2, 'b')");
    long lines = 99;
    ASSERT_EQ(ToFile("SELECT name, id FROM h7_rows_t ORDER BY id", 0, lines), 1);
    EXPECT_EQ(Written(), "a\t1\nb\t2");
    EXPECT_EQ(lines, 2);
    ASSERT_EQ(ToFile("SELECT name, id FROM h7_rows_t ORDER BY id", 0, lines, "", ""), 1);
    EXPECT_EQ(Written(), "a\t1\nb\t2");
    ASSERT_EQ(ToFile("SELECT name, id FROM h7_rows_t ORDER BY id", 2, lines, ";", "\r\n"), 1);
    EXPECT_EQ(Written(), "name;id\r\na;1\r\nb;2");
    EXPECT_EQ(lines, 3);
    EXPECT_TRUE(messages_.entries().empty());
}

TEST_P(ExecRowSetTest, EmptyResultWritesOnlyTheHeader) {
    long lines = 500;
    ASSERT_EQ(ToFile("SELECT id, name FROM h7_rows_t", KODBC_ROWSET_HEADER, lines), 1);
    EXPECT_EQ(Written(), "id\tname");
    EXPECT_EQ(lines, 1);
    ASSERT_EQ(ToFile("SELECT id, name FROM h7_rows_t", 0, lines), 1);
    EXPECT_EQ(Written(), "");
    EXPECT_EQ(lines, 0);
}

TEST_P(ExecRowSetTest, QuotesDoubleAndNullTextIsAnEmptyQuotedValue) {
    Exec("INSERT INTO h7_rows_t (id, name) VALUES (1, 'O''Neil')");
    Exec("INSERT INTO h7_rows_t (id, name) VALUES (2, NULL)");
    Exec("INSERT INTO h7_rows_t (id, name) VALUES (3, '''x''')");
    long lines = 0;
    ASSERT_EQ(ToFile("SELECT id, name FROM h7_rows_t ORDER BY id", KODBC_ROWSET_QUOTE_TEXT, lines, ","), 1);
    EXPECT_EQ(Written(), "1,'O''Neil'\n2,''\n3,'''x'''");
    ASSERT_EQ(ToFile("SELECT id, name FROM h7_rows_t ORDER BY id", 0, lines, ","), 1);
    EXPECT_EQ(Written(), "1,O'Neil\n2,\n3,'x'");
}

TEST_P(ExecRowSetTest, EncodedTextCarriesNoSeparatorsOrQuotes) {
    Exec("INSERT INTO h7_rows_t (id, name) VALUES (1, 'O''N\t\"x')");
    Exec("INSERT INTO h7_rows_t (id, name) VALUES (2, NULL)");
    long lines = 0;
    ASSERT_EQ(ToFile("SELECT id, name FROM h7_rows_t ORDER BY id", KODBC_ROWSET_ENCODE_TEXT, lines), 1);
    EXPECT_EQ(Written(), "1\tO\\QN\\t\\qx\n2\t");
    ASSERT_EQ(ToFile("SELECT id, name FROM h7_rows_t ORDER BY id",
                     KODBC_ROWSET_ENCODE_TEXT | KODBC_ROWSET_QUOTE_TEXT, lines, ","), 1);
    EXPECT_EQ(Written(), "1,'O\\QN\\t\\qx'\n2,''");
}

TEST_P(ExecRowSetTest, NullNumbersAreZeroOnlyWithTheFlag) {
    Exec("INSERT INTO h7_rows_t (id, name, amount) VALUES (1, 'a', NULL)");
    Exec("INSERT INTO h7_rows_t (id, name, amount) VALUES (2, 'b', 42)");
    long lines = 0;
    ASSERT_EQ(ToFile("SELECT amount, name FROM h7_rows_t ORDER BY id", KODBC_ROWSET_NUMERIC_ZERO, lines), 1);
    EXPECT_EQ(Written(), "0\ta\n42\tb");
    ASSERT_EQ(ToFile("SELECT amount, name FROM h7_rows_t ORDER BY id", 0, lines), 1);
    EXPECT_EQ(Written(), "\ta\n42\tb");
}

TEST_P(ExecRowSetTest, CompactDatesWithAndWithoutQuotes) {
    Exec("INSERT INTO h7_rows_t (id, born) VALUES (1, '2001-02-03 04:05:06')");
    Exec("INSERT INTO h7_rows_t (id, born) VALUES (2, NULL)");
    long lines = 0;
    const char *sql = "SELECT born FROM h7_rows_t ORDER BY id";
    ASSERT_EQ(ToFile(sql, KODBC_ROWSET_COMPACT_DATES | KODBC_ROWSET_QUOTE_TEXT, lines), 1);
    EXPECT_EQ(Written(), "'20010203040506'\n''");
    ASSERT_EQ(ToFile(sql, KODBC_ROWSET_COMPACT_DATES, lines), 1);
    EXPECT_EQ(Written(), "20010203040506\n");
    // Without the flag the driver's own text stands, unquoted.
    ASSERT_EQ(ToFile(sql, KODBC_ROWSET_QUOTE_TEXT, lines), 1);
    EXPECT_EQ(Written().substr(0, 19), "2001-02-03 04:05:06");
    EXPECT_EQ(Written().back(), '\n');
}

TEST_P(ExecRowSetTest, LinesAreCountedPastTheProgressSteps) {
    for (int i = 0; i < 250; ++i) Exec("INSERT INTO h7_rows_t (id) VALUES (" + std::to_string(i) + ")");
    long lines = 250;
    ASSERT_EQ(ToFile("SELECT id FROM h7_rows_t ORDER BY id", KODBC_ROWSET_PROGRESS | KODBC_ROWSET_HEADER, lines), 1);
    EXPECT_EQ(lines, 251);
    std::string text = Written();
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 250);
    EXPECT_EQ(text.substr(text.size() - 4), "\n249");
}

TEST_P(ExecRowSetTest, ArgumentsMissingGiveTwoAndTouchNothing) {
    long lines = 7;
    EXPECT_EQ(OdbcEh_SelectRowSetToFile(nullptr, hdbc_, "SELECT id FROM h7_rows_t", nullptr, nullptr, "", &lines,
                                        nullptr, 0), 2);
    EXPECT_EQ(OdbcEh_SelectRowSetToFile(nullptr, nullptr, "SELECT id FROM h7_rows_t", nullptr, nullptr,
                                        file_.c_str(), &lines, nullptr, 0), 2);
    EXPECT_EQ(OdbcEh_SelectRowSetToFile(nullptr, hdbc_, "  ", nullptr, nullptr, file_.c_str(), &lines, nullptr, 0), 2);
    EXPECT_EQ(lines, 7);
    struct stat info {};
    EXPECT_NE(stat(file_.c_str(), &info), 0);
    EXPECT_TRUE(messages_.entries().empty());
}

TEST_P(ExecRowSetTest, ToleratedErrorLeavesAnEmptyFileAndFails) {
    long lines = 3;
    EXPECT_EQ(ToFile("SELECT * FROM h7_rows_missing", 0, lines, nullptr, nullptr, "*"), 2);
    EXPECT_EQ(lines, 0);
    EXPECT_TRUE(messages_.entries().empty());
    struct stat info {};
    ASSERT_EQ(stat(file_.c_str(), &info), 0);
    EXPECT_EQ(info.st_size, 0);
    EXPECT_EQ(ToFile("SELECT * FROM h7_rows_missing", 0, lines), 2);
    ASSERT_EQ(messages_.entries().size(), 1u);
    EXPECT_EQ(messages_.entries()[0].kind, KODBC_MESSAGE_ODBC_ERROR);
}

TEST_P(ExecRowSetTest, FileThatCannotBeCreatedIsReported) {
    long lines = 0;
    const char *name = "/nonexistent-h7-dir/out.txt";
    EXPECT_EQ(OdbcEh_SelectRowSetToFile(nullptr, hdbc_, "SELECT id FROM h7_rows_t", nullptr, nullptr, name, &lines,
                                        nullptr, 0), 2);
    ASSERT_EQ(messages_.entries().size(), 1u);
    EXPECT_EQ(messages_.entries()[0].kind, KODBC_MESSAGE_STOP);
    // Class 3 (no such file) has its own text.
    EXPECT_EQ(messages_.entries()[0].text, std::string("Die Datei  ") + name + "  existiert nicht.");
}

TEST_P(ExecRowSetTest, FileInUseByAnotherWriterIsLeftAlone) {
    {
        std::ofstream other(file_, std::ios::binary);
        other << "someone else's";
    }
    int fd = open(file_.c_str(), O_RDWR);
    ASSERT_GE(fd, 0);
    ASSERT_EQ(flock(fd, LOCK_EX), 0);
    long lines = 0;
    EXPECT_EQ(ToFile("SELECT id FROM h7_rows_t", 0, lines), 2);
    close(fd);
    EXPECT_EQ(Written(), "someone else's");
    ASSERT_EQ(messages_.entries().size(), 1u);
    // Class 2: access denied.
    EXPECT_NE(messages_.entries()[0].text.find("Zugriff verweigert"), std::string::npos);
}

TEST_P(ExecRowSetTest, RefusedByTheDumpCreatesNoFile) {
    SetDumpState(KORVEL_DUMP_ASK);
    messages_.set_answer(KODBC_ANSWER_CANCEL);
    long lines = 5;
    EXPECT_EQ(ToFile("SELECT id FROM h7_rows_t", 0, lines), 2);
    SetDumpState(0);
    EXPECT_EQ(lines, 0);
    struct stat info {};
    EXPECT_NE(stat(file_.c_str(), &info), 0);
    EXPECT_EQ(messages_.entries().size(), 1u);
}

TEST_P(ExecRowSetTest, FullDiskIsAFailureNotACutFile) {
    Exec("INSERT INTO h7_rows_t (id, name) VALUES (1, 'a')");
    long lines = 0;
    EXPECT_EQ(OdbcEh_SelectRowSetToFile(nullptr, hdbc_, "SELECT id, name FROM h7_rows_t", nullptr, nullptr,
                                        "/dev/full", &lines, nullptr, 0), 2);
    EXPECT_EQ(lines, 0);
    ASSERT_EQ(messages_.entries().size(), 1u);
    EXPECT_NE(messages_.entries()[0].text.find("Fehler beim Schreiben der Datei"), std::string::npos);
    EXPECT_NE(messages_.entries()[0].text.find("/dev/full"), std::string::npos);
}

TEST_P(ExecRowSetTest, BufferIsCutAndGuarded) {
    Exec("INSERT INTO h7_rows_t (id, name) VALUES (1, 'alpha')");
    Exec("INSERT INTO h7_rows_t (id, name) VALUES (2, 'beta')");
    const char *sql = "SELECT id, name FROM h7_rows_t ORDER BY id";
    GuardedBuffer whole(64);
    ASSERT_EQ(OdbcEh_SelectRowSetToBuffer(nullptr, hdbc_, sql, ",", "|", whole.data(), whole.size(), nullptr,
                                          KODBC_ROWSET_QUOTE_TEXT), 1);
    EXPECT_EQ(whole.text(), "1,'alpha'|2,'beta'");
    EXPECT_TRUE(whole.guards_intact());
    GuardedBuffer cut(8);
    ASSERT_EQ(OdbcEh_SelectRowSetToBuffer(nullptr, hdbc_, sql, ",", "|", cut.data(), cut.size(), nullptr, 0), 1);
    EXPECT_EQ(cut.text(), "1,alpha");
    EXPECT_TRUE(cut.guards_intact());
    GuardedBuffer smallest(3);
    ASSERT_EQ(OdbcEh_SelectRowSetToBuffer(nullptr, hdbc_, sql, nullptr, nullptr, smallest.data(), 3, nullptr, 0), 1);
    EXPECT_EQ(smallest.text(), "1\t");
    EXPECT_TRUE(smallest.guards_intact());
    EXPECT_TRUE(messages_.entries().empty());
}

TEST_P(ExecRowSetTest, BufferTooSmallExecutesNothing) {
    GuardedBuffer tiny(2);
    EXPECT_EQ(OdbcEh_SelectRowSetToBuffer(nullptr, hdbc_, "INSERT INTO h7_rows_t (id) VALUES (1)", nullptr, nullptr,
                                          tiny.data(), tiny.size(), nullptr, 0), 2);
    EXPECT_TRUE(tiny.guards_intact());
    EXPECT_EQ(OdbcEh_CountRows(nullptr, hdbc_, "SELECT id FROM h7_rows_t"), 0);
    GuardedBuffer fine(16);
    EXPECT_EQ(OdbcEh_SelectRowSetToBuffer(nullptr, hdbc_, "SELECT * FROM h7_rows_missing", nullptr, nullptr,
                                          fine.data(), fine.size(), "*", 0), 2);
    EXPECT_EQ(fine.text(), "");
    EXPECT_TRUE(fine.guards_intact());
}

// Ctrl+C on a running transfer stops it as a success with what was written.
TEST_P(ExecRowSetTest, CancelledProgressEndsAsSuccess) {
    // MariaDB stops recursion at 1000 steps: the rows come from a join.
    const long total = 1000000;
    std::string sql = "WITH RECURSIVE c(x) AS (SELECT 1 UNION ALL SELECT x + 1 FROM c WHERE x < 1000) "
                      "SELECT a.x, b.x, 'some padding text for the file' FROM c a, c b";
    std::atomic<bool> done{false};
    std::thread interrupter([&] {
        // Once the first block reached the file, the transfer is under way.
        struct stat info {};
        while (!done && (stat(file_.c_str(), &info) != 0 || info.st_size == 0)) usleep(1000);
        if (!done) std::raise(SIGINT);
    });
    long lines = total;
    int result = ToFile(sql.c_str(), KODBC_ROWSET_PROGRESS, lines);
    done = true;
    interrupter.join();
    EXPECT_EQ(result, 1);
    EXPECT_GT(lines, 0);
    EXPECT_LT(lines, total);
    EXPECT_EQ(lines % 100, 0);
    std::string text = Written();
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), lines - 1);
}

} // namespace
} // namespace kodbc::test
