// The delete- and update-records wizards on SQLite: one refusal per page, the grids typed into, the rows left
// afterwards. Counts, statements and texts are proven natively (delupd_records_test).
#include "robot.h"
#include "wizards/record_wizard_ids.h"

#include <kodbc/kodbc_wizards.h>

#include <array>

namespace {

using namespace wintest;

constexpr char kDeleteTitle[] = "L\xF6schen von Datens\xE4tzen aus einer Tabelle";
constexpr char kUpdateTitle[] = "\xC4ndern von Datens\xE4tzen in einer Tabelle";

constexpr int kRowIds[3][3] = {{IDC_RECWIZ_ROW1_FIELD, IDC_RECWIZ_ROW1_OPERATION, IDC_RECWIZ_ROW1_VALUE},
                                {IDC_RECWIZ_ROW2_FIELD, IDC_RECWIZ_ROW2_OPERATION, IDC_RECWIZ_ROW2_VALUE},
                                {IDC_RECWIZ_ROW3_FIELD, IDC_RECWIZ_ROW3_OPERATION, IDC_RECWIZ_ROW3_VALUE}};

using Row = std::array<const char *, 3>;  // as typed: field, operation label, value

struct Walker : WizardWalker {
    std::string SelectedTable(int page) {
        HWND list = Control(page, IDC_RECWIZ_TABLE_LIST);
        const LRESULT index = SendMessageA(list, LB_GETCURSEL, 0, 0);
        return index < 0 ? "" : BoxTexts(list)[static_cast<std::size_t>(index)];
    }
    void Enter(int page, const std::vector<Row> &rows) {
        for (std::size_t r = 0; r < rows.size(); ++r)
            for (int c = 0; c < 3; ++c) Set(page, kRowIds[r][c], rows[r][c]);
    }
};

class RecordWizards : public ConnectedTest {
protected:
    void SetUp() override {
        ConnectedTest::SetUp();
        OwnTables({"du_items"});
        ASSERT_TRUE(Run("CREATE TABLE du_items (id INTEGER, name VARCHAR(20), price FLOAT, code INTEGER, "
                        "note VARCHAR(20))"));
        for (const char *row : {"(1, 'Anna', 1.5, 10, 'a')", "(2, 'Bernd', 2.5, 20, 'b')",
                                "(3, 'Clara', 3.5, 30, 'c')", "(4, 'Dora', 4.5, 40, 'd')"})
            ASSERT_TRUE(Run(std::string("INSERT INTO du_items VALUES ") + row));
    }
    std::vector<std::string> Rows() { return Query("SELECT id, name, price, code, note FROM du_items ORDER BY id"); }
};

constexpr char kGreater[] = "ist gr\xF6\xDF" "er als";

TEST_F(RecordWizards, DeleteWalksEveryPageAndDeletesTheMatchingRows) {
    TableRecord table = TableNamed("du_items");
    std::string preselected;
    constexpr int T = IDD_DELREC_TABLE, C = IDD_DELREC_CONDITIONS, S = IDD_DELREC_SUMMARY;
    const auto [result, messages] = RunWizard<Walker>(kDeleteTitle, "deleterecords-10043", "deleterecords-", [&] {
        return Kodbc_DeleteRecordsWizzard(hdbc_, &table, 0);
    }, [&](Walker &w) {
        preselected = w.SelectedTable(T);
        w.Walk({{T, IDC_RECWIZ_TABLE_LIST, "du_items", "", false, C}});
        w.Enter(C, {{"price", kGreater, "2"}, {"name", "ist ungleich", "Clara"}});
        w.Walk({{C, 0, "", nullptr, kShot, S}, {S, 0, "", nullptr, kShot, 0}});
    });

    EXPECT_EQ(result, 1);
    EXPECT_EQ(preselected, "du_items");
    EXPECT_STREQ(table.Object.DbObjectName, "du_items");
    EXPECT_EQ(table.Reserved[39], 0x5A) << "the record's tail is the caller's";
    EXPECT_EQ(messages, std::vector<std::string>{"Es mu\xDF eine Tabelle ausgew\xE4hlt werden."});
    EXPECT_EQ(Rows(), (std::vector<std::string>{"1|Anna|1.5|10|a", "3|Clara|3.5|30|c"}));
}

// A page-leave message without its answer runs nothing; "Abbrechen" on the result page gives 2, although the
// update ran. Going back and forth keeps the assignments, or leaving them again would be refused.
TEST_F(RecordWizards, UpdateRunsOnLeavingTheConfirmationAndCancelKeepsIt) {
    TableRecord table = TableNamed("");
    std::string preselected;
    bool stayedWithoutAnswer = false;
    constexpr int T = IDD_UPDREC_TABLE, C = IDD_UPDREC_CONDITIONS, A = IDD_UPDREC_ASSIGNMENTS,
                  P = IDD_UPDREC_CONFIRMATION, R = IDD_UPDREC_RESULT;
    const auto [result, messages] = RunWizard<Walker>(kUpdateTitle, "updaterecords-10046", "updaterecords-", [&] {
        return Kodbc_UpdateRecordsWizzard(hdbc_, &table, 0);
    }, [&](Walker &w) {
        preselected = w.SelectedTable(T);
        w.Walk({{T, IDC_RECWIZ_TABLE_LIST, "du_items", nullptr, false, C}});
        w.Enter(C, {{"id", "ist gleich", "9"}});
        w.Refused(C);  // nothing matches
        w.Enter(C, {{"id", kGreater, "2"}});
        w.Walk({{C, 0, "", nullptr, kShot, A}, {A, 0, "", ""}});  // nothing assigned
        w.Enter(A, {{"note", "Feld leeren", ""}, {"price", "Fester Wert", "7,5"}, {"code", "Ergebnis der Formel", "code*2+1"}});
        w.Walk({{A, 0, "", nullptr, kShot, P}, {P, 0, "", nullptr, kShot, A, kBack}, {A, 0, "", nullptr, false, P}});
        SendMessageA(w.Page(P), WM_USER + 2, KORVEL_WIZARD_FORWARD, 0);
        Sleep(200);
        stayedWithoutAnswer = w.Showing(P);
        w.Walk({{P, 0, "", nullptr, false, R}, {R, 0, "", nullptr, kShot, 0, IDCANCEL}});
    });

    EXPECT_EQ(result, 2);
    EXPECT_FALSE(preselected.empty());
    EXPECT_EQ(table.Reserved[0], 0x5A);
    EXPECT_TRUE(stayedWithoutAnswer);
    EXPECT_EQ(messages, (std::vector<std::string>{
                            "Es wurden keine Datens\xE4tze in der Tabelle gefunden, die der angegebenen Bedingung "
                            "gen\xFCgen.",
                            "Es mu\xDF mindestens ein Feld ver\xE4ndert werden.",
                        }));
    EXPECT_EQ(Rows(), (std::vector<std::string>{"1|Anna|1.5|10|a", "2|Bernd|2.5|20|b", "3|Clara|7.5|61|-",
                                                "4|Dora|7.5|81|-"}));
}

} // namespace
