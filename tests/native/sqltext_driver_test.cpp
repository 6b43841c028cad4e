// Name preparation and the formatter through the exported functions, with
// the quote character and schema usage of each real data source.
#include "test_support.h"

#include <cstring>
#include <string>

namespace kodbc::test {
namespace {

class SqlTextDriver : public DataSourceTest {
protected:
    void SetUp() override {
        DataSourceTest::SetUp();
        q_ = std::string(1, Kodbc_GetDelimiter(hdbc_));
    }
    void TearDown() override {
        EXPECT_TRUE(messages_.entries().empty()) << messages_.entries().front().text;
        DataSourceTest::TearDown();
    }

    std::string Sql92(const char *name, int size = 200) {
        return Guarded(size, [&](char *out, int n) { Kodbc_PrepareNameForSql92(hdbc_, name, out, n); });
    }
    std::string Format(const char *pattern, const char *a1 = nullptr, const char *a2 = nullptr,
                       const char *a3 = nullptr, const char *a4 = nullptr) {
        return Guarded(400, [&](char *out, int n) {
            Kodbc_SprintfSqlStatement(hdbc_, out, n, pattern, a1, a2, a3, a4, nullptr, nullptr, nullptr, nullptr);
        });
    }
    std::string q_;
};

TEST_P(SqlTextDriver, QuotesWithTheDriversCharacter) {
    ASSERT_TRUE(q_ == "\"" || q_ == "`") << "quote character " << q_;
    // The text rules themselves are the name preparation's own tests.
    EXPECT_EQ(Sql92("Meine Tabelle"), q_ + "Meine Tabelle" + q_);
    EXPECT_EQ(Sql92((q_ + "Kunden" + q_).c_str()), "Kunden");

    GuardedBuffer same(40);
    std::strcpy(same.data(), "dbo.Meine Tabelle");
    Kodbc_PrepareNameForSql92(hdbc_, same.data(), same.data(), same.size());
    EXPECT_EQ(same.text(), "dbo." + q_ + "Meine Tabelle" + q_);
    EXPECT_TRUE(same.guards_intact());

    GuardedBuffer list(60);
    std::strcpy(list.data(), "Kunden\tMeine Tabelle\t2010");
    Kodbc_PrepareNameListForSql92(hdbc_, list.data(), list.size(), '\t', ',', 0);
    EXPECT_EQ(list.text(), "Kunden," + q_ + "Meine Tabelle" + q_ + "," + q_ + "2010" + q_);
    EXPECT_TRUE(list.guards_intact());
}

TEST_P(SqlTextDriver, QuoteAndStripRoundTrip) {
    GuardedBuffer name(40);
    std::strcpy(name.data(), "dbo.Meine Tabelle");
    Kodbc_QuoteNameIfNotPureSql(hdbc_, name.data(), name.size());
    EXPECT_EQ(name.text(), q_ + "dbo.Meine Tabelle" + q_);
    std::strcpy(name.data(), "Kunden");
    Kodbc_QuoteNameIfNotPureSql(hdbc_, name.data(), name.size());
    EXPECT_EQ(name.text(), "Kunden");
    EXPECT_TRUE(name.guards_intact());

    std::string quoted = " " + q_ + q_ + "dbo" + q_ + q_ + " . " + q_ + "Meine Tabelle" + q_;
    std::strcpy(name.data(), quoted.c_str());
    Kodbc_StripDelimitersFromName(hdbc_, name.data());
    EXPECT_EQ(name.text(), q_ + "dbo" + q_ + ".Meine Tabelle");

    std::strcpy(name.data(), "[dbo].[Kunden]");
    Kodbc_StripBracketsFromSqlName(name.data());
    EXPECT_EQ(name.text(), "dbo.Kunden");
}

TEST_P(SqlTextDriver, SchemaSplitFollowsSchemaUsage) {
    GuardedBuffer schema(20), table(20);
    Kodbc_ParseSchemaAndTable(hdbc_, "public.Kunden.x", schema.data(), schema.size(), table.data(), table.size());
    if (Kodbc_GetSchemaUsage(hdbc_) == 0) {
        EXPECT_EQ(schema.text(), "");
        EXPECT_EQ(table.text(), "public.Kunden.x");
    } else {
        EXPECT_EQ(schema.text(), "public");
        EXPECT_EQ(table.text(), "Kunden");
    }
    // Without a connection the name is always split.
    Kodbc_ParseSchemaAndTable(nullptr, "public.Kunden", schema.data(), schema.size(), table.data(), table.size());
    EXPECT_EQ(schema.text(), "public");
    EXPECT_EQ(table.text(), "Kunden");
    EXPECT_TRUE(schema.guards_intact());
    EXPECT_TRUE(table.guards_intact());
}

// The formatter's statements run on the DBMS: names with blanks or a
// leading digit are quoted so that the driver accepts them.
TEST_P(SqlTextDriver, FormattedStatementsRun) {
    const char *table = "kodbc Probe 2010";
    ExecQuietly(Format("DROP TABLE %t", table));
    Exec(Format("CREATE TABLE %t (%f INTEGER, %f VARCHAR(20))", table, "Kunden Nr", "Name"));
    Exec(Format("INSERT INTO %t (%f, %f) VALUES (%s, 'a')", table, "Kunden Nr", "Name", "7"));
    EXPECT_EQ(Column(Format("SELECT Count(*) FROM %t", table)), std::vector<std::string>{"1"});
    EXPECT_EQ(Column(Format("SELECT %f FROM %t", "Kunden Nr", table)), std::vector<std::string>{"7"});
    Exec(Format("DROP TABLE %t", table));
}

TEST_P(SqlTextDriver, FormatterPlaceholders) {
    EXPECT_EQ(Format("SELECT %f FROM %t%.%t", "Kunden Nr", "", "Meine Tabelle"),
              "SELECT " + q_ + "Kunden Nr" + q_ + " FROM " + q_ + "Meine Tabelle" + q_);
    EXPECT_EQ(Format("%t%.%t", "dbo", "Meine Tabelle"), "dbo." + q_ + "Meine Tabelle" + q_);

    GuardedBuffer eight(40);
    Kodbc_SprintfSqlStatement(hdbc_, eight.data(), eight.size(), "%s%s%s%s%s%s%s%s", "1", "2", "3", "4", "5", "6",
                              "7", "8");
    EXPECT_EQ(eight.text(), "1234567s");
    EXPECT_TRUE(eight.guards_intact());
}

KODBC_DATA_SOURCE_TEST_SUITE(SqlTextDriver);

// Without a connection the SQL-92 functions treat the driver as one that
// does not quote, and nothing is shown.
TEST(SqlTextNoConnection, NamesPassUnchanged) {
    MessageRecorder messages;
    GuardedBuffer out(40);
    Kodbc_PrepareNameForSql92(nullptr, " Meine Tabelle ", out.data(), out.size());
    EXPECT_EQ(out.text(), " Meine Tabelle ");
    Kodbc_SprintfSqlStatement(nullptr, out.data(), out.size(), "SELECT * FROM %t", "dbo.Meine Tabelle", nullptr,
                              nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
    EXPECT_EQ(out.text(), "SELECT * FROM dbo.Meine Tabelle");
    std::strcpy(out.data(), "Meine Tabelle");
    Kodbc_QuoteNameIfNotPureSql(nullptr, out.data(), out.size());
    EXPECT_EQ(out.text(), "Meine Tabelle");
    std::strcpy(out.data(), " \"a\" . b ");
    Kodbc_StripDelimitersFromName(nullptr, out.data());
    EXPECT_EQ(out.text(), "\"a\".b");
    EXPECT_TRUE(out.guards_intact());

    GuardedBuffer tiny(1);
    Kodbc_PrepareNameForSql(tiny.data(), 0, 0);
    Kodbc_PrepareNameForSql92(nullptr, "x", tiny.data(), 0);
    EXPECT_TRUE(tiny.guards_intact());
    EXPECT_TRUE(messages.entries().empty());
}

} // namespace
} // namespace kodbc::test
