// The selection editor without its window: the box entries, where a
// descriptor's lines land and what the rows' texts write back (group
// separators and room included), and the mask files it loads and saves.
#include "test_support.h"

#include "select/selection_mask.h"
#include "select/seldesc_rows.h"

#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

namespace kodbc::test {
namespace {

using namespace kodbc::seldesc;

std::string Listing(const std::vector<BoxEntry> &entries) {
    std::string out;
    for (const BoxEntry &entry : entries) out += entry.text + "=" + std::to_string(entry.data) + "|";
    return out;
}

// Box order is table order, each label with its code, the blank entry last.
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

    // Every separator needs one byte more than it takes: what follows the
    // last one that fits is dropped.
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

class SelectionMask : public ::testing::Test {
protected:
    void TearDown() override { std::remove(file_.c_str()); }
    std::string file_ = ::testing::TempDir() + "kodbc_mask_test.sms";
    MessageRecorder messages_;
};

TEST_F(SelectionMask, ReadAcceptsTheExactMagicOnly) {
    const std::string condition = "Ort\tEQ\tBonn\t12\n\v";
    const struct {
        std::string bytes;
        bool accepted;
        std::string descriptor;
    } cases[] = {
        {"KORVEL-SMS", true, ""},
        {"KORVEL-SMS" + condition, true, condition},
        {"KORVEL-SMS" + condition + "\x1a", true, condition},  // an editor's end-of-file mark
        {"korvel-sms" + condition, false, ""},
        {"KORVEL-SM", false, ""},
    };
    for (const auto &c : cases) {
        std::ofstream(file_, std::ios::binary) << c.bytes;
        messages_.clear();
        char out[200] = "unchanged";
        EXPECT_EQ(Kodbc_LoadSelectionMask(file_.c_str(), out, sizeof out), c.accepted ? 1 : 2) << c.bytes;
        EXPECT_EQ(out, c.accepted ? c.descriptor : "") << c.bytes;
        EXPECT_EQ(messages_.entries().size(), c.accepted ? 0u : 1u) << c.bytes;
    }
    EXPECT_EQ(Kodbc_LoadSelectionMask("/nonexistent/mask.sms", nullptr, 0), 2);
    messages_.clear();
    char out[20];
    EXPECT_EQ(Kodbc_LoadSelectionMask("/nonexistent/mask.sms", out, sizeof out), 2);
    ASSERT_EQ(messages_.entries().size(), 1u);
    EXPECT_NE(messages_.entries()[0].text.find("/nonexistent/mask.sms"), std::string::npos);
}

TEST_F(SelectionMask, WriteKeepsTheBufferLimitAndSaysWhatFailed) {
    EXPECT_EQ(Kodbc_SaveSelectionMask(file_.c_str(), "Ort\tEQ\tBonn\t12\n\v\v\v\v"), 1);
    EXPECT_EQ(ReadFile(file_), "KORVEL-SMSOrt\tEQ\tBonn\t12\n\v\v\v\v");
    EXPECT_EQ(Kodbc_SaveSelectionMask(file_.c_str(), std::string(6000, 'x').c_str()), 1);
    EXPECT_EQ(ReadFile(file_), "KORVEL-SMS" + std::string(4990, 'x'));
    for (const char *bad : {"/dev/full", "/nonexistent/mask.sms"}) {
        messages_.clear();
        EXPECT_EQ(Kodbc_SaveSelectionMask(bad, "x"), 2) << bad;
        EXPECT_EQ(messages_.entries().size(), 1u) << bad;
    }
}

} // namespace
} // namespace kodbc::test
