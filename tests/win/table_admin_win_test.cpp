// Table administration as the user meets it: dialog 10009 listing a table,
// a column added through 10010 and one removed on the run's data source;
// the primary key created through 10059 and dropped on MariaDB. What each
// database allows and the statements it takes are the core's, proven
// natively (tabledesign_admin_test.cpp); here they only reach the window.
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

// One test table on the fixture's data source; the remembered sort clauses
// go afterwards.
class TableAdminTest : public ConnectedTest {
protected:
    void TearDown() override {
        Korvel_DeleteRegistryKey(HKEY_USERS, kOrderByKey, 0, nullptr);
        ConnectedTest::TearDown();
    }
    void Create(const char *table, const std::string &columns) {
        table_ = table;
        OwnTables({table_});
        ASSERT_TRUE(Run("CREATE TABLE " + table_ + " (" + columns + ")"));
    }
    std::string Title() const { return "Tabelle  [" + table_ + "]"; }
    std::string table_;
};

TEST_F(TableAdminTest, ListsAddsAColumnAndRemovesOne) {
    ASSERT_NO_FATAL_FAILURE(Create("kodbc_ta", "Nr INTEGER NOT NULL, Name VARCHAR(20) DEFAULT 'x', Ort VARCHAR(30)"));
    ASSERT_EQ(Korvel_WriteRegistryString(HKEY_USERS, kOrderByKey, 0, nullptr, "kodbc_ta", "Nr"), 1);
    Texts listed, afterAdd, afterDrop;
    std::vector<int> selectedAfterAdd, selectedAfterDrop;
    std::string question;
    bool dropGreyed = false, dropEnabledOnSelection = false, autoIncGreyed = false, typeOffered = false;
    DialogRobot robot(Title(), "tableadmin-10009", [&](HWND dialog) {
        HWND list = GetDlgItem(dialog, IDC_TABLE_ADMIN_LIST);
        listed = ListViewColumn(list, 0);
        dropGreyed = !Enabled(dialog, IDC_TABLE_ADMIN_DROP_COLUMNS);  // nothing selected
        // SQLite has no auto-incrementing definition: the button is greyed.
        autoIncGreyed = !Enabled(dialog, IDC_TABLE_ADMIN_ADD_AUTOINC);

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
        selectedAfterAdd = SelectedRows(list);

        SelectRows(list, {1});  // Name
        dropEnabledOnSelection = Enabled(dialog, IDC_TABLE_ADMIN_DROP_COLUMNS);
        Click(dialog, IDC_TABLE_ADMIN_DROP_COLUMNS);
        question = AnswerBox(IDYES);
        WaitFor([&] { return ListViewColumn(list, 0).size() == 3; }, 10000);
        afterDrop = ListViewColumn(list, 0);
        selectedAfterDrop = SelectedRows(list);
        Click(dialog, IDC_TABLE_ADMIN_CLOSE);
    }, 60000);
    const int result = Kodbc_TableAdmin(hdbc_, "kodbc_ta", 0);
    robot.Join();

    ASSERT_TRUE(robot.Found()) << "dialog 10009 never appeared";
    EXPECT_EQ(result, 0);
    // The rows' texts (type with length, default) are the core's, proven
    // natively (tabledesign_admin_test.cpp).
    EXPECT_EQ(listed, (Texts{"Nr", "Name", "Ort"}));
    EXPECT_TRUE(dropGreyed);
    EXPECT_TRUE(dropEnabledOnSelection);
    EXPECT_TRUE(autoIncGreyed);
    EXPECT_TRUE(typeOffered);
    EXPECT_EQ(afterAdd, (Texts{"Nr", "Name", "Ort", "Telefon"}));
    EXPECT_EQ(selectedAfterAdd, std::vector<int>{3}) << "the new column is selected";
    EXPECT_NE(question.find("das Feld  'Name'  wirklich"), std::string::npos) << question;
    EXPECT_EQ(afterDrop, (Texts{"Nr", "Ort", "Telefon"}));
    EXPECT_EQ(selectedAfterDrop, std::vector<int>{1}) << "the row where the removed column stood";
    char fields[300] = {};
    Kodbc_GetFields(hdbc_, "kodbc_ta", 0, ",", fields, sizeof fields);
    EXPECT_STREQ(fields, "Nr,Ort,Telefon");
    char remembered[20] = {};
    Korvel_ReadRegistryString(HKEY_USERS, kOrderByKey, 0, nullptr, "kodbc_ta", "<none>", remembered, sizeof remembered);
    EXPECT_STREQ(remembered, "<none>") << "closing forgets the remembered sort clauses";
}

