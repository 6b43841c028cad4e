// The library's other Windows faces: identity from the version resource,
// message boxes, the statement question of the dump gate, the data-source
// box, and the registry records on the real registry.
#include "robot.h"
#include "win_support.h"

#include <kodbc/kodbc_exec.h>

#include <algorithm>
#include <cstring>

namespace {

using wintest::MessageBoxAnswerer;

constexpr char kLibraryKey[] = "Software\\Korvel Software\\Kodbc";

using wintest::DataSource;

// ---------------------------------------------------------------------------
// Identity

TEST(Identity, VersionAndModuleNameFromTheLoadedModuleCutToTheBuffer) {
    EXPECT_EQ(Kodbc_GetInstance(), reinterpret_cast<HINSTANCE>(GetModuleHandleA("kodbc.dll")));
    char buffer[32];
    EXPECT_EQ(Kodbc_GetVersion(buffer, sizeof buffer), 7);
    EXPECT_STREQ(buffer, "5.2.0.0");
    std::memset(buffer, '#', sizeof buffer);
    EXPECT_EQ(Kodbc_GetVersion(buffer, 4), 3);
    EXPECT_STREQ(buffer, "5.2");
    EXPECT_EQ(buffer[4], '#') << "written past the size";
    EXPECT_EQ(Kodbc_GetVersion(nullptr, 10), 0);
    std::memset(buffer, '#', sizeof buffer);
    EXPECT_EQ(Kodbc_GetPoloModuleName(buffer, 5), 4);
    EXPECT_STREQ(buffer, "KODB");
    EXPECT_EQ(buffer[5], '#');
}

// ---------------------------------------------------------------------------
// Message boxes

TEST(Messages, MissingDataSourceNameIsAStopMessage) {
    DataSourceRecord record = {};
    SQLHENV henv = nullptr;
    SQLHDBC hdbc = nullptr;
    MessageBoxAnswerer answerer("Datenbank", IDOK);
    EXPECT_EQ(Kodbc_ConnectDataSource(&record, &henv, &hdbc), -1);
    ASSERT_EQ(answerer.Seen().size(), 1u);
    const wintest::MessageBoxSeen &box = answerer.Seen()[0];
    EXPECT_EQ(box.text, "Es ist keine Datenquelle angegeben");
    EXPECT_TRUE(box.ok);
    EXPECT_FALSE(box.yes || box.no || box.cancel) << "a stop message offers OK only";
}

// The dump gate's question before each statement (dump state bit 4).
class StatementQuestion : public wintest::ConnectedTest {
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
    static void SetDumpState(DWORD state) {
        HKEY key;
        ASSERT_EQ(RegCreateKeyExA(HKEY_CURRENT_USER, kLibraryKey, 0, nullptr, 0, KEY_WRITE, nullptr, &key, nullptr),
                  ERROR_SUCCESS);
        RegSetValueExA(key, "SqlDumpState", 0, REG_DWORD, reinterpret_cast<const BYTE *>(&state), sizeof state);
        RegCloseKey(key);
    }
    int Perform(int answer, std::vector<wintest::MessageBoxSeen> &seen) {
        MessageBoxAnswerer answerer("SQL-Befehl", answer, answer == IDCANCEL ? "messagebox-question" : "");
        int result = OdbcEh_PerformSqlStatement(nullptr, hdbc_, kCreate, nullptr);
        seen = answerer.Seen();
        return result;
    }

