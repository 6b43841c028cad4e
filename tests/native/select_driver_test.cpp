// The SELECT scanner with the identifier quote character of each real data
// source: rewritten statements run on it, and the connected scans read
// its quoted names. The scans' quoting rules are the scanner's own tests.
#include "test_support.h"

#include <cstdio>
#include <string>
#include <vector>

namespace kodbc::test {
namespace {

class SelectDriver : public DataSourceTest {};

TEST_P(SelectDriver, RewrittenStatementsRunOnTheDatabase) {
    const std::string q(1, Kodbc_GetDelimiter(hdbc_));
    const std::string table = q + "kodbc sel t" + q, name = q + "Kunden Name" + q;
    ExecQuietly("DROP TABLE " + table);
    Exec("CREATE TABLE " + table + " (id INTEGER, " + name + " VARCHAR(20))");
    Exec("INSERT INTO " + table + " VALUES (1, 'Adler')");
    Exec("INSERT INTO " + table + " VALUES (2, 'Zeisig')");
    Exec("INSERT INTO " + table + " VALUES (3, 'Meise')");

    char statement[300];
    std::snprintf(statement, sizeof statement, "SELECT id FROM %s ORDER BY id", table.c_str());
    ASSERT_EQ(Kodbc_Select_Replace_WhereClause(statement, sizeof statement, "id > 1"), 0);
    ASSERT_EQ(Kodbc_Select_Replace_OrderByClause(statement, sizeof statement, (name + " DESC").c_str(), 0), 0);
    ASSERT_EQ(Kodbc_Select_Replace_FieldsClause(statement, sizeof statement,
                                                (name + " AS " + q + "der Name" + q + ", id").c_str(), 0),
              0);
    EXPECT_EQ(Column(statement), (std::vector<std::string>{"Zeisig", "Meise"})) << statement;

    using ConnectedScan = int(KODBC_CALL *)(SQLHDBC, const char *, const char *, int, char *, int);
    const auto scan = [&](ConnectedScan function, int flags) {
        return Guarded(300, [&](char *out, int n) { EXPECT_EQ(function(hdbc_, statement, ";", flags, out, n), 0); });
    };
    EXPECT_EQ(scan(Kodbc_SelectScanFieldsClause, 0), "der Name;id");
    EXPECT_EQ(scan(Kodbc_SelectScanTablesClause, 0), "kodbc sel t");
    EXPECT_EQ(scan(Kodbc_SelectScanOrderByClause, KODBC_SCAN_DESC_SUFFIX), "Kunden Name DESC");

    // Dropping the condition and the sort order again leaves a runnable statement.
    ASSERT_EQ(Kodbc_Select_Replace_WhereClause(statement, sizeof statement, nullptr), 0);
    ASSERT_EQ(Kodbc_Select_Replace_OrderByClause(statement, sizeof statement, "", 0), 0);
    EXPECT_EQ(Column(statement).size(), 3u) << statement;
    EXPECT_TRUE(messages_.entries().empty());
    Exec("DROP TABLE " + table);
}

KODBC_DATA_SOURCE_TEST_SUITE(SelectDriver);

} // namespace
} // namespace kodbc::test
