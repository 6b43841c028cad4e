// The query object: descriptors in and out, the statement it makes, the
// designer's rules, and its test on each data source.
#include "test_support.h"

#include "select/selfact.h"

#include <kodbc/kodbc_selfact.h>

namespace kodbc::test {
namespace {

// A query on hdbc, destroyed with the test.
class Query {
public:
    explicit Query(SQLHDBC hdbc, unsigned flags = 0, const char *schema = "") {
        EXPECT_EQ(Kodbc_SelFact_Create(&query_, hdbc, schema, flags), SELFACT_OK);
    }
    ~Query() { Kodbc_SelFact_Destroy(query_); }
    Query &Set(int part, const std::string &text) {
        Kodbc_SelFact_SetDescriptor(query_, part, text.c_str(), 0);
        return *this;
    }
    std::string Get(int part, int size = 2000) const {
        std::vector<char> out(static_cast<std::size_t>(size), '\x7f');
        Kodbc_SelFact_GetDescriptor(query_, part, out.data(), size, 0);
        return out.data();
    }
    std::string Sql(int size = 2000) const {
        std::vector<char> out(static_cast<std::size_t>(size), '\x7f');
        EXPECT_EQ(Kodbc_SelFact_CreateSql(query_, out.data(), size, 0), SELFACT_OK);
        return out.data();
    }
    SelFact *get() const { return query_; }

private:
    SelFact *query_ = nullptr;
};

TEST(SelFact, DescriptorsReadKeysAnyCaseAndWriteThemBack) {
    Query q(nullptr);
    q.Set(SELFACT_TABLES, "Kunden\tk\t\t\t\t\nAuftraege\ta\tlj\tgt\tk.Nr\ta.KdNr\nOrte\t\tXX\tzz\t\t");
    EXPECT_EQ(q.Get(SELFACT_TABLES), "Kunden\tk\t\tEQ\t\t\nAuftraege\ta\tLJ\tGT\tk.Nr\ta.KdNr\nOrte\t\t\tEQ\t\t");
    q.Set(SELFACT_COLUMNS, "k.Name\tKunde\n\nk.*\t");
    EXPECT_EQ(q.Get(SELFACT_COLUMNS), "k.Name\tKunde\nk.*\t") << "an empty line holds no entry";
    q.Set(SELFACT_COLUMNS, std::string(1200, 'x'));
    EXPECT_EQ(q.Get(SELFACT_COLUMNS, 5000), std::string(999, 'x') + "\t") << "fields are read up to 999 characters";
    EXPECT_EQ(q.Get(SELFACT_TABLES, 7), "Kunden") << "cut to the caller's size";
    EXPECT_EQ(q.Set(SELFACT_SORT, "a\tDESC").Set(SELFACT_SORT, "b\t").Get(SELFACT_SORT), "b\t") << "replaced";
    char untouched[4] = {'x', 'y', 'z', 0};
    Kodbc_SelFact_GetDescriptor(q.get(), 7, untouched, sizeof untouched, 0);
    EXPECT_STREQ(untouched, "xyz") << "another part number writes nothing";
}

TEST(SelFact, StatementFromTheParts) {
    const struct {
        const char *tables, *columns, *sort, *expected;
    } cases[] = {
        {"Kunden\tk\t\t\t\t\nAuftraege\ta\tLJ\tEQ\tk.Nr\ta.KdNr\nOrte\t\t\t\t\t", "k.Name\tKunde\na.*\t", "",
         "SELECT k.Name AS Kunde, a.* FROM Kunden AS k LEFT JOIN Auftraege AS a ON k.Nr = a.KdNr, Orte"},
        // The ordering operators are written mirrored.
        {"a\t\t\t\t\t\nb\t\tIJ\tGT\ta.x\tb.y\nc\t\tRJ\tLE\tb.y\tc.z", "x\t", "x\tasc\ny\tDESC",
         "SELECT x FROM a INNER JOIN b ON a.x < b.y RIGHT JOIN c ON b.y >= c.z ORDER BY x, y DESC"},
        {"t\t\t\t\t\t", "", "", "SELECT FROM t"},
        {"", "", "", "SELECT"},
    };
    for (const auto &c : cases) {
        Query q(nullptr);
        q.Set(SELFACT_TABLES, c.tables).Set(SELFACT_COLUMNS, c.columns).Set(SELFACT_SORT, c.sort);
        EXPECT_EQ(q.Sql(), c.expected);
    }
    Query q(nullptr);
    q.Set(SELFACT_TABLES, "t\t\t\t\t\t").Set(SELFACT_COLUMNS, "a\t");
    EXPECT_EQ(q.Sql(12), "SELECT a FR");
    EXPECT_EQ(Kodbc_SelFact_CreateSql(nullptr, nullptr, 0, 0), SELFACT_NO_QUERY);
    EXPECT_EQ(Kodbc_SelFact_ParseSql(q.get(), "SELECT * FROM anything_else", 0), SELFACT_OK);
    EXPECT_EQ(q.Sql(), "SELECT a FROM t") << "SQL is never read back";
    EXPECT_EQ(Kodbc_SelFact_ParseSql(nullptr, "", 0), SELFACT_NO_QUERY);
}

TEST(SelFact, DesignerRulesInTheirOrder) {
    const struct {
        const char *tables, *columns;
        int message;
    } cases[] = {
        {"", "a\t", 1625},
        {"t\t\tLJ\tEQ\tx\ty", "a\t", 1653},
        {"t\t\t\t\t\nu\t\t\t\t\t", "a\t", 1654},
        {"t\t\t\t\t\nu\t\tIJ\tEQ\tt.a\tu.a", "", 1655},
        {"t\t\t\t\t\nu\t\tIJ\tEQ\tt.a\t", "a\t", 1652},
        {"t\t\t\t\t\nu\t\tIJ\tEQ\tt.a\tu.a", "a\t", 0},
    };
    for (const auto &c : cases) {
        Query q(nullptr);
        q.Set(SELFACT_TABLES, c.tables).Set(SELFACT_COLUMNS, c.columns);
        EXPECT_EQ(select::CheckSelFact(*q.get()), c.message) << c.tables;
    }
}

class SelFactOn : public DataSourceTest {};

TEST_P(SelFactOn, WhereClauseAndTheTestWithAndWithoutView) {
    OwnTables({"kodbc_sf", "VIEW __KORVEL_TEST__"});
    Exec("CREATE TABLE kodbc_sf (nr INTEGER, ort VARCHAR(20))");
    for (unsigned flags : {0u, static_cast<unsigned>(SELFACT_VIEW)}) {
        SCOPED_TRACE(flags);
        Query q(hdbc_, flags);
        q.Set(SELFACT_TABLES, "kodbc_sf\t\t\t\t\t").Set(SELFACT_COLUMNS, "nr\t\nort\t");
        q.Set(SELFACT_SELECTION, "ort\tBW\tB\t12\n");
        EXPECT_EQ(q.Sql(), "SELECT nr, ort FROM kodbc_sf WHERE (ort LIKE 'B%')");
        messages_.clear();
        EXPECT_EQ(select::TestSelFact(*q.get()), 1);
        EXPECT_EQ(OdbcErrors(), 0u);
        EXPECT_EQ(Kodbc_DoesTableExist(hdbc_, KODBC_OBJECT_ALL, "__KORVEL_TEST__"), 0) << "the test view is gone";
        // SQLite checks a view's columns only when the view is used.
        const bool refused = !(flags & SELFACT_VIEW) || DbmsName() != "SQLite";
        q.Set(SELFACT_COLUMNS, "nicht_da\t");
        EXPECT_EQ(select::TestSelFact(*q.get()), refused ? 2 : 1);
        EXPECT_EQ(OdbcErrors(), refused ? 1u : 0u) << "the failure is shown";
        EXPECT_EQ(Kodbc_DoesTableExist(hdbc_, KODBC_OBJECT_ALL, "__KORVEL_TEST__"), 0);
    }
}

KODBC_DATA_SOURCE_TEST_SUITE(SelFactOn);

} // namespace
} // namespace kodbc::test
