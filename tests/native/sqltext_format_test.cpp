// The statement formatter without a driver: placeholders, argument
// counting and the room rules, with a given quote text.
#include "test_support.h"

#include "sqltext/sql_names.h"

#include <array>
#include <cstring>
#include <string>

namespace kodbc::test {
namespace {

using namespace kodbc::sqltext;

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
        GuardedBuffer out(size);
        FormatStatement(q, out.data(), size, pattern, args.data());
        EXPECT_TRUE(out.guards_intact()) << pattern;
        return out.text();
    }
};

TEST(SqlTextFormat, NamePlaceholdersQuoteEachPart) {
    Formatter format;
    EXPECT_EQ(format("SELECT %f FROM %t", {"Kunden Nr", "Kunden"}), "SELECT \"Kunden Nr\" FROM Kunden");
    EXPECT_EQ(format("%t%.%t", {"dbo", "Meine Tabelle"}), "dbo.\"Meine Tabelle\"");
    EXPECT_EQ(format("%t%.%t", {"", "Meine Tabelle"}), "\"Meine Tabelle\"");
    EXPECT_EQ(format("%t%.%t", {"  ", "Kunden"}), "Kunden");
    EXPECT_EQ(format("%t", {"\"dbo\" . \"Kunden\""}), "dbo.Kunden");
    format.quote = "`";
    EXPECT_EQ(format("%t%.%f", {"Meine Tabelle", "2010"}), "`Meine Tabelle`.`2010`");
}

TEST(SqlTextFormat, TextAndDotPlaceholders) {
    Formatter format;
    EXPECT_EQ(format("A%dB%sC", {"x"}), "ABxC");
    EXPECT_EQ(format("%.x"), "x");
    EXPECT_EQ(format("100%% %c%l"), "100 ");
    EXPECT_EQ(format("%s%.%s", {"a", " "}), "a. ");
    EXPECT_EQ(format("%s%.%s", {" ", "b"}), " b");
    EXPECT_EQ(format("%s%.|", {nullptr}), "|");
    EXPECT_EQ(format("%t%s", {nullptr, "x"}), "x");       // a null name still consumes its slot
    EXPECT_EQ(format("%s", {"Meine Tabelle"}), "Meine Tabelle");  // text is not quoted
    EXPECT_EQ(format("SELECT %"), "SELECT ");
    EXPECT_EQ(format("ab%"), "ab");
    EXPECT_EQ(format(nullptr), "");
    std::string longText(400, 'v');
    EXPECT_EQ(format("%s", {longText.c_str()}, 1000), std::string(299, 'v'));
}

TEST(SqlTextFormat, OnlySevenArgumentsAreConsumed) {
    Formatter format;
    std::array<const char *, 8> args = {"1", "2", "3", "4", "5", "6", "7", "8"};
    EXPECT_EQ(format("%s%s%s%s%s%s%s%s", args), "1234567s");
    EXPECT_EQ(format("%s%s%s%s%s%s%s|%t%%%.", args), "1234567|t%.");
    // Unknown placeholders consume nothing, so the count is unchanged.
    EXPECT_EQ(format("%s%x%s%s%s%s%s%s%s", args), "1234567s");
}

TEST(SqlTextFormat, RoomRules) {
    Formatter format;
    EXPECT_EQ(format("ABCDEFGHIJKLMNOPQRST", {}, 10), "ABCDEFGH");
    // An expansion needs its length plus 2 bytes: 6 fits into the 8 left,
    // 7 does not and ends the output, though "C" would still fit.
    EXPECT_EQ(format("AB%sC", {"123456"}, 10), "AB123456");
    EXPECT_EQ(format("AB%sC", {"1234567"}, 10), "AB");
    EXPECT_EQ(format("AB%tC", {"Meine Tabelle"}, 16), "AB");
    EXPECT_EQ(format("ABC", {}, 2), "");
    EXPECT_EQ(format("ABC", {}, 1), "");
    // Empty expansions take no room.
    EXPECT_EQ(format("A%sB%.C", {""}, 5), "ABC");

    QuoteText q = QuoteText::Fixed("\"");
    char untouched[4] = "old";
    FormatStatement(q, untouched, 0, "x", nullptr);
    EXPECT_STREQ(untouched, "old");
    FormatStatement(q, nullptr, 10, "x", nullptr);
}

TEST(SqlTextFormat, DriverIsAskedAtMostOnce) {
    Formatter format;
    format("SELECT Count(*) FROM Kunden WHERE Nr > %s", {"5"});
    EXPECT_EQ(format.queries, 0);
    format("%t%.%t", {"", ""});
    EXPECT_EQ(format.queries, 0);
    format("SELECT %f, %f FROM %t%.%t", {"a b", "c d", "e", "f g"});
    EXPECT_EQ(format.queries, 1);
}

TEST(SqlTextFormat, DriverThatDoesNotQuote) {
    Formatter format;
    format.quote = " ";
    EXPECT_EQ(format("SELECT %f FROM %t", {" Kunden Nr ", "dbo . Meine Tabelle"}),
              "SELECT  Kunden Nr  FROM dbo . Meine Tabelle");
    EXPECT_EQ(format("%t|", {"   "}), "|");
    format.quote = "";
    EXPECT_EQ(format("%t", {"Meine Tabelle"}), "Meine Tabelle");
}

} // namespace
} // namespace kodbc::test
