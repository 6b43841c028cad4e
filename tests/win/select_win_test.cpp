// SELECT clauses moved through real boxes, and the alias dialog. Scanning and the boxes'
// lines are proven natively (select_scanner_test.cpp, select_boxes_test.cpp).
#include "robot.h"
#include "select/alias_dialog_ids.h"

#include <cstring>

namespace {

using namespace wintest;
using Line = BoxLine;

const char kAliasTitle[] = "Eingabe eines neuen Verwendungs-Namens";

int Selected(HWND box) {
    return static_cast<int>(SendMessageA(box, IsCombo(box) ? CB_GETCURSEL : LB_GETCURSEL, 0, 0));
}

// Through the platform's own box functions (platform_win_test.cpp); read back with messages.
void Put(HWND box, const std::vector<Line> &lines) {
    Korvel_ResetBox(box);
    for (const Line &line : lines) Korvel_AddBoxEntry(box, line.text.c_str(), line.data, -1, 0);
}

class SelectBoxes : public ConnectedTest {
protected:
    void SetUp() override {
        ConnectedTest::SetUp();
        if (!HasFatalFailure()) q_ = std::string(1, Kodbc_GetDelimiter(hdbc_));
    }
    std::string Q(const std::string &name) const { return q_ + name + q_; }
    std::string q_;
};

// Filled from a clause with the connection's quote, and written back with it.
TEST_F(SelectBoxes, ClausesFillTheBoxesAndBoxesWriteTheClauses) {
    const std::string statement = "SELECT a, " + Q("b c") + " AS x FROM t1 k, " + Q("t 2") + " ORDER BY a DESC, d";
    Put(list_, {{"old", 7}});
    EXPECT_EQ(Kodbc_Select_FieldsClause_To_FieldsBox(hdbc_, statement.c_str(), KODBC_BOX_FIELD_ALIAS, list_), 0);
    EXPECT_EQ(BoxLines(list_), (std::vector<Line>{{"a", 0}, {"b c\tx", 0}}));
    EXPECT_EQ(Kodbc_Select_TablesClause_To_TablesBox(hdbc_, statement.c_str(), 0, combo_), 0);
    EXPECT_EQ(BoxLines(combo_), (std::vector<Line>{{"t1", 0}, {"t 2", 0}}));
    EXPECT_EQ(Kodbc_Select_OrderByClause_To_OrderByBox(hdbc_, statement.c_str(), KODBC_BOX_SORT_LABEL, list_), 0);
    EXPECT_EQ(BoxLines(list_), (std::vector<Line>{{"a\tabsteigend", 1}, {"d\taufsteigend", 0}}));
    EXPECT_EQ(Kodbc_Select_FieldsClause_To_FieldsBox(nullptr, nullptr, 0, list_), 0);
    EXPECT_TRUE(BoxLines(list_).empty()) << "no statement: an empty box";
    EXPECT_EQ(Kodbc_Select_TablesClause_To_TablesBox(hdbc_, statement.c_str(), 0, nullptr), -1);

    char statementBuffer[300] = "SELECT old FROM t ORDER BY x";
    Put(list_, {{"a b\tal ias", 0}, {"c", 0}});
    EXPECT_EQ(Kodbc_Select_FieldsBox_To_FieldsClause(hdbc_, list_, statementBuffer, sizeof statementBuffer), 0);
    Put(combo_, {{"my t", 0}});
    EXPECT_EQ(Kodbc_Select_TablesBox_To_TablesClause(hdbc_, combo_, statementBuffer, sizeof statementBuffer), 0);
    Put(list_, {{"a\tabsteigend", 1}, {"b c", 0}});
    EXPECT_EQ(Kodbc_Select_OrderByBox_To_OrderByClause(hdbc_, list_, statementBuffer, sizeof statementBuffer), 0);
    EXPECT_EQ(std::string(statementBuffer),
              "SELECT " + Q("a b") + " AS " + Q("al ias") + ",c FROM " + Q("my t") + " ORDER BY a DESC," + Q("b c"));
    EXPECT_EQ(Kodbc_Select_FieldsBox_To_FieldsClause(hdbc_, nullptr, statementBuffer, 16), -1);

    // The sort toggle shows the label and selects the line; below 0 it takes the selected one.
    Put(list_, {{"a\taufsteigend", 0}, {"b", 1}});
    EXPECT_EQ(Kodbc_OrderByBox_ToggleDirection(list_, 0), 0);
    EXPECT_EQ(Kodbc_OrderByBox_ToggleDirection(list_, 1), 1);
    EXPECT_EQ(Selected(list_), 1);
    EXPECT_EQ(Kodbc_OrderByBox_ToggleDirection(list_, -1), 1);
    EXPECT_EQ(BoxLines(list_), (std::vector<Line>{{"a\tabsteigend", 1}, {"b\tabsteigend", 1}}));

    // A stray bracket is reported once and leaves the box empty.
    MessageBoxAnswerer answerer("Datenbank", IDOK);
    Put(list_, {{"old", 0}});
    EXPECT_EQ(Kodbc_Select_FieldsClause_To_FieldsBox(hdbc_, "SELECT a FROM t)", 0, list_), 0);
    EXPECT_TRUE(BoxLines(list_).empty());
    ASSERT_EQ(answerer.Seen().size(), 1u);
    EXPECT_EQ(answerer.Seen()[0].text, "Es wurde eine unerwartete schlie\xDF" "ende Klammer gefunden.\n\n)");
}

// Typing keeps only the alias's characters (which: select_boxes_test.cpp);
// OK stores the alias behind a tab and clears the line's item data, cancel
// leaves the line.
TEST_F(SelectBoxes, TypedAliasKeepsOnlyAllowedCharacters) {
    Put(list_, {{"first", 0}, {"col\told", 3}, {"last", 0}});
    std::string before, typed;
    DialogRobot robot(kAliasTitle, "alias-10070", [&](HWND dialog) {
        before = ControlText(dialog, IDC_FIELD_ALIAS_EDIT);
        HWND edit = GetDlgItem(dialog, IDC_FIELD_ALIAS_EDIT);
        SendMessageA(edit, EM_SETSEL, 0, -1);
        for (char c : std::string("Ab0c d-9_\xE4Z"))
            SendMessageA(edit, WM_CHAR, static_cast<unsigned char>(c), 0);
        typed = ControlText(dialog, IDC_FIELD_ALIAS_EDIT);
        SaveScreenshot(dialog, "alias-10070-typed");
        Click(dialog, IDC_FIELD_ALIAS_OK);
    });
    int result = Kodbc_FieldsBox_EditAlias(list_, 1);
    robot.Join();
    EXPECT_EQ(before, "old");
    EXPECT_EQ(typed, "Abcd9_Z");
    EXPECT_EQ(result, 1);
    EXPECT_EQ(BoxLines(list_), (std::vector<Line>{{"first", 0}, {"col\tAbcd9_Z", 0}, {"last", 0}}));
    EXPECT_EQ(Selected(list_), 1);

    DialogRobot cancel(kAliasTitle, "", [&](HWND dialog) { Click(dialog, IDC_FIELD_ALIAS_CANCEL); });
    EXPECT_EQ(Kodbc_FieldsBox_EditAlias(list_, -1), 2);
    cancel.Join();
    EXPECT_TRUE(cancel.Found());
    EXPECT_EQ(BoxLines(list_)[1], (Line{"col\tAbcd9_Z", 0}));
}

} // namespace