    static constexpr const char *kCreate = "CREATE TABLE kodbc_win_probe (a INTEGER)";
};

TEST_F(StatementQuestion, AsksYesNoCancelWithTheStatement) {
    std::vector<wintest::MessageBoxSeen> seen;
    EXPECT_EQ(Perform(IDCANCEL, seen), 2);
    ASSERT_EQ(seen.size(), 1u);
    EXPECT_EQ(seen[0].text, kCreate);
    EXPECT_TRUE(seen[0].yes && seen[0].no && seen[0].cancel) << "yes/no/cancel expected";
    EXPECT_EQ(seen[0].yesText, "&Ja") << "the system's buttons speak German";
    EXPECT_FALSE(Run("SELECT * FROM kodbc_win_probe")) << "cancelled statement ran";
}

TEST_F(StatementQuestion, NoRefusesYesRuns) {
    std::vector<wintest::MessageBoxSeen> seen;
    EXPECT_EQ(Perform(IDNO, seen), 2);
    EXPECT_FALSE(Run("SELECT * FROM kodbc_win_probe")) << "refused statement ran";
    EXPECT_EQ(Perform(IDYES, seen), 1);
    ASSERT_EQ(seen.size(), 1u);
    EXPECT_TRUE(Run("SELECT * FROM kodbc_win_probe")) << "accepted statement did not run";
}

// ---------------------------------------------------------------------------
// The data-source box

// A dialog with one list box (101) and one combo box (102), from memory.
HWND CreateBoxDialog() {
    alignas(4) static WORD buffer[512];
    std::memset(buffer, 0, sizeof buffer);
    auto *dlg = reinterpret_cast<DLGTEMPLATE *>(buffer);
    dlg->style = WS_POPUP | WS_CAPTION | WS_VISIBLE | DS_SETFONT;
    dlg->cdit = 2;
    dlg->cx = 240;
    dlg->cy = 120;
    WORD *p = reinterpret_cast<WORD *>(dlg + 1);
    *p++ = 0;  // no menu
    *p++ = 0;  // default class
    for (const char *c = "Datenquellen"; *c; ++c) *p++ = static_cast<WORD>(*c);
    *p++ = 0;
    *p++ = 8;
    for (const char *c = "MS Shell Dlg"; *c; ++c) *p++ = static_cast<WORD>(*c);
    *p++ = 0;
    auto item = [&p](DWORD style, short x, short y, short cx, short cy, WORD id, WORD atom) {
        p = reinterpret_cast<WORD *>((reinterpret_cast<ULONG_PTR>(p) + 3) & ~ULONG_PTR(3));
        auto *it = reinterpret_cast<DLGITEMTEMPLATE *>(p);
        it->style = style | WS_CHILD | WS_VISIBLE | WS_BORDER;
        it->x = x;
        it->y = y;
        it->cx = cx;
        it->cy = cy;
        it->id = id;
        p = reinterpret_cast<WORD *>(it + 1);
        *p++ = 0xFFFF;
        *p++ = atom;
        *p++ = 0;  // no text
        *p++ = 0;  // no creation data
    };
    item(LBS_NOTIFY | WS_VSCROLL, 7, 7, 110, 100, 101, 0x0083);
    item(CBS_DROPDOWNLIST | WS_VSCROLL, 124, 7, 110, 100, 102, 0x0085);
    return CreateDialogIndirectParamA(GetModuleHandleA(nullptr), dlg, nullptr,
                                      [](HWND, UINT, WPARAM, LPARAM) -> INT_PTR { return FALSE; }, 0);
}

// The names the driver manager lists, asked directly.
std::vector<std::string> DriverManagerNames() {
    std::vector<std::string> names;
    SQLHENV env = nullptr;
    if (SQLAllocEnv(&env) != SQL_SUCCESS) return names;
    SQLCHAR name[200], description[200];
    SQLSMALLINT a, b;
    SQLUSMALLINT direction = SQL_FETCH_FIRST;
    while (SQLDataSources(env, direction, name, sizeof name, &a, description, sizeof description, &b) ==
           SQL_SUCCESS) {
        direction = SQL_FETCH_NEXT;
        names.emplace_back(reinterpret_cast<char *>(name));
    }
    SQLFreeEnv(env);
    return names;
}

TEST(DataSourcesBox, FillsListAndComboBoxWithEveryDataSource) {
    HWND dialog = CreateBoxDialog();
    ASSERT_NE(dialog, nullptr);
    HWND list = GetDlgItem(dialog, 101);
    HWND combo = GetDlgItem(dialog, 102);
    // What was there before goes.
    SendMessageA(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>("stale"));
    SendMessageA(combo, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>("stale"));

    Kodbc_FillDataSourcesBox(list);
    Kodbc_FillDataSourcesBox(combo);
    SendMessageA(list, LB_SETCURSEL, 0, 0);
    SendMessageA(combo, CB_SETCURSEL, 0, 0);
    UpdateWindow(dialog);
    wintest::SaveScreenshot(dialog, "datasources-box");

    std::vector<std::string> expected = DriverManagerNames();
    ASSERT_FALSE(expected.empty());
    EXPECT_NE(std::find(expected.begin(), expected.end(), DataSource()), expected.end());
    EXPECT_EQ(wintest::BoxTexts(list), expected);
    EXPECT_EQ(wintest::BoxTexts(combo), expected);
    DestroyWindow(dialog);
}

// ---------------------------------------------------------------------------
// Registry records

TEST(Registry, DataSourceRecordLivesBelowKeyAndSection) {
    DataSourceRecord written = {};
    lstrcpyA(written.DataSourceName, "Lager");
    lstrcpyA(written.UserId, "m\xFCller");
    Kodbc_WriteDataSourceToRegistry(HKEY_CURRENT_USER, kLibraryKey, 0, "WinTest", &written);

    char raw[100] = {};
    DWORD size = sizeof raw;
    ASSERT_EQ(RegGetValueA(HKEY_CURRENT_USER, "Software\\Korvel Software\\Kodbc\\WinTest", "DataSourceName",
                           RRF_RT_REG_SZ, nullptr, raw, &size),
              ERROR_SUCCESS);
    EXPECT_STREQ(raw, "Lager");

    DataSourceRecord defaults = {};
    lstrcpyA(defaults.Password, "geheim");
    DataSourceRecord read;
    std::memset(&read, 0x5A, sizeof read);
    Kodbc_ReadDataSourceFromRegistry(HKEY_CURRENT_USER, kLibraryKey, 0, "WinTest", &defaults, &read);
    EXPECT_STREQ(read.DataSourceName, "Lager");
    EXPECT_STREQ(read.UserId, "m\xFCller");
    EXPECT_STREQ(read.Password, "") << "written as an empty value, so the default does not apply";
    EXPECT_EQ(read.Reserved[0], 0x5A) << "the applications' bytes were touched";
}

TEST(Registry, MissingValuesTakeTheDefaults) {
    DataSourceRecord defaults = {};
    lstrcpyA(defaults.DataSourceName, "Vorgabe");
    DataSourceRecord read = {};
    Kodbc_ReadDataSourceFromRegistry(HKEY_CURRENT_USER, kLibraryKey, 0, "WinTestMissing", &defaults, &read);
    EXPECT_STREQ(read.DataSourceName, "Vorgabe");
    DbObjectRecord object = {};
    DbObjectRecord objectDefaults = {"Kunden", 2};
    Kodbc_ReadDbObjectFromRegistry(HKEY_CURRENT_USER, kLibraryKey, 0, "WinTestMissing", &objectDefaults, &object);
    EXPECT_STREQ(object.DbObjectName, "Kunden");
    EXPECT_EQ(object.DbObjectType, 2);
}

TEST(Registry, ObjectTypeIsANumber) {
    DbObjectRecord written = {"Auftraege", KODBC_OBJECT_VIEW};
    Kodbc_WriteDbObjectToRegistry(HKEY_CURRENT_USER, kLibraryKey, 0, "WinTestObject", &written);
    DWORD type = 0, value = 0, size = sizeof value;
    ASSERT_EQ(RegGetValueA(HKEY_CURRENT_USER, "Software\\Korvel Software\\Kodbc\\WinTestObject", "DbObjectType",
                           RRF_RT_ANY, &type, &value, &size),
              ERROR_SUCCESS);
    EXPECT_EQ(type, static_cast<DWORD>(REG_DWORD));
    EXPECT_EQ(value, static_cast<DWORD>(KODBC_OBJECT_VIEW));
    DbObjectRecord read = {};
    Kodbc_ReadDbObjectFromRegistry(HKEY_CURRENT_USER, kLibraryKey, 0, "WinTestObject", nullptr, &read);
    EXPECT_STREQ(read.DbObjectName, "Auftraege");
    EXPECT_EQ(read.DbObjectType, KODBC_OBJECT_VIEW);
}

} // namespace
