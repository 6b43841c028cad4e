// The SELECT scanner's clauses, items, scans and replacements without a connection,
// outputs behind guards; then with each data source's quote, the rewritten statements run.
#include "test_support.h"

#include "select/select_scanner.h"

#include <cstdio>
#include <string>
#include <vector>

namespace kodbc::test {
namespace {

const char *const kSample = "select a, b as x from t1, OUTER t2 order by a desc, b";

class SelectScanner : public ::testing::Test {
protected:
    std::string Clause(const char *statement, const char *keyword, const char *second = nullptr, int size = 300) {
        return Guarded(size, [&](char *out, int n) {
            EXPECT_EQ(Kodbc_Select_Get_Clause(statement, keyword, second, out, n), 0);
        });
    }

    using ScanFunction = int(KODBC_CALL *)(const char *, const char *, int, char *, int);
    std::string Scan(ScanFunction scan, const char *statement, const char *separator, int expectedResult = 0,
                     int size = 300) {
        return Guarded(size, [&](char *out, int n) {
            EXPECT_EQ(scan(statement, separator, 0, out, n), expectedResult) << statement;
        });
    }
    std::string Fields(const char *statement, const char *separator = ";", int expectedResult = 0, int size = 300) {
        return Scan(Kodbc_Select_Scan_FieldsClause, statement, separator, expectedResult, size);
    }
    std::string Tables(const char *statement, const char *separator = ";", int expectedResult = 0) {
        return Scan(Kodbc_Select_Scan_TablesClause, statement, separator, expectedResult);
    }
    std::string SortKeys(const char *statement, int flags = 0, const char *separator = ";", int size = 300) {
        return Guarded(size, [&](char *out, int n) {
            EXPECT_EQ(Kodbc_SelectScanOrderByClause(nullptr, statement, separator, flags, out, n), 0) << statement;
        });
    }

    using ReplaceFunction = int(KODBC_CALL *)(char *, int, const char *, int);
    std::string Replace(ReplaceFunction replace, const std::string &statement, const char *clause,
                        int size = 300) {
        return GuardedInPlace(statement, size, [&](char *buffer, int n) {
            EXPECT_EQ(replace(buffer, n, clause, 0), 0) << statement;
        });
    }
    static int KODBC_CALL Where(char *statement, int size, const char *clause, int) {
        return Kodbc_Select_Replace_WhereClause(statement, size, clause);
    }

    int BracketMessages() const {
        int count = 0;
        for (const auto &entry : messages_.entries())
            if (entry.text.find("unerwartete") != std::string::npos) ++count;
        return count;
    }

