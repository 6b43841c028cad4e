// Selection and assignment descriptors into WHERE and SET text, run on each
// data source; the selection editor's rows without its window; mask files.
#include "test_support.h"

#include "select/selection_mask.h"
#include "select/seldesc.h"
#include "select/seldesc_rows.h"

#include <kodbc/kodbc_seldesc.h>

#include <cstdio>
#include <fstream>
#include <map>
#include <string>
#include <tuple>
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

// Lines without a condition drop out of their group, groups without one out of the clause.
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
        {"\v\v\v\v", ""}, {"\n\n\v\n", ""},
    };
    for (const auto &[descriptor, expected] : cases) EXPECT_EQ(Where(descriptor), expected) << descriptor;
}

TEST(SelDescWhere, PatternCharacters) {
    const std::string bw = Line("Ort", "BW", "Ber", 12), ct = Line("Ort", "CT", "Ber", 12);
    const std::tuple<std::string, const char *, const char *> cases[] = {
        {bw, "*_''", "(Ort LIKE 'Ber*')"}, {ct, "*?\"\"", "(Ort LIKE \"*Ber*\")"}, {ct, "%#[]", "(Ort LIKE [%Ber%])"},
        {bw, "%X''", "(Ort LIKE 'Ber%')"},  // the single-character wildcard is used by no operator
        {bw, "*", "(Ort LIKE Ber*)"},       // missing characters are left out, not read past the text
        {Line("Ort", "EQ", "x", 12), "*_##", "(Ort='x')"},  // only the LIKE operators use them
    };
    for (const auto &[line, pattern, expected] : cases) EXPECT_EQ(Where(line, 4000, pattern), expected) << pattern;
}

// Numbers follow the German format, dates become ODBC date constants, everything else
// (character and binary types, 10 time, the ODBC 3 date codes, unknown) is quoted text.
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
    // 146 conditions of 200 characters and 145 separators fill 29926 of 29999. Conditions that
    // no longer fit are dropped, each still writes its separator while five characters remain.
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
    const std::tuple<std::string, int, const char *> cases[] = {
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
    for (const auto &[descriptor, size, expected] : cases)
        EXPECT_EQ(Set(descriptor, size), expected) << descriptor << size;
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
             "'Berlin'), (2, 'Bonn', 800.00, {d '2023-12-01'}, {ts '2023-12-01 08:00:00'}, 'Koeln'), "
             "(3, 'Bremen', 2000.00, NULL, NULL, 'Bremen')");
        // The types as the dialogs read them into their field boxes.
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

