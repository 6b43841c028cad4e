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
        {"\"", "%t%.%t", {"", "Meine Tabelle"}, 400, "\"Meine Tabelle\""},
        {"\"", "%t%.%t", {"  ", "Kunden"}, 400, "Kunden"},
        {"\"", "%t", {"\"dbo\" . \"Kunden\""}, 400, "dbo.Kunden"},
        {"`", "%t%.%f", {"Meine Tabelle", "2010"}, 400, "`Meine Tabelle`.`2010`"},
        // A driver that does not quote.
        {" ", "SELECT %f FROM %t", {" Kunden Nr ", "dbo . Meine Tabelle"}, 400,
         "SELECT  Kunden Nr  FROM dbo . Meine Tabelle"},
        {" ", "%t|", {"   "}, 400, "|"},
        {"", "%t", {"Meine Tabelle"}, 400, "Meine Tabelle"},
        // Text and dots.
        {"\"", "A%dB%sC", {"x"}, 400, "ABxC"},
        {"\"", "%.x", {}, 400, "x"},
        {"\"", "100%% %c%l", {}, 400, "100 "},
        {"\"", "%s%.%s", {"a", " "}, 400, "a. "},
        {"\"", "%s%.%s", {" ", "b"}, 400, " b"},
        {"\"", "%s%.|", {nullptr}, 400, "|"},
        {"\"", "%t%s", {nullptr, "x"}, 400, "x"},  // a null name still consumes its slot
        {"\"", "%s", {"Meine Tabelle"}, 400, "Meine Tabelle"},  // text is not quoted
        {"\"", "SELECT %", {}, 400, "SELECT "},
        {"\"", "ab%", {}, 400, "ab"},
        {"\"", nullptr, {}, 400, ""},
        {"\"", "%s", {longText.c_str()}, 1000, std::string(299, 'v')},
        // Only seven arguments are consumed; unknown placeholders consume none.
        {"\"", "%s%s%s%s%s%s%s%s", {"1", "2", "3", "4", "5", "6", "7", "8"}, 400, "1234567s"},
        {"\"", "%s%s%s%s%s%s%s|%t%%%.", {"1", "2", "3", "4", "5", "6", "7", "8"}, 400, "1234567|t%."},
        {"\"", "%s%x%s%s%s%s%s%s%s", {"1", "2", "3", "4", "5", "6", "7", "8"}, 400, "1234567s"},
        // Room: an expansion needs its length plus 2 bytes: 6 fits into the 8
        // left, 7 does not and ends the output, though "C" would still fit.
        {"\"", "ABCDEFGHIJKLMNOPQRST", {}, 10, "ABCDEFGH"},
        {"\"", "AB%sC", {"123456"}, 10, "AB123456"},
        {"\"", "AB%sC", {"1234567"}, 10, "AB"},
        {"\"", "AB%tC", {"Meine Tabelle"}, 16, "AB"},
        {"\"", "ABC", {}, 2, ""},
        {"\"", "ABC", {}, 1, ""},
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
}

TEST(SqlTextFormat, DriverIsAskedAtMostOnce) {
    Formatter format;
    format("SELECT Count(*) FROM Kunden WHERE Nr > %s", {"5"});
    format("%t%.%t", {"", ""});
    EXPECT_EQ(format.queries, 0);
    format("SELECT %f, %f FROM %t%.%t", {"a b", "c d", "e", "f g"});
    EXPECT_EQ(format.queries, 1);
}

} // namespace
} // namespace kodbc::test