    MessageRecorder messages_;
};

TEST_F(SelectScanner, FindsClauses) {
    const char *grouped = "SELECT a FROM t GROUP BY a HAVING Count(*) > 1";
    const char *nested = "SELECT (SELECT Max(x) FROM u) m FROM t WHERE y IN (SELECT z FROM w ORDER BY z) ORDER BY m";
    const struct {
        const char *statement, *keyword, *second, *clause;
    } cases[] = {
        // Keywords in any case.
        {kSample, "SELECT", nullptr, "a, b as x"},
        {kSample, "ORDER", "BY", "a desc, b"},
        {kSample, "WHERE", nullptr, ""},
        // GROUP is a clause of its own, ended at once by the keyword BY; the
        // grouping columns are read as the two-word clause.
        {grouped, "GROUP", nullptr, ""},
        {grouped, "GROUP", "BY", "a"},
        {grouped, "HAVING", nullptr, "Count(*) > 1"},
        {"SELECT a FROM t WHERE x = 1 GROUP BY a", "WHERE", nullptr, "x = 1"},
        // Any white space between the words; trailing white space is no part.
        {"SELECT a\r\nFROM\tt \r\n ORDER \n BY  b  \r\n", "ORDER", "BY", "b"},
        {"SELECT a FROM t INTO TEMP x", "INTO", nullptr, ""},  // ends at TEMP at once
        // The second keyword must follow the first: "order" as a column is passed over.
        {"SELECT order FROM t ORDER BY a", "ORDER", "BY", "a"},
        {"SELECT a FROM t ORDER x BY a", "ORDER", "BY", ""},
        // Quotes and parentheses hide keywords; an unterminated quote runs to the end.
        {"SELECT 'from x', \"where\" FROM t", "SELECT", nullptr, "'from x', \"where\""},
        {nested, "SELECT", nullptr, "(SELECT Max(x) FROM u) m"},
        {nested, "ORDER", "BY", "m"},
        {"SELECT 'abc FROM t", "FROM", nullptr, ""},
        {"SELECT ')' FROM t", "FROM", nullptr, "t"},
        // Words are runs of letters: "_" ends ORDER, which then ends the column list.
        {"SELECT ORDER_NR FROM t", "SELECT", nullptr, ""},
        {"SELECT x1from FROM t", "SELECT", nullptr, "x1"},
        {"SELECT fromage FROM t", "SELECT", nullptr, "fromage"},
        // Cut to the buffer; no statement or keyword gives nothing.
        {nullptr, "FROM", nullptr, ""},
        {kSample, nullptr, nullptr, ""},
    };
    for (const auto &c : cases)
        EXPECT_EQ(Clause(c.statement, c.keyword, c.second), c.clause)
            << (c.statement ? c.statement : "(null)") << " / " << (c.keyword ? c.keyword : "(null)");
    EXPECT_EQ(Clause(kSample, "FROM", nullptr, 7), "t1, OU");
    EXPECT_EQ(BracketMessages(), 0);
    EXPECT_EQ(Kodbc_Select_Get_Clause(kSample, "FROM", nullptr, nullptr, 10), -1);
    char one = 'x';
    EXPECT_EQ(Kodbc_Select_Get_Clause(kSample, "FROM", nullptr, &one, 0), -1);
    EXPECT_EQ(one, 'x');
}

TEST_F(SelectScanner, StrayClosingBracketMakesEveryClauseAbsent) {
    EXPECT_EQ(Fields("SELECT a FROM t)", ";", -1), "");
    ASSERT_EQ(BracketMessages(), 1);
    const std::string &text = messages_.entries().back().text;
    EXPECT_EQ(text.substr(text.size() - 2), "\n)") << text;
    // Even a clause in front of the bracket is absent; one message per call.
    messages_.clear();
    EXPECT_EQ(Clause("SELECT a) FROM t ORDER BY b", "ORDER", "BY"), "");
    EXPECT_EQ(BracketMessages(), 1);
    EXPECT_NE(messages_.entries().back().text.find(") FROM t ORDER BY b"), std::string::npos);
    messages_.clear();
    EXPECT_EQ(SortKeys("SELECT a FROM t) ORDER BY b"), "");
    EXPECT_EQ(Tables("SELECT a FROM (t))", ";", -1), "");
    EXPECT_EQ(BracketMessages(), 2);
    messages_.clear();
    // The replacements look for several clauses; still one message.
    Replace(Kodbc_Select_Replace_OrderByClause, "SELECT a FROM t) WHERE x", "b");
    EXPECT_EQ(BracketMessages(), 1);
}

// Items and their cuts; without a connection no quote character protects a comma.
TEST_F(SelectScanner, ScansCutTheClauseIntoItems) {
    EXPECT_EQ(Fields(kSample, nullptr), "a,x");
    EXPECT_EQ(Tables(kSample, nullptr), "t1,t2");
    EXPECT_EQ(SortKeys(kSample, 0, nullptr), "a,b");
    EXPECT_EQ(SortKeys(kSample, KODBC_SCAN_DESC_SUFFIX | KODBC_SCAN_DIRECTION_TAB, " | "), "a DESC\tD | b\tA");
    EXPECT_EQ(Scan(Kodbc_Select_Scan_OrderByClause, kSample, ";"), "a;b");
    EXPECT_EQ(Fields(kSample, ""), "ax");
    EXPECT_EQ(Fields("SELECT f(a,b) FROM t"), "f(a;b)");
    EXPECT_EQ(Fields("SELECT 'x,y' AS c FROM t"), "'x;c");
    EXPECT_EQ(Fields("SELECT \"a,b\" FROM t"), "\"a;b\"");
    // White space of any kind separates words; empty items give nothing.
    EXPECT_EQ(Fields("SELECT\ta\tAS\tx,\r\n  b ,, c  d FROM t"), "x;b;d");
    EXPECT_EQ(Fields("SELECT DISTINCT a, t.b FROM t"), "a;t.b");
    EXPECT_EQ(Tables("SELECT * FROM t1 x, outer t2 AS y, s.t3"), "t1;t2;s.t3");
    EXPECT_EQ(Tables("SELECT * FROM outer"), "");
    EXPECT_EQ(SortKeys("SELECT * FROM t ORDER BY a Desc, b descending, c ASC, d DESC x", KODBC_SCAN_DIRECTION_TAB),
              "a\tD;b\tA;c\tA;d\tD");
    const std::string longName(150, 'n');
    EXPECT_EQ(Fields(("SELECT " + longName + " FROM t").c_str()), std::string(99, 'n'));
    // The item is cut at 199 first: its alias loses its end too.
    const std::string item = std::string(180, 'c') + " AS " + std::string(50, 'a');
    EXPECT_EQ(Fields(("SELECT " + item + ", z FROM t").c_str()), std::string(15, 'a') + ";z");
}

TEST_F(SelectScanner, ResultsArgumentsAndBuffers) {
    EXPECT_EQ(Fields("UPDATE t SET a = 1", ";", -1), "");
    EXPECT_EQ(Fields("SELECT FROM t", ";", -1), "");
    EXPECT_EQ(Fields(nullptr, ";", 0), "");
    EXPECT_EQ(Tables("SELECT a", ";", -1), "");
    EXPECT_EQ(Tables("FROM t", ";", -1), "");
    EXPECT_EQ(SortKeys("SELECT a FROM t"), "");
    EXPECT_EQ(Fields(kSample, ",", 0, 3), "a,");
    EXPECT_EQ(Kodbc_Select_Scan_FieldsClause(kSample, ",", 0, nullptr, 10), -1);
    EXPECT_EQ(Kodbc_Select_Scan_OrderByClause(kSample, ",", 0, nullptr, 10), -1);
    char out[4] = "abc";
    EXPECT_EQ(Kodbc_Select_Scan_TablesClause(kSample, ",", 0, out, 0), -1);
    EXPECT_STREQ(out, "abc");
    EXPECT_EQ(Kodbc_Select_Replace_WhereClause(nullptr, 10, "x"), -1);
    char statement[16] = "SELECT a FROM t";
    EXPECT_EQ(Kodbc_Select_Replace_OrderByClause(statement, 0, "x", 0), -1);
    EXPECT_EQ(Kodbc_Select_Replace_TablesClause(statement, -5, "x", 0), -1);
    EXPECT_STREQ(statement, "SELECT a FROM t");
    // The new text may live in the statement buffer itself, even in the part replaced.
    char buffer[64] = "SELECT a FROM t ORDER BY b";
    EXPECT_EQ(Kodbc_Select_Replace_OrderByClause(buffer, sizeof buffer, buffer + 7, 0), 0);
    EXPECT_STREQ(buffer, "SELECT a FROM t ORDER BY a FROM t ORDER BY b");
}

// Every part of a qualified name loses its quotes.
TEST_F(SelectScanner, QuotedNamesKeepTheirBlanksAndCommas) {
    select::ScanContext context{'`'};
    const char *statement =
        "SELECT `Kunden Nr` AS `Nr, alt`, b, `k`.`a b` FROM `Meine Tabelle` k, outer `x,y` ORDER BY `Kunden Nr` desc, b";
    EXPECT_EQ(Guarded(300, [&](char *out, int n) { select::ScanFields(context, statement, ";", out, n); }),
              "Nr, alt;b;k.a b");
    EXPECT_EQ(Guarded(300, [&](char *out, int n) { select::ScanTables(context, statement, ";", out, n); }),
              "Meine Tabelle;x,y");
    EXPECT_EQ(Guarded(300, [&](char *out, int n) { select::ScanOrderBy(context, statement, ";", 6, out, n); }),
              "Kunden Nr DESC\tD;b\tA");
}

TEST_F(SelectScanner, ReplacementsKeepTheClauseOrder) {
    const ReplaceFunction order = Kodbc_Select_Replace_OrderByClause, fields = Kodbc_Select_Replace_FieldsClause,
                          tables = Kodbc_Select_Replace_TablesClause, where = Where;
    const struct {
        ReplaceFunction replace;
        const char *statement, *clause, *expected;
        int size = 300;
    } cases[] = {
        {order, "SELECT * FROM t", "a", "SELECT * FROM t ORDER BY a"},
        {order, "select * from t order by b desc", "a", "select * from t ORDER BY a"},
        {order, "SELECT * FROM t ORDER BY a", nullptr, "SELECT * FROM t "},
        {order, "SELECT * FROM t", "", "SELECT * FROM t"},
        {order, "SELECT * FROM t ORDER BY a INTO TEMP x", "b", "SELECT * FROM t ORDER BY b INTO TEMP x"},
        // WHERE ends up behind the tables; replacing the sort order moves one left behind it.
        {where, "SELECT * FROM t ORDER BY a", "x=1", "SELECT * FROM t WHERE x=1 ORDER BY a "},
        {where, "SELECT * FROM t WHERE y=2 ORDER BY a", "x=1", "SELECT * FROM t WHERE x=1 ORDER BY a"},
        {where, "SELECT * FROM t WHERE y=2 ORDER BY a", "", "SELECT * FROM t  ORDER BY a"},
        {where, "SELECT * FROM t", "x IN (1, 2)", "SELECT * FROM t WHERE x IN (1, 2)"},
        {order, "SELECT * FROM t ORDER BY a WHERE x=1", "b", "SELECT * FROM t WHERE x=1 ORDER BY b "},
        {where, "SELECT 1", "x=1", "SELECT 1 WHERE x=1"},  // without a FROM clause nothing is moved
        // Columns and tables are replaced inside their frame.
        {fields, "", "a,b", "SELECT a,b FROM"},
        {fields, "SELECT a FROM t WHERE x=1", "b, c", "SELECT b, c FROM t WHERE x=1"},
        {fields, "SELECT a FROM t", "", "SELECT FROM t"},
        {fields, "SELECT a", "b", "SELECT b FROM"},
        {fields, "DELETE FROM t", "b", "SELECT b FROM"},
        {tables, "select a from t where x", "u, v", "select a FROM u, v where x"},
        {tables, "SELECT a FROM t ORDER BY a", "", "SELECT a FROM ORDER BY a"},
        // Everything stays inside the buffer.
        {order, "SELECT * FROM t", "abcdef", "SELECT * FROM t ORD", 20},
        {fields, "", "a,b", "SELECT ", 8},
        {fields, "", "a,b", "", 1},
        {where, "SELECT * FROM t ORDER BY a", "x=1", "SELECT * FROM t ORDER BY a WH", 30},
        {where, "SELECT * FROM t ORDER BY a", "x=1", "SELECT * FROM t WHERE x ORDER BY a", 35},
    };
    for (const auto &c : cases)
        EXPECT_EQ(Replace(c.replace, c.statement, c.clause, c.size), c.expected)
            << c.statement << " / " << (c.clause ? c.clause : "(null)") << " in " << c.size;
}

class SelectDriver : public DataSourceTest {};

TEST_P(SelectDriver, RewrittenStatementsRunOnTheDatabase) {
    const std::string q(1, Kodbc_GetDelimiter(hdbc_));
    const std::string table = q + "kodbc sel t" + q, name = q + "Kunden Name" + q;
    OwnTables({table});
    Exec("CREATE TABLE " + table + " (id INTEGER, " + name + " VARCHAR(20))");
    Exec("INSERT INTO " + table + " VALUES (1, 'Adler'), (2, 'Zeisig'), (3, 'Meise')");

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
}

KODBC_DATA_SOURCE_TEST_SUITE(SelectDriver);

} // namespace
} // namespace kodbc::test
