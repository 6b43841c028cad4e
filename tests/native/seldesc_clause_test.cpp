// Selection and assignment descriptors into WHERE and SET text: every
// operator's SQL, the value conversion by data type, lists, groups and the
// room rules without a driver; then built the way the dialogs build them and
// run on each data source.
#include "test_support.h"

#include "select/seldesc.h"
#include "select/seldesc_rows.h"

#include <kodbc/kodbc_seldesc.h>

#include <map>
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

TEST(SelDescWhere, EverySelectionOperator) {
    const struct {
        const char *keyword, *value;
        int type;
        const char *expected;
    } cases[] = {
        {"BW", "Ber", 12, "(Ort LIKE 'Ber%')"}, {"CT", "Ber", 12, "(Ort LIKE '%Ber%')"},
        {"CT", "a'b_%", 4, "(Ort LIKE '%a'b_%%')"},  // raw: no conversion, no doubling
        {"IN", "", 12, "(Ort IS NULL)"}, {"NN", "", 12, "(Ort IS NOT NULL)"},
        {"EQ", "O'Neil", 12, "(Ort='O'Neil')"}, {"NE", "Bonn", 12, "(NOT Ort = 'Bonn')"},
        {"GT", "1.000,5", 8, "(Ort > 1000.5)"}, {"GE", "7", 4, "(Ort >= 7)"}, {"LT", "7", 4, "(Ort < 7)"},
        {"LE", "7", 4, "(Ort <= 7)"}, {"IL", "Berlin;Bonn", 12, "(Ort IN ('Berlin','Bonn'))"},
        {"EQF", "Plz", 12, "(Ort=Plz)"}, {"NEF", "Liefer Ort", 12, "(NOT Ort = \"Liefer Ort\")"},
        {"GTF", "Plz", 12, "(Ort > Plz)"}, {"GEF", "t.Plz", 12, "(Ort >= t.Plz)"}, {"LTF", "Plz", 12, "(Ort < Plz)"},
        {"LEF", "Plz", 12, "(Ort <= Plz)"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(Where(Line("Ort", c.keyword, c.value, c.type)), c.expected) << c.keyword << " " << c.value;
    // The field is prepared as an identifier for every operator.
    EXPECT_EQ(Where(Line("Kunden Ort", "BW", "B", 12)), "(\"Kunden Ort\" LIKE 'B%')");
    EXPECT_EQ(Where(Line("Kunden Ort", "EQ", "B", 12), 4000, nullptr, "`"), "(`Kunden Ort`='B')");
}

// Lines without a condition drop out of their group, groups without one
// out of the clause.
TEST(SelDescWhere, LinesAndGroups) {
    const std::string a = Line("A", "EQ", "1", 4), b = Line("B", "EQ", "2", 4), c = Line("C", "EQ", "3", 4);
    const std::pair<std::string, const char *> cases[] = {
        {Line("Ort", "EQ", "", 12) + Line("Ort", "IL", "", 12) + Line("Ort", "EQF", "", 12), ""},  // value needed
        {Line("Ort", "BW", "", 12) + Line("", "IN", "", 12), ""},                                 // no field
        {Line("Ort", "eq", "x", 12) + Line("Ort", "SCO", "x", 12) + "Ort\tEQ", ""},  // unknown keyword, no value
        {"Ort\tEQ\t5", "(Ort='5')"},                                                // no type: 0, text
        {"Ort\tEQ\t5\t-5xyz\n", "(Ort=5)"},
        {a + b + "\v" + c + "\v", "(A=1 AND B=2) OR (C=3)"},
        {a + "\v\v\v" + c + "\v", "(A=1) OR (C=3)"},
        {a + "\v" + Line("X", "EQ", "", 4) + "\v" + c, "(A=1) OR (C=3)"},
        {Line("", "EQ", "1", 4) + a + Line("Y", "??", "1", 4) + b + "\v", "(A=1 AND B=2)"},
        {"\v\v\v\v", ""}, {"", ""}, {"\n\n\v\n", ""},
    };
    for (const auto &[descriptor, expected] : cases) EXPECT_EQ(Where(descriptor), expected) << descriptor;
}

TEST(SelDescWhere, PatternCharacters) {
    const std::string bw = Line("Ort", "BW", "Ber", 12), ct = Line("Ort", "CT", "Ber", 12);
    const struct {
        const std::string &line;
        const char *pattern, *expected;
    } cases[] = {
        {bw, "*_''", "(Ort LIKE 'Ber*')"}, {ct, "*?\"\"", "(Ort LIKE \"*Ber*\")"}, {ct, "%#[]", "(Ort LIKE [%Ber%])"},
        {bw, "%X''", "(Ort LIKE 'Ber%')"},  // the single-character wildcard is used by no operator
        {bw, "*", "(Ort LIKE Ber*)"},       // missing characters are left out, not read past the text
        {Line("Ort", "EQ", "x", 12), "*_##", "(Ort='x')"},  // only the LIKE operators use them
    };
    for (const auto &c : cases) EXPECT_EQ(Where(c.line, 4000, c.pattern), c.expected) << c.pattern;
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

// Each ";"-separated item as above, joined by ",".
TEST(SelDescValues, Lists) {
    const std::pair<std::string, std::string> texts[] = {
        {"Berlin;Bonn", "'Berlin','Bonn'"}, {"a;;b", "'a','','b'"}, {" a ; b", "' a ',' b'"},  // not trimmed
        {"a;", "'a'"}, {";", "''"}, {"x", "'x'"},  // a trailing ";" opens no item
        {std::string(520, 'v') + ";w", "'" + std::string(499, 'v') + "','w'"}};  // items kept to 499
    for (const auto &[value, expected] : texts) EXPECT_EQ(Typed(value, 12, true), expected) << value;
    EXPECT_EQ(Typed("1,5;2.000;;4", 8, true), "1.5,2000,,4");
    EXPECT_EQ(Typed("1.1.2024;2.1.2024", 9, true), "{d '2024-01-01'},{d '2024-01-02'}");
}

TEST(SelDescRoom, ConditionsSeparatorsAndGroupsOnlyWhereTheyFit) {
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
    // A condition is cut to 299 characters.
    EXPECT_EQ(Where(Line("Ort", "EQ", std::string(299, 'v'), 12)), "(Ort='" + std::string(294, 'v') + ")");
    EXPECT_EQ(Where(Line("O", "BW", std::string(310, 'v'), 12)), "(O LIKE '" + std::string(291, 'v') + ")");
}

TEST(SelDescRoom, GroupWorkingBufferOf30000) {
    // 146 conditions of 200 characters and 145 separators fill 29926 of a
    // group's 29999 characters. Conditions that no longer fit are dropped,
    // but each still writes its separator while five characters remain; the
    // closing bracket needs one.
    const struct {
        int shortOne;  // the value length of condition 147; 0 keeps 196
        std::size_t size;
        const char *tail;
    } cases[] = {{0, 29926 + 21, "' AND  AND  AND  AND )"}, {59, 29999, "q' AND "}};  // 63 more leave five
    for (const auto &c : cases) {
        std::string group;
        for (int i = 0; i < 150; ++i) {
            const int length = i == 146 && c.shortOne ? c.shortOne : 196;
            group += Line("F", "EQ", std::string(static_cast<std::size_t>(length), static_cast<char>('a' + i % 26)), 12);
        }
        const std::string where = Where(group, 40000), tail = c.tail;
        EXPECT_EQ(where.size(), c.size) << c.shortOne;
        EXPECT_EQ(where.front(), '(');
        EXPECT_EQ(where.substr(where.size() - tail.size()), tail) << c.shortOne;
    }
}

TEST(SelDescSet, AssignmentsFromTheFirstGroupCutToTheSize) {
    const std::string ort = Line("Ort", "SCO", "Bonn", 12), plz = Line("Plz", "SNU", "", 12);
    const struct {
        std::string descriptor;
        int size;
        const char *expected;
    } cases[] = {
        {ort + plz + Line("Umsatz", "SFO", "Umsatz*2", 8), 4000, "Ort='Bonn',Plz=NULL,Umsatz=Umsatz*2"},
        {Line("Betrag", "SCO", "1.000,5", 8) + Line("Datum", "SCO", "3.4.2024", 11), 4000,
         "Betrag=1000.5,Datum={d '2024-04-03'}"},
        {Line("Liefer Ort", "SFI", "Kunden Ort", 12) + Line("Plz", "SNU", "x", 12), 4000,
         "\"Liefer Ort\"=\"Kunden Ort\",Plz=NULL"},
        // Skipped: empty field, unknown or selection keyword, missing value.
        {Line("", "SCO", "x", 12) + Line("A", "EQ", "x", 12) + Line("B", "SCO", "", 12) + Line("C", "SFO", "", 12) +
             Line("D", "SFO", "1", 4), 4000, "D=1"},
        // Later groups are ignored.
        {Line("A", "SFO", "1", 4) + "\v" + Line("B", "SFO", "2", 4) + "\v", 4000, "A=1"},
        {"\v" + Line("B", "SFO", "2", 4), 4000, ""}, {"", 4000, ""},
        {ort + plz, 11, "Ort='Bonn'"}, {ort + plz, 13, "Ort='Bonn',P"}, {ort + plz, 6, "Ort='"}, {ort + plz, 1, ""},
    };
    for (const auto &c : cases) EXPECT_EQ(Set(c.descriptor, c.size), c.expected) << c.descriptor << c.size;
}

TEST(SelDescExports, ArgumentsAndResults) {
    // Without a connection names are left as they are.
    const std::string desc = Line("Kunden Ort", "BW", "Ber", 12) + "\v", assign = Line("Ort", "SCO", "Bonn", 12);
    auto where = [&](const char *descriptor, const char *pattern) {
        return Guarded(100, [&](char *out, int n) {
            EXPECT_EQ(pattern ? Kodbc_SelDesc_To_WhereClause_Expanded(nullptr, descriptor, out, n, pattern)
                              : Kodbc_SelDesc_To_WhereClause(nullptr, descriptor, out, n), 0);
        });
    };
    EXPECT_EQ(where(desc.c_str(), nullptr), "(Kunden Ort LIKE 'Ber%')");
    EXPECT_EQ(where(desc.c_str(), "*_''"), "(Kunden Ort LIKE 'Ber*')");
    EXPECT_EQ(where(nullptr, nullptr), "");  // no descriptor, an empty clause
    auto set = [&](const char *descriptor) {
        return Guarded(8, [&](char *out, int n) { Kodbc_OpDesc_To_SetClause(nullptr, descriptor, out, n); });
    };
    EXPECT_EQ(set(assign.c_str()), "Ort='Bo");
    EXPECT_EQ(set(nullptr), "");

    char kept[8] = "kept";
    EXPECT_EQ(Kodbc_SelDesc_To_WhereClause(nullptr, desc.c_str(), nullptr, 100), -1);
    EXPECT_EQ(Kodbc_SelDesc_To_WhereClause(nullptr, desc.c_str(), kept, 0), -1);
    EXPECT_EQ(Kodbc_SelDesc_To_WhereClause_Expanded(nullptr, desc.c_str(), kept, -3, nullptr), -1);
    Kodbc_OpDesc_To_SetClause(nullptr, assign.c_str(), kept, 0);
    Kodbc_OpDesc_To_SetClause(nullptr, assign.c_str(), nullptr, 8);
    EXPECT_STREQ(kept, "kept");
}

class SelDescDriver : public DataSourceTest {
protected:
    void SetUp() override {
        DataSourceTest::SetUp();
        if (HasFatalFailure()) return;
        OwnTables({"kc_h10_sel"});
        Exec("CREATE TABLE kc_h10_sel (nr INTEGER, ort VARCHAR(40), umsatz NUMERIC(12,2), datum DATE, "
             "zeit TIMESTAMP NULL, " + IdentifierQuote() + "kunden ort" + IdentifierQuote() + " VARCHAR(40))");
        Exec("INSERT INTO kc_h10_sel VALUES (1, 'Berlin', 1500.50, {d '2024-03-15'}, {ts '2024-03-15 10:00:00'}, "
             "'Berlin')");
        Exec("INSERT INTO kc_h10_sel VALUES (2, 'Bonn', 800.00, {d '2023-12-01'}, {ts '2023-12-01 08:00:00'}, "
             "'Koeln')");
        Exec("INSERT INTO kc_h10_sel VALUES (3, 'Bremen', 2000.00, NULL, NULL, 'Bremen')");
        ReadFieldTypes();
    }

    // The field list the dialogs fill their field boxes from, read as they
    // read it.
    void ReadFieldTypes() {
        char list[2000];
        ASSERT_EQ(Kodbc_GetFields(hdbc_, "kc_h10_sel", KODBC_FIELDS_WITH_TYPE, "\t", list, sizeof list),
                  KODBC_SUCCESS);
        for (const seldesc::BoxEntry &entry : seldesc::FieldBoxEntries(list)) types_[entry.text] = entry.data;
        ASSERT_EQ(types_.size(), 6u) << list;
    }

    std::string Line(const std::string &field, const char *keyword, const std::string &value) {
        return field + "\t" + keyword + "\t" + value + "\t" + std::to_string(types_.at(field)) + "\n";
    }

    std::string Where(const std::string &descriptor) {
        return Guarded(2000, [&](char *where, int n) {
            EXPECT_EQ(Kodbc_SelDesc_To_WhereClause(hdbc_, descriptor.c_str(), where, n), 0) << descriptor;
        });
    }

    long Count(const std::string &descriptor) {
        const std::vector<std::string> count = Column("SELECT COUNT(*) FROM kc_h10_sel WHERE " + Where(descriptor));
        return count.size() == 1 ? std::stol(count[0]) : -1;
    }

    std::map<std::string, long> types_;
};
KODBC_DATA_SOURCE_TEST_SUITE(SelDescDriver);

// Each kind of value conversion (text, number, date, timestamp, date list,
// quoted field) meets the driver; each operator's text is proven above.
TEST_P(SelDescDriver, GeneratedConditionsSelectTheRightRows) {
    // The library speaks ODBC 2: dates come as 9 and 11, the codes the value
    // conversion treats as dates.
    EXPECT_EQ(types_.at("datum"), SQL_DATE);
    EXPECT_EQ(types_.at("zeit"), SQL_TIMESTAMP);
    const std::pair<std::string, long> cases[] = {
        {Line("ort", "BW", "B"), 3},
        {Line("umsatz", "GT", "1.000,5"), 2},
        {Line("datum", "EQ", "15.03.2024"), 1},
        {Line("zeit", "GE", "15.3.2024"), 1},
        {Line("datum", "IL", "1.12.2023;15.3.2024"), 2},
        {Line("kunden ort", "NEF", "ort"), 1},  // the name with a blank quoted for this data source
    };
    for (const auto &[descriptor, count] : cases) EXPECT_EQ(Count(descriptor), count) << descriptor;
}

TEST_P(SelDescDriver, SetClauseUpdatesTheRows) {
    // The field copy comes first: some databases assign left to right.
    std::string set = Line("kunden ort", "SFI", "ort") + Line("ort", "SCO", "Hamburg") + Line("datum", "SNU", "") +
                      Line("umsatz", "SFO", "umsatz*2") + Line("nr", "SCO", "1.000");
    const std::string clause =
        Guarded(500, [&](char *out, int n) { Kodbc_OpDesc_To_SetClause(hdbc_, set.c_str(), out, n); });
    Exec("UPDATE kc_h10_sel SET " + clause + " WHERE " + Where(Line("nr", "EQ", "2")));
    EXPECT_EQ(Count(Line("ort", "EQ", "Hamburg") + Line("datum", "IN", "") + Line("umsatz", "EQ", "1600") +
                    Line("kunden ort", "EQ", "Bonn") + Line("nr", "EQ", "1000")),
              1);
    EXPECT_EQ(Count(Line("nr", "EQ", "2")), 0);
}

} // namespace
} // namespace kodbc::test
