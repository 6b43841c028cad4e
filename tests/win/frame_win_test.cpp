// The library's other Windows faces: identity from the version resource, the statement question of
// the dump gate, the error display and the driver information, the data-source box, and the registry
// records on the real registry.
#include "robot.h"

#include "frame/diagnostics_dialog_ids.h"
#include "tools/driver_info_dialog_ids.h"

#include <kodbc/kodbc_exec.h>

#include <algorithm>
#include <sstream>

namespace {

using namespace wintest;

// The version is read from the loaded module's version resource, the
// profile is named after the module; the cut to the caller's buffer and the
// module name are the core's (tests/native/frame_test.cpp).
TEST(Identity, VersionAndProfileFromTheLoadedModules) {
    EXPECT_EQ(Kodbc_GetInstance(), reinterpret_cast<HINSTANCE>(GetModuleHandleA("kodbc.dll")));
    char buffer[MAX_PATH];
    EXPECT_EQ(Kodbc_GetVersion(buffer, 32), 7);
    EXPECT_STREQ(buffer, "5.2.0.0");
    GetModuleFileNameA(nullptr, buffer, sizeof buffer);
    const std::string program(buffer);
    const std::string expected = program.substr(0, program.rfind('.')) + ".ini";
    EXPECT_EQ(Korvel_GetProfileName(nullptr, buffer, sizeof buffer), static_cast<int>(expected.size()));
    EXPECT_EQ(std::string(buffer), expected);
}

// The dump gate's question before each statement (dump state bit 4).
class StatementQuestion : public ConnectedTest {
protected:
    void SetUp() override {
        ConnectedTest::SetUp();
        OwnTables({"kodbc_win_probe"});
        SetDumpState(4);
    }
    void TearDown() override {
        SetDumpState(0);
        ConnectedTest::TearDown();
    }
    // Written as another program would; the library reads the switch again within 200 ms.
    static void SetDumpState(long state) {
        Korvel_WriteRegistryNumber(HKEY_CURRENT_USER, kSettingsKey, 0, nullptr, "SqlDumpState", state);
        Sleep(250);
    }
    static constexpr const char *kCreate = "CREATE TABLE kodbc_win_probe (a INTEGER)";
};

// Which answer lets the statement run is the core's (ExecTest natively); that "Ja" on such a box
// reaches the library as yes, the table administration's walk shows.
TEST_F(StatementQuestion, AsksYesNoCancelWithTheStatementAndCancelReachesTheGate) {
    MessageBoxAnswerer answerer("SQL-Befehl", IDCANCEL, "messagebox-question");
    EXPECT_EQ(OdbcEh_PerformSqlStatement(nullptr, hdbc_, kCreate, nullptr), 2);
    ASSERT_EQ(answerer.Seen().size(), 1u);
    const MessageBoxSeen &box = answerer.Seen()[0];
    EXPECT_EQ(box.text, kCreate);
    EXPECT_TRUE(box.yes && box.no && box.cancel) << "yes/no/cancel expected";
    EXPECT_FALSE(Run("SELECT * FROM kodbc_win_probe"));
}

using InfoDialogs = ConnectedTest;

// Dialog 10025 on a failed statement, each piece of the driver's message in its field; how the
// message is split, and when nothing is shown, is the core's (tests/native/frame_test.cpp).
// "Schließen" ends it with 1, Escape with 2; a null statement leaves its field empty.
TEST_F(InfoDialogs, ErrorDisplayShowsTheSplitMessageAndEndsWithTheButtonOrEscape) {
    constexpr char kBadStatement[] = "SELECT * FROM kodbc_missing_table";
    for (const char *statement : {kBadStatement, static_cast<const char *>(nullptr)}) {
        SCOPED_TRACE(statement ? statement : "(null)");
        SQLHSTMT stmt = nullptr;
        ASSERT_EQ(SQLAllocStmt(hdbc_, &stmt), SQL_SUCCESS);
        ASSERT_EQ(SQLExecDirect(stmt, reinterpret_cast<SQLCHAR *>(const_cast<char *>(kBadStatement)), SQL_NTS),
                  SQL_ERROR);
        std::string fields, state;
        bool hintVisible = true;
        DialogRobot robot(kErrorTitle, statement ? "diagnostics-10025" : "", [&](HWND dialog) {
            for (int id : {IDC_ODBC_ERROR_STATEMENT, IDC_ODBC_ERROR_VENDOR, IDC_ODBC_ERROR_COMPONENT,
                           IDC_ODBC_ERROR_DATASOURCE, IDC_ODBC_ERROR_DESCRIPTION, IDC_ODBC_ERROR_CLOSE,
                           IDC_ODBC_ERROR_HINT})
                fields += ControlText(dialog, id) + "|";
            state = ControlText(dialog, IDC_ODBC_ERROR_STATE);
            hintVisible = ControlVisible(dialog, IDC_ODBC_ERROR_HINT);
            if (statement) Click(dialog, IDC_ODBC_ERROR_CLOSE);
            else PressKey(GetDlgItem(dialog, IDC_ODBC_ERROR_CLOSE), VK_ESCAPE);
        });
        EXPECT_EQ(Kodbc_DisplayErrorHstmt(stmt, statement), statement ? 1 : 2);
        robot.Join();
        SQLFreeStmt(stmt, SQL_DROP);

        // "[SQLite]no such table: ... (1)": one bracket, the rest is the component, no description.
        EXPECT_EQ(fields, std::string(statement ? statement : "") +
                              "|SQLite|no such table: kodbc_missing_table (1)|||&Schlie\xDF" "en|"
                              "M\xF6gliche Fehlerursache|");
        EXPECT_TRUE(state == "HY000" || state == "S1000") << "SQLSTATE " << state;
        EXPECT_FALSE(hintVisible) << "no hint for this SQLSTATE";
    }
}

// Dialog 10061: each line of the windowless export under its label, in the same order (what the
// lines say is the core's, tests/native/tools_test.cpp), and its close button ends it.
TEST_F(InfoDialogs, DriverInformationShowsTheDriversFieldsUnderTheirLabels) {
    char text[4096] = {};
    ASSERT_EQ(Kodbc_GetDriverInformation(hdbc_, text, sizeof text), 1);
    std::vector<std::string> expected, shown;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) expected.push_back(line);
    DialogRobot robot("Information \xFC" "ber ODBC-Datenquelle", "driverinfo-10061", [&](HWND dialog) {
        for (int i = 0; i < static_cast<int>(expected.size()); ++i)
            shown.push_back(ControlText(dialog, IDC_DRIVER_INFO_FIRST_LABEL + 2 * i) + "\t" +
                            ControlText(dialog, IDC_DRIVER_INFO_FIRST_FIELD + 2 * i));
        Click(dialog, IDC_DRIVER_INFO_CLOSE);
    });
    EXPECT_EQ(Kodbc_DisplayDriverInformation(hdbc_, nullptr), 2);
    robot.Join();
    EXPECT_EQ(shown, expected);
}

