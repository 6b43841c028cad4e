// Running statements: tolerated SQLSTATEs, the dump gate, row counts.
#include "test_support.h"

#include <korvel/korvel32.h>

#include <kodbc/kodbc_exec.h>

namespace kodbc::test {
namespace {

class ExecStatementTest : public DataSourceTest {
protected:
    void SetUp() override {
        DataSourceTest::SetUp();
        OwnTables({"h7_exec_t"});
        Exec("CREATE TABLE h7_exec_t (id INTEGER, name VARCHAR(20))");
        messages_.clear();
    }
    long Rows() { return OdbcEh_CountRows(nullptr, hdbc_, "SELECT id FROM h7_exec_t"); }
};
KODBC_DATA_SOURCE_TEST_SUITE(ExecStatementTest);

TEST_P(ExecStatementTest, PerformRunsAndCountSeesTheRowsMissingArgumentsFailQuietly) {
    EXPECT_EQ(OdbcEh_PerformSqlStatement(nullptr, hdbc_, "INSERT INTO h7_exec_t VALUES (1, 'a')", nullptr), 1);
    EXPECT_EQ(OdbcEh_PerformSqlStatement(nullptr, hdbc_, "INSERT INTO h7_exec_t VALUES (2, 'b')", ""), 1);
    EXPECT_EQ(OdbcEh_PerformSqlStatement(nullptr, hdbc_, "INSERT INTO h7_exec_t VALUES (3, NULL)", "*"), 1);
    EXPECT_EQ(Rows(), 3);
    EXPECT_EQ(OdbcEh_CountRows(nullptr, hdbc_, "SELECT id FROM h7_exec_t WHERE id > 5"), 0);
    // An UPDATE that matches nothing still ran.
    EXPECT_EQ(OdbcEh_PerformSqlStatement(nullptr, hdbc_, "UPDATE h7_exec_t SET name = 'x' WHERE id = 99", nullptr), 1);

    EXPECT_EQ(OdbcEh_PerformSqlStatement(nullptr, nullptr, "SELECT 1", nullptr), 2);
    EXPECT_EQ(OdbcEh_PerformSqlStatement(nullptr, hdbc_, nullptr, nullptr), 2);
    EXPECT_EQ(OdbcEh_PerformSqlStatement(nullptr, hdbc_, " \t\n", nullptr), 2);
    EXPECT_EQ(OdbcEh_CountRows(nullptr, nullptr, "SELECT id FROM h7_exec_t"), 0);
    EXPECT_EQ(OdbcEh_CountRows(nullptr, hdbc_, ""), 0);
    EXPECT_TRUE(messages_.entries().empty());
}

// Which tokens tolerate what is the diagnostics' rule; here: the list
// reaches it, and counting tolerates nothing.
TEST_P(ExecStatementTest, ErrorsAreShownWithTheStatementUnlessTolerated) {
    const char *sql = "SELECT * FROM h7_exec_missing";
    EXPECT_EQ(OdbcEh_PerformSqlStatement(nullptr, hdbc_, sql, "01004"), 2);
    ASSERT_EQ(messages_.entries().size(), 1u);
    const MessageRecorder::Entry shown = messages_.entries()[0];
    EXPECT_EQ(shown.kind, KODBC_MESSAGE_ODBC_ERROR);
    EXPECT_EQ(shown.statement, sql);
    ASSERT_FALSE(shown.sqlState.empty());

    messages_.clear();
    EXPECT_EQ(OdbcEh_PerformSqlStatement(nullptr, hdbc_, sql, ("22001," + shown.sqlState).c_str()), 1);
    EXPECT_TRUE(messages_.entries().empty());
    EXPECT_EQ(OdbcEh_CountRows(nullptr, hdbc_, sql), 0);
    EXPECT_EQ(messages_.entries().size(), 1u);
}

TEST_P(ExecStatementTest, RefusedByTheDumpNothingRuns) {
    SetDumpState(KORVEL_DUMP_ASK);
    messages_.set_answer(KODBC_ANSWER_NO);
    EXPECT_EQ(OdbcEh_PerformSqlStatement(nullptr, hdbc_, "INSERT INTO h7_exec_t VALUES (1, 'a')", nullptr), 2);
    EXPECT_EQ(OdbcEh_CountRows(nullptr, hdbc_, "SELECT id FROM h7_exec_t"), 0);
    // Only the two questions were shown: the refusal itself is silent.
    ASSERT_EQ(messages_.entries().size(), 2u);
    EXPECT_EQ(messages_.entries()[0].text, "INSERT INTO h7_exec_t VALUES (1, 'a')");
    messages_.set_answer(KODBC_ANSWER_YES);
    EXPECT_EQ(OdbcEh_PerformSqlStatement(nullptr, hdbc_, "INSERT INTO h7_exec_t VALUES (1, 'a')", nullptr), 1);
    SetDumpState(0);
    EXPECT_EQ(Rows(), 1);
}

} // namespace
} // namespace kodbc::test
