// Name preparation and the formatter through the exported functions, with
// the quote character and schema usage of each real data source.
#include "test_support.h"

#include <cstring>
#include <string>

namespace kodbc::test {
namespace {

class SqlTextDriver : public DataSourceTest {};

TEST_P(SqlTextDriver, QuotesStripsAndSplitsAsTheDriverSays) {
    const std::string q(1, Kodbc_GetDelimiter(hdbc_));
    ASSERT_TRUE(q == "\"" || q == "`") << "quote character " << q;
    EXPECT_EQ(Guarded(200, [&](char *out, int n) { Kodbc_PrepareNameForSql92(hdbc_, "Meine Tabelle", out, n); }),
              q + "Meine Tabelle" + q);
    EXPECT_EQ(GuardedInPlace("Kunden\tMeine Tabelle\t2010", 60,
                             [&](char *list, int n) { Kodbc_PrepareNameListForSql92(hdbc_, list, n, '\t', ',', 0); }),
              "Kunden," + q + "Meine Tabelle" + q + "," + q + "2010" + q);
    EXPECT_EQ(GuardedInPlace("dbo.Meine Tabelle", 40,
                             [&](char *name, int n) { Kodbc_QuoteNameIfNotPureSql(hdbc_, name, n); }),
              q + "dbo.Meine Tabelle" + q);

    char name[40];
    std::strcpy(name, (" " + q + q + "dbo" + q + q + " . " + q + "Meine Tabelle" + q).c_str());
    Kodbc_StripDelimitersFromName(hdbc_, name);
    EXPECT_EQ(name, q + "dbo" + q + ".Meine Tabelle");

    // The schema is split off only where the driver uses schemas.
    GuardedBuffer schema(20), table(20);
    Kodbc_ParseSchemaAndTable(hdbc_, "public.Kunden.x", schema.data(), schema.size(), table.data(), table.size());
    const bool split = Kodbc_GetSchemaUsage(hdbc_) != 0;
    EXPECT_EQ(schema.text() + "|" + table.text(), split ? "public|Kunden" : "|public.Kunden.x");
    EXPECT_TRUE(schema.guards_intact() && table.guards_intact());
    EXPECT_EQ(Guarded(100, [&](char *out, int n) {
                  Kodbc_SprintfSqlStatement(hdbc_, out, n, "SELECT %f FROM %t", "Kunden Nr", "2010", nullptr, nullptr,
                                            nullptr, nullptr, nullptr, nullptr);
              }),
              "SELECT " + q + "Kunden Nr" + q + " FROM " + q + "2010" + q);
    EXPECT_TRUE(messages_.entries().empty());
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
    // All eight arguments reach the formatter, which takes seven.
    Kodbc_SprintfSqlStatement(nullptr, out.data(), out.size(), "%s%s%s%s%s%s%s%s", "1", "2", "3", "4", "5", "6", "7",
                              "8");
    EXPECT_EQ(out.text(), "1234567s");
    std::strcpy(out.data(), "Meine Tabelle");
    Kodbc_QuoteNameIfNotPureSql(nullptr, out.data(), out.size());
    EXPECT_EQ(out.text(), "Meine Tabelle");
    std::strcpy(out.data(), " \"a\" . b ");
    Kodbc_StripDelimitersFromName(nullptr, out.data());
    EXPECT_EQ(out.text(), "\"a\".b");
    std::strcpy(out.data(), "[dbo].[Kunden]");
    Kodbc_StripBracketsFromSqlName(out.data());
    EXPECT_EQ(out.text(), "dbo.Kunden");
    EXPECT_TRUE(out.guards_intact());
    // Without a connection the name is always split.
    GuardedBuffer schema(20), table(20);
    Kodbc_ParseSchemaAndTable(nullptr, "public.Kunden", schema.data(), schema.size(), table.data(), table.size());
    EXPECT_EQ(schema.text() + "|" + table.text(), "public|Kunden");

    GuardedBuffer tiny(1);
    Kodbc_PrepareNameForSql(tiny.data(), 0, 0);
    Kodbc_PrepareNameForSql92(nullptr, "x", tiny.data(), 0);
    EXPECT_TRUE(tiny.guards_intact());
    EXPECT_TRUE(messages.entries().empty());
}

} // namespace
} // namespace kodbc::test
