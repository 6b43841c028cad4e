// Dialog 10063 on SQLite: a new view refused until its entries hold, then
// created; an existing one redesigned, saved, loaded and renamed; a view
// the system table does not know, refused.
#include "robot.h"

#include "frame/diagnostics_dialog_ids.h"
#include "select/selfact_dialog_ids.h"
#include "select/view_dialog_ids.h"

#include <kodbc/kodbc_views.h>

#include <string>
#include <vector>

namespace {

using namespace wintest;

constexpr char kTitle[] = "Abfrage bearbeiten";

class ViewDialogTest : public ConnectedTest {
protected:
    void SetUp() override {
        ConnectedTest::SetUp();
        Clean();
        OwnTables({"kodbc_vwb"});
        ASSERT_TRUE(Run("CREATE TABLE kodbc_vwb (Nr INTEGER, Ort VARCHAR(20))"));
        ASSERT_TRUE(Run("INSERT INTO kodbc_vwb VALUES (1, 'Bonn')"));
    }
    void TearDown() override {
        Clean();
        ConnectedTest::TearDown();
    }
    void Clean() {
        for (const char *view : {"kodbc_vw", "kodbc_vw2"}) Kodbc_View_Drop(hdbc_, "", view, KODBC_VIEW_TOLERATE_ALL);
    }
};

TEST_F(ViewDialogTest, NewViewIsRefusedUntilItsEntriesHoldThenCreated) {
    std::string typed, noName, noSql, tested;
    bool errorShown = false;
    DialogRobot robot(kTitle, "view-10063", [&](HWND dialog) {
        Type(dialog, IDC_VIEW_NAME, "kodbc_v0w 1");
        typed = ControlText(dialog, IDC_VIEW_NAME);
        Type(dialog, IDC_VIEW_NAME, "");
        Click(dialog, IDC_VIEW_OK);
        noName = AnswerBox(IDOK, "view-1611");
        Type(dialog, IDC_VIEW_NAME, "kodbc_vw");
        Click(dialog, IDC_VIEW_OK);
        noSql = AnswerBox(IDOK, "view-1609");
        Type(dialog, IDC_VIEW_SQL, "SELEKT Nr FROM kodbc_vwb");
        Click(dialog, IDC_VIEW_OK);
        errorShown = CloseErrorDisplay() != "<none>";  // the dialog stays: the test and OK below need it
        Type(dialog, IDC_VIEW_SQL, "SELECT Nr, Ort FROM kodbc_vwb");
        Click(dialog, IDC_VIEW_TEST);
        tested = AnswerBox(IDOK, "view-1707");
        Sleep(200);
        SaveScreenshot(dialog, "view-10063-sql");
        Click(dialog, IDC_VIEW_OK);
    });
    char name[50] = {};
    EXPECT_EQ(Kodbc_View_Edit(hdbc_, "", name, sizeof name, KODBC_VIEW_MODE_NEW | KODBC_VIEW_MODE_CALLER, nullptr),
              KODBC_DIALOG_OK);
    robot.Join();
    EXPECT_EQ(typed, "kodbc_vw1") << "no 0 and no blank in a view's name";
    EXPECT_EQ(noName, "Es mu\xDF ein Name f\xFCr die Abfrage eingegeben werden.");
    EXPECT_EQ(noSql, "Es mu\xDF ein SQL-Befehl eingegeben werden.");
    EXPECT_TRUE(errorShown);
    EXPECT_EQ(tested, "Die Abfrage wurde erfolgreich getestet.");
    EXPECT_STREQ(name, "kodbc_vw");
    EXPECT_EQ(QueryRows(hdbc_, "SELECT Nr, Ort FROM kodbc_vw"), std::vector<std::string>{"1|Bonn"});
}

TEST_F(ViewDialogTest, ExistingViewIsRedesignedSavedLoadedAndRenamed) {
    ASSERT_EQ(Kodbc_View_Create(hdbc_, "", "kodbc_vw", "SELECT * FROM kodbc_vwb", "kodbc_vwb\t\t\t\t\t",
                                "Nr\t\nOrt\tStadt", ""),
              KODBC_VIEW_OK);
    const std::string file = TempFile("kodbc_view_test.sql");
    std::string opened, designed, loaded;
    DialogRobot robot(kTitle, "", [&](HWND dialog) {
        opened = ControlText(dialog, IDC_VIEW_NAME) + "|" + ControlText(dialog, IDC_VIEW_SQL);
        Click(dialog, IDC_VIEW_DESIGNER);
        if (HWND designer = AwaitDialog("Assistent f\xFCr SELECT-Befehl")) {
            Sleep(300);
            Click(designer, IDC_SELFACT_OK);
            WaitFor([&] { return !IsWindow(designer); });
        }
        designed = ControlText(dialog, IDC_VIEW_SQL);
        Click(dialog, IDC_VIEW_SAVE);
        ChooseFile("SQL-Befehl speichern", file);
        Type(dialog, IDC_VIEW_SQL, "");
        Click(dialog, IDC_VIEW_LOAD);
        ChooseFile("SQL-Befehl laden", file);
        WaitFor([&] { return !ControlText(dialog, IDC_VIEW_SQL).empty(); });
        loaded = ControlText(dialog, IDC_VIEW_SQL);
        Type(dialog, IDC_VIEW_NAME, "kodbc_vw2");
        Click(dialog, IDC_VIEW_OK);
    });
    char name[50] = "kodbc_vw";
    EXPECT_EQ(Kodbc_View_Edit(hdbc_, "", name, sizeof name, KODBC_VIEW_MODE_EXISTING | KODBC_VIEW_MODE_CALLER,
                              nullptr),
              KODBC_DIALOG_OK);
    robot.Join();
    const std::string regenerated = "SELECT Nr, Ort AS Stadt FROM kodbc_vwb";
    EXPECT_EQ(opened, "kodbc_vw|SELECT * FROM kodbc_vwb");
    EXPECT_EQ(designed, regenerated);
    EXPECT_EQ(FileText(file), regenerated);
    EXPECT_EQ(loaded, regenerated);
    EXPECT_EQ(Setting("LastUsed", "SqlStatementFile"), file);
    // What the rename does to the database: select_view_object_test.cpp.
    EXPECT_STREQ(name, "kodbc_vw2");
    std::remove(file.c_str());
}

TEST_F(ViewDialogTest, ViewTheSystemTableLacksIsRefused) {
    ASSERT_TRUE(Run("CREATE VIEW kodbc_vw AS SELECT Nr FROM kodbc_vwb"));
    MessageBoxAnswerer answerer(kLibraryMessageCaption, IDOK, "view-1612");
    char name[50] = "kodbc_vw";
    EXPECT_EQ(Kodbc_View_Edit(hdbc_, "", name, sizeof name, KODBC_VIEW_MODE_EXISTING, nullptr), KODBC_DIALOG_CANCEL);
    ASSERT_EQ(answerer.Seen().size(), 1u);
    EXPECT_EQ(answerer.Seen()[0].text.rfind("Die Abfrage 'kodbc_vw' ist in der Datenbank verf\xFCgbar", 0), 0u)
        << answerer.Seen()[0].text;
    EXPECT_FALSE(FindWindowA("#32770", kTitle)) << "no dialog for a view without its definition";
}

} // namespace
