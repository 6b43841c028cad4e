// Running statements (tolerated SQLSTATEs, the dump gate, row counts) and
// the names they need: columns of a table or a result, existence tests and
// table lists.
#include "test_support.h"

#include "internal/odbc_handles.h"

#include <korvel/korvel32.h>

#include <kodbc/kodbc_catalog.h>
#include <kodbc/kodbc_exec.h>

namespace kodbc::test {
namespace {

class ExecStatementTest : public DataSourceTest {
protected:
    void SetUp() override {
        DataSourceTest::SetUp();
        OwnTables({"h7_exec_t"});
        Exec("CREATE TABLE h7_exec_t (id INTEGER, name VARCHAR(20), amount INTEGER)");
        messages_.clear();
    }
    long Rows() { return OdbcEh_CountRows(nullptr, hdbc_, "SELECT id FROM h7_exec_t"); }
};
KODBC_DATA_SOURCE_TEST_SUITE(ExecStatementTest);

TEST_P(ExecStatementTest, PerformRunsAndCountSeesTheRowsMissingArgumentsFailQuietly) {
    for (const char *tolerated : {static_cast<const char *>(nullptr), "", "*"})
        EXPECT_EQ(OdbcEh_PerformSqlStatement(nullptr, hdbc_, "INSERT INTO h7_exec_t (id) VALUES (1)", tolerated), 1);
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

    // Which tokens tolerate what is the diagnostics' rule; here: the list
    // reaches it, and counting tolerates nothing.
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
    const char *insert = "INSERT INTO h7_exec_t (id) VALUES (4)";
    EXPECT_EQ(OdbcEh_PerformSqlStatement(nullptr, hdbc_, insert, nullptr), 2);
    EXPECT_EQ(Rows(), 0);  // the count is refused as well: the second question
    ASSERT_EQ(messages_.entries().size(), 2u);
    EXPECT_EQ(messages_.entries()[0].text, insert);
    messages_.set_answer(KODBC_ANSWER_YES);
    EXPECT_EQ(OdbcEh_PerformSqlStatement(nullptr, hdbc_, insert, nullptr), 1);
    SetDumpState(0);
    EXPECT_EQ(Rows(), 4);
}

TEST_P(ExecStatementTest, ColumnNamesOfATableOrAResultAndExistence) {
    auto names = [&](const char *table, const char *schema, const char *separator, int size, int result = 1) {
        return Guarded(size, [&](char *out, int n) {
            EXPECT_EQ(OdbcEh_GetColumnNames(nullptr, hdbc_, table, schema, 0, separator, nullptr, out, n), result)
                << table;
        });
    };
    EXPECT_EQ(names("h7_exec_t", nullptr, nullptr, 100), "id\tname\tamount");
    EXPECT_EQ(names("h7_exec_t", "", ", ", 100), "id, name, amount");
    EXPECT_EQ(names("h7_exec_t", nullptr, nullptr, 9), "id\tname\t");
    EXPECT_EQ(names("h7_exec_missing", nullptr, nullptr, 100), "");  // an unknown table simply has no columns
    names("", nullptr, nullptr, 100, 2);

    // Columns and tables are found whatever the case of their names.
    for (const auto &[table, column, found] : {std::tuple{"h7_exec_t", "NAME", 1}, {"h7_exec_t", "nam", 0},
                                               {"h7_exec_t", "", 0}, {static_cast<const char *>(nullptr), "id", 0}})
        EXPECT_EQ(OdbcEh_DoesColumnExist(nullptr, hdbc_, table, nullptr, column), found) << column;
    for (const auto &[type, table, found] :
         {std::tuple{KODBC_OBJECT_TABLE, "H7_Exec_T", 1}, {KODBC_OBJECT_ALL, "h7_exec_t", 1},
          {KODBC_OBJECT_VIEW, "h7_exec_t", 0}, {KODBC_OBJECT_ALL, "h7_exec", 0}, {KODBC_OBJECT_ALL, "", 0}})
        EXPECT_EQ(OdbcEh_DoesTableExist(nullptr, hdbc_, type, nullptr, table, 0), found) << type << " " << table;
    EXPECT_TRUE(messages_.entries().empty());

    // A result's names; "id;name" takes 7 bytes and its terminator, "amount" needs 7 more.
    odbc::Statement statement(hdbc_);
    ASSERT_TRUE(odbc::succeeded(SQLExecDirect(statement, (SQLCHAR *)"SELECT id, name, amount FROM h7_exec_t", SQL_NTS)));
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

TEST_P(ExecStatementTest, TableListStopsAtTheFirstNameThatDoesNotFit) {
    std::vector<char> all(100000);
    ASSERT_EQ(OdbcEh_GetTablesExtended(nullptr, hdbc_, KODBC_OBJECT_TABLE, nullptr, 0, all.data(),
                                       static_cast<int>(all.size()), nullptr), 0);
    std::vector<std::string> names = Split(all.data(), ",");
    ASSERT_TRUE(Contains(names, "h7_exec_t"));
    // Room for the first name and its separator only: exactly that name.
    for (const auto &[size, expected] : {std::pair{names[0].size() + 2, names[0]}, {names[0].size() + 1, ""}})
        EXPECT_EQ(Guarded(static_cast<int>(size), [&](char *out, int n) {
                      EXPECT_EQ(OdbcEh_GetTablesExtended(nullptr, hdbc_, KODBC_OBJECT_TABLE, nullptr, 0, out, n, ";"), 0);
                  }),
                  expected);
    EXPECT_EQ(OdbcEh_GetTablesExtended(nullptr, hdbc_, KODBC_OBJECT_TABLE, nullptr, 0, all.data(), 0, ";"), -1);
    EXPECT_EQ(OdbcEh_GetTablesExtended(nullptr, hdbc_, KODBC_OBJECT_TABLE, nullptr, 0, nullptr, 10, ";"), -1);
    EXPECT_TRUE(messages_.entries().empty());
}

} // namespace
} // namespace kodbc::test
