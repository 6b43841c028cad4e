// Names of result columns, table columns and tables; existence tests and
// free table names.
#include "test_support.h"

#include "internal/odbc_handles.h"

#include <kodbc/kodbc_catalog.h>
#include <kodbc/kodbc_exec.h>

#include <cstring>

namespace kodbc::test {
namespace {

class ExecNamesTest : public DataSourceTest {
protected:
    void SetUp() override {
        DataSourceTest::SetUp();
        OwnTables({"h7_names_t", "h7_kunden", "h7_kunden_1", "h7_kunden_3"});
        Exec("CREATE TABLE h7_names_t (id INTEGER, name VARCHAR(20), amount INTEGER)");
        messages_.clear();
    }
};
KODBC_DATA_SOURCE_TEST_SUITE(ExecNamesTest);

TEST_P(ExecNamesTest, ColumnNamesOfATableAndExistence) {
    auto names = [&](const char *table, const char *schema, const char *separator, int size, int result = 1) {
        return Guarded(size, [&](char *out, int n) {
            EXPECT_EQ(OdbcEh_GetColumnNames(nullptr, hdbc_, table, schema, 0, separator, nullptr, out, n), result)
                << table;
        });
    };
    EXPECT_EQ(names("h7_names_t", nullptr, nullptr, 100), "id\tname\tamount");
    EXPECT_EQ(names("h7_names_t", "", ", ", 100), "id, name, amount");
    EXPECT_EQ(names("h7_names_t", nullptr, nullptr, 9), "id\tname\t");
    EXPECT_EQ(names("h7_names_missing", nullptr, nullptr, 100), "");  // an unknown table simply has no columns
    names("", nullptr, nullptr, 100, 2);

    // Columns and tables are found whatever the case of their names.
    EXPECT_EQ(OdbcEh_DoesColumnExist(nullptr, hdbc_, "h7_names_t", nullptr, "NAME"), 1);
    EXPECT_EQ(OdbcEh_DoesColumnExist(nullptr, hdbc_, "h7_names_t", nullptr, "nam"), 0);
    EXPECT_EQ(OdbcEh_DoesColumnExist(nullptr, hdbc_, "h7_names_t", nullptr, ""), 0);
    EXPECT_EQ(OdbcEh_DoesColumnExist(nullptr, hdbc_, nullptr, nullptr, "id"), 0);
    EXPECT_EQ(OdbcEh_DoesTableExist(nullptr, hdbc_, KODBC_OBJECT_TABLE, nullptr, "H7_Names_T", 0), 1);
    EXPECT_EQ(OdbcEh_DoesTableExist(nullptr, hdbc_, KODBC_OBJECT_ALL, nullptr, "h7_names_t", 0), 1);
    EXPECT_EQ(OdbcEh_DoesTableExist(nullptr, hdbc_, KODBC_OBJECT_VIEW, nullptr, "h7_names_t", 0), 0);
    EXPECT_EQ(OdbcEh_DoesTableExist(nullptr, hdbc_, KODBC_OBJECT_ALL, nullptr, "h7_names", 0), 0);
    EXPECT_EQ(OdbcEh_DoesTableExist(nullptr, hdbc_, KODBC_OBJECT_ALL, nullptr, "", 0), 0);
    EXPECT_TRUE(messages_.entries().empty());
}


TEST_P(ExecNamesTest, ColumnNamesOfAnExecutedStatement) {
    odbc::Statement statement(hdbc_);
    ASSERT_TRUE(statement.ok());
    ASSERT_TRUE(odbc::succeeded(SQLExecDirect(statement, (SQLCHAR *)"SELECT id, name, amount FROM h7_names_t", SQL_NTS)));
    GuardedBuffer out(64);
    ASSERT_EQ(Kodbc_GetColumnNamesFromRowSet(statement, 0, out.data(), out.size()), 1);
    EXPECT_EQ(out.text(), "id\tname\tamount");
    ASSERT_EQ(Kodbc_GetColumnNamesFromRowSet(statement, ';', out.data(), out.size()), 1);
    EXPECT_EQ(out.text(), "id;name;amount");
    // "id;name" takes 7 bytes and its terminator; "amount" needs 7 more.
    GuardedBuffer small(14);
    ASSERT_EQ(Kodbc_GetColumnNamesFromRowSet(statement, ';', small.data(), small.size()), 1);
    EXPECT_EQ(small.text(), "id;name");
    EXPECT_TRUE(small.guards_intact());
    EXPECT_EQ(Kodbc_GetColumnNamesFromRowSet(statement, ';', small.data(), 0), 2);
    EXPECT_EQ(Kodbc_GetColumnNamesFromRowSet(nullptr, ';', out.data(), out.size()), 2);
}

TEST_P(ExecNamesTest, TableListStopsAtTheFirstNameThatDoesNotFit) {
    std::vector<char> all(100000);
    ASSERT_EQ(OdbcEh_GetTablesExtended(nullptr, hdbc_, KODBC_OBJECT_TABLE, nullptr, 0, all.data(),
                                       static_cast<int>(all.size()), nullptr), 0);
    std::vector<std::string> names = Split(all.data(), ",");
    EXPECT_NE(std::find(names.begin(), names.end(), "h7_names_t"), names.end());
    ASSERT_GE(names.size(), 1u);

    // Room for the first name and its separator only: exactly that name.
    int size = static_cast<int>(names[0].size()) + 2;
    GuardedBuffer first(size);
    ASSERT_EQ(OdbcEh_GetTablesExtended(nullptr, hdbc_, KODBC_OBJECT_TABLE, nullptr, 0, first.data(), size, ";"), 0);
    EXPECT_EQ(first.text(), names[0]);
    EXPECT_TRUE(first.guards_intact());
    GuardedBuffer none(static_cast<int>(names[0].size()) + 1);
    ASSERT_EQ(OdbcEh_GetTablesExtended(nullptr, hdbc_, KODBC_OBJECT_TABLE, nullptr, 0, none.data(), none.size(), ";"),
              0);
    EXPECT_EQ(none.text(), "");
    EXPECT_TRUE(none.guards_intact());
    EXPECT_EQ(OdbcEh_GetTablesExtended(nullptr, hdbc_, KODBC_OBJECT_TABLE, nullptr, 0, none.data(), 0, ";"), -1);
    EXPECT_EQ(OdbcEh_GetTablesExtended(nullptr, hdbc_, KODBC_OBJECT_TABLE, nullptr, 0, nullptr, 10, ";"), -1);
}

TEST_P(ExecNamesTest, UniqueTableNames) {
    Exec("CREATE TABLE h7_kunden (id INTEGER)");
    Exec("CREATE TABLE h7_kunden_1 (id INTEGER)");
    Exec("CREATE TABLE h7_kunden_3 (id INTEGER)");
    const struct {
        const char *name;
        int size;
        const char *unique;
    } cases[] = {{"h7_kunden", 40, "h7_kunden_2"},
                 {"H7_KUNDEN_1", 40, "H7_KUNDEN_1_1"},
                 {"h7_kunden_free", 40, "h7_kunden_free"},
                 {"", 40, "_1"},
                 {"h7_kunden", 10, "h7_kunden"}};  // cut to the caller's size
    for (const auto &c : cases)
        EXPECT_EQ(GuardedInPlace(c.name, c.size,
                                 [&](char *name, int n) {
                                     EXPECT_EQ(OdbcEh_CreateUniqueTableName(nullptr, hdbc_, nullptr, name, n, 0), 1);
                                 }),
                  c.unique)
            << c.name << " in " << c.size;
    EXPECT_EQ(OdbcEh_CreateUniqueTableName(nullptr, hdbc_, nullptr, nullptr, 10, 0), 2);
    EXPECT_TRUE(messages_.entries().empty());
}

} // namespace
} // namespace kodbc::test
