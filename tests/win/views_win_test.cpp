// Dialog 10063 as a user meets it on SQLite: a new view typed in, refused
// for each missing entry and for SQL that fails, tested and created; an
// existing view opened again, redesigned in the query designer, its SQL
// saved to a file and loaded back, and renamed; and a view the system
// table does not know, refused.
#include "wizard_walker.h"

#include "frame/diagnostics_dialog_ids.h"
#include "select/selfact_dialog_ids.h"
#include "select/view_dialog_ids.h"

#include <kodbc/kodbc_views.h>

#include <cstdio>
#include <string>
#include <vector>

namespace {

using wintest::Click;
using wintest::ControlText;
using wintest::WaitFor;

constexpr char kTitle[] = "Abfrage bearbeiten";
constexpr int kMessageText = 0xFFFF;  // the text of a message box
constexpr int kFileNameIds[] = {0x47c /* cmb13 */, 0x480 /* edt1 */};

HWND Shown(const char *title) {
    HWND window = nullptr;
    WaitFor([&] { return (window = FindWindowA("#32770", title)) != nullptr && IsWindowVisible(window); }, 10000);
    return window;
}

// Waits for the library's next message box: photographed as `shot`,
// answered with OK; its text.
std::string AnswerBox(const std::string &shot) {
    HWND box = Shown(wintest::kLibraryMessageCaption);
    if (!box) return "<none>";
    Sleep(300);
    const std::string text = ControlText(box, kMessageText);
    if (!shot.empty()) wintest::SaveScreenshot(box, shot);
    PostMessageA(GetDlgItem(box, IDOK), BM_CLICK, 0, 0);
    WaitFor([&] { return !IsWindow(box); });
    return text;
}

// Closes the error display of a failed statement; whether it came.
bool CloseErrorDisplay() {
    HWND error = Shown("Fehler beim ODBC-Datenbankzugriff");
    if (!error) return false;
    Click(error, IDC_ODBC_ERROR_CLOSE);
    return WaitFor([&] { return !IsWindow(error); });
}

// Picks `path` in the system's file dialog titled `title`.
bool ChooseFile(const char *title, const std::string &path) {
    HWND box = Shown(title);
    if (!box) return false;
    Sleep(300);
    HWND field = nullptr;
    for (int id : kFileNameIds)
        if (!field) field = GetDlgItem(box, id);
    if (!field) return false;
    SetWindowTextA(field, path.c_str());
    Click(box, IDOK);
    return WaitFor([&] { return !IsWindow(box); });
}

std::string FileText(const std::string &path) {
    std::string text;
    if (std::FILE *in = std::fopen(path.c_str(), "rb")) {
        char chunk[512];
        for (std::size_t n; (n = std::fread(chunk, 1, sizeof chunk, in)) > 0;) text.append(chunk, n);
        std::fclose(in);
    }
    return text;
}

// Types into a field as a user would: all of it selected and replaced,
// which sends the change notice a multi-line field leaves out for WM_SETTEXT.
void Type(HWND dialog, int id, const char *text) {
    HWND field = GetDlgItem(dialog, id);
    SendMessageA(field, EM_SETSEL, 0, -1);
    SendMessageA(field, EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(text));
}

class ViewDialogTest : public wintest::ConnectedTest {
protected:
    void SetUp() override {
        ConnectedTest::SetUp();
        Clean();
        ASSERT_TRUE(Run("CREATE TABLE kodbc_vwb (Nr INTEGER, Ort VARCHAR(20))"));
        ASSERT_TRUE(Run("INSERT INTO kodbc_vwb VALUES (1, 'Bonn')"));
    }
    void TearDown() override {
        Clean();
        ConnectedTest::TearDown();
    }
    void Clean() {
        for (const char *view : {"kodbc_vw", "kodbc_vw2"}) Kodbc_View_Drop(hdbc_, "", view, KODBC_VIEW_TOLERATE_ALL);
        Run("DROP TABLE kodbc_vwb");
    }
    bool Exists(const char *name) { return Kodbc_DoesTableExist(hdbc_, KODBC_OBJECT_VIEW, name) == 1; }
    std::string Stored(const char *name, const char *item) {
        char text[500] = {};
        Kodbc_ReadSysTableString(hdbc_, name, "VIEW", item, "(none)", text, sizeof text);
        return text;
    }
};

TEST_F(ViewDialogTest, NewViewIsRefusedUntilItsEntriesHoldThenCreated) {
    std::string proposed, typed, noName, noSql, tested;
    bool errorShown = false, stayed = false;
    const char *sql = "SELECT Nr, Ort FROM kodbc_vwb";
    wintest::DialogRobot robot(kTitle, "view-10063", [&](HWND dialog) {
        proposed = ControlText(dialog, IDC_VIEW_NAME);
        Type(dialog, IDC_VIEW_NAME, "kodbc_v0w 1");
        typed = ControlText(dialog, IDC_VIEW_NAME);
        Type(dialog, IDC_VIEW_NAME, "");
        Click(dialog, IDC_VIEW_OK);
        noName = AnswerBox("view-1611");
        Type(dialog, IDC_VIEW_NAME, "kodbc_vw");
        Click(dialog, IDC_VIEW_OK);
        noSql = AnswerBox("view-1609");
        Type(dialog, IDC_VIEW_SQL, "SELEKT Nr FROM kodbc_vwb");
        Click(dialog, IDC_VIEW_OK);
        errorShown = CloseErrorDisplay();
        Sleep(300);
        stayed = IsWindow(dialog) && IsWindowVisible(dialog);
        Type(dialog, IDC_VIEW_SQL, sql);
        Click(dialog, IDC_VIEW_TEST);
        tested = AnswerBox("view-1707");
        Sleep(200);
        wintest::SaveScreenshot(dialog, "view-10063-sql");
        Click(dialog, IDC_VIEW_OK);
    });
    char name[50] = {};
    EXPECT_EQ(Kodbc_View_Edit(hdbc_, "", name, sizeof name, KODBC_VIEW_MODE_NEW | KODBC_VIEW_MODE_CALLER, nullptr),
              KODBC_DIALOG_OK);
    robot.Join();
    EXPECT_EQ(proposed, "Neue_Abfrage");
    EXPECT_EQ(typed, "kodbc_vw1") << "no 0 and no blank in a view's name";
    EXPECT_EQ(noName, "Es mu\xDF ein Name f\xFCr die Abfrage eingegeben werden.");
    EXPECT_EQ(noSql, "Es mu\xDF ein SQL-Befehl eingegeben werden.");
    EXPECT_TRUE(errorShown);
    EXPECT_TRUE(stayed) << "a failing statement keeps the dialog open";
    EXPECT_EQ(tested, "Die Abfrage wurde erfolgreich getestet.");
    EXPECT_STREQ(name, "kodbc_vw");
    EXPECT_TRUE(Exists("kodbc_vw"));
    EXPECT_EQ(wintest::QueryRows(hdbc_, "SELECT Nr, Ort FROM kodbc_vw"), std::vector<std::string>{"1|Bonn"});
    EXPECT_EQ(Stored("kodbc_vw", "Sql"), sql);
    EXPECT_FALSE(Exists("__KORVEL_TEST__"));
}

TEST_F(ViewDialogTest, ExistingViewIsRedesignedSavedLoadedAndRenamed) {
    ASSERT_EQ(Kodbc_View_Create(hdbc_, "", "kodbc_vw", "SELECT * FROM kodbc_vwb", "kodbc_vwb\t\t\t\t\t",
                                "Nr\t\nOrt\tStadt", ""),
              KODBC_VIEW_OK);
    char temp[MAX_PATH] = {};
    GetTempPathA(sizeof temp, temp);
    const std::string file = std::string(temp) + "kodbc_view_test.sql";
    std::remove(file.c_str());
    std::string opened, designed, emptied, loaded;
    bool saved = false, load = false;
    wintest::DialogRobot robot(kTitle, "", [&](HWND dialog) {
        opened = ControlText(dialog, IDC_VIEW_NAME) + "|" + ControlText(dialog, IDC_VIEW_SQL);
        Click(dialog, IDC_VIEW_DESIGNER);
        if (HWND designer = Shown("Assistent f\xFCr SELECT-Befehl")) {
            Sleep(300);
            Click(designer, IDC_SELFACT_OK);
            WaitFor([&] { return !IsWindow(designer); });
        }
        designed = ControlText(dialog, IDC_VIEW_SQL);
        Click(dialog, IDC_VIEW_SAVE);
        saved = ChooseFile("SQL-Befehl speichern", file);
        Type(dialog, IDC_VIEW_SQL, "");
        emptied = ControlText(dialog, IDC_VIEW_SQL);
        Click(dialog, IDC_VIEW_LOAD);
        load = ChooseFile("SQL-Befehl laden", file);
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
    EXPECT_TRUE(saved && load);
    EXPECT_EQ(FileText(file), regenerated);
    EXPECT_EQ(emptied, "");
    EXPECT_EQ(loaded, regenerated);
    char remembered[MAX_PATH] = {};
    Korvel_ReadRegistryString(HKEY_CURRENT_USER, "Software\\Korvel Software\\Kodbc", 0, "LastUsed",
                              "SqlStatementFile", "", remembered, sizeof remembered);
    EXPECT_STREQ(remembered, file.c_str());

    // Renamed: the old view and its items gone, the new one with them.
    EXPECT_STREQ(name, "kodbc_vw2");
    EXPECT_FALSE(Exists("kodbc_vw"));
    EXPECT_TRUE(Exists("kodbc_vw2"));
    EXPECT_EQ(Stored("kodbc_vw", "Columns"), "(none)");
    EXPECT_EQ(Stored("kodbc_vw2", "Columns"), "Nr\t\nOrt\tStadt");
    EXPECT_EQ(Stored("kodbc_vw2", "Sql"), regenerated);
    std::remove(file.c_str());
}

TEST_F(ViewDialogTest, ViewTheSystemTableLacksIsRefused) {
    ASSERT_TRUE(Run("CREATE VIEW kodbc_vw AS SELECT Nr FROM kodbc_vwb"));
    wintest::MessageBoxAnswerer answerer(wintest::kLibraryMessageCaption, IDOK, "view-1612");
    char name[50] = "kodbc_vw";
    EXPECT_EQ(Kodbc_View_Edit(hdbc_, "", name, sizeof name, KODBC_VIEW_MODE_EXISTING, nullptr), KODBC_DIALOG_CANCEL);
    ASSERT_EQ(answerer.Seen().size(), 1u);
    EXPECT_EQ(answerer.Seen()[0].text.rfind("Die Abfrage 'kodbc_vw' ist in der Datenbank verf\xFCgbar", 0), 0u)
        << answerer.Seen()[0].text;
    EXPECT_FALSE(FindWindowA("#32770", kTitle)) << "no dialog for a view without its definition";
}

} // namespace
