// Selection and assignment descriptors into WHERE and SET text without a
// driver: the operator tables, every operator's SQL, the value conversion
// by data type, lists, groups and the room rules.
#include "test_support.h"

#include "select/seldesc.h"

#include <kodbc/kodbc_seldesc.h>

#include <cstring>
#include <string>
#include <vector>

namespace kodbc::test {
namespace {

using namespace kodbc::seldesc;

constexpr auto Line = &DescriptorLine;

std::string Where(const std::string &descriptor, int size = 4000, const char *pattern = nullptr,
                  const char *quoteText = "\"") {
    sqltext::QuoteText quote = sqltext::QuoteText::Fixed(quoteText);
    char chars[4];
    ReadPatternChars(pattern, chars);
    return Guarded(size, [&](char *out, int n) { BuildWhereClause(quote, descriptor.c_str(), out, n, chars); });
}

std::string Set(const std::string &descriptor, int size = 4000) {
    sqltext::QuoteText quote = sqltext::QuoteText::Fixed("\"");
    return Guarded(size, [&](char *out, int n) { BuildSetClause(quote, descriptor.c_str(), out, n); });
}

// A value converted by its data type, as one value or as a list.
std::string Typed(const std::string &value, int type, bool list = false) {
    char buffer[600];
    korvel::BoundedText out(buffer, sizeof buffer);
    (list ? AppendListValue : AppendTypedValue)(value, type, out);
    return buffer;
}
std::string List(const std::string &value, int type) { return Typed(value, type, true); }

// Keywords and flags show in the clauses below; what only the boxes show is
// the order, the codes and the labels.
TEST(SelDescTables, EntriesInBoxOrderWithCodesAndLabels) {
    auto listing = [](int kind) {
        std::string out;
        for (const OpDescOperator *op = OperatorTable(kind); op && op->code != 0; ++op) {
            out += std::to_string(op->code) + ":" + std::to_string(op->label) + " ";
            EXPECT_EQ(FindByKeyword(OperatorTable(kind), op->keyword), op) << op->keyword;
            EXPECT_EQ(FindByCode(OperatorTable(kind), op->code), op) << op->code;
        }
        return out;
    };
    EXPECT_EQ(listing(OPDESC_SELECTION), "101:1904 108:1905 109:1913 110:1912 102:1906 103:1918 104:1910 105:1908 "
                                         "106:1916 107:1914 111:1923 201:1907 202:1919 203:1911 204:1909 205:1917 "
                                         "206:1915 ");
    EXPECT_EQ(listing(OPDESC_ASSIGNMENT), "300:2167 301:2168 302:2169 303:2170 ");
    EXPECT_EQ(FindByCode(OperatorTable(OPDESC_SELECTION), 0), nullptr);
    EXPECT_EQ(OperatorTable(0), nullptr);
    EXPECT_EQ(OperatorTable(3), nullptr);
    // Keywords are compared with case and exactly.
    EXPECT_EQ(FindByKeyword(OperatorTable(OPDESC_SELECTION), "BW "), nullptr);
}

TEST(SelDescWhere, EverySelectionOperator) {
    struct Case {
        const char *keyword, *value;
        int type;
        const char *expected;
    };
    const Case cases[] = {
        {"BW", "Ber", 12, "(Ort LIKE 'Ber%')"},
        {"CT", "Ber", 12, "(Ort LIKE '%Ber%')"},
        {"CT", "a'b_%", 4, "(Ort LIKE '%a'b_%%')"},   // raw: no conversion, no doubling
        {"IN", "", 12, "(Ort IS NULL)"},
        {"IN", "ignored", 12, "(Ort IS NULL)"},
        {"NN", "", 12, "(Ort IS NOT NULL)"},
        {"EQ", "O'Neil", 12, "(Ort='O'Neil')"},
        {"NE", "Bonn", 12, "(NOT Ort = 'Bonn')"},
        {"GT", "1.000,5", 8, "(Ort > 1000.5)"},
        {"GT", "1.000,5", 12, "(Ort > '1.000,5')"},
        {"GE", "7", 4, "(Ort >= 7)"},
        {"LT", "7", 4, "(Ort < 7)"},
        {"LE", "7", 4, "(Ort <= 7)"},
        {"IL", "Berlin;Bonn", 12, "(Ort IN ('Berlin','Bonn'))"},
        {"IL", "4;7;9", 4, "(Ort IN (4,7,9))"},
        {"EQF", "Plz", 12, "(Ort=Plz)"},
        {"NEF", "Liefer Ort", 12, "(NOT Ort = \"Liefer Ort\")"},
        {"GTF", "Plz", 12, "(Ort > Plz)"},
        {"GEF", "t.Plz", 12, "(Ort >= t.Plz)"},
        {"LTF", "Plz", 12, "(Ort < Plz)"},
        {"LEF", "Plz", 12, "(Ort <= Plz)"},
    };
    for (const Case &c : cases)
        EXPECT_EQ(Where(Line("Ort", c.keyword, c.value, c.type)), c.expected) << c.keyword << " " << c.value;
    // The field is prepared as an identifier for every operator.
    EXPECT_EQ(Where(Line("Kunden Ort", "BW", "B", 12)), "(\"Kunden Ort\" LIKE 'B%')");
    EXPECT_EQ(Where(Line("Kunden Ort", "EQ", "B", 12), 4000, nullptr, "`"), "(`Kunden Ort`='B')");
}

TEST(SelDescWhere, LinesThatGiveNoCondition) {
    const std::string none[] = {
        Line("Ort", "EQ", "", 12),  Line("Ort", "IL", "", 12), Line("Ort", "EQF", "", 12),  // value needed
        Line("Ort", "BW", "", 12),  Line("", "IN", "", 12),                                  // no field
        Line("Ort", "eq", "x", 12), Line("Ort", "SCO", "x", 12),  // unknown or assignment keyword
        "Ort\tEQ",                                                  // value missing altogether
    };
    for (const std::string &line : none) EXPECT_EQ(Where(line), "") << line;
    // A line without a type or line end still counts; the type is 0 (text).
    EXPECT_EQ(Where("Ort\tEQ\t5"), "(Ort='5')");
    EXPECT_EQ(Where("Ort\tEQ\t5\t-5xyz\n"), "(Ort=5)");
}

TEST(SelDescWhere, GroupsAndEmptyDescriptors) {
    const std::string a = Line("A", "EQ", "1", 4), b = Line("B", "EQ", "2", 4), c = Line("C", "EQ", "3", 4),
                      d = Line("D", "EQ", "4", 4);
    EXPECT_EQ(Where(a + b + "\v" + c + "\v"), "(A=1 AND B=2) OR (C=3)");
    EXPECT_EQ(Where(a + "\v\v\v" + d + "\v"), "(A=1) OR (D=4)");
    EXPECT_EQ(Where(a + "\v" + Line("X", "EQ", "", 4) + "\v" + d), "(A=1) OR (D=4)");
    EXPECT_EQ(Where(Line("", "EQ", "1", 4) + a + Line("Y", "??", "1", 4) + b + "\v"), "(A=1 AND B=2)");
    for (const char *empty : {"\v\v\v\v", "", "\n\n\v\n"}) EXPECT_EQ(Where(empty), "") << empty;
}

TEST(SelDescWhere, PatternCharacters) {
    const std::string bw = Line("Ort", "BW", "Ber", 12), ct = Line("Ort", "CT", "Ber", 12);
    EXPECT_EQ(Where(bw, 4000, "*_''"), "(Ort LIKE 'Ber*')");
    EXPECT_EQ(Where(ct, 4000, "*?\"\""), "(Ort LIKE \"*Ber*\")");
    EXPECT_EQ(Where(ct, 4000, "%#[]"), "(Ort LIKE [%Ber%])");
    // The single-character wildcard is carried but used by no operator.
    EXPECT_EQ(Where(bw, 4000, "%X''"), "(Ort LIKE 'Ber%')");
    // Missing characters are left out, not read past the text.
    EXPECT_EQ(Where(bw, 4000, "*"), "(Ort LIKE Ber*)");
    // Only the LIKE operators use them.
    EXPECT_EQ(Where(Line("Ort", "EQ", "x", 12), 4000, "*_##"), "(Ort='x')");
}

// Numbers follow the German format, dates become ODBC date constants,
// everything else (character and binary types, 10 time, the ODBC 3 date
// codes, unknown) is quoted text.
TEST(SelDescValues, ConvertedByType) {
    const std::vector<int> numeric = {-6, -5, 2, 3, 4, 5, 6, 7, 8}, dates = {9, 11},
                           text = {0, 1, 12, -1, -2, -3, -4, -7, -8, -9, -10, 10, 91, 92, 93, 99};
    const struct {
        const std::vector<int> &types;
        const char *value, *expected;
    } cases[] = {
        {numeric, "1.234,50", "1234.50"}, {numeric, "1e5", "15"}, {numeric, "-3", "-3"},
        {numeric, "+ 12 345,-", "+12345.-"}, {numeric, "abc", ""},
        {dates, "15.3.2024", "{d '2024-03-15'}"}, {dates, "01.02.24", "{d '2024-02-01'}"},
        {dates, "1.2.99", "{d '1999-02-01'}"}, {dates, "15.03.2024 10:30", "{d '2024-03-15'}"},  // time dropped
        {dates, "kein Datum", "{d '0000-00-00'}"}, {dates, "31.02.2024", "{d '0000-00-00'}"},
        {text, "1.234,50", "'1.234,50'"}, {text, "O'Neil", "'O'Neil'"}, {text, "", "''"},
    };
    for (const auto &c : cases)
        for (int type : c.types) EXPECT_EQ(Typed(c.value, type), c.expected) << c.value << " as " << type;
}

TEST(SelDescValues, Lists) {
    EXPECT_EQ(List("Berlin;Bonn", 12), "'Berlin','Bonn'");
    EXPECT_EQ(List("4;7;9", 4), "4,7,9");
    EXPECT_EQ(List("1,5;2.000", 8), "1.5,2000");
    EXPECT_EQ(List("1.1.2024;2.1.2024", 9), "{d '2024-01-01'},{d '2024-01-02'}");
    EXPECT_EQ(List("a;;b", 12), "'a','','b'");
    EXPECT_EQ(List("1;;2", 4), "1,,2");
    EXPECT_EQ(List(" a ; b", 12), "' a ',' b'");  // not trimmed
    EXPECT_EQ(List("a;", 12), "'a'");               // a trailing ";" opens no item
    EXPECT_EQ(List(";", 12), "''");
    EXPECT_EQ(List("x", 12), "'x'");
    // Each item is kept to 499 characters.
    EXPECT_EQ(List(std::string(520, 'v') + ";w", 12), "'" + std::string(499, 'v') + "','w'");
}

TEST(SelDescRoom, WhereSeparatorsAndGroupsOnlyWhereTheyFit) {
    const std::string desc = Line("Ort", "EQ", "a", 12) + "\v" + Line("Ort", "EQ", "b", 12) + "\v";
    // Each group is "(Ort='a')", 9 characters. With fewer than 6 bytes left
    // no separator is written; a group that does not fit is never cut.
    const std::pair<int, const char *> sizes[] = {{23, "(Ort='a') OR (Ort='b')"}, {22, "(Ort='a') OR "},
                                                  {15, "(Ort='a') OR "}, {14, "(Ort='a')"}, {10, "(Ort='a')"},
                                                  {9, ""}, {1, ""}};
    for (const auto &[size, expected] : sizes) EXPECT_EQ(Where(desc, size), expected) << size;
    // A later, shorter group may still follow one that was dropped.
    const std::string longFirst = Line("Ort", "EQ", std::string(40, 'x'), 12) + "\v" + Line("O", "IN", "", 12);
    EXPECT_EQ(Where(longFirst, 12), "(O IS NULL)");
}

TEST(SelDescRoom, ConditionAndLineLimits) {
    // A condition is cut to 299 characters.
    std::string value(299, 'v');
    std::string where = Where(Line("Ort", "EQ", value, 12));
    ASSERT_EQ(where.size(), 301u);
    EXPECT_EQ(where, "(Ort='" + std::string(294, 'v') + ")");
    // Readers keep 99 characters of the field and 299 of the value.
    EXPECT_EQ(Where(Line(std::string(120, 'f'), "IN", "", 12)), "(" + std::string(99, 'f') + " IS NULL)");
    EXPECT_EQ(Where(Line("O", "LIKE", "", 12)), "");
    EXPECT_EQ(Where(Line("O", "BW", std::string(310, 'v'), 12)),
              "(O LIKE '" + std::string(291, 'v') + ")");
}

TEST(SelDescRoom, GroupWorkingBufferOf30000) {
    // 150 conditions of 200 characters overflow one group's buffer.
    std::string group;
    for (int i = 0; i < 150; ++i) group += Line("F", "EQ", std::string(196, static_cast<char>('a' + i % 26)), 12);
    std::string where = Where(group, 40000);
    ASSERT_GE(where.size(), 2u);
    EXPECT_EQ(where.front(), '(');
    // 1 + 146 conditions and 145 separators fill 29926 of 29999 characters.
    // The four conditions that no longer fit are dropped, but each still
    // writes its separator while six bytes remain.
    std::string tail;
    for (int i = 0; i < 4; ++i) tail += " AND ";
    EXPECT_EQ(where.size(), 1 + 146 * 200 + 145 * 5 + tail.size() + 1);
    EXPECT_EQ(where.substr(where.size() - tail.size() - 1), tail + ")");
}

TEST(SelDescSet, AssignmentsFromTheFirstGroup) {
    EXPECT_EQ(Set(Line("Ort", "SCO", "Bonn", 12) + Line("Plz", "SNU", "", 12) + Line("Umsatz", "SFO", "Umsatz*2", 8)),
              "Ort='Bonn',Plz=NULL,Umsatz=Umsatz*2");
    EXPECT_EQ(Set(Line("Betrag", "SCO", "1.000,5", 8) + Line("Datum", "SCO", "3.4.2024", 11)),
              "Betrag=1000.5,Datum={d '2024-04-03'}");
    EXPECT_EQ(Set(Line("Liefer Ort", "SFI", "Kunden Ort", 12) + Line("Plz", "SNU", "x", 12)),
              "\"Liefer Ort\"=\"Kunden Ort\",Plz=NULL");
    // Skipped: empty field, unknown or selection keyword, missing value.
    EXPECT_EQ(Set(Line("", "SCO", "x", 12) + Line("A", "EQ", "x", 12) + Line("B", "SCO", "", 12) +
                  Line("C", "SFO", "", 12) + Line("D", "SFO", "1", 4)),
              "D=1");
    // Later groups are ignored.
    EXPECT_EQ(Set(Line("A", "SFO", "1", 4) + "\v" + Line("B", "SFO", "2", 4) + "\v"), "A=1");
    EXPECT_EQ(Set("\v" + Line("B", "SFO", "2", 4)), "");
    EXPECT_EQ(Set(""), "");
}

TEST(SelDescSet, AppendsAreCutToTheSize) {
    const std::string desc = Line("Ort", "SCO", "Bonn", 12) + Line("Plz", "SNU", "", 12);
    EXPECT_EQ(Set(desc, 11), "Ort='Bonn'");
    EXPECT_EQ(Set(desc, 13), "Ort='Bonn',P");
    EXPECT_EQ(Set(desc, 6), "Ort='");
    EXPECT_EQ(Set(desc, 1), "");
}

TEST(SelDescExports, ArgumentsAndResults) {
    GuardedBuffer where(100);
    // Without a connection names are left as they are.
    const std::string desc = Line("Kunden Ort", "BW", "Ber", 12) + "\v";
    EXPECT_EQ(Kodbc_SelDesc_To_WhereClause(nullptr, desc.c_str(), where.data(), where.size()), 0);
    EXPECT_EQ(where.text(), "(Kunden Ort LIKE 'Ber%')");
    EXPECT_EQ(Kodbc_SelDesc_To_WhereClause_Expanded(nullptr, desc.c_str(), where.data(), where.size(), "*_''"), 0);
    EXPECT_EQ(where.text(), "(Kunden Ort LIKE 'Ber*')");
    EXPECT_EQ(Kodbc_SelDesc_To_WhereClause(nullptr, nullptr, where.data(), where.size()), 0);
    EXPECT_EQ(where.text(), "") << "no descriptor, an empty clause";
    EXPECT_EQ(Kodbc_SelDesc_To_WhereClause(nullptr, desc.c_str(), nullptr, 100), -1);
    EXPECT_EQ(Kodbc_SelDesc_To_WhereClause(nullptr, desc.c_str(), where.data(), 0), -1);
    EXPECT_EQ(Kodbc_SelDesc_To_WhereClause_Expanded(nullptr, desc.c_str(), where.data(), -3, nullptr), -1);
    EXPECT_TRUE(where.guards_intact());

    GuardedBuffer set(8);
    const std::string assign = Line("Ort", "SCO", "Bonn", 12);
    Kodbc_OpDesc_To_SetClause(nullptr, assign.c_str(), set.data(), set.size());
    EXPECT_EQ(set.text(), "Ort='Bo");
    Kodbc_OpDesc_To_SetClause(nullptr, nullptr, set.data(), set.size());
    EXPECT_EQ(set.text(), "");
    std::memcpy(set.data(), "kept", 5);
    Kodbc_OpDesc_To_SetClause(nullptr, assign.c_str(), set.data(), 0);
    EXPECT_EQ(set.text(), "kept");
    Kodbc_OpDesc_To_SetClause(nullptr, assign.c_str(), nullptr, 8);
    EXPECT_TRUE(set.guards_intact());
}

} // namespace
} // namespace kodbc::test