// The primary key on MariaDB, which can drop it. Its driver lists (and
// numbers) a key's columns in the table's order, and the display shows
// what the catalogue lists; the key's real order is read from the
// information schema.
class TableAdminKeyTest : public TableAdminTest {
protected:
    std::string Dsn() const override { return "kodbc_maria"; }
};

TEST_F(TableAdminKeyTest, CreatesTheKeyInTheChosenOrderAndDropsIt) {
    ASSERT_NO_FATAL_FAILURE(
        Create("kodbc_ta_key", "a INTEGER NOT NULL, b VARCHAR(10) NOT NULL, c VARCHAR(10), d INTEGER NOT NULL"));
    const std::string keyQuery = "SELECT column_name FROM information_schema.key_column_usage"
                                 " WHERE table_name = 'kodbc_ta_key' ORDER BY ordinal_position";
    Texts chosen, left, keyCreated;
    std::string createdNotice, keyShown;
    bool okGreyedWhileEmpty = false, keyGone = false;
    DialogRobot robot(Title(), "", [&](HWND dialog) {
        Click(dialog, IDC_TABLE_ADMIN_ADD_KEY);
        if (HWND key = AwaitDialog(kAddKeyTitle)) {
            okGreyedWhileEmpty = !Enabled(key, IDOK);
            // a, then b (which moved up into a's place), then b before a.
            for (int id : {IDC_ADD_KEY_ADD, IDC_ADD_KEY_ADD, IDC_ADD_KEY_UP})
                SendMessageA(GetDlgItem(key, id), BM_CLICK, 0, 0);
            chosen = BoxTexts(GetDlgItem(key, IDC_ADD_KEY_COLUMNS));
            left = BoxTexts(GetDlgItem(key, IDC_ADD_KEY_CANDIDATES));
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
        PostMessageA(dialog, WM_COMMAND, IDCANCEL, 0);
    }, 60000);
    EXPECT_EQ(Kodbc_TableAdmin(hdbc_, "kodbc_ta_key", 0), 0);
    robot.Join();

    ASSERT_TRUE(robot.Found());
    EXPECT_TRUE(okGreyedWhileEmpty);
    EXPECT_EQ(chosen, (Texts{"b", "a"}));
    EXPECT_EQ(left, Texts{"d"}) << "only the columns that may not be empty are offered";
    EXPECT_EQ(createdNotice, "Der Prim\xE4rschl\xFCssel wurde angelegt");
    EXPECT_EQ(keyCreated, (Texts{"b", "a"}));
    EXPECT_EQ(keyShown, "a, b");
    EXPECT_TRUE(keyGone);
    EXPECT_TRUE(Query(keyQuery).empty());
}

// The exported procedures given no record offer nothing to act on and only
// close. Dialog 10057 is photographed here: no data source of these runs
// has an auto-incrementing definition to reach it by.
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
        {IDD_ADD_COLUMN, AddColumn_Dialog_Callback, kAddColumnTitle, IDOK, IDCANCEL, 2, ""},
        {IDD_ADD_AUTOINC, AddAutoInc_Dialog_Callback, "Selbsthochz\xE4hlende Spalte hinzuf\xFCgen", IDOK, IDCANCEL, 2,
         "tableadmin-10057"},
        {IDD_ADD_PRIMARY_KEY, AddPk_Dialog_Callback, kAddKeyTitle, IDOK, IDCANCEL, 2, ""},
    };
    HINSTANCE library = GetModuleHandleA("kodbc.dll");
    ASSERT_NE(library, nullptr);
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
        EXPECT_TRUE(robot.Found());
        EXPECT_TRUE(greyed);
    }
}

} // namespace
