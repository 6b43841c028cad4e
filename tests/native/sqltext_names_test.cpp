// Name preparation without a driver: the text rules with a given quote text.
#include "test_support.h"

#include "sqltext/sql_names.h"

#include <cstring>
#include <string>

namespace kodbc::test {
namespace {

using namespace kodbc::sqltext;

std::string Bracket(const std::string &name, int flags, int size = 200) {
    EXPECT_LT(name.size(), static_cast<std::size_t>(size));
    return GuardedInPlace(name, size, [&](char *buffer, int n) { PrepareBracketName(buffer, n, flags); });
}

std::string Sql92(const char *quote, const char *name, int size = 300) {
    QuoteText q = QuoteText::Fixed(quote);
    return Guarded(size, [&](char *out, int n) { EXPECT_TRUE(PrepareSql92Name(q, name, out, n)) << name; });
}

TEST(SqlTextIdentifier, PlainIdentifierRules) {
    const std::pair<const char *, bool> cases[] = {
        {"Kunden", true}, {"Umsatz$", true},  {"a_1", true},           {"", false},
        {"2010", false},  {"_x", false},      {"Meine Tabelle", false}, {"Gr\xf6\xdf" "e", false},  // ANSI umlaut
        {"a.b", false},   {"\"a\"", false}};
    for (const auto &[name, plain] : cases) EXPECT_EQ(IsPlainSqlIdentifier(name), plain) << name;
}

TEST(SqlTextBracket, QuotesPartsByFlag) {
    const struct {
        const char *name;
        int flags;
        const char *expected;
    } cases[] = {
        {"Kunden", 0, "[Kunden]"},
        {"Kunden", KODBC_PREPARE_KEEP_PLAIN, "Kunden"},
        {"dbo.Meine Tabelle", 0, "[dbo].[Meine Tabelle]"},
        {"dbo.Meine Tabelle", 1, "dbo.[Meine Tabelle]"},
        {"Kunden.*", 0, "[Kunden].*"},
        {"a.b.c", 0, "[a].[b]"},
        {"[a]", 1, "[[a]]"},
        {"2010", 1, "[2010]"},
        {"_x", 1, "[_x]"},
        {"Umsatz$", 1, "Umsatz$"},
        {"a.", 0, "[a]"},      // empty second part: no dot
        {"a. ", 0, "[a]. "},   // blank part kept as it is
        {"   ", 0, "   "},     // blank input is left alone
        {"", 0, ""},
    };
    for (const auto &c : cases) EXPECT_EQ(Bracket(c.name, c.flags), c.expected) << c.name << " flags " << c.flags;
}

TEST(SqlTextBracket, TinyInputIsLeftAlone) {
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
    const struct {
        const char *names;
        char separator;
        int flags, size;
        const char *expected;
    } cases[] = {
        {"A B\tC", ',', 0, 100, "[A B],[C]"},
        {"A B\tC", ';', 1, 100, "[A B],C"},
        {"A,B", ',', 0, 100, "[A,B]"},  // the separator argument does not choose the cut
        {"Alpha\tBeta", ',', 0, 6, "[Alph"},
        {nullptr, ',', 0, 100, ""},
        {"a", '\0', 0, 100, ""},
    };
    for (const auto &c : cases) {
        EXPECT_EQ(Guarded(c.size,
                          [&](char *out, int n) {
                              std::strcpy(out, "old");
                              PrepareBracketNameList(c.names, c.separator, out, n, c.flags);
                          }),
                  c.expected)
            << (c.names ? c.names : "(null)");
    }
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
    const struct {
        const char *quote, *name;
        int size;
        const char *expected;
    } cases[] = {
        {"\"", "dbo.Kunden", 20, "\"dbo.Kunden\""},
        {"\"", "Kunden", 20, "Kunden"},
        {" ", "Meine Tabelle", 20, " Meine Tabelle "},
        {"", "Meine Tabelle", 20, "Meine Tabelle"},
        {"`", "a b c", 8, "`a b c`"},
        {"`", "a b c d", 8, "`a b c "},  // cut to the buffer
    };
    for (const auto &c : cases) {
        QuoteText quote = QuoteText::Fixed(c.quote);
        EXPECT_EQ(GuardedInPlace(c.name, c.size, [&](char *name, int size) { QuoteIfNotPlain(quote, name, size); }),
                  c.expected)
            << c.name << " with " << c.quote;
    }
}

// A catalogue's column name is one name: points stay inside the quotes,
// quotes in it are doubled, and what does not fit whole is not written.
TEST(SqlTextColumnName, OneNameQuotedWhole) {
    const struct {
        const char *quote, *name;
        int size;
        const char *expected;
    } cases[] = {
        {"\"", "Art.Nr", 20, "\"Art.Nr\""},
        {"`", "a`b.c", 20, "`a``b.c`"},
        {"\"", "Kunden", 20, "Kunden"},
        {" ", "Art.Nr", 20, "Art.Nr"},
        {"\"", "Preis.Netto", 14, "\"Preis.Netto\""},
        {"\"", "Preis.Netto", 13, ""},
    };
    for (const auto &c : cases) {
        QuoteText quote = QuoteText::Fixed(c.quote);
        EXPECT_EQ(Guarded(c.size, [&](char *out, int size) { PrepareColumnName(quote, c.name, out, size); }),
                  c.expected)
            << c.name << " with " << c.quote << " in " << c.size;
    }
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
