// Table administration as the user meets it: dialog 10009 listing a table,
// a column added through 10010 and three removed with mixed answers on the
// run's data source; the primary key created through 10059 and dropped on
// the servers that answer, each as the server really behaves. The robot
// answers the library's message boxes itself, since the answers differ.
#include "wizard_walker.h"

#include "frame/diagnostics_dialog_ids.h"
#include "tabledesign/table_admin_dialog_ids.h"

#include <kodbc/kodbc_tabledesign.h>
#include <korvel/korvel32.h>

#include <commctrl.h>

#include <string>
#include <vector>

namespace {

using wintest::Click;
using wintest::ControlText;
using wintest::WaitFor;
using Texts = std::vector<std::string>;

constexpr char kOrderByKey[] = ".Default\\Software\\Korvel Software\\Order By Clauses";
constexpr char kAddColumnTitle[] = "Spalte hinzuf\xFCgen";
constexpr char kAddKeyTitle[] = "Prim\xE4rschl\xFCssel anlegen";
constexpr int kMessageText = 0xFFFF;  // the text of a message box

// A visible dialog of this process titled `title`, once it is there.
HWND AwaitDialog(const std::string &title) {
    HWND found = nullptr;
    WaitFor([&] { return (found = FindWindowA("#32770", title.c_str())) != nullptr && IsWindowVisible(found); }, 10000);
    return found;
}

// Answers the library's next message box with `button`; its text.
std::string AnswerBox(int button) {
    HWND box = AwaitDialog(wintest::kLibraryMessageCaption);
    if (!box) return "<none>";
    Sleep(200);
    const std::string text = ControlText(box, kMessageText);
    PostMessageA(GetDlgItem(box, button), BM_CLICK, 0, 0);
    WaitFor([&] { return !IsWindow(box); });
    return text;
}

// The notice the library shows on `thread` (empty while there is none).
std::string NoticeText(DWORD thread) {
    std::string text;
    EnumThreadWindows(
        thread,
        [](HWND window, LPARAM param) -> BOOL {
            char cls[32] = {};
            GetClassNameA(window, cls, sizeof cls);
            if (lstrcmpA(cls, "KorvelTempWind") != 0 || !IsWindowVisible(window)) return TRUE;
            *reinterpret_cast<std::string *>(param) = wintest::WindowText(window);
            return FALSE;
        },
        reinterpret_cast<LPARAM>(&text));
    return text;
}

// The list view's rows, cells joined by "|".
Texts Rows(HWND list) {
    Texts rows;
    const int count = static_cast<int>(SendMessageA(list, LVM_GETITEMCOUNT, 0, 0));
    const int columns = static_cast<int>(SendMessageA(ListView_GetHeader(list), HDM_GETITEMCOUNT, 0, 0));
    for (int row = 0; row < count; ++row) {
        std::string line;
        for (int column = 0; column < columns; ++column)
            line += (column ? "|" : "") + wintest::ListViewCell(list, row, column);
        rows.push_back(line);
    }
    return rows;
}

// Caption, width and "C" for a centred column, per header column.
Texts Header(HWND list) {
    Texts columns;
    char text[100] = {};
    LVCOLUMNA column = {};
    column.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_FMT;
    column.pszText = text;
    column.cchTextMax = sizeof text;
    for (int i = 0; SendMessageA(list, LVM_GETCOLUMNA, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&column)); ++i)
        columns.push_back(std::string(text) + "|" + std::to_string(column.cx) +
                          ((column.fmt & LVCFMT_JUSTIFYMASK) == LVCFMT_CENTER ? "|C" : ""));
    return columns;
}

std::vector<int> Selected(HWND list) {
    std::vector<int> rows;
    for (int row = -1; (row = static_cast<int>(SendMessageA(list, LVM_GETNEXTITEM, static_cast<WPARAM>(row),
                                                             LVNI_SELECTED))) >= 0;)
        rows.push_back(row);
    return rows;
}

