// The data-source and schema pickers (dialogs 103, 10056, 10060) driven as
// a user drives them: what they give back, what they remember, when they
// stay open, and what the summary dialog allows on a database with and
// without schemata.
#include "robot.h"

#include "frame/diagnostics_dialog_ids.h"
#include "tools/picker_dialog_ids.h"
#include "win_support.h"

#include <korvel/korvel32.h>

#include <cstring>
#include <functional>
#include <string>
#include <vector>

namespace {

using wintest::Click;
using wintest::ControlText;
using wintest::DialogRobot;
using wintest::WaitFor;

constexpr char kSourceTitle[] = "Datenquelle ausw\xE4hlen";
constexpr char kSchemaTitle[] = "Datenbank-Schema ausw\xE4hlen";
constexpr char kErrorTitle[] = "Fehler beim ODBC-Datenbankzugriff";
constexpr char kMessageCaption[] = "Datenbank";
constexpr char kKey[] = "Software\\Korvel Software\\Kodbc";
constexpr char kSection[] = "DataSourceDialog";
constexpr char kSqlite[] = "kodbc_sqlite";
constexpr char kBroken[] = "kodbc_broken";  // configured, but its database cannot be opened
constexpr char kPg[] = "kodbc_pg";
constexpr char kPgSchema[] = "kodbc_pickers";
constexpr unsigned char kCallersBytes = 0xA5;  // the record's last 20 bytes, which are the caller's

DataSourceRecord Record(const char *dsn, const char *user = "", const char *password = "") {
    DataSourceRecord record;
    std::memset(&record, 0, sizeof record);
    lstrcpynA(record.DataSourceName, dsn, sizeof record.DataSourceName);
    lstrcpynA(record.UserId, user, sizeof record.UserId);
    lstrcpynA(record.Password, password, sizeof record.Password);
    std::memset(record.Reserved, kCallersBytes, sizeof record.Reserved);
    return record;
}

bool CallersBytesKept(const DataSourceRecord &record) {
    for (unsigned char byte : record.Reserved)
        if (byte != kCallersBytes) return false;
    return true;
}

// ---------------------------------------------------------------------------
// The remembered users in the prefix's registry, put back as they were.

std::string Remembered(const char *dsn) {
    char user[100] = {};
    Korvel_ReadRegistryString(HKEY_CURRENT_USER, kKey, 0, kSection, dsn, "<none>", user, sizeof user);
    return user;
}

class RememberedUsers {
public:
    explicit RememberedUsers(std::vector<std::string> dsns) {
        for (std::string &dsn : dsns) saved_.push_back({dsn, Remembered(dsn.c_str())});
    }
    ~RememberedUsers() {
        for (const auto &[dsn, user] : saved_) {
            if (user == "<none>") Korvel_DeleteRegistryValue(HKEY_CURRENT_USER, kKey, 0, kSection, dsn.c_str());
            else Korvel_WriteRegistryString(HKEY_CURRENT_USER, kKey, 0, kSection, dsn.c_str(), user.c_str());
        }
    }
    void Set(const char *dsn, const char *user) {
        if (user) Korvel_WriteRegistryString(HKEY_CURRENT_USER, kKey, 0, kSection, dsn, user);
        else Korvel_DeleteRegistryValue(HKEY_CURRENT_USER, kKey, 0, kSection, dsn);
    }

private:
    std::vector<std::pair<std::string, std::string>> saved_;
};

// Every name and text below the dialog's section.
std::string SectionContents() {
    std::string all;
    HKEY key = nullptr;
    const std::string path = std::string(kKey) + "\\" + kSection;
    if (RegOpenKeyExA(HKEY_CURRENT_USER, path.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) return all;
    for (DWORD i = 0;; ++i) {
        char name[256] = {}, data[256] = {};
        DWORD nameSize = sizeof name, dataSize = sizeof data - 1;
        if (RegEnumValueA(key, i, name, &nameSize, nullptr, nullptr, reinterpret_cast<BYTE *>(data), &dataSize) !=
            ERROR_SUCCESS)
            break;
        all += std::string(name) + "=" + data + "\n";
    }
    RegCloseKey(key);
    return all;
}

// ---------------------------------------------------------------------------
// Windows

// A visible dialog titled `title` on `thread`, other than `except`, once it is there.
HWND WaitForDialog(DWORD thread, const std::string &title, HWND except = nullptr) {
    struct Search {
        const std::string &title;
        HWND except, found;
    } search{title, except, nullptr};
    WaitFor([&] {
        EnumThreadWindows(
            thread,
            [](HWND window, LPARAM param) -> BOOL {
                auto *s = reinterpret_cast<Search *>(param);
                char cls[64] = {};
                GetClassNameA(window, cls, sizeof cls);
                if (window == s->except || !IsWindowVisible(window) || lstrcmpA(cls, "#32770") != 0 ||
                    wintest::WindowText(window) != s->title)
                    return TRUE;
                s->found = window;
                return FALSE;
            },
            reinterpret_cast<LPARAM>(&search));
        return search.found != nullptr;
    });
    return search.found;
}

DWORD ThreadOf(HWND window) { return GetWindowThreadProcessId(window, nullptr); }

bool Enabled(HWND dialog, int id) { return IsWindowEnabled(GetDlgItem(dialog, id)) != FALSE; }

void SetText(HWND dialog, int id, const char *text) {
    SendMessageA(GetDlgItem(dialog, id), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text));
}

int Entry(HWND dialog, const char *dsn) {
    return static_cast<int>(SendDlgItemMessageA(dialog, IDC_DATASOURCE_PICKER_LIST, LB_FINDSTRINGEXACT,
                                                static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(dsn)));
}

int Selection(HWND dialog) {
    return static_cast<int>(SendDlgItemMessageA(dialog, IDC_DATASOURCE_PICKER_LIST, LB_GETCURSEL, 0, 0));
}

// Clicks (or double-clicks) an entry of the data-source list with the mouse.
void ClickEntry(HWND dialog, const char *dsn, bool twice = false) {
    HWND list = GetDlgItem(dialog, IDC_DATASOURCE_PICKER_LIST);
    RECT r = {};
    SendMessageA(list, LB_GETITEMRECT, static_cast<WPARAM>(Entry(dialog, dsn)), reinterpret_cast<LPARAM>(&r));
    const LPARAM at = MAKELPARAM((r.left + r.right) / 2, (r.top + r.bottom) / 2);
    PostMessageA(list, WM_LBUTTONDOWN, MK_LBUTTON, at);
    PostMessageA(list, WM_LBUTTONUP, 0, at);
    if (twice) {
        PostMessageA(list, WM_LBUTTONDBLCLK, MK_LBUTTON, at);
        PostMessageA(list, WM_LBUTTONUP, 0, at);
    }
}

// In an open dialog 103: picks dsn with user and password and confirms.
void PickInSourceDialog(HWND picker, const char *dsn, const char *user, const char *password = "") {
    ClickEntry(picker, dsn);
    WaitFor([&] { return Selection(picker) == Entry(picker, dsn); });
    SetText(picker, IDC_DATASOURCE_PICKER_USER, user);
    SetText(picker, IDC_DATASOURCE_PICKER_PASSWORD, password);
    Click(picker, IDC_DATASOURCE_PICKER_OK);
    WaitFor([&] { return !IsWindow(picker); });
}

// ---------------------------------------------------------------------------
// Dialog 103

struct Confirmation {
    const char *how;
    bool doubleClick;
    const char *shot;
};

TEST(DataSourcePicker, ConfirmingFillsTheRecordAndRemembersOnlyTheUser) {
    const Confirmation confirmations[] = {{"OK button", false, "pickers-103"}, {"double click", true, ""}};
    for (const Confirmation &c : confirmations) {
        SCOPED_TRACE(c.how);
        RememberedUsers users({kSqlite, kBroken});
        users.Set(kSqlite, "vorher");
        DataSourceRecord record = Record(kBroken, "alt", "altes-pw");
        struct {
            bool openedOnRecord = false;
            std::string userAfterClick = "<unread>", passwordAfterClick = "<unread>";
        } seen;
        DialogRobot robot(kSourceTitle, c.shot, [&](HWND dialog) {
            seen.openedOnRecord = Selection(dialog) == Entry(dialog, kBroken) &&
                                  ControlText(dialog, IDC_DATASOURCE_PICKER_USER) == "alt" &&
                                  ControlText(dialog, IDC_DATASOURCE_PICKER_PASSWORD) == "altes-pw";
            ClickEntry(dialog, kSqlite);
            WaitFor([&] { return ControlText(dialog, IDC_DATASOURCE_PICKER_USER) == "vorher"; });
            seen.userAfterClick = ControlText(dialog, IDC_DATASOURCE_PICKER_USER);
            seen.passwordAfterClick = ControlText(dialog, IDC_DATASOURCE_PICKER_PASSWORD);
            SetText(dialog, IDC_DATASOURCE_PICKER_USER, "robot");
            SetText(dialog, IDC_DATASOURCE_PICKER_PASSWORD, "geheim-123");
            if (c.doubleClick) ClickEntry(dialog, kSqlite, true);
            else Click(dialog, IDC_DATASOURCE_PICKER_OK);
            WaitFor([&] { return !IsWindow(dialog); });
        });
        const int result = Kodbc_DataSourceDialog(&record);
        robot.Join();

        ASSERT_TRUE(robot.Found()) << "dialog 103 never appeared";
        EXPECT_TRUE(seen.openedOnRecord) << "the record's own data source, user and password first";
        EXPECT_EQ(seen.userAfterClick, "vorher") << "another data source shows the user remembered for it";
        EXPECT_EQ(seen.passwordAfterClick, "");
        EXPECT_EQ(result, 1);
        EXPECT_STREQ(record.DataSourceName, kSqlite);
        EXPECT_STREQ(record.UserId, "robot");
        EXPECT_STREQ(record.Password, "geheim-123");
        EXPECT_TRUE(CallersBytesKept(record));
        EXPECT_EQ(Remembered(kSqlite), "robot");
        EXPECT_EQ(SectionContents().find("geheim-123"), std::string::npos) << SectionContents();
    }
}

TEST(DataSourcePicker, AbsentDataSourceOpensOnTheFirstWithItsRememberedUser) {
    HWND probe = CreateWindowA("LISTBOX", "", WS_POPUP, 0, 0, 100, 100, nullptr, nullptr, nullptr, nullptr);
    ASSERT_NE(probe, nullptr);
    Kodbc_FillDataSourcesBox(probe);
    const std::vector<std::string> names = wintest::BoxTexts(probe);
    DestroyWindow(probe);
    ASSERT_FALSE(names.empty());
    RememberedUsers users({names[0]});
    users.Set(names[0].c_str(), "erster");

    DataSourceRecord record = Record("kodbc_gibt_es_nicht", "alt", "altes-pw");
    const DataSourceRecord before = record;
    int selection = -2;
    std::string user = "<unread>", password = "<unread>";
    DialogRobot robot(kSourceTitle, "", [&](HWND dialog) {
        WaitFor([&] { return ControlText(dialog, IDC_DATASOURCE_PICKER_USER) == "erster"; });
        selection = Selection(dialog);
        user = ControlText(dialog, IDC_DATASOURCE_PICKER_USER);
        password = ControlText(dialog, IDC_DATASOURCE_PICKER_PASSWORD);
        Click(dialog, IDC_DATASOURCE_PICKER_CANCEL);
    });
    const int result = Kodbc_DataSourceDialog(&record);
    robot.Join();

    ASSERT_TRUE(robot.Found());
    EXPECT_EQ(selection, 0);
    EXPECT_EQ(user, "erster");
    EXPECT_EQ(password, "");
    EXPECT_EQ(result, 2);
    EXPECT_EQ(std::memcmp(&record, &before, sizeof record), 0) << "a cancelled picker leaves the record alone";
}

// A choice that cannot be used is answered by a message or the connection's
// error, and the picker stays open for another try.
struct UnusableChoice {
    const char *what;
    std::function<void(HWND)> choose;
    const char *popupTitle;
    bool robotClosesPopup;  // else the message-box answerer does
};

TEST(DataSourcePicker, StaysOpenWhenTheChoiceCannotBeUsed) {
    const UnusableChoice choices[] = {
        {"nothing selected",
         [](HWND dialog) { SendDlgItemMessageA(dialog, IDC_DATASOURCE_PICKER_LIST, LB_SETCURSEL, static_cast<WPARAM>(-1), 0); },
         kMessageCaption, false},
        {"a data source that does not connect",
         [](HWND dialog) {
             // Chosen by sent messages: the dialog has filled the user field
             // for it before the robot types over it.
             HWND list = GetDlgItem(dialog, IDC_DATASOURCE_PICKER_LIST);
             SendMessageA(list, LB_SETCURSEL, static_cast<WPARAM>(Entry(dialog, kBroken)), 0);
             SendMessageA(dialog, WM_COMMAND, MAKEWPARAM(IDC_DATASOURCE_PICKER_LIST, LBN_SELCHANGE),
                          reinterpret_cast<LPARAM>(list));
             SetText(dialog, IDC_DATASOURCE_PICKER_USER, "versuch");
         },
         kErrorTitle, true},
    };
    for (const UnusableChoice &c : choices) {
        SCOPED_TRACE(c.what);
        RememberedUsers users({kSqlite, kBroken});
        DataSourceRecord record = Record(kSqlite);
        const DataSourceRecord before = record;
        bool brokenListed = false, popupShown = false, stayedOpen = false;
        wintest::MessageBoxAnswerer answerer(kMessageCaption, IDOK);
        DialogRobot robot(kSourceTitle, "", [&](HWND dialog) {
            brokenListed = Entry(dialog, kBroken) != LB_ERR;
            if (!brokenListed) {
                Click(dialog, IDC_DATASOURCE_PICKER_CANCEL);
                return;
            }
            c.choose(dialog);
            Click(dialog, IDC_DATASOURCE_PICKER_OK);
            HWND popup = WaitForDialog(ThreadOf(dialog), c.popupTitle, dialog);
            popupShown = popup != nullptr;
            if (popup && c.robotClosesPopup) Click(popup, IDC_ODBC_ERROR_CLOSE);
            WaitFor([&] { return !IsWindow(popup); });
            // Answered only once the test thread is back in the dialog's
            // loop, that is after the handler that showed the popup is done.
            SendMessageTimeoutA(dialog, WM_NULL, 0, 0, SMTO_NORMAL, 5000, nullptr);
            stayedOpen = IsWindow(dialog) && IsWindowVisible(dialog);
            Click(dialog, IDC_DATASOURCE_PICKER_CANCEL);
        });
        const int result = Kodbc_DataSourceDialog(&record);
        robot.Join();

        ASSERT_TRUE(robot.Found());
        ASSERT_TRUE(brokenListed) << "the test configuration lacks " << kBroken;
        EXPECT_TRUE(popupShown) << "expected \"" << c.popupTitle << "\"";
        EXPECT_TRUE(stayedOpen);
        EXPECT_EQ(result, 2);
        EXPECT_EQ(std::memcmp(&record, &before, sizeof record), 0);
        if (c.robotClosesPopup) {
            EXPECT_TRUE(answerer.Seen().empty());
            EXPECT_EQ(Remembered(kBroken), "versuch") << "the user is remembered before the connection is tried";
        } else {
            EXPECT_EQ(answerer.Seen().size(), 1u);
            if (!answerer.Seen().empty()) {
                EXPECT_EQ(answerer.Seen()[0].text, "Es mu\xDF eine Datenquelle ausgew\xE4hlt werden.");
            }
        }
    }
}

// ---------------------------------------------------------------------------
// Dialog 10056 on SQLite, which has no schemata: the text is typed.

class SchemaPicker : public wintest::ConnectedTest {};

TEST_F(SchemaPicker, TakesTheTypedTextOnlyOnOk) {
    const struct {
        int button;
        int result;
        const char *schema;
        const char *shot;
    } cases[] = {{IDC_SCHEMA_PICKER_OK, 1, "mein_schema", "pickers-10056"}, {IDC_SCHEMA_PICKER_CANCEL, 2, "alt", ""}};
    for (const auto &c : cases) {
        SCOPED_TRACE(c.schema);
        char schema[100] = "alt";
        std::string shown = "<unread>";
        DialogRobot robot(kSchemaTitle, c.shot, [&](HWND dialog) {
            shown = ControlText(dialog, IDC_SCHEMA_PICKER_BOX);
            SetText(dialog, IDC_SCHEMA_PICKER_BOX, "mein_schema");
            Click(dialog, c.button);
        });
        const int result = Kodbc_SelectDbaseSchema(nullptr, hdbc_, schema, 0, 0);
        robot.Join();
        ASSERT_TRUE(robot.Found());
        EXPECT_EQ(shown, "alt") << "opens with the schema passed in";
        EXPECT_EQ(result, c.result);
        EXPECT_STREQ(schema, c.schema);
    }
}

// ---------------------------------------------------------------------------
// Dialog 10060 on SQLite: no schemata, so the schema controls stay disabled.

class SourceAndSchemaOnSqlite : public wintest::ConnectedTest {};

TEST_F(SourceAndSchemaOnSqlite, SchemaDisabledAndClearedByAnotherChoice) {
    const unsigned usage = Kodbc_GetSchemaUsage(hdbc_);
    EXPECT_EQ(usage, 0u) << "the SQLite driver reports no schema usage";
    const struct {
        int button;
        int result;
    } endings[] = {{IDC_SOURCE_SCHEMA_OK, 1}, {IDC_SOURCE_SCHEMA_CANCEL, 2}};
    for (const auto &e : endings) {
        SCOPED_TRACE(e.button == IDC_SOURCE_SCHEMA_OK ? "OK" : "Abbrechen");
        RememberedUsers users({kSqlite});
        DataSourceRecord record = Record(kSqlite, "anna", "pw");
        const DataSourceRecord before = record;
        char schema[100] = "alt_schema";
        struct {
            std::string dsn, user, schema, schemaAfter, userAfter;
            bool enabled[3] = {true, true, true};
        } seen;
        DialogRobot robot("Ziel w\xE4hlen", e.result == 1 ? "pickers-10060" : "", [&](HWND dialog) {
            seen.dsn = ControlText(dialog, IDC_SOURCE_SCHEMA_DSN);
            seen.user = ControlText(dialog, IDC_SOURCE_SCHEMA_USER);
            seen.schema = ControlText(dialog, IDC_SOURCE_SCHEMA_SCHEMA);
            int i = 0;
            for (int id : {IDC_SOURCE_SCHEMA_SCHEMA_LABEL, IDC_SOURCE_SCHEMA_SCHEMA, IDC_SOURCE_SCHEMA_CHOOSE_SCHEMA})
                seen.enabled[i++] = Enabled(dialog, id);
            Click(dialog, IDC_SOURCE_SCHEMA_CHOOSE_DSN);
            if (HWND picker = WaitForDialog(ThreadOf(dialog), kSourceTitle)) PickInSourceDialog(picker, kSqlite, "bert");
            WaitFor([&] { return ControlText(dialog, IDC_SOURCE_SCHEMA_USER) == "bert"; });
            seen.userAfter = ControlText(dialog, IDC_SOURCE_SCHEMA_USER);
            seen.schemaAfter = ControlText(dialog, IDC_SOURCE_SCHEMA_SCHEMA);
            Click(dialog, e.button);
        });
        const int result = Kodbc_DataSourceAndSchemaDialog(nullptr, &record, schema, sizeof schema, "Ziel w\xE4hlen");
        robot.Join();

        ASSERT_TRUE(robot.Found()) << "dialog 10060 with the caller's title never appeared";
        EXPECT_EQ(seen.dsn, kSqlite);
        EXPECT_EQ(seen.user, "anna");
        EXPECT_EQ(seen.schema, "alt_schema");
        for (bool enabled : seen.enabled) EXPECT_EQ(enabled, usage > 0);
        EXPECT_EQ(seen.userAfter, "bert");
        EXPECT_EQ(seen.schemaAfter, "") << "another data source clears the schema";
        EXPECT_EQ(result, e.result);
        if (e.result == 1) {
            EXPECT_STREQ(record.UserId, "bert");
            EXPECT_TRUE(CallersBytesKept(record));
            EXPECT_STREQ(schema, "");
        } else {
            EXPECT_EQ(std::memcmp(&record, &before, sizeof record), 0);
            EXPECT_STREQ(schema, "alt_schema");
        }
    }
}

// ---------------------------------------------------------------------------
// Dialogs 10060 and 10056 on PostgreSQL, which has schemata.

// Whether kodbc_pg answers, asked past the library so that no error is shown.
bool PostgresAnswers() {
    SQLHENV env = nullptr;
    SQLHDBC dbc = nullptr;
    bool ok = SQL_SUCCEEDED(SQLAllocEnv(&env)) && SQL_SUCCEEDED(SQLAllocConnect(env, &dbc)) &&
              SQL_SUCCEEDED(SQLConnect(dbc, reinterpret_cast<SQLCHAR *>(const_cast<char *>(kPg)), SQL_NTS, nullptr, 0,
                                       nullptr, 0));
    if (ok) SQLDisconnect(dbc);
    if (dbc) SQLFreeConnect(dbc);
    if (env) SQLFreeEnv(env);
    return ok;
}

class SourceAndSchemaOnPostgres : public ::testing::Test {
protected:
    void SetUp() override {
        if (!PostgresAnswers()) GTEST_SKIP() << kPg << " cannot be connected (no servers in this run)";
        DataSourceRecord record = Record(kPg);
        ASSERT_EQ(Kodbc_ConnectDataSource(&record, &henv_, &hdbc_), KODBC_CONNECTED);
        Run(std::string("DROP SCHEMA IF EXISTS ") + kPgSchema + " CASCADE");
        ASSERT_TRUE(Run(std::string("CREATE SCHEMA ") + kPgSchema));
        ASSERT_TRUE(Run(std::string("CREATE TABLE ") + kPgSchema + ".t (id INTEGER)"));
    }
    void TearDown() override {
        if (hdbc_) Run(std::string("DROP SCHEMA IF EXISTS ") + kPgSchema + " CASCADE");
        Kodbc_DisconnectDataSource(&henv_, &hdbc_);
    }
    bool Run(const std::string &sql) {
        SQLHSTMT stmt = nullptr;
        if (!SQL_SUCCEEDED(SQLAllocStmt(hdbc_, &stmt))) return false;
        const bool ok = SQL_SUCCEEDED(SQLExecDirect(stmt, reinterpret_cast<SQLCHAR *>(const_cast<char *>(sql.c_str())), SQL_NTS));
        SQLFreeStmt(stmt, SQL_DROP);
        return ok;
    }
    // Sessions on the test database, this fixture's own included.
    long Sessions() {
        SQLHSTMT stmt = nullptr;
        long count = -1;
        if (!SQL_SUCCEEDED(SQLAllocStmt(hdbc_, &stmt))) return count;
        static char sql[] = "SELECT count(*) FROM pg_stat_activity WHERE datname = current_database()";
        SQLINTEGER value = 0;
        if (SQL_SUCCEEDED(SQLExecDirect(stmt, reinterpret_cast<SQLCHAR *>(sql), SQL_NTS)) &&
            SQL_SUCCEEDED(SQLFetch(stmt)) && SQL_SUCCEEDED(SQLGetData(stmt, 1, SQL_C_SLONG, &value, 0, nullptr)))
            count = value;
        SQLFreeStmt(stmt, SQL_DROP);
        return count;
    }
    SQLHENV henv_ = nullptr;
    SQLHDBC hdbc_ = nullptr;
};

// In an open dialog 10056: picks kPgSchema from the list.
bool PickListedSchema(HWND dialog) {
    HWND picker = WaitForDialog(ThreadOf(dialog), kSchemaTitle);
    if (!picker) return false;
    HWND box = GetDlgItem(picker, IDC_SCHEMA_PICKER_BOX);
    const LRESULT index = SendMessageA(box, CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(kPgSchema));
    if (index == CB_ERR) {
        Click(picker, IDC_SCHEMA_PICKER_CANCEL);
        return false;
    }
    SendMessageA(box, CB_SETCURSEL, static_cast<WPARAM>(index), 0);
    Click(picker, IDC_SCHEMA_PICKER_OK);
    return WaitFor([&] { return !IsWindow(picker); });
}

TEST_F(SourceAndSchemaOnPostgres, SchemaPickedFromTheListAndClearedByAnotherChoice) {
    ASSERT_GT(Kodbc_GetSchemaUsage(hdbc_), 0u);
    const struct {
        int button;
        int result;
    } endings[] = {{IDC_SOURCE_SCHEMA_OK, 1}, {IDC_SOURCE_SCHEMA_CANCEL, 2}};
    for (const auto &e : endings) {
        SCOPED_TRACE(e.button == IDC_SOURCE_SCHEMA_OK ? "OK" : "Abbrechen");
        RememberedUsers users({kPg});
        DataSourceRecord record = Record(kPg);
        char schema[6] = "alt";  // the result is cut to the caller's size
        const long sessions = Sessions();
        struct {
            std::string title, picked, afterChoice, finalSchema;
            bool enabled = false, enabledAfterChoice = false;
            long sessionsWhileOpen = -1;
        } seen;
        DialogRobot robot(kSourceTitle, e.result == 1 ? "pickers-10060-pg" : "", [&](HWND dialog) {
            seen.title = wintest::WindowText(dialog);
            seen.sessionsWhileOpen = Sessions();
            seen.enabled = Enabled(dialog, IDC_SOURCE_SCHEMA_SCHEMA_LABEL) && Enabled(dialog, IDC_SOURCE_SCHEMA_SCHEMA) &&
                           Enabled(dialog, IDC_SOURCE_SCHEMA_CHOOSE_SCHEMA);
            Click(dialog, IDC_SOURCE_SCHEMA_CHOOSE_SCHEMA);
            if (PickListedSchema(dialog)) seen.picked = ControlText(dialog, IDC_SOURCE_SCHEMA_SCHEMA);
            Click(dialog, IDC_SOURCE_SCHEMA_CHOOSE_DSN);
            if (HWND picker = WaitForDialog(ThreadOf(dialog), kSourceTitle, dialog)) PickInSourceDialog(picker, kPg, "");
            WaitFor([&] { return ControlText(dialog, IDC_SOURCE_SCHEMA_SCHEMA).empty(); });
            seen.afterChoice = ControlText(dialog, IDC_SOURCE_SCHEMA_SCHEMA);
            seen.enabledAfterChoice = Enabled(dialog, IDC_SOURCE_SCHEMA_CHOOSE_SCHEMA);
            Click(dialog, IDC_SOURCE_SCHEMA_CHOOSE_SCHEMA);
            PickListedSchema(dialog);
            seen.finalSchema = ControlText(dialog, IDC_SOURCE_SCHEMA_SCHEMA);
            Click(dialog, e.button);
        });
        const int result = Kodbc_DataSourceAndSchemaDialog(nullptr, &record, schema, sizeof schema, nullptr);
        robot.Join();

        ASSERT_TRUE(robot.Found());
        EXPECT_EQ(seen.title, kSourceTitle) << "no title given: the template's";
        EXPECT_EQ(seen.sessionsWhileOpen, sessions + 1) << "the dialog holds a connection of its own";
        EXPECT_TRUE(seen.enabled);
        EXPECT_EQ(seen.picked, kPgSchema);
        EXPECT_EQ(seen.afterChoice, "") << "another data source clears the schema";
        EXPECT_TRUE(seen.enabledAfterChoice);
        EXPECT_EQ(seen.finalSchema, kPgSchema);
        EXPECT_EQ(result, e.result);
        EXPECT_STREQ(schema, e.result == 1 ? "kodbc" : "alt");
        EXPECT_TRUE(WaitFor([&] { return Sessions() == sessions; })) << "its connection ends with the dialog";
    }
}

} // namespace