// The names the driver manager lists, asked directly.
std::vector<std::string> DriverManagerNames() {
    std::vector<std::string> names;
    SQLHENV env = nullptr;
    if (SQLAllocEnv(&env) != SQL_SUCCESS) return names;
    SQLCHAR name[200], description[200];
    SQLSMALLINT a, b;
    for (SQLUSMALLINT next = SQL_FETCH_FIRST; SQLDataSources(env, next, name, sizeof name, &a, description,
                                                             sizeof description, &b) == SQL_SUCCESS;
         next = SQL_FETCH_NEXT)
        names.emplace_back(reinterpret_cast<char *>(name));
    SQLFreeEnv(env);
    return names;
}

TEST(DataSourcesBox, FillsListAndComboBoxWithEveryDataSource) {
    HWND dialog = CreateWindowA("#32770", "Datenquellen", WS_POPUP | WS_CAPTION | WS_VISIBLE, 100, 100, 370, 200,
                                nullptr, nullptr, nullptr, nullptr);
    const DWORD style = WS_CHILD | WS_VISIBLE | WS_BORDER | WS_VSCROLL;
    HWND list = CreateWindowA("LISTBOX", "", style | LBS_NOTIFY, 10, 10, 165, 150, dialog, nullptr, nullptr, nullptr);
    HWND combo = CreateWindowA("COMBOBOX", "", style | CBS_DROPDOWNLIST, 185, 10, 165, 150, dialog, nullptr, nullptr,
                               nullptr);
    ASSERT_TRUE(dialog && list && combo);
    for (HWND box : {list, combo}) {
        SendMessageA(box, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)), 0);
        Korvel_AddBoxEntry(box, "stale", 0, -1, 0);  // what was there before goes
        Kodbc_FillDataSourcesBox(box);
        Korvel_SetBoxIndex(box, 0);
    }
    UpdateWindow(dialog);
    SaveScreenshot(dialog, "datasources-box");

    std::vector<std::string> expected = DriverManagerNames();
    EXPECT_NE(std::find(expected.begin(), expected.end(), DataSource()), expected.end());
    EXPECT_EQ(BoxTexts(list), expected);
    EXPECT_EQ(BoxTexts(combo), expected);
    DestroyWindow(dialog);
}

// What only the real registry shows, the value types; the round trip and the defaults are the
// core's (RegistryRecords natively).
TEST(Registry, RecordsLieBelowKeyAndSectionTextsAsStringsTheTypeAsANumber) {
    DataSourceRecord written = {};
    lstrcpyA(written.DataSourceName, "Lager");
    Kodbc_WriteDataSourceToRegistry(HKEY_CURRENT_USER, kSettingsKey, 0, "WinTest", &written);
    DbObjectRecord object = {"Auftraege", KODBC_OBJECT_VIEW};
    Kodbc_WriteDbObjectToRegistry(HKEY_CURRENT_USER, kSettingsKey, 0, "WinTest", &object);
    const DWORD view = KODBC_OBJECT_VIEW;
    const struct {
        const char *name;
        DWORD type;
        std::string bytes;
    } values[] = {{"DataSourceName", REG_SZ, std::string("Lager", 6)},
                  {"DbObjectType", REG_DWORD, std::string(reinterpret_cast<const char *>(&view), sizeof view)}};
    for (const auto &v : values) {
        char raw[100] = {};
        DWORD type = 0, size = sizeof raw;
        ASSERT_EQ(RegGetValueA(HKEY_CURRENT_USER, "Software\\Korvel Software\\Kodbc\\WinTest", v.name, RRF_RT_ANY,
                               &type, raw, &size),
                  ERROR_SUCCESS)
            << v.name;
        EXPECT_EQ(type, v.type) << v.name;
        EXPECT_EQ(std::string(raw, size), v.bytes) << v.name;
    }
}

} // namespace
