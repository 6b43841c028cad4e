// SELECT clauses in real list and combo boxes, read back with messages, and
// the alias dialog driven by the robot. The clauses' scanning is proven
// natively (select_scanner_test.cpp); lists and combo boxes are one kind to
// this code, which reaches them through the platform's box functions
// (platform_win_test.cpp), so most cases use the list.
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

void Put(HWND box, const std::vector<Line> &lines) {
    const bool combo = IsCombo(box);
    SendMessageA(box, combo ? CB_RESETCONTENT : LB_RESETCONTENT, 0, 0);
    for (const Line &line : lines) {
        LRESULT i = SendMessageA(box, combo ? CB_ADDSTRING : LB_ADDSTRING, 0,
                                 reinterpret_cast<LPARAM>(line.text.c_str()));
        SendMessageA(box, combo ? CB_SETITEMDATA : LB_SETITEMDATA, static_cast<WPARAM>(i), line.data);
    }
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

TEST_F(SelectBoxes, ClausesFillTheBoxesOneLinePerItem) {
    const std::string statement = "SELECT a, " + Q("b c") + " AS x, d y FROM t1 k, OUTER " + Q("t 2") +
                                  " ORDER BY a DESC, " + Q("b c");
    Put(list_, {{"old", 7}});
    EXPECT_EQ(Kodbc_Select_FieldsClause_To_FieldsBox(hdbc_, statement.c_str(), KODBC_BOX_FIELD_ALIAS, list_), 0);
    EXPECT_EQ(BoxLines(list_), (std::vector<Line>{{"a", 0}, {"b c\tx", 0}, {"d\ty", 0}}));
    EXPECT_EQ(Kodbc_Select_FieldsClause_To_FieldsBox(hdbc_, statement.c_str(), 0, list_), 0);
    EXPECT_EQ(BoxLines(list_), (std::vector<Line>{{"a", 0}, {"b c", 0}, {"d", 0}}));

    EXPECT_EQ(Kodbc_Select_TablesClause_To_TablesBox(hdbc_, statement.c_str(), 0, list_), 0);
    EXPECT_EQ(BoxLines(list_), (std::vector<Line>{{"t1", 0}, {"t 2", 0}}));

    EXPECT_EQ(Kodbc_Select_OrderByClause_To_OrderByBox(hdbc_, statement.c_str(), KODBC_BOX_SORT_LABEL, list_), 0);
    EXPECT_EQ(BoxLines(list_), (std::vector<Line>{{"a\tabsteigend", 1}, {"b c\taufsteigend", 0}}));
    EXPECT_EQ(Kodbc_Select_OrderByClause_To_OrderByBox(hdbc_, statement.c_str(), 0, list_), 0);
    EXPECT_EQ(BoxLines(list_), (std::vector<Line>{{"a", 1}, {"b c", 0}}));
    // No statement: an empty box.
    EXPECT_EQ(Kodbc_Select_FieldsClause_To_FieldsBox(nullptr, nullptr, 0, list_), 0);
    EXPECT_TRUE(BoxLines(list_).empty());
    EXPECT_EQ(Kodbc_Select_TablesClause_To_TablesBox(hdbc_, statement.c_str(), 0, nullptr), -1);
}

TEST_F(SelectBoxes, StrayBracketIsReportedOnceAndLeavesTheBoxEmpty) {
    MessageBoxAnswerer answerer("Datenbank", IDOK);
    Put(list_, {{"old", 0}});
    EXPECT_EQ(Kodbc_Select_FieldsClause_To_FieldsBox(hdbc_, "SELECT a FROM t)", 0, list_), 0);
    EXPECT_TRUE(BoxLines(list_).empty());
    ASSERT_EQ(answerer.Seen().size(), 1u);
    EXPECT_EQ(answerer.Seen()[0].text, "Es wurde eine unerwartete schlie\xDF" "ende Klammer gefunden.\n\n)");
}

TEST_F(SelectBoxes, BoxesAreWrittenBackAsClauses) {
    char statement[300] = "SELECT old FROM t ORDER BY x";
    Put(list_, {{"*abc", 0}, {"*\tx", 0}, {"a b\tal ias", 0}, {"c", 0}});
    EXPECT_EQ(Kodbc_Select_FieldsBox_To_FieldsClause(hdbc_, list_, statement, sizeof statement), 0);
    EXPECT_EQ(std::string(statement), "SELECT *,* AS x," + Q("a b") + " AS " + Q("al ias") + ",c FROM t ORDER BY x");

    Put(combo_, {{"t1", 0}, {"my t", 0}});
    EXPECT_EQ(Kodbc_Select_TablesBox_To_TablesClause(hdbc_, combo_, statement, sizeof statement), 0);
    EXPECT_EQ(std::string(statement),
              "SELECT *,* AS x," + Q("a b") + " AS " + Q("al ias") + ",c FROM t1," + Q("my t") + " ORDER BY x");

    std::strcpy(statement, "SELECT a FROM t ORDER BY z WHERE k = 1");
    Put(list_, {{"a\tabsteigend", 1}, {"b c\taufsteigend", 0}, {"d", 5}});
    EXPECT_EQ(Kodbc_Select_OrderByBox_To_OrderByClause(hdbc_, list_, statement, sizeof statement), 0);
    EXPECT_EQ(std::string(statement), "SELECT a FROM t WHERE k = 1 ORDER BY a DESC," + Q("b c") + ",d DESC ");

    // The statement buffer's size holds.
    char small[24] = "SELECT a FROM t";
    std::memset(small + 16, 'G', 8);
    Put(list_, {{"abcdefgh", 0}});
    EXPECT_EQ(Kodbc_Select_FieldsBox_To_FieldsClause(hdbc_, list_, small, 16), 0);
    EXPECT_STREQ(small, "SELECT abcdefgh");
    EXPECT_EQ(std::string(small + 16, 8), std::string(8, 'G')) << "written past the size";
    EXPECT_EQ(Kodbc_Select_FieldsBox_To_FieldsClause(hdbc_, list_, nullptr, 10), -1);
    EXPECT_EQ(Kodbc_Select_FieldsBox_To_FieldsClause(hdbc_, nullptr, small, 16), -1);
}

TEST_F(SelectBoxes, ToggleFlipsDirectionLabelAndSelects) {
    Put(list_, {{"a\taufsteigend", 0}, {"b", 1}, {"c\tirgendwas", 5}});
    EXPECT_LT(Kodbc_OrderByBox_ToggleDirection(list_, -1), 0) << "nothing selected";
    EXPECT_EQ(Kodbc_OrderByBox_ToggleDirection(list_, 0), 0);
    EXPECT_EQ(Kodbc_OrderByBox_ToggleDirection(list_, 1), 1);
    EXPECT_EQ(Kodbc_OrderByBox_ToggleDirection(list_, 2), 2);
    EXPECT_EQ(BoxLines(list_),
              (std::vector<Line>{{"a\tabsteigend", 1}, {"b\taufsteigend", 0}, {"c\tabsteigend", 1}}));
    EXPECT_EQ(Selected(list_), 2);
    // Index below 0: the selected line.
    EXPECT_EQ(Kodbc_OrderByBox_ToggleDirection(list_, -1), 2);
    EXPECT_EQ(BoxLines(list_)[2], (Line{"c\taufsteigend", 0}));
    EXPECT_LT(Kodbc_OrderByBox_ToggleDirection(list_, 3), 0);
}

class AliasDialog : public SelectBoxes {};

// Typed and pasted text keeps only the alias's characters (no 0, no
// blank); OK stores it behind a tab and clears the line's item data.
TEST_F(AliasDialog, TypedAliasKeepsOnlyAllowedCharacters) {
    Put(list_, {{"first", 0}, {"col\told", 3}, {"last", 0}});
    std::string before, typed, pasted;
    DialogRobot robot(kAliasTitle, "alias-10070", [&](HWND dialog) {
        before = ControlText(dialog, IDC_FIELD_ALIAS_EDIT);
        HWND edit = GetDlgItem(dialog, IDC_FIELD_ALIAS_EDIT);
        SendMessageA(edit, WM_SETTEXT, 0, reinterpret_cast<LPARAM>("x0 y-z"));  // as a paste would
        pasted = ControlText(dialog, IDC_FIELD_ALIAS_EDIT);
        SendMessageA(edit, EM_SETSEL, 0, -1);
        for (char c : std::string("Ab0c d-9_\xE4Z"))
            SendMessageA(edit, WM_CHAR, static_cast<unsigned char>(c), 0);
        typed = ControlText(dialog, IDC_FIELD_ALIAS_EDIT);
        SaveScreenshot(dialog, "alias-10070-typed");
        Click(dialog, IDC_FIELD_ALIAS_OK);
    });
    int result = Kodbc_FieldsBox_EditAlias(list_, 1);
    robot.Join();
    ASSERT_TRUE(robot.Found()) << "dialog 10070 never appeared";
    EXPECT_EQ(before, "old");
    EXPECT_EQ(pasted, "xyz");
    EXPECT_EQ(typed, "Abcd9_Z");
    EXPECT_EQ(result, 1);
    EXPECT_EQ(BoxLines(list_), (std::vector<Line>{{"first", 0}, {"col\tAbcd9_Z", 0}, {"last", 0}}));
    EXPECT_EQ(Selected(list_), 1);
}

// An empty alias removes the alias; "Abbrechen", no line and no box change
// nothing (the last three open no dialog).
TEST_F(AliasDialog, EmptyAliasCancelAndNoLine) {
    const struct {
        const char *alias;
        int button, index;
        bool noBox, opens;
        int result;
        Line after;
    } cases[] = {
        {"", IDC_FIELD_ALIAS_OK, -1, false, true, 1, {"col", 0}},
        {"neu", IDC_FIELD_ALIAS_CANCEL, 0, false, true, 2, {"col\told", 4}},
        {"", IDC_FIELD_ALIAS_CANCEL, -1, false, false, 2, {"col\told", 4}},
        {"", IDC_FIELD_ALIAS_CANCEL, 5, false, false, 2, {"col\told", 4}},
        {"", IDC_FIELD_ALIAS_CANCEL, 0, true, false, 2, {"col\told", 4}},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(testing::Message() << c.alias << "/" << c.index << "/" << c.noBox);
        Put(list_, {{"col\told", 4}});
        if (c.opens) SendMessageA(list_, LB_SETCURSEL, 0, 0);
        DialogRobot robot(kAliasTitle, "", [&](HWND dialog) {
            SendMessageA(GetDlgItem(dialog, IDC_FIELD_ALIAS_EDIT), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(c.alias));
            Click(dialog, c.button);
        }, c.opens ? 20000 : 1500);
        EXPECT_EQ(Kodbc_FieldsBox_EditAlias(c.noBox ? nullptr : list_, c.index), c.result);
        robot.Join();
        EXPECT_EQ(robot.Found(), c.opens);
        EXPECT_EQ(BoxLines(list_), std::vector<Line>{c.after});
    }
}

} // namespace
