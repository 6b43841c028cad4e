// The SELECT scanner with the identifier quote character of each real data
// source, and rewritten statements run on it.
#include "test_support.h"

#include <cstdio>
#include <string>
#include <vector>

namespace kodbc::test {
namespace {

class SelectDriver : public DataSourceTest {
protected:
    void SetUp() override {
        DataSourceTest::SetUp();
        q_ = std::string(1, Kodbc_GetDelimiter(hdbc_));
        ASSERT_TRUE(q_ == "\"" || q_ == "`") << "quote character " << q_;
    }
    void TearDown() override {
        EXPECT_TRUE(messages_.entries().empty()) << messages_.entries().front().text;
        DataSourceTest::TearDown();
    }

    std::string Q(const std::string &name) const { return q_ + name + q_; }

    using ConnectedScan = int(KODBC_CALL *)(SQLHDBC, const char *, const char *, int, char *, int);
    std::string Scan(ConnectedScan scan, const std::string &statement, int flags = 0, int size = 300) {
        return Guarded(size, [&](char *out, int n) {
            EXPECT_EQ(scan(hdbc_, statement.c_str(), ";", flags, out, n), 0) << statement;
        });
    }

    std::string q_;
};

// The scans' quoting rules are the scanner's own tests; here the driver's
// quote character reaches them, and rewritten statements run.
TEST_P(SelectDriver, RewrittenStatementsRunOnTheDatabase) {
    const std::string table = Q("kodbc sel t");
    ExecQuietly("DROP TABLE " + table);
    Exec("CREATE TABLE " + table + " (id INTEGER, " + Q("Kunden Name") + " VARCHAR(20))");
    Exec("INSERT INTO " + table + " VALUES (1, 'Adler')");
    Exec("INSERT INTO " + table + " VALUES (2, 'Zeisig')");
    Exec("INSERT INTO " + table + " VALUES (3, 'Meise')");

    char statement[300];
    std::snprintf(statement, sizeof statement, "SELECT id FROM %s ORDER BY id", table.c_str());
    ASSERT_EQ(Kodbc_Select_Replace_WhereClause(statement, sizeof statement, "id > 1"), 0);
    ASSERT_EQ(Kodbc_Select_Replace_OrderByClause(statement, sizeof statement, (Q("Kunden Name") + " DESC").c_str(), 0),
              0);
    ASSERT_EQ(Kodbc_Select_Replace_FieldsClause(statement, sizeof statement,
                                                (Q("Kunden Name") + " AS " + Q("der Name") + ", id").c_str(), 0),
              0);
    EXPECT_EQ(Column(statement), (std::vector<std::string>{"Zeisig", "Meise"})) << statement;

    EXPECT_EQ(Scan(Kodbc_SelectScanFieldsClause, statement), "der Name;id");
    EXPECT_EQ(Scan(Kodbc_SelectScanTablesClause, statement), "kodbc sel t");
    EXPECT_EQ(Scan(Kodbc_SelectScanOrderByClause, statement, KODBC_SCAN_DESC_SUFFIX), "Kunden Name DESC");

    // Dropping the condition and the sort order again leaves a runnable statement.
    ASSERT_EQ(Kodbc_Select_Replace_WhereClause(statement, sizeof statement, nullptr), 0);
    ASSERT_EQ(Kodbc_Select_Replace_OrderByClause(statement, sizeof statement, "", 0), 0);
    EXPECT_EQ(Column(statement).size(), 3u) << statement;
    Exec("DROP TABLE " + table);
}

KODBC_DATA_SOURCE_TEST_SUITE(SelectDriver);

} // namespace
} // namespace kodbc::test
