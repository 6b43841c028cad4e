// Name preparation without a driver: the text rules with a given quote text.
#include "test_support.h"

#include "sqltext/sql_names.h"

#include <cstring>
#include <string>

namespace kodbc::test {
namespace {

using namespace kodbc::sqltext;

std::string Bracket(const std::string &name, int flags, int size = 200) {
    GuardedBuffer buffer(size);
    EXPECT_LT(name.size(), static_cast<std::size_t>(size));
    std::memcpy(buffer.data(), name.c_str(), name.size() + 1);
    PrepareBracketName(buffer.data(), size, flags);
    EXPECT_TRUE(buffer.guards_intact()) << name;
    return buffer.text();
}

std::string Sql92(const char *quote, const char *name, int size = 300) {
    QuoteText q = QuoteText::Fixed(quote);
    GuardedBuffer out(size);
    EXPECT_TRUE(PrepareSql92Name(q, name, out.data(), size));
    EXPECT_TRUE(out.guards_intact()) << name;
    return out.text();
}

TEST(SqlTextIdentifier, PlainIdentifierRules) {
    EXPECT_TRUE(IsPlainSqlIdentifier("Kunden"));
    EXPECT_TRUE(IsPlainSqlIdentifier("Umsatz$"));
    EXPECT_TRUE(IsPlainSqlIdentifier("a_1"));
    EXPECT_FALSE(IsPlainSqlIdentifier(""));
    EXPECT_FALSE(IsPlainSqlIdentifier("2010"));
    EXPECT_FALSE(IsPlainSqlIdentifier("_x"));
    EXPECT_FALSE(IsPlainSqlIdentifier("Meine Tabelle"));
    EXPECT_FALSE(IsPlainSqlIdentifier("Gr\xf6\xdf" "e"));  // umlaut, ANSI
    EXPECT_FALSE(IsPlainSqlIdentifier("a.b"));
    EXPECT_FALSE(IsPlainSqlIdentifier("\"a\""));
}

TEST(SqlTextBracket, QuotesPartsByFlag) {
    EXPECT_EQ(Bracket("Kunden", 0), "[Kunden]");
    EXPECT_EQ(Bracket("Kunden", KODBC_PREPARE_KEEP_PLAIN), "Kunden");
    EXPECT_EQ(Bracket("dbo.Meine Tabelle", 0), "[dbo].[Meine Tabelle]");
    EXPECT_EQ(Bracket("dbo.Meine Tabelle", 1), "dbo.[Meine Tabelle]");
    EXPECT_EQ(Bracket("Kunden.*", 0), "[Kunden].*");
    EXPECT_EQ(Bracket("a.b.c", 0), "[a].[b]");
    EXPECT_EQ(Bracket("[a]", 1), "[[a]]");
    EXPECT_EQ(Bracket("2010", 1), "[2010]");
    EXPECT_EQ(Bracket("_x", 1), "[_x]");
    EXPECT_EQ(Bracket("Umsatz$", 1), "Umsatz$");
    EXPECT_EQ(Bracket("a.", 0), "[a]");       // empty second part: no dot
    EXPECT_EQ(Bracket("a. ", 0), "[a]. ");    // blank part kept as it is
}

TEST(SqlTextBracket, BlankOrTinyInputIsLeftAlone) {
    EXPECT_EQ(Bracket("   ", 0), "   ");
    EXPECT_EQ(Bracket("", 0), "");
    PrepareBracketName(nullptr, 10, 0);
    char one[2] = "x";
    PrepareBracketName(one, 0, 0);
    EXPECT_STREQ(one, "x");
}

TEST(SqlTextBracket, CutsPartsAndResult) {
    // Parts hold 99 characters; the enclosure is cut with them.
    std::string longPart(150, 'x');
    std::string expected = "[" + std::string(98, 'x');
    EXPECT_EQ(Bracket(longPart, 0, 300), expected);
    // The whole result is cut to size-1.
    EXPECT_EQ(Bracket("dbo.Kunde", 0, 10), "[dbo].[Ku");
}

TEST(SqlTextBracket, ListIsTabSeparatedAndCommaJoined) {
    GuardedBuffer out(100);
    PrepareBracketNameList("A B\tC", ',', out.data(), out.size(), 0);
    EXPECT_EQ(out.text(), "[A B],[C]");
    PrepareBracketNameList("A B\tC", ';', out.data(), out.size(), 1);
    EXPECT_EQ(out.text(), "[A B],C");
    // The separator argument does not choose the cut.
    PrepareBracketNameList("A,B", ',', out.data(), out.size(), 0);
    EXPECT_EQ(out.text(), "[A,B]");
    EXPECT_TRUE(out.guards_intact());

    GuardedBuffer small(6);
    PrepareBracketNameList("Alpha\tBeta", ',', small.data(), small.size(), 0);
    EXPECT_EQ(small.text(), "[Alph");
    EXPECT_TRUE(small.guards_intact());

    std::strcpy(out.data(), "old");
    PrepareBracketNameList(nullptr, ',', out.data(), out.size(), 0);
    EXPECT_EQ(out.text(), "");
    std::strcpy(out.data(), "old");
    PrepareBracketNameList("a", '\0', out.data(), out.size(), 0);
    EXPECT_EQ(out.text(), "");
}

class SqlTextSql92 : public ::testing::TestWithParam<const char *> {};

TEST_P(SqlTextSql92, QuotesOnlyWhatNeedsIt) {
    const std::string q = GetParam();
    EXPECT_EQ(Sql92(GetParam(), "Meine Tabelle"), q + "Meine Tabelle" + q);
    EXPECT_EQ(Sql92(GetParam(), (q + "Kunden" + q).c_str()), "Kunden");
    EXPECT_EQ(Sql92(GetParam(), "dbo . Kunden"), "dbo.Kunden");
    EXPECT_EQ(Sql92(GetParam(), "a.b.c"), "a.b.c");
    EXPECT_EQ(Sql92(GetParam(), "dbo.Meine Tabelle"), "dbo." + q + "Meine Tabelle" + q);
    EXPECT_EQ(Sql92(GetParam(), "2010"), q + "2010" + q);
    EXPECT_EQ(Sql92(GetParam(), "Kunden.*"), "Kunden.*");
    EXPECT_EQ(Sql92(GetParam(), (" " + q + q + "Meine Tabelle" + q + " ").c_str()), q + "Meine Tabelle" + q);
    EXPECT_EQ(Sql92(GetParam(), "   "), "");
    EXPECT_EQ(Sql92(GetParam(), nullptr), "");
}

TEST_P(SqlTextSql92, SameBufferAsName) {
    GuardedBuffer buffer(40);
    std::strcpy(buffer.data(), "dbo.Meine Tabelle");
    QuoteText q = QuoteText::Fixed(GetParam());
    ASSERT_TRUE(PrepareSql92Name(q, buffer.data(), buffer.data(), buffer.size()));
    const std::string quote = GetParam();
    EXPECT_EQ(buffer.text(), "dbo." + quote + "Meine Tabelle" + quote);
    EXPECT_TRUE(buffer.guards_intact());
}

TEST_P(SqlTextSql92, PartsThatDoNotFitAreSkipped) {
    // "dbo" (3) then "." needs 3 bytes left, then the quoted part (15) does
    // not fit into what remains of 12 bytes: skipped, not cut.
    EXPECT_EQ(Sql92(GetParam(), "dbo.Meine Tabelle", 12), "dbo.");
    // A short part after a skipped one is still written.
    EXPECT_EQ(Sql92(GetParam(), "Meine Tabelle.x", 8), ".x");
    // The dot needs 3 bytes of room: with 2 left it is dropped.
    EXPECT_EQ(Sql92(GetParam(), "abc.d", 5), "abcd");
    EXPECT_EQ(Sql92(GetParam(), "abc.d", 6), "abc.d");
    EXPECT_EQ(Sql92(GetParam(), "Kunden", 1), "");
}

TEST_P(SqlTextSql92, LongPartsAreCutBeforeQuoting) {
    const std::string q = GetParam();
    std::string plain(250, 'k');
    EXPECT_EQ(Sql92(GetParam(), plain.c_str(), 1000), std::string(199, 'k'));
    std::string blanks = std::string(120, 'x') + " " + std::string(120, 'y');
    std::string quoted = Sql92(GetParam(), blanks.c_str(), 1000);
    EXPECT_EQ(quoted.size(), 199u);
    EXPECT_EQ(quoted.substr(0, q.size()), q);
}

TEST_P(SqlTextSql92, ListWithJoiner) {
    const std::string q = GetParam();
    GuardedBuffer list(60);
    std::strcpy(list.data(), "Kunden;Meine Tabelle; dbo . x ");
    QuoteText quote = QuoteText::Fixed(GetParam());
    ASSERT_TRUE(PrepareSql92NameList(quote, list.data(), list.size(), ';', ','));
    EXPECT_EQ(list.text(), "Kunden," + q + "Meine Tabelle" + q + ",dbo.x");
    EXPECT_TRUE(list.guards_intact());

    // Quoting makes the list grow: the second quoted piece no longer fits
    // and is skipped, the short one after it still is written.
    GuardedBuffer small(12);
    std::strcpy(small.data(), "a,b c,d e,f");
    ASSERT_TRUE(PrepareSql92NameList(quote, small.data(), small.size(), ',', '|'));
    EXPECT_EQ(small.text(), "a|" + q + "b c" + q + "||f");
    EXPECT_TRUE(small.guards_intact());
}

INSTANTIATE_TEST_SUITE_P(Quote, SqlTextSql92, ::testing::Values("\"", "`"),
                         [](const ::testing::TestParamInfo<const char *> &info) {
                             return std::string(info.param[0] == '"' ? "DoubleQuote" : "Backtick");
                         });

TEST(SqlTextSql92NoQuote, BlankEmptyOrFailedQuoteCopiesUnchanged) {
    EXPECT_EQ(Sql92(" ", " dbo . Meine Tabelle "), " dbo . Meine Tabelle ");
    EXPECT_EQ(Sql92("", "Meine Tabelle"), "Meine Tabelle");
    EXPECT_EQ(Sql92(" ", "   "), "");
    EXPECT_EQ(Sql92(" ", "Meine Tabelle", 6), "Meine");
    QuoteText failed = QuoteText::Lazy([](void *, char *buffer, int) { buffer[0] = 'x'; return false; }, nullptr);
    EXPECT_FALSE(failed.quotes());
}

TEST(SqlTextQuoteText, AsksTheDriverAtMostOnceAndOnlyWhenNeeded) {
    int calls = 0;
    auto fetch = [](void *count, char *buffer, int size) {
        ++*static_cast<int *>(count);
        std::strncpy(buffer, "\"", static_cast<std::size_t>(size));
        return true;
    };
    QuoteText q = QuoteText::Lazy(fetch, &calls);
    char out[100];
    PrepareSql92Name(q, "  ", out, sizeof out);
    EXPECT_EQ(calls, 0);
    PrepareSql92Name(q, "Meine Tabelle", out, sizeof out);
    PrepareSql92Name(q, "x y.z w", out, sizeof out);
    EXPECT_EQ(calls, 1);
    EXPECT_STREQ(out, "\"x y\".\"z w\"");
}

TEST(SqlTextQuoteIfNotPlain, EnclosesWholeName) {
    GuardedBuffer name(20);
    QuoteText dq = QuoteText::Fixed("\"");
    std::strcpy(name.data(), "dbo.Kunden");
    QuoteIfNotPlain(dq, name.data(), name.size());
    EXPECT_EQ(name.text(), "\"dbo.Kunden\"");
    std::strcpy(name.data(), "Kunden");
    QuoteIfNotPlain(dq, name.data(), name.size());
    EXPECT_EQ(name.text(), "Kunden");

    QuoteText blank = QuoteText::Fixed(" ");
    std::strcpy(name.data(), "Meine Tabelle");
    QuoteIfNotPlain(blank, name.data(), name.size());
    EXPECT_EQ(name.text(), " Meine Tabelle ");

    QuoteText none = QuoteText::Fixed("");
    std::strcpy(name.data(), "Meine Tabelle");
    QuoteIfNotPlain(none, name.data(), name.size());
    EXPECT_EQ(name.text(), "Meine Tabelle");
    EXPECT_TRUE(name.guards_intact());

    GuardedBuffer tight(8);
    std::strcpy(tight.data(), "a b c");
    QuoteText bt = QuoteText::Fixed("`");
    QuoteIfNotPlain(bt, tight.data(), tight.size());
    EXPECT_EQ(tight.text(), "`a b c`");
    std::strcpy(tight.data(), "a b c d");
    QuoteIfNotPlain(bt, tight.data(), tight.size());
    EXPECT_EQ(tight.text(), "`a b c ");
    EXPECT_TRUE(tight.guards_intact());
}

TEST(SqlTextStrip, OneDelimiterAndWhiteSpacePerPart) {
    auto strip = [](std::string text, char open, char close) {
        std::vector<char> buffer(text.begin(), text.end());
        buffer.push_back('\0');
        StripDelimiters(buffer.data(), open, close);
        return std::string(buffer.data());
    };
    EXPECT_EQ(strip("\"dbo\".\"Meine Tabelle\"", '"', '"'), "dbo.Meine Tabelle");
    EXPECT_EQ(strip(" \"\"a\"\" . `b` ", '"', '"'), "\"a\".`b`");
    EXPECT_EQ(strip("`a`.`b`", '`', '`'), "a.b");
    EXPECT_EQ(strip("[dbo].[Meine Tabelle]", '[', ']'), "dbo.Meine Tabelle");
    EXPECT_EQ(strip("[[a]]", '[', ']'), "[a]");
    EXPECT_EQ(strip("a. .b", '[', ']'), "a. .b");     // blank part stays
    EXPECT_EQ(strip("\t[a]\n", '[', ']'), "a");
    EXPECT_EQ(strip(" [a] ", '\0', '\0'), "[a]");      // no quote character: white space only
    std::string longPart(250, 'z');
    EXPECT_EQ(strip(longPart + ".b", '[', ']'), std::string(199, 'z') + ".b");
    StripDelimiters(nullptr, '[', ']');
}

TEST(SqlTextParseSchemaAndTable, SplitsAtDots) {
    GuardedBuffer schema(20), table(20);
    auto parse = [&](const char *name, bool split) {
        ParseSchemaAndTable(name, split, schema.data(), schema.size(), table.data(), table.size());
        return schema.text() + "|" + table.text();
    };
    EXPECT_EQ(parse("dbo.Kunden", true), "dbo|Kunden");
    EXPECT_EQ(parse("a.b.c", true), "a|b");
    EXPECT_EQ(parse("\"dbo\".\"Meine Tabelle\"", true), "\"dbo\"|\"Meine Tabelle\"");
    EXPECT_EQ(parse("Kunden", true), "|Kunden");
    EXPECT_EQ(parse("dbo.Kunden", false), "|dbo.Kunden");
    EXPECT_EQ(parse(nullptr, true), "|");
    EXPECT_EQ(parse("schema_mit_langem_namen.tabelle_mit_langem_namen", true),
              "schema_mit_langem_n|tabelle_mit_langem_");
    EXPECT_TRUE(schema.guards_intact());
    EXPECT_TRUE(table.guards_intact());

    std::strcpy(schema.data(), "keep");
    ParseSchemaAndTable("a.b", true, schema.data(), 1, table.data(), table.size());
    EXPECT_EQ(schema.text(), "keep");

    // The name may live in either output buffer.
    char both[20] = "dbo.Kunden";
    char other[20];
    ParseSchemaAndTable(both, true, both, sizeof both, other, sizeof other);
    EXPECT_STREQ(both, "dbo");
    EXPECT_STREQ(other, "Kunden");
    std::strcpy(both, "dbo.Kunden");
    ParseSchemaAndTable(both, true, other, sizeof other, both, sizeof both);
    EXPECT_STREQ(other, "dbo");
    EXPECT_STREQ(both, "Kunden");
}

} // namespace
} // namespace kodbc::test
