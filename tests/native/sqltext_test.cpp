// Name preparation and the statement formatter with a given quote text, then the
// exports without a connection and with each data source's quote and schema usage.
#include "test_support.h"

#include "sqltext/sql_names.h"

#include <array>
#include <cstring>
#include <string>
#include <tuple>

namespace kodbc::test {
namespace {

using namespace kodbc::sqltext;

TEST(SqlTextBracket, QuotesPartsByFlagWithinTheirRoom) {
    const struct {
        std::string name;
        int flags, size;
        std::string expected;
    } cases[] = {
        {"dbo.Meine Tabelle", 0, 200, "[dbo].[Meine Tabelle]"},
        {"dbo.Meine Tabelle", KODBC_PREPARE_KEEP_PLAIN, 200, "dbo.[Meine Tabelle]"},
        {"Kunden.*", 0, 200, "[Kunden].*"},
        {"a.b.c", 0, 200, "[a].[b]"},
        {"[a]", 1, 200, "[[a]]"},
        {"2010", 1, 200, "[2010]"},
        {"_x", 1, 200, "[_x]"},
        {"Umsatz$", 1, 200, "Umsatz$"},      // plain: an ASCII letter, then letters, digits, "_" or "$"
        {"a_1", 1, 200, "a_1"},
        {"Gr\xf6\xdf" "e", 1, 200, "[Gr\xf6\xdf" "e]"},  // ANSI umlauts are not plain
        {"a.", 0, 200, "[a]"},      // empty second part: no dot
        {"a. ", 0, 200, "[a]. "},   // blank part kept as it is
        {"   ", 0, 200, "   "},     // blank input is left alone
        // Parts hold 99 characters, the enclosure cut with them; the whole to size-1.
        {std::string(150, 'x'), 0, 300, "[" + std::string(98, 'x')},
        {"dbo.Kunde", 0, 10, "[dbo].[Ku"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(GuardedInPlace(c.name, c.size, [&](char *buffer, int n) { PrepareBracketName(buffer, n, c.flags); }),
                  c.expected)
            << c.name << " flags " << c.flags;
    PrepareBracketName(nullptr, 10, 0);
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

// A driver that reports a blank or nothing gets the name unchanged.
TEST(SqlTextSql92, QuotesOnlyWhatNeedsItAndSkipsWhatDoesNotFit) {
    const std::string blanks = std::string(120, 'x') + " " + std::string(120, 'y');
    const struct {
        const char *quote;
        std::string name;
        int size;
        std::string expected;
    } cases[] = {
        {"`", "`Kunden`", 300, "Kunden"},
        {"\"", "dbo . Kunden", 300, "dbo.Kunden"},
        {"\"", "a.b.c", 300, "a.b.c"},
        {"`", "dbo.Meine Tabelle", 300, "dbo.`Meine Tabelle`"},
        {"\"", "2010", 300, "\"2010\""},
        {"\"", "Kunden.*", 300, "Kunden.*"},
        {"`", " ``Meine Tabelle` ", 300, "`Meine Tabelle`"},
        {"\"", "   ", 300, ""},
        // "." needs 3 bytes left; the quoted part (15) does not fit the rest: skipped, not cut.
        {"\"", "dbo.Meine Tabelle", 12, "dbo."},
        {"\"", "Meine Tabelle.x", 8, ".x"},  // a short part after a skipped one
        {"`", "abc.d", 5, "abcd"},           // the dot needs 3 bytes of room
        {"`", "abc.d", 6, "abc.d"},
        {"\"", "Kunden", 1, ""},
        // Parts are cut to 199 before quoting.
        {"\"", std::string(250, 'k'), 1000, std::string(199, 'k')},
        {"`", blanks, 1000, "`" + blanks.substr(0, 198)},
        {" ", " dbo . Meine Tabelle ", 300, " dbo . Meine Tabelle "},
        {"", "Meine Tabelle", 300, "Meine Tabelle"},
        {" ", "Meine Tabelle", 6, "Meine"},
    };
    for (const auto &c : cases) {
        QuoteText q = QuoteText::Fixed(c.quote);
        EXPECT_EQ(Guarded(c.size, [&](char *out, int n) { EXPECT_TRUE(PrepareSql92Name(q, c.name.c_str(), out, n)); }),
                  c.expected)
            << c.name << " with " << c.quote << " in " << c.size;
    }
    QuoteText q = QuoteText::Fixed("`");
    EXPECT_EQ(Guarded(10, [&](char *out, int n) { EXPECT_TRUE(PrepareSql92Name(q, nullptr, out, n)); }), "");
    QuoteText failed = QuoteText::Lazy([](void *, char *buffer, int) { buffer[0] = 'x'; return false; }, nullptr);
    EXPECT_FALSE(failed.quotes());
    // The name may live in the output buffer.
    EXPECT_EQ(GuardedInPlace("dbo.Meine Tabelle", 40,
                             [&](char *name, int n) { EXPECT_TRUE(PrepareSql92Name(q, name, name, n)); }),
              "dbo.`Meine Tabelle`");
}

// Quoting makes a list grow: a quoted piece that no longer fits is skipped, not the short one after it.
TEST(SqlTextSql92, ListWithJoiner) {
    QuoteText quote = QuoteText::Fixed("\"");
    for (const auto &[list, size, separator, joiner, expected] :
         {std::tuple{"Kunden;Meine Tabelle; dbo . x ", 60, ';', ',', "Kunden,\"Meine Tabelle\",dbo.x"},
          {"a,b c,d e,f", 12, ',', '|', "a|\"b c\"||f"}})
        EXPECT_EQ(GuardedInPlace(list, size, [&, separator = separator, joiner = joiner](char *names, int n) {
                      EXPECT_TRUE(PrepareSql92NameList(quote, names, n, separator, joiner));
                  }),
                  expected);
}

// A catalogue's column name keeps its points inside the quotes, doubles quotes, is written whole or not at all.
TEST(SqlTextQuoteWhole, QuoteIfNotPlainAndColumnNames) {
    const struct {
        bool column;
        const char *quote, *name;
        int size;
        const char *expected;
    } cases[] = {
        {false, "\"", "dbo.Kunden", 20, "\"dbo.Kunden\""},
        {false, "\"", "Kunden", 20, "Kunden"},
        {false, " ", "Meine Tabelle", 20, " Meine Tabelle "},
        {false, "", "Meine Tabelle", 20, "Meine Tabelle"},
        {false, "`", "a b c", 8, "`a b c`"},
        {false, "`", "a b c d", 8, "`a b c "},  // cut to the buffer
        {true, "\"", "Art.Nr", 20, "\"Art.Nr\""},
        {true, "`", "a`b.c", 20, "`a``b.c`"},
        {true, "\"", "Kunden", 20, "Kunden"},
        {true, " ", "Art.Nr", 20, "Art.Nr"},
        {true, "\"", "Preis.Netto", 14, "\"Preis.Netto\""},
        {true, "\"", "Preis.Netto", 13, ""},
    };
    for (const auto &c : cases) {
        QuoteText quote = QuoteText::Fixed(c.quote);
        const std::string got =
            c.column ? Guarded(c.size, [&](char *out, int size) { PrepareColumnName(quote, c.name, out, size); })
                     : GuardedInPlace(c.name, c.size, [&](char *name, int size) { QuoteIfNotPlain(quote, name, size); });
        EXPECT_EQ(got, c.expected) << c.name << " with " << c.quote << " in " << c.size;
    }
}

TEST(SqlTextStrip, OneDelimiterAndWhiteSpacePerPart) {
    const std::tuple<std::string, char, char, std::string> cases[] = {
        {"\"dbo\".\"Meine Tabelle\"", '"', '"', "dbo.Meine Tabelle"},
        {" \"\"a\"\" . `b` ", '"', '"', "\"a\".`b`"},
        {"[dbo].[Meine Tabelle]", '[', ']', "dbo.Meine Tabelle"},
        {"[[a]]", '[', ']', "[a]"},
        {"a. .b", '[', ']', "a. .b"},  // blank part stays
        {"\t[a]\n", '[', ']', "a"},
        {" [a] ", '\0', '\0', "[a]"},  // no quote character: white space only
        {std::string(250, 'z') + ".b", '[', ']', std::string(199, 'z') + ".b"},
    };
    for (const auto &[text, open, close, expected] : cases) {
        std::string buffer = text;
        StripDelimiters(buffer.data(), open, close);
        EXPECT_EQ(std::string(buffer.c_str()), expected) << text;
    }
    StripDelimiters(nullptr, '[', ']');
}

TEST(SqlTextParseSchemaAndTable, SplitsAtDots) {
    GuardedBuffer schema(20), table(20);
    const std::tuple<const char *, bool, const char *> cases[] = {
        {"dbo.Kunden", true, "dbo|Kunden"},
        {"a.b.c", true, "a|b"},
        {"\"dbo\".\"Meine Tabelle\"", true, "\"dbo\"|\"Meine Tabelle\""},
        {"Kunden", true, "|Kunden"},
        {"dbo.Kunden", false, "|dbo.Kunden"},
        {nullptr, true, "|"},
        {"schema_mit_langem_namen.tabelle_mit_langem_namen", true, "schema_mit_langem_n|tabelle_mit_langem_"},
    };
    for (const auto &[name, split, expected] : cases) {
        ParseSchemaAndTable(name, split, schema.data(), schema.size(), table.data(), table.size());
        EXPECT_EQ(schema.text() + "|" + table.text(), expected) << (name ? name : "(null)");
    }
    EXPECT_TRUE(schema.guards_intact() && table.guards_intact());
    std::strcpy(schema.data(), "keep");
    ParseSchemaAndTable("a.b", true, schema.data(), 1, table.data(), table.size());
    EXPECT_EQ(schema.text(), "keep");

    // The name may live in either output buffer: the other one is written first.
    for (const auto &[text, expected] : {std::pair{"dbo.Kunden", "dbo|Kunden"}, {"Kunden", "|Kunden"}})
        for (bool inSchema : {true, false}) {
            char name[20], other[20];
            std::strcpy(name, text);
            char *s = inSchema ? name : other, *t = inSchema ? other : name;
            ParseSchemaAndTable(name, true, s, sizeof name, t, sizeof other);
            EXPECT_EQ(std::string(s) + "|" + t, expected) << text << " in " << (inSchema ? "schema" : "table");
        }
}

struct Formatter {
    const char *quote = "\"";
    int queries = 0;

    std::string operator()(const char *pattern, std::array<const char *, 8> args = {}, int size = 400) {
        QuoteText q = QuoteText::Lazy(
            [](void *self, char *buffer, int size) {
                auto *f = static_cast<Formatter *>(self);
                ++f->queries;
                std::strncpy(buffer, f->quote, static_cast<std::size_t>(size));
                return true;
            },
            this);
        return Guarded(size, [&](char *out, int n) { FormatStatement(q, out, n, pattern, args.data()); });
    }
};

TEST(SqlTextFormat, PlaceholdersArgumentsAndRoom) {
    const std::string longText(400, 'v');
    const struct {
        const char *quote, *pattern;
        std::array<const char *, 8> args;
        int size;
        std::string expected;
    } cases[] = {
        // Names: each part quoted as it needs.
        {"\"", "SELECT %f FROM %t", {"Kunden Nr", "Kunden"}, 400, "SELECT \"Kunden Nr\" FROM Kunden"},
        {"\"", "%t%.%t", {"dbo", "Meine Tabelle"}, 400, "dbo.\"Meine Tabelle\""},
        {"\"", "%t%.%t", {"  ", "Kunden"}, 400, "Kunden"},
        {"`", "%t%.%f", {"Meine Tabelle", "2010"}, 400, "`Meine Tabelle`.`2010`"},
        // A driver that does not quote.
        {" ", "SELECT %f FROM %t", {" Kunden Nr ", "dbo . Meine Tabelle"}, 400,
         "SELECT  Kunden Nr  FROM dbo . Meine Tabelle"},
        {" ", "%t|", {"   "}, 400, "|"},
        // Text and dots.
        {"\"", "A%dB%sC", {"x"}, 400, "ABxC"},
        {"\"", "100%% %c%l", {}, 400, "100 "},
        {"\"", "%s%.%s", {"a", " "}, 400, "a. "},
        {"\"", "%s%.|", {nullptr}, 400, "|"},
        {"\"", "%t%s", {nullptr, "x"}, 400, "x"},  // a null name still consumes its slot
        {"\"", "%s", {"Meine Tabelle"}, 400, "Meine Tabelle"},  // text is not quoted
        {"\"", "SELECT %", {}, 400, "SELECT "},
        {"\"", nullptr, {}, 400, ""},
        {"\"", "%s", {longText.c_str()}, 1000, std::string(299, 'v')},
        // Only seven arguments are consumed; unknown placeholders consume none.
        {"\"", "%s%s%s%s%s%s%s|%t%%%.", {"1", "2", "3", "4", "5", "6", "7", "8"}, 400, "1234567|t%."},
        {"\"", "%s%x%s%s%s%s%s%s%s", {"1", "2", "3", "4", "5", "6", "7", "8"}, 400, "1234567s"},
        // An expansion needs its length plus 2 bytes; one that does not fit ends the output.
        {"\"", "ABCDEFGHIJKLMNOPQRST", {}, 10, "ABCDEFGH"},
        {"\"", "AB%sC", {"123456"}, 10, "AB123456"},
        {"\"", "AB%sC", {"1234567"}, 10, "AB"},
        {"\"", "AB%tC", {"Meine Tabelle"}, 16, "AB"},
        {"\"", "ABC", {}, 2, ""},
        {"\"", "A%sB%.C", {""}, 5, "ABC"},  // empty expansions take no room
    };
    for (const auto &c : cases) {
        Formatter format;
        format.quote = c.quote;
        EXPECT_EQ(format(c.pattern, c.args, c.size), c.expected)
            << (c.pattern ? c.pattern : "(null)") << " with " << c.quote << " in " << c.size;
    }

    QuoteText q = QuoteText::Fixed("\"");
    char untouched[4] = "old";
    FormatStatement(q, untouched, 0, "x", nullptr);
    EXPECT_STREQ(untouched, "old");
    FormatStatement(q, nullptr, 10, "x", nullptr);

    // The driver is asked at most once, and only for a name that may need quoting.
    Formatter format;
    format("SELECT Count(*) FROM Kunden WHERE Nr > %s", {"5"});
    format("%t%.%t", {"", ""});
    EXPECT_EQ(format.queries, 0);
    format("SELECT %f, %f FROM %t%.%t", {"a b", "c d", "e", "f g"});
    EXPECT_EQ(format.queries, 1);
}

// The exports with the driver's quote text q ("" for one that does not quote) and schema usage.
void ExportsFollowTheDriver(SQLHDBC hdbc, const std::string &q, bool split) {
    EXPECT_EQ(Guarded(200, [&](char *out, int n) { Kodbc_PrepareNameForSql92(hdbc, "Meine Tabelle", out, n); }),
              q + "Meine Tabelle" + q);
    EXPECT_EQ(GuardedInPlace("Kunden\tMeine Tabelle\t2010", 60,
                             [&](char *list, int n) { Kodbc_PrepareNameListForSql92(hdbc, list, n, '\t', ',', 0); }),
              "Kunden," + q + "Meine Tabelle" + q + "," + q + "2010" + q);
    EXPECT_EQ(GuardedInPlace("dbo.Meine Tabelle", 40,
                             [&](char *name, int n) { Kodbc_QuoteNameIfNotPureSql(hdbc, name, n); }),
              q + "dbo.Meine Tabelle" + q);
    char name[40];
    std::strcpy(name, (" " + q + q + "dbo" + q + q + " . " + q + "Meine Tabelle" + q).c_str());
    Kodbc_StripDelimitersFromName(hdbc, name);
    EXPECT_EQ(name, q + "dbo" + q + ".Meine Tabelle");
    GuardedBuffer schema(20), table(20);
    Kodbc_ParseSchemaAndTable(hdbc, "public.Kunden.x", schema.data(), schema.size(), table.data(), table.size());
    EXPECT_EQ(schema.text() + "|" + table.text(), split ? "public|Kunden" : "|public.Kunden.x");
    EXPECT_TRUE(schema.guards_intact() && table.guards_intact());
    EXPECT_EQ(Guarded(100, [&](char *out, int n) {
                  Kodbc_SprintfSqlStatement(hdbc, out, n, "SELECT %f FROM %t%s%s%s%s%s", "Kunden Nr", "2010", "3", "4",
                                            "5", "6", "7", "8");
              }),
              "SELECT " + q + "Kunden Nr" + q + " FROM " + q + "2010" + q + "34567");
}

class SqlTextDriver : public DataSourceTest {};

TEST_P(SqlTextDriver, QuotesStripsAndSplitsAsTheDriverSays) {
    const std::string q(1, Kodbc_GetDelimiter(hdbc_));
    ASSERT_TRUE(q == "\"" || q == "`") << "quote character " << q;
    ExportsFollowTheDriver(hdbc_, q, Kodbc_GetSchemaUsage(hdbc_) != 0);
    EXPECT_TRUE(messages_.entries().empty());
}

KODBC_DATA_SOURCE_TEST_SUITE(SqlTextDriver);

// Without a connection nothing quotes, the name is always split and nothing is shown.
TEST(SqlTextNoConnection, NamesPassUnchanged) {
    MessageRecorder messages;
    ExportsFollowTheDriver(nullptr, "", true);
    GuardedBuffer out(40);
    std::strcpy(out.data(), " \"a\" . b ");
    Kodbc_StripDelimitersFromName(nullptr, out.data());
    EXPECT_EQ(out.text(), "\"a\".b");
    std::strcpy(out.data(), "[dbo].[Kunden]");
    Kodbc_StripBracketsFromSqlName(out.data());
    EXPECT_EQ(out.text(), "dbo.Kunden");
    Kodbc_PrepareNameForSql(out.data(), 0, 0);
    Kodbc_PrepareNameForSql92(nullptr, "x", out.data(), 0);
    EXPECT_EQ(out.text(), "dbo.Kunden");
    EXPECT_TRUE(out.guards_intact());
    EXPECT_TRUE(messages.entries().empty());
}

} // namespace
} // namespace kodbc::test
