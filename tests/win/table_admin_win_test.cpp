// Table administration on MariaDB, which can drop a key: a column added through 10010 and one
// removed, a key created through 10059 and dropped. What each database allows and the statements
// are proven natively (tabledesign_test.cpp).
#include "robot.h"

#include "tabledesign/table_admin_dialog_ids.h"

#include <kodbc/kodbc_tabledesign.h>
#include <korvel/korvel32.h>

#include <commctrl.h>

#include <string>
#include <vector>

namespace {

using namespace wintest;
using Texts = std::vector<std::string>;

constexpr char kOrderByKey[] = ".Default\\Software\\Korvel Software\\Order By Clauses";
constexpr char kAddColumnTitle[] = "Spalte hinzuf\xFCgen";
constexpr char kAddKeyTitle[] = "Prim\xE4rschl\xFCssel anlegen";

class TableAdminTest : public ConnectedTest {
protected:
    std::string Dsn() const override { return "kodbc_maria"; }
    void TearDown() override {
        Korvel_DeleteRegistryKey(HKEY_USERS, kOrderByKey, 0, nullptr);
        ConnectedTest::TearDown();
    }
};

// The display shows a key's columns in the catalogue's (the table's) order;
// the key's real order is read from the information schema.
TEST_F(TableAdminTest, ChangesColumnsAndTheKey) {
    OwnTables({"kodbc_taw"});
    ASSERT_TRUE(Run("CREATE TABLE kodbc_taw (Nr INTEGER NOT NULL, Name VARCHAR(20) DEFAULT 'x', Ort VARCHAR(30))"));
    ASSERT_EQ(Korvel_WriteRegistryString(HKEY_USERS, kOrderByKey, 0, nullptr, "kodbc_taw", "Nr"), 1);
    const std::string keyQuery = "SELECT column_name FROM information_schema.key_column_usage"
                                 " WHERE table_name = 'kodbc_taw' ORDER BY ordinal_position";
    Texts listed, afterAdd, afterDrop, keyCreated;
    std::string question, createdNotice, keyShown;
    bool dropEnabled = false, typeOffered = false, okGreyedWhileEmpty = false, keyGone = false;
    DialogRobot robot("Tabelle  [kodbc_taw]", "tableadmin-10009", [&](HWND dialog) {
        HWND list = GetDlgItem(dialog, IDC_TABLE_ADMIN_LIST);
        listed = ListViewColumn(list, 0);
        Click(dialog, IDC_TABLE_ADMIN_ADD_COLUMN);
        if (HWND add = AwaitDialog(kAddColumnTitle)) {
            typeOffered = ChooseData(add, IDC_ADD_COLUMN_TYPE, KODBC_TYPE_VAR_TEXT);
            Type(add, IDC_ADD_COLUMN_NAME, "Telefon");
            Type(add, IDC_ADD_COLUMN_LENGTH, "25");
            Sleep(300);
            SaveScreenshot(add, "tableadmin-10010");
            Click(add, IDOK);
            WaitFor([&] { return ListViewColumn(list, 0).size() == 4; }, 10000);
        }
        afterAdd = ListViewColumn(list, 0);

        SelectRows(list, {1});  // Name
        dropEnabled = Enabled(dialog, IDC_TABLE_ADMIN_DROP_COLUMNS);
        Click(dialog, IDC_TABLE_ADMIN_DROP_COLUMNS);
        question = AnswerBox(IDYES);
        WaitFor([&] { return ListViewColumn(list, 0).size() == 3; }, 10000);
        afterDrop = ListViewColumn(list, 0);

        // The added column may not be empty: a key candidate beside Nr.
        Click(dialog, IDC_TABLE_ADMIN_ADD_KEY);
        if (HWND key = AwaitDialog(kAddKeyTitle)) {
            okGreyedWhileEmpty = !Enabled(key, IDOK);
            // Nr, then Telefon (which moved up into its place), then Telefon before Nr.
            for (int id : {IDC_ADD_KEY_ADD, IDC_ADD_KEY_ADD, IDC_ADD_KEY_UP})
                SendMessageA(GetDlgItem(key, id), BM_CLICK, 0, 0);
            Sleep(300);
            SaveScreenshot(key, "tableadmin-10059");
            Click(key, IDOK);
            WaitFor([&] { return !(createdNotice = NoticeText()).empty(); }, 10000);
            WaitFor([&] { return !(keyShown = ControlText(dialog, IDC_TABLE_ADMIN_KEY)).empty(); }, 10000);
            keyCreated = Query(keyQuery);  // the dialog waits for the user meanwhile
        }
        WaitFor([&] { return NoticeText().empty(); }, 10000);
        Click(dialog, IDC_TABLE_ADMIN_DROP_KEY);
        AnswerBox(IDYES);
        WaitFor([&] { return !NoticeText().empty(); }, 10000);
        keyGone = WaitFor([&] { return ControlText(dialog, IDC_TABLE_ADMIN_KEY).empty(); }, 10000);
        Click(dialog, IDC_TABLE_ADMIN_CLOSE);
    }, 90000);
    const int result = Kodbc_TableAdmin(hdbc_, "kodbc_taw", 0);
    robot.Join();

    EXPECT_EQ(result, 0);
    EXPECT_EQ(listed, (Texts{"Nr", "Name", "Ort"}));
    EXPECT_TRUE(dropEnabled && typeOffered && okGreyedWhileEmpty && keyGone)
        << dropEnabled << typeOffered << okGreyedWhileEmpty << keyGone;
    EXPECT_EQ(afterAdd, (Texts{"Nr", "Name", "Ort", "Telefon"}));
    EXPECT_NE(question.find("das Feld  'Name'  wirklich"), std::string::npos) << question;
    EXPECT_EQ(afterDrop, (Texts{"Nr", "Ort", "Telefon"})) << "the list is read from the catalogue again";
    EXPECT_EQ(createdNotice, "Der Prim\xE4rschl\xFCssel wurde angelegt");
    EXPECT_EQ(keyCreated, (Texts{"Telefon", "Nr"}));
    EXPECT_EQ(keyShown, "Nr, Telefon");
    EXPECT_TRUE(Query(keyQuery).empty());
    char remembered[20] = {};
    Korvel_ReadRegistryString(HKEY_USERS, kOrderByKey, 0, nullptr, "kodbc_taw", "<none>", remembered,
                              sizeof remembered);
    EXPECT_STREQ(remembered, "<none>") << "closing forgets the remembered sort clauses";
}

// Given no record the procedures offer nothing to act on and only close.
// No data source here reaches 10057 by an auto-incrementing definition.
TEST(TableAdminDialogs, WithoutARecordOnlyClose) {
    const struct {
        int id;
        DLGPROC procedure;
        const char *title;
        int act, close, result;
        const char *shot;
    } dialogs[] = {
        {IDD_TABLE_ADMIN, TableAdmin_Dialog_Callback, "Tabelle  [%s]", IDC_TABLE_ADMIN_ADD_COLUMN,
         IDC_TABLE_ADMIN_CLOSE, 1, ""},
        {IDD_ADD_AUTOINC, AddAutoInc_Dialog_Callback, "Selbsthochz\xE4hlende Spalte hinzuf\xFCgen", IDOK, IDCANCEL, 2,
         "tableadmin-10057"},
    };
    HINSTANCE library = GetModuleHandleA("kodbc.dll");
    INITCOMMONCONTROLSEX controls = {sizeof controls, ICC_LISTVIEW_CLASSES};
    InitCommonControlsEx(&controls);
    for (const auto &d : dialogs) {
        SCOPED_TRACE(d.id);
        bool greyed = false;
        DialogRobot robot(d.title, d.shot, [&](HWND dialog) {
            greyed = !Enabled(dialog, d.act);
            Click(dialog, d.close);
        });
        EXPECT_EQ(DialogBoxParamA(library, MAKEINTRESOURCEA(d.id), nullptr, d.procedure, 0), d.result);
        robot.Join();
        EXPECT_TRUE(greyed) << "no dialog, or its action not greyed";
    }
}

} // namespace