// Selects exactly rows, as a click and Ctrl+clicks would.
void Select(HWND list, const std::vector<int> &rows) {
    LVITEMA item = {};
    item.stateMask = LVIS_SELECTED;
    SendMessageA(list, LVM_SETITEMSTATE, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(&item));
    item.state = LVIS_SELECTED;
    for (int row : rows)
        SendMessageA(list, LVM_SETITEMSTATE, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
}

bool Enabled(HWND dialog, int id) { return IsWindowEnabled(GetDlgItem(dialog, id)) != FALSE; }

// Whether a data source answers, asked past the library so that no error is shown.
bool Answers(const char *dsn) {
    SQLHENV env = nullptr;
    SQLHDBC dbc = nullptr;
    const bool ok = SQL_SUCCEEDED(SQLAllocEnv(&env)) && SQL_SUCCEEDED(SQLAllocConnect(env, &dbc)) &&
                    SQL_SUCCEEDED(SQLConnect(dbc, reinterpret_cast<SQLCHAR *>(const_cast<char *>(dsn)), SQL_NTS,
                                             nullptr, 0, nullptr, 0));
    if (ok) SQLDisconnect(dbc);
    if (dbc) SQLFreeConnect(dbc);
    if (env) SQLFreeEnv(env);
    return ok;
}

// A connection to a data source with one test table; the table and the
// remembered sort clauses go afterwards.
class TableAdminTest : public ::testing::Test {
protected:
    void Open(const char *dsn, const char *table, const std::string &columns) {
        table_ = table;
        DataSourceRecord source{};
        lstrcpynA(source.DataSourceName, dsn, sizeof source.DataSourceName);
        ASSERT_EQ(Kodbc_ConnectDataSource(&source, &henv_, &hdbc_), KODBC_CONNECTED) << dsn;
        Run("DROP TABLE " + table_);
        ASSERT_TRUE(Run("CREATE TABLE " + table_ + " (" + columns + ")"));
    }
    void TearDown() override {
        if (!hdbc_) return;
        Run("DROP TABLE " + table_);
        Korvel_DeleteRegistryKey(HKEY_USERS, kOrderByKey, 0, nullptr);
        Kodbc_DisconnectDataSource(&henv_, &hdbc_);
    }
    bool Run(const std::string &sql) {
        SQLHSTMT stmt = nullptr;
        if (!SQL_SUCCEEDED(SQLAllocStmt(hdbc_, &stmt))) return false;
        const bool ok =
            SQL_SUCCEEDED(SQLExecDirect(stmt, reinterpret_cast<SQLCHAR *>(const_cast<char *>(sql.c_str())), SQL_NTS));
        SQLFreeStmt(stmt, SQL_DROP);
        return ok;
    }
    std::string Title() const { return "Tabelle  [" + table_ + "]"; }

    SQLHENV henv_ = nullptr;
    SQLHDBC hdbc_ = nullptr;
    std::string table_;
};

TEST_F(TableAdminTest, ListsAddsAColumnAndRemovesTheColumnsAnsweredYes) {
    ASSERT_NO_FATAL_FAILURE(Open(wintest::DataSource(), "kodbc_ta",
                                 "Nr INTEGER NOT NULL, Name VARCHAR(20) DEFAULT 'x', Ort VARCHAR(30), Plz CHAR(5), "
                                 "Notiz VARCHAR(40)"));
    ASSERT_EQ(Korvel_WriteRegistryString(HKEY_USERS, kOrderByKey, 0, nullptr, "kodbc_ta", "Nr"), 1);
    Texts header, rows, types, messages, afterAdd, afterDrop;
    std::vector<int> selectedAfterAdd, selectedAfterDrop;
    bool autoIncGreyed = false, dropGreyed = false, stayedOpen = false;
    wintest::DialogRobot robot(Title(), "tableadmin-10009", [&](HWND dialog) {
        HWND list = GetDlgItem(dialog, IDC_TABLE_ADMIN_LIST);
        header = Header(list);
        rows = Rows(list);
        dropGreyed = !Enabled(dialog, IDC_TABLE_ADMIN_DROP_COLUMNS);  // nothing selected
        // SQLite has no auto-incrementing definition: the button is greyed,
        // and the command, should it still arrive, refuses.
        autoIncGreyed = !Enabled(dialog, IDC_TABLE_ADMIN_ADD_AUTOINC);
        PostMessageA(dialog, WM_COMMAND, MAKEWPARAM(IDC_TABLE_ADMIN_ADD_AUTOINC, BN_CLICKED), 0);
        messages.push_back(AnswerBox(IDOK));

        Click(dialog, IDC_TABLE_ADMIN_ADD_COLUMN);
        if (HWND add = AwaitDialog(kAddColumnTitle)) {
            HWND type = GetDlgItem(add, IDC_ADD_COLUMN_TYPE);
            const auto lines = wintest::BoxLines(type);
            for (std::size_t i = 0; i < lines.size(); ++i) {
                types.push_back(lines[i].text + "/" + std::to_string(lines[i].data));
                if (lines[i].data == KODBC_TYPE_VAR_TEXT) SendMessageA(type, CB_SETCURSEL, i, 0);
            }
            SetWindowTextA(GetDlgItem(add, IDC_ADD_COLUMN_NAME), "Telefon");
            Click(add, IDOK);  // no length yet
            messages.push_back(AnswerBox(IDOK));
            stayedOpen = IsWindow(add) != FALSE;
            SetWindowTextA(GetDlgItem(add, IDC_ADD_COLUMN_LENGTH), "25");
            Sleep(300);
            wintest::SaveScreenshot(add, "tableadmin-10010");
            Click(add, IDOK);
            WaitFor([&] { return Rows(list).size() == 6; }, 10000);
        }
        afterAdd = Rows(list);
        selectedAfterAdd = Selected(list);

        Select(list, {1, 3, 4});  // Name, Plz, Notiz
        Click(dialog, IDC_TABLE_ADMIN_DROP_COLUMNS);
        for (int answer : {IDYES, IDNO, IDYES}) messages.push_back(AnswerBox(answer));
        WaitFor([&] { return Rows(list).size() == 4; }, 10000);
        afterDrop = Rows(list);
        selectedAfterDrop = Selected(list);
        Click(dialog, IDC_TABLE_ADMIN_CLOSE);
    }, 60000);
    const int result = Kodbc_TableAdmin(hdbc_, "kodbc_ta", 0);
    robot.Join();

    ASSERT_TRUE(robot.Found()) << "dialog 10009 never appeared";
    EXPECT_EQ(result, 0);
    EXPECT_EQ(header, (Texts{"Spaltenname|130", "Datentyp|100", "Leer erlaubt|70|C", "Vorbesetzung|130",
                             "Kommentar|300"}));
    // As the SQLite driver describes them: CHAR as a variable text, and
    // "NULL" as the default of a column that has none.
    EXPECT_EQ(rows, (Texts{"Nr|Ganzzahl (9)|Nein|NULL|", "Name|VarText (20)|Ja|x|", "Ort|VarText (30)|Ja|NULL|",
                           "Plz|VarText (5)|Ja|NULL|", "Notiz|VarText (40)|Ja|NULL|"}));
    EXPECT_TRUE(dropGreyed);
    EXPECT_TRUE(autoIncGreyed);
    EXPECT_EQ(types, (Texts{"FixText/1", "VarText/10", "LangText/9", "Datum/Zeit/4", "Ganzzahl/2", "Gleitkommazahl/3",
                            "Bin\xE4rdaten/7"}));
    EXPECT_TRUE(stayedOpen) << "10010 closed on the refusal";
    ASSERT_EQ(afterAdd.size(), 6u);
    EXPECT_EQ(afterAdd[5], "Telefon|VarText (25)|Nein||") << "the database's clause makes it NOT NULL DEFAULT ''";
    EXPECT_EQ(selectedAfterAdd, std::vector<int>{5});
    // 1642, 1624, then 1703 for each selected column.
    const Texts said = {"Anlegen von selbsthochz\xE4hlenden Spalten nicht", "mu\xDF eine L\xE4nge eingegeben",
                        "das Feld  'Name'  wirklich", "das Feld  'Plz'  wirklich", "das Feld  'Notiz'  wirklich"};
    ASSERT_EQ(messages.size(), said.size());
    for (std::size_t i = 0; i < said.size(); ++i)
        EXPECT_NE(messages[i].find(said[i]), std::string::npos) << messages[i];
    Texts names;
    for (const std::string &row : afterDrop) names.push_back(row.substr(0, row.find('|')));
    EXPECT_EQ(names, (Texts{"Nr", "Ort", "Plz", "Telefon"}));
    EXPECT_EQ(selectedAfterDrop, std::vector<int>{1}) << "the row where the first removed column stood, not Plz";
    char fields[300] = {};
    Kodbc_GetFields(hdbc_, "kodbc_ta", 0, ",", fields, sizeof fields);
    EXPECT_STREQ(fields, "Nr,Ort,Plz,Telefon");
    char remembered[20] = {};
    Korvel_ReadRegistryString(HKEY_USERS, kOrderByKey, 0, nullptr, "kodbc_ta", "<none>", remembered, sizeof remembered);
    EXPECT_STREQ(remembered, "<none>") << "closing forgets the remembered sort clauses";
}

// The primary key on the servers. PostgreSQL refuses the statement of its
// capability row ("ALTER TABLE %t DROP PRIMARY KEY"): the refusal is shown
// and the key stays; MariaDB drops it. MariaDB's driver lists (and numbers)
// a key's columns in the table's order, and the display shows what the
// catalogue lists; the key's real order is read from the information schema.
struct ServerCase {
    const char *dsn;
    bool dropRefused;
    const char *keyShown;
};

class TableAdminKeyTest : public TableAdminTest, public ::testing::WithParamInterface<ServerCase> {};

TEST_P(TableAdminKeyTest, CreatesTheKeyInTheChosenOrderAndDropsItAsTheServerAllows) {
    if (!Answers(GetParam().dsn)) GTEST_SKIP() << GetParam().dsn << " cannot be connected (no servers in this run)";
    ASSERT_NO_FATAL_FAILURE(Open(GetParam().dsn, "kodbc_ta_key",
                                 "a INTEGER NOT NULL, b VARCHAR(10) NOT NULL, c VARCHAR(10), d INTEGER NOT NULL"));
    const std::string keyQuery = "SELECT column_name FROM information_schema.key_column_usage"
                                 " WHERE table_name = 'kodbc_ta_key' ORDER BY ordinal_position";
    const DWORD thread = GetCurrentThreadId();
    Texts offered, chosen, left, messages, keyCreated;
    std::string createdNotice, keyShown, droppedNotice, keyAfterDrop, refusedStatement;
    bool okGreyedWhileEmpty = false;
    wintest::DialogRobot robot(Title(), "", [&](HWND dialog) {
        Click(dialog, IDC_TABLE_ADMIN_ADD_KEY);
        if (HWND key = AwaitDialog(kAddKeyTitle)) {
            offered = wintest::BoxTexts(GetDlgItem(key, IDC_ADD_KEY_CANDIDATES));
            okGreyedWhileEmpty = !Enabled(key, IDOK);
            // a, then b (which moved up into a's place), then b before a.
            for (int id : {IDC_ADD_KEY_ADD, IDC_ADD_KEY_ADD, IDC_ADD_KEY_UP})
                SendMessageA(GetDlgItem(key, id), BM_CLICK, 0, 0);
            chosen = wintest::BoxTexts(GetDlgItem(key, IDC_ADD_KEY_COLUMNS));
            left = wintest::BoxTexts(GetDlgItem(key, IDC_ADD_KEY_CANDIDATES));
            Sleep(300);
            wintest::SaveScreenshot(key, "tableadmin-10059");
            Click(key, IDOK);
            WaitFor([&] { return !(createdNotice = NoticeText(thread)).empty(); }, 10000);
            WaitFor([&] { return !(keyShown = ControlText(dialog, IDC_TABLE_ADMIN_KEY)).empty(); }, 10000);
            keyCreated = wintest::QueryRows(hdbc_, keyQuery);  // the dialog waits for the user meanwhile
        }
        WaitFor([&] { return NoticeText(thread).empty(); }, 10000);

        Click(dialog, IDC_TABLE_ADMIN_DROP_KEY);
        messages.push_back(AnswerBox(IDYES));
        if (!GetParam().dropRefused) {
            WaitFor([&] { return !(droppedNotice = NoticeText(thread)).empty(); }, 10000);
            WaitFor([&] { return ControlText(dialog, IDC_TABLE_ADMIN_KEY).empty(); }, 10000);
        } else if (HWND error = AwaitDialog("Fehler beim ODBC-Datenbankzugriff")) {
            refusedStatement = ControlText(error, IDC_ODBC_ERROR_STATEMENT);
            Click(error, IDC_ODBC_ERROR_CLOSE);
            WaitFor([&] { return !IsWindow(error); });
        }
        Sleep(300);
        keyAfterDrop = ControlText(dialog, IDC_TABLE_ADMIN_KEY);
        PostMessageA(dialog, WM_COMMAND, IDCANCEL, 0);
    }, 60000);
    EXPECT_EQ(Kodbc_TableAdmin(hdbc_, "kodbc_ta_key", 0), 0);
    robot.Join();

    ASSERT_TRUE(robot.Found());
    EXPECT_EQ(offered, (Texts{"a", "b", "d"})) << "only the columns that may not be empty";
    EXPECT_TRUE(okGreyedWhileEmpty);
    EXPECT_EQ(chosen, (Texts{"b", "a"}));
    EXPECT_EQ(left, Texts{"d"});
    EXPECT_EQ(createdNotice, "Der Prim\xE4rschl\xFCssel wurde angelegt");
    EXPECT_EQ(keyCreated, (Texts{"b", "a"}));
    EXPECT_EQ(keyShown, GetParam().keyShown);
    EXPECT_EQ(messages, Texts{"Soll der Prim\xE4rschl\xFCssel der Tabelle wirklich gel\xF6scht werden?"});
    if (GetParam().dropRefused) {
        EXPECT_NE(refusedStatement.find("DROP PRIMARY KEY"), std::string::npos) << refusedStatement;
        EXPECT_EQ(keyAfterDrop, GetParam().keyShown);
        EXPECT_EQ(wintest::QueryRows(hdbc_, keyQuery), keyCreated) << "the refused statement changed the key";
    } else {
        EXPECT_EQ(droppedNotice, "Der Prim\xE4rschl\xFCssel wurde entfernt");
        EXPECT_EQ(keyAfterDrop, "");
        EXPECT_TRUE(wintest::QueryRows(hdbc_, keyQuery).empty());
    }
}

INSTANTIATE_TEST_SUITE_P(Servers, TableAdminKeyTest,
                         ::testing::Values(ServerCase{"kodbc_pg", true, "b, a"},
                                           ServerCase{"kodbc_maria", false, "a, b"}),
                         [](const ::testing::TestParamInfo<ServerCase> &info) {
                             return std::string(info.param.dsn + 6);  // "pg", "maria"
                         });

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
        wintest::DialogRobot robot(d.title, d.shot, [&](HWND dialog) {
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