// Each kind of value conversion meets the driver; operators' texts are proven above.
TEST_P(SelDescDriver, ConditionsSelectAndAssignmentsUpdateTheRows) {
    // The library speaks ODBC 2: dates come as 9 and 11, the value conversion's date codes.
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

std::string Listing(const std::vector<BoxEntry> &entries) {
    std::string out;
    for (const BoxEntry &entry : entries) out += entry.text + "=" + std::to_string(entry.data) + "|";
    return out;
}

TEST(SelDescRowTexts, OperatorBoxesInTableOrderWithTheBlankLast) {
    EXPECT_EQ(Listing(OperatorBoxEntries(OperatorTable(OPDESC_SELECTION))),
              "beginnt mit=101|enthält=108|ist leer=109|ist nicht leer=110|ist gleich=102|ist ungleich=103|"
              "ist größer als=104|ist größer oder gleich=105|ist kleiner als=106|ist kleiner oder gleich=107|"
              "ist in Liste enthalten  (Trenner ist ;)=111|ist gleich dem Inhalt von Feld=201|"
              "ist ungleich dem Inhalt von Feld=202|ist größer als der Inhalt von Feld=203|"
              "ist größer oder gleich dem Inhalt von Feld=204|ist kleiner als der Inhalt von Feld=205|"
              "ist kleiner oder gleich dem Inhalt von Feld=206| =0|");
    EXPECT_EQ(Listing(OperatorBoxEntries(OperatorTable(OPDESC_ASSIGNMENT))),
              "Feld leeren=300|Fester Wert=301|Inhalt von Feld=302|Ergebnis der Formel=303| =0|");
    for (int kind : {0, 3}) EXPECT_EQ(OperatorTable(kind), nullptr) << kind;
    EXPECT_EQ(FindByKeyword(OperatorTable(OPDESC_SELECTION), "BW "), nullptr);  // with case and exactly
}

TEST(SelDescRowTexts, FieldListEntriesAndExactLookup) {
    const std::pair<std::string, const char *> lists[] = {
        {"Ort\t12\tUmsatz\t8\tKunden Nr\t-5", "Ort=12|Umsatz=8|Kunden Nr=-5|"},
        {"A\tB", "A=0|B=0|"},                     // a plain name list
        {"\t\tA\t\tB\t+7\t", "A=0|B=7|"},         // empty names are skipped
        {"A\t7x\tB\t1\t2", "A=0|7x=0|B=1|2=0|"},  // a type is all digits, then the next name
        {"A\t-\tB\t1234567890", "A=0|-=0|B=123456789|"},
        {"", ""},
    };
    for (const auto &[list, expected] : lists) EXPECT_EQ(Listing(FieldBoxEntries(list)), expected) << list;
    EXPECT_EQ(FieldBoxEntries(std::string(310, 'n') + "\t4")[0].text, std::string(299, 'n'));

    const std::vector<std::string> entries = {"Ort", "ort", "Ort", ""};
    const std::pair<const char *, int> lookups[] = {{"Ort", 0}, {"ort", 1}, {"Or", -1}, {"", 3}, {"ORT", -1}};
    for (const auto &[text, index] : lookups) EXPECT_EQ(FindExactEntry(entries, text), index) << text;
}

// Five rows in the first group, one in each of three more.
const OpDescDialogItem kRows[] = {{11, 12, 13}, {15, 16, 17}, {18, 19, 20}, {21, 22, 23}, {24, 25, 26}, {1, 1, 1},
                                  {31, 32, 33}, {1, 1, 1},      {41, 42, 43}, {1, 1, 1},    {51, 52, 53}, {1, 1, 1},
                                  {0, 0, 0}};

TEST(SelDescRowTexts, DescriptorLinesLandInTheirGroupsRows) {
    const std::pair<std::string, const char *> cases[] = {
        {"Ort\tBW\tBer\t12\nUmsatz\tGT\t1.000,5\t8\n\vDatum\tEQ\t1.2.2024\t9\n\v\vFrei\tIL\t4;7;9\t0\n\v",
         "0:Ort|101|Ber 1:Umsatz|104|1.000,5 6:Datum|102|1.2.2024 10:Frei|111|4;7;9 "},
        // Surplus lines are lost, group 3 is not touched by them.
        {"Ort\tNN\t\t12\n\vA\tEQ\t1\t4\nB\tEQ\t2\t4\n\v", "0:Ort|110| 6:A|102|1 "},
        // An unknown keyword selects the blank entry.
        {"Ort\tXX\tBer\t12\nOrt\tbw\tB", "0:Ort|0|Ber 1:Ort|0|B "},
        {"\v\v\vA\tLT\tx\t1\n\vB\tLT\ty\t1\n\v", "10:A|106|x "},  // more groups than the page has
        {std::string(120, 'f') + "\tIN\t" + std::string(310, 'v') + "\t1", "0:ff|109|vv "},
        {"", ""},
    };
    for (const auto &[descriptor, expected] : cases) {
        std::string shown;
        for (const ShownLine &line : LinesForRows(OperatorTable(OPDESC_SELECTION), descriptor, kRows)) {
            const bool cut = line.field.size() == 99 && line.value.size() == 299;  // the readers' limits
            shown += std::to_string(line.item) + ":" + (cut ? "ff" : std::string(line.field)) + "|" +
                     std::to_string(line.code) + "|" + (cut ? "vv" : std::string(line.value)) + " ";
        }
        EXPECT_EQ(shown, expected) << descriptor;
    }
    const OpDescDialogItem oneRow[] = {{11, 12, 13}, {0, 0, 0}};  // no group end before the table end
    EXPECT_EQ(LinesForRows(OperatorTable(OPDESC_SELECTION), "A\tEQ\t1\t4\nB\tEQ\t2\t4\n\vC\tEQ\t3", oneRow).size(),
              1u);
}

TEST(SelDescRowTexts, FocusGoesToTheFirstControlWithoutText) {
    // Controls 11 up to below the bound have text; group ends are no controls.
    const std::pair<int, int> cases[] = {{11, 11}, {12, 12}, {13, 13}, {14, 15}, {27, 31}, {100, 0}};
    for (const auto &[bound, expected] : cases) {
        auto hasText = [bound = bound](int id) { return id >= 11 && id < bound; };
        EXPECT_EQ(FirstEmptyControl(kRows, hasText), expected) << bound;
    }
}

std::string Write(const std::vector<RowTexts> &rows, int size = 2000, int kind = OPDESC_SELECTION) {
    return Guarded(size, [&](char *out, int n) { WriteDescriptor(OperatorTable(kind), rows, out, n); });
}

TEST(SelDescRowTexts, RowsWrittenBackWithTheirGroupEnds) {
    const RowTexts end{true, "", 0, "", 0}, ort{false, "Ort", 102, "Bonn", 12}, umsatz{false, "Umsatz", 104, "5", 8};
    const std::vector<RowTexts> rows = {
        ort, {false, "Frei", 111, "4;7;9", 0}, {false, "A", 0, "x", 1},  // the blank entry
        {false, "A", 999, "x", 1}, {false, "", 109, "", 4}, {false, "", 109, "v", -3}, end, end,
        {false, "D", 301, "x", 1}, {false, "Betrag", 105, std::string(250, 'v'), 8}, end};
    EXPECT_EQ(Write(rows), "Ort\tEQ\tBonn\t12\nFrei\tIL\t4;7;9\t0\n\tIN\tv\t-3\n\v\vBetrag\tGE\t" +
                               std::string(199, 'v') + "\t8\n\v");
    EXPECT_EQ(Write(rows, 2000, 7), "");
    EXPECT_EQ(Write({{false, "D", 301, "x", 1}}, 2000, OPDESC_ASSIGNMENT), "D\tSCO\tx\t1\n");

    // Every separator needs one byte more than it takes: what follows the last that fits is dropped.
    const std::vector<RowTexts> empty = {end, end, end, end}, two = {ort, end, umsatz, end, end, end};
    const std::string both = "Ort\tEQ\tBonn\t12\n\vUmsatz\tGT\t5\t8\n\v";  // 31 characters
    const struct {
        const std::vector<RowTexts> &rows;
        int size;
        std::string expected;
    } cuts[] = {{empty, 8, "\v\v\v\v"}, {empty, 7, "\v\v\v"}, {empty, 5, "\v\v"}, {empty, 2, "\v"}, {empty, 1, ""},
                {two, 37, both + "\v\v"}, {two, 36, both + "\v"}, {two, 34, both},
                {two, 25, "Ort\tEQ\tBonn\t12\n\vUmsatz\t"}, {two, 10, "Ort\tEQ\tBo"}};
    for (const auto &c : cuts) EXPECT_EQ(Write(c.rows, c.size), c.expected) << c.size;
}

TEST(SelectionMask, ReadsTheExactMagicOnlyAndWritesWithinTheLimit) {
    const std::string file = ::testing::TempDir() + "kodbc_mask_test.sms";
    MessageRecorder messages;
    const std::string condition = "Ort\tEQ\tBonn\t12\n\v";
    const std::tuple<std::string, bool, std::string> cases[] = {
        {"KORVEL-SMS", true, ""},
        {"KORVEL-SMS" + condition, true, condition},
        {"KORVEL-SMS" + condition + "\x1a", true, condition},  // an editor's end-of-file mark
        {"korvel-sms" + condition, false, ""},
        {"KORVEL-SM", false, ""},
    };
    for (const auto &[bytes, accepted, descriptor] : cases) {
        std::ofstream(file, std::ios::binary) << bytes;
        messages.clear();
        char out[200] = "unchanged";
        EXPECT_EQ(Kodbc_LoadSelectionMask(file.c_str(), out, sizeof out), accepted ? 1 : 2) << bytes;
        EXPECT_EQ(out, accepted ? descriptor : "") << bytes;
        EXPECT_EQ(messages.entries().size(), accepted ? 0u : 1u) << bytes;
    }
    EXPECT_EQ(Kodbc_LoadSelectionMask("/nonexistent/mask.sms", nullptr, 0), 2);
    messages.clear();
    char out[20];
    EXPECT_EQ(Kodbc_LoadSelectionMask("/nonexistent/mask.sms", out, sizeof out), 2);
    ASSERT_EQ(messages.entries().size(), 1u);
    EXPECT_NE(messages.entries()[0].text.find("/nonexistent/mask.sms"), std::string::npos);

    EXPECT_EQ(Kodbc_SaveSelectionMask(file.c_str(), "Ort\tEQ\tBonn\t12\n\v\v\v\v"), 1);
    EXPECT_EQ(ReadFile(file), "KORVEL-SMSOrt\tEQ\tBonn\t12\n\v\v\v\v");
    EXPECT_EQ(Kodbc_SaveSelectionMask(file.c_str(), std::string(6000, 'x').c_str()), 1);
    EXPECT_EQ(ReadFile(file), "KORVEL-SMS" + std::string(4990, 'x'));
    for (const char *bad : {"/dev/full", "/nonexistent/mask.sms"}) {
        messages.clear();
        EXPECT_EQ(Kodbc_SaveSelectionMask(bad, "x"), 2) << bad;
        EXPECT_EQ(messages.entries().size(), 1u) << bad;
    }
    std::remove(file.c_str());
}

} // namespace
} // namespace kodbc::test
